// The main jobs on a million tetrahedra and two million triangles, each beside its plain loop. The table at
// the end gives the time of every job as a ratio to its plain loops.
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <korvane.h>

#include "flat_mesh.h"
#include "plain_loops.h"
#include "ratio_report.h"

namespace korvane::benchmarks {
namespace {

template <class Job>
void add(const std::string &name, int64_t items, Job job)
{
    benchmark::RegisterBenchmark(name.c_str(), [items, job](benchmark::State &state) {
        for ([[maybe_unused]] auto _ : state)
            job();
        state.SetItemsProcessed(state.iterations() * items);
    })->Unit(benchmark::kMillisecond);
}

/// A job on a mesh held by the library, which is built when the job first runs.
class LazyMesh {
  public:
    explicit LazyMesh(const FlatMesh &source) : flat(source) {}
    korvane_mesh_t *get()
    {
        if (!mesh)
            mesh = in_memory(flat);
        return mesh.get();
    }

  private:
    const FlatMesh &flat;
    Mesh mesh;
};

std::string bytes_of(const char *file_name)
{
    std::ifstream file(file_name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void add_files(const std::string &subject, const FlatMesh &flat, LazyMesh &mesh)
{
    static std::vector<std::unique_ptr<TemporaryFile>> files;
    const int64_t items = flat.vertex_count() + flat.element_count();
    for (const std::string encoding : {"binary", "text"}) {
        const std::string extension = "-" + subject + (encoding == "text" ? ".mesh" : ".meshb");
        const char *source = files.emplace_back(std::make_unique<TemporaryFile>("-in" + extension))->name();
        const char *target = files.emplace_back(std::make_unique<TemporaryFile>("-out" + extension))->name();
        korvane_mesh_write_mesh(mesh.get(), source);
        const std::string read = "read " + encoding + " " + subject,
                          write = "write " + encoding + " " + subject;
        add(read, items, [source] { Mesh(korvane_mesh_new_read_mesh(silent_context(), source)); });
        add(read + "/raw read", items, [source] { benchmark::DoNotOptimize(read_raw(source)); });
        add(write, items, [&mesh, target] { korvane_mesh_write_mesh(mesh.get(), target); });
        add(write + "/raw write", items, [bytes = bytes_of(source), target] { write_raw(bytes, target); });
        if (encoding == "text") {
            add(read + "/fscanf", items, [source] { benchmark::DoNotOptimize(read_with_fscanf(source)); });
            add(write + "/fprintf", items, [&flat, target] { write_with_fprintf(flat, target); });
        } else {
            add(read + "/read and decode", items,
                [source] { benchmark::DoNotOptimize(read_and_decode(source)); });
            add(write + "/encode and write", items, [&flat, target] { encode_and_write(flat, target); });
        }
    }
}

void add_bulk_data(const std::string &subject, const FlatMesh &flat, LazyMesh &mesh)
{
    static const TemporaryFile file("-out.bdf");
    const int64_t items = flat.vertex_count() + flat.element_count();
    const std::string write = "write bulk data " + subject;
    add(write, items, [&mesh] { korvane_mesh_write_bdf(mesh.get(), file.name()); });
    add(write + "/fprintf", items, [&flat] { write_bulk_data_with_fprintf(flat, file.name()); });
}

/// Statistics of any mesh, topology of surfaces.
void add_judgement(const std::string &subject, const FlatMesh &flat, Order order, LazyMesh &mesh)
{
    const std::string statistics = "statistics " + subject, topology = "topology " + subject;
    add(statistics, flat.element_count(), [&mesh] { korvane_mesh_compute_statistics(mesh.get()); });
    add(statistics + "/plain loops", flat.element_count(), [&flat, order] {
        benchmark::DoNotOptimize(judge_elements(flat));
        benchmark::DoNotOptimize(judge_edges(flat, order));
    });
    if (flat.corners != 3)
        return;
    add(topology, flat.element_count(), [&mesh] { korvane_mesh_compute_topological_statistics(mesh.get()); });
    add(topology + "/hash, union-find", flat.element_count(),
        [&flat, order] { benchmark::DoNotOptimize(count_topology(flat, order)); });
}

} // namespace
} // namespace korvane::benchmarks

int main(int argc, char **argv)
{
    using namespace korvane::benchmarks;
    silent_context(); // made before the meshes, and deleted after them
    LazyMesh tetrahedra(million_tetrahedra(Order::natural)), triangles(two_million_triangles(Order::natural));
    LazyMesh shuffled_tetrahedra(million_tetrahedra(Order::shuffled));
    LazyMesh shuffled_triangles(two_million_triangles(Order::shuffled));
    add_files("tetrahedra", million_tetrahedra(Order::natural), tetrahedra);
    add_files("triangles", two_million_triangles(Order::natural), triangles);
    add_bulk_data("tetrahedra", million_tetrahedra(Order::natural), tetrahedra);
    add_bulk_data("triangles", two_million_triangles(Order::natural), triangles);
    add_judgement("tetrahedra", million_tetrahedra(Order::natural), Order::natural, tetrahedra);
    add_judgement("triangles", two_million_triangles(Order::natural), Order::natural, triangles);
    add_judgement(
        "shuffled tetrahedra", million_tetrahedra(Order::shuffled), Order::shuffled, shuffled_tetrahedra);
    add_judgement(
        "shuffled triangles", two_million_triangles(Order::shuffled), Order::shuffled, shuffled_triangles);

    return run_with_ratios(argc, argv);
}
