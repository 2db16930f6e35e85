// Calls that clients make by the million: what one costs, in large objects, beside the least that a client
// could do itself. Elements are visited in order; tags and identifiers at random, so that caches help nobody.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <korvane.h>

#include "flat_mesh.h"
#include "ratio_report.h"

namespace korvane::benchmarks {
namespace {

constexpr int32_t million = 1'000'000;

/// The numbers 1..count.
std::vector<int32_t> numbers_in_order(int32_t count)
{
    std::vector<int32_t> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

/// The numbers 1..count in random order.
std::vector<int32_t> random_numbers(int32_t count)
{
    std::vector<int32_t> numbers = numbers_in_order(count);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(20110815));
    return numbers;
}

/// `call` takes the numbers in turn.
template <class Call>
void add_visit(const std::string &name, std::vector<int32_t> in_turn, Call call)
{
    auto numbers = std::make_shared<std::vector<int32_t>>(std::move(in_turn));
    benchmark::RegisterBenchmark(name.c_str(), [numbers, call](benchmark::State &state) {
        std::size_t i = 0;
        for ([[maybe_unused]] auto _ : state) {
            benchmark::DoNotOptimize(call((*numbers)[i]));
            i = i + 1 < numbers->size() ? i + 1 : 0;
        }
    });
}

/// `call` takes the numbers 1..count in random order.
template <class Call>
void add(const std::string &name, int32_t count, Call call)
{
    add_visit(name, random_numbers(count), call);
}

/// A job of a million calls; the time is that of one call.
template <class Job>
void add_job(const std::string &name, Job job)
{
    benchmark::RegisterBenchmark(name.c_str(), [job](benchmark::State &state) {
        while (state.KeepRunningBatch(million))
            job();
    });
}

void demand(bool condition)
{
    if (!condition)
        std::abort();
}

void add_mesh_accessors()
{
    static const FlatMesh &flat = million_tetrahedra(Order::natural);
    static const Mesh mesh = in_memory(flat);
    add_visit("vertex coordinates", numbers_in_order(flat.vertex_count()), [](int32_t vertex) {
        std::array<double, 3> xyz;
        korvane_mesh_get_vertex_coordinates(mesh.get(), vertex, xyz.data());
        return xyz[0];
    });
    add_visit("vertex coordinates/array", numbers_in_order(flat.vertex_count()), [](int32_t vertex) {
        std::array<double, 3> xyz;
        std::copy_n(&flat.coordinates[3 * (static_cast<std::size_t>(vertex) - 1)], 3, xyz.data());
        return xyz[0];
    });
    add_visit("tetrahedron vertices", numbers_in_order(flat.element_count()), [](int32_t tetrahedron) {
        std::array<int32_t, 4> vertices;
        korvane_mesh_get_tetrahedron_vertices(mesh.get(), tetrahedron, vertices.data());
        return vertices[0];
    });
    add_visit("tetrahedron vertices/array", numbers_in_order(flat.element_count()), [](int32_t tetrahedron) {
        std::array<int32_t, 4> vertices;
        std::copy_n(&flat.vertices[4 * (static_cast<std::size_t>(tetrahedron) - 1)], 4, vertices.data());
        return vertices[0];
    });
}

/// 100,000 composite tags of two of 500 base tags.
void add_tag_queries()
{
    constexpr int32_t base_tag_count = 500, composite_tag_count = 100'000;
    static korvane_tag_system_t *const system = korvane_tag_system_new(base_tag_count);
    static std::vector<std::array<int32_t, 2>> pairs;
    static std::vector<int32_t> composites;
    for (int32_t tag = 1; tag <= base_tag_count; ++tag)
        demand(korvane_tag_system_add_base_tag(system, tag) == STATUS_OK);
    for (int32_t a = 1; a <= base_tag_count; ++a)
        for (int32_t b = a + 1; b <= base_tag_count && pairs.size() < composite_tag_count; ++b)
            pairs.push_back({a, b});
    static std::unordered_map<int64_t, int32_t> by_pair;
    static std::unordered_map<int32_t, std::array<int32_t, 2>> by_tag;
    for (const auto &pair : pairs) {
        int32_t composite = 0;
        demand(korvane_tag_system_get_composite_tag(system, pair.data(), 2, &composite) == STATUS_OK);
        composites.push_back(composite);
        by_pair[int64_t{pair[0]} << 32 | pair[1]] = composite;
        by_tag[composite] = pair;
    }
    add("composite tag of two", composite_tag_count, [](int32_t number) {
        int32_t composite = 0;
        korvane_tag_system_get_composite_tag(
            system, pairs[static_cast<std::size_t>(number) - 1].data(), 2, &composite);
        return composite;
    });
    add("composite tag of two/hash map", composite_tag_count, [](int32_t number) {
        const auto &pair = pairs[static_cast<std::size_t>(number) - 1];
        return by_pair.find(int64_t{pair[0]} << 32 | pair[1])->second;
    });
    add("definition of a tag", composite_tag_count, [](int32_t number) {
        int32_t count = 0;
        std::array<int32_t, 2> base_tags{};
        korvane_tag_system_get_composite_tag_defintion(
            system, composites[static_cast<std::size_t>(number) - 1], &count, base_tags.data());
        return base_tags[0];
    });
    add("definition of a tag/hash map", composite_tag_count, [](int32_t number) {
        return by_tag.find(composites[static_cast<std::size_t>(number) - 1])->second[0];
    });
}

korvane_cad_t *with_a_million_periodic_points()
{
    korvane_cad_t *cad = korvane_cad_new(silent_context());
    for (int32_t i = 1; i <= million; ++i)
        demand(korvane_cad_add_point_periodicity(cad, 0, i, 0, i + million) == STATUS_OK);
    return cad;
}

void add_periodicity()
{
    static korvane_cad_t *const cad = with_a_million_periodic_points();
    add_job("periodicity of points, declared", [] { korvane_cad_delete(with_a_million_periodic_points()); });
    add_job("periodicity of points, declared/hash map", [] {
        std::unordered_multimap<int32_t, std::array<int32_t, 3>> images;
        for (int32_t i = 1; i <= million; ++i) {
            images.insert({i, {0, 0, i + million}});
            images.insert({i + million, {0, 0, i}});
        }
        benchmark::DoNotOptimize(images);
    });
    add("periodicity of a point, counted", million, [](int32_t point) {
        int32_t count = 0;
        korvane_cad_get_point_id_periodicity_count(cad, point, &count);
        return count;
    });
}

korvane_status_t curve(double, double *, double *, double *, void *)
{
    return STATUS_OK;
}

/// A model of a thousand faces with a thousand edges each.
void add_discretizations()
{
    static korvane_cad_t *const cad = korvane_cad_new(silent_context());
    static std::vector<korvane_cad_edge_t *> edges;
    for (uint32_t face_id = 1; face_id <= 1000; ++face_id) {
        korvane_cad_face_t *face = korvane_cad_face_new(cad, face_id, nullptr, nullptr);
        for (uint32_t edge_id = 1; edge_id <= 1000; ++edge_id)
            edges.push_back(korvane_cad_edge_new(face, edge_id, 0, 1, curve, nullptr));
    }
    demand(edges.back() != nullptr);
    static korvane_dcad_t *const dcad = korvane_dcad_new(cad);
    const auto request = [](korvane_dcad_t *of, int32_t number) {
        korvane_dcad_edge_discretization_t *discretization = nullptr;
        korvane_dcad_get_edge_discretization(
            of, edges[static_cast<std::size_t>(number) - 1], &discretization);
        return discretization;
    };
    add_job("discretizations, made and deleted", [request] {
        korvane_dcad_t *made = korvane_dcad_new(cad);
        for (int32_t number = 1; number <= million; ++number)
            demand(request(made, number) != nullptr);
        korvane_dcad_delete(made);
    });
    for (int32_t number = 1; number <= million; ++number)
        demand(request(dcad, number) != nullptr);
    add("discretization of an edge, found", million,
        [request](int32_t number) { return request(dcad, number); });
}

void add_contexts()
{
    benchmark::RegisterBenchmark("context, made and deleted", [](benchmark::State &state) {
        for ([[maybe_unused]] auto _ : state)
            korvane_context_delete(korvane_context_new());
    });
    benchmark::RegisterBenchmark("context, made and deleted/two blocks", [](benchmark::State &state) {
        for ([[maybe_unused]] auto _ : state) {
            void *blocks[] = {std::calloc(1, 40), std::calloc(1, 24)};
            benchmark::DoNotOptimize(blocks);
            std::free(blocks[0]);
            std::free(blocks[1]);
        }
    });
}

} // namespace
} // namespace korvane::benchmarks

int main(int argc, char **argv)
{
    using namespace korvane::benchmarks;
    silent_context();
    add_mesh_accessors();
    add_tag_queries();
    add_periodicity();
    add_discretizations();
    add_contexts();
    return run_with_ratios(argc, argv);
}
