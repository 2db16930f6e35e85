// The memory that a job takes from the heap at its peak, beside what the mesh itself holds, and what we want
// it to take at most. The allocations of the library are counted on their way to the C library's (glibc).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <malloc.h>

#include <korvane.h>

#include "flat_mesh.h"
#include "plain_judgement.h"

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);
}

namespace {

std::int64_t held = 0;
std::int64_t peak = 0;

void *taken(void *block)
{
    held += static_cast<std::int64_t>(malloc_usable_size(block));
    peak = std::max(peak, held);
    return block;
}

} // namespace

extern "C" {

void *malloc(std::size_t size)
{
    return taken(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
    return taken(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
    held -= static_cast<std::int64_t>(malloc_usable_size(block));
    return taken(__libc_realloc(block, size));
}

void free(void *block)
{
    held -= static_cast<std::int64_t>(malloc_usable_size(block));
    __libc_free(block);
}

} // extern "C"

namespace korvane::benchmarks {
namespace {

/// Runs a job and tells how much more than before was held at most, less what is held afterwards.
template <class Job>
void measure(const char *name, double wanted, Job job)
{
    const std::int64_t before = held;
    peak = held;
    job();
    const std::int64_t beside = peak - held;
    std::printf(
        "%-24s %12lld %12lld", name, static_cast<long long>(held - before), static_cast<long long>(beside));
    if (wanted > 0)
        std::printf(" %12.0f%s", wanted, static_cast<double>(beside) <= wanted ? "" : " missed");
    std::printf("\n");
}

/// A set that is made for `capacity` keys and grows by a 17th to so many, of 12 bytes each.
double edge_set_bytes(std::int64_t capacity, std::int64_t edges, std::int64_t buckets)
{
    while (capacity < edges)
        capacity += capacity / 17;
    return 12.0 * static_cast<double>(capacity + 1) + 4.0 * static_cast<double>(buckets);
}

/// A whole record per face, the set of edges, and every side of a face linked to its edge.
double topology_bytes(std::int64_t faces, std::int64_t edges)
{
    const std::int64_t capacity = 2 * faces / 3;
    return 44.0 * static_cast<double>(faces) + edge_set_bytes(capacity, edges, capacity * 3 / 2) +
           4.0 * static_cast<double>(edges) + 12.0 * 3.0 * static_cast<double>(faces);
}

void measure_mesh(const char *subject, const FlatMesh &flat)
{
    const Mesh mesh = in_memory(flat);
    const std::int64_t elements = flat.element_count();
    const auto edges = static_cast<std::int64_t>(judge_edges(flat, Order::natural).n);
    constexpr double block = 1 << 20;
    std::printf("%s\n", subject);
    constexpr double rounding = 1 << 12; // of the heap
    measure("  statistics", edge_set_bytes(elements, edges, elements / 2) + rounding,
        [&] { korvane_mesh_compute_statistics(mesh.get()); });
    measure("  topology", flat.kind == &triangle ? 1.1 * topology_bytes(elements, edges) : 0,
        [&] { korvane_mesh_compute_topological_statistics(mesh.get()); });
    for (const char *extension : {".meshb", ".mesh"}) {
        const TemporaryFile file(extension);
        measure("  write", block, [&] { korvane_mesh_write_mesh(mesh.get(), file.name()); });
        Mesh read;
        measure(
            "  read", block, [&] { read.reset(korvane_mesh_new_read_mesh(silent_context(), file.name())); });
    }
}

} // namespace
} // namespace korvane::benchmarks

int main()
{
    using namespace korvane::benchmarks;
    silent_context();
    std::printf("%-24s %12s %12s %12s\n", "job", "bytes kept", "bytes beside", "wanted");
    measure_mesh("a million tetrahedra", million_tetrahedra(Order::natural));
    measure_mesh("two million triangles", two_million_triangles(Order::natural));
}
