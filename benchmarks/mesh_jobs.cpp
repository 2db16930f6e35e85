// The main jobs on meshes of a million to six million elements, in natural order and shuffled, each beside
// its plain loop. The table at the end gives the time of every job as a ratio to its plain loops, and the
// ratio that we want.
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <korvane.h>

#include "flat_mesh.h"
#include "plain_files.h"
#include "plain_judgement.h"
#include "ratio_report.h"

namespace korvane::benchmarks {
namespace {

/// The greatest ratios wanted, by the names of the plain benchmarks.
std::map<std::string, double> goals;

template <class Job>
void add(const std::string &name, Job job)
{
    benchmark::RegisterBenchmark(name.c_str(), [job](benchmark::State &state) {
        for ([[maybe_unused]] auto _ : state)
            job();
    })->Unit(benchmark::kMillisecond);
}

template <class Job>
void add_plain(const std::string &job_name, const char *name, double goal, Job job)
{
    add(job_name + "/" + name, job);
    goals[job_name + "/" + name] = goal;
}

/// A mesh in one order of its vertices: on flat arrays, and held by the library. Both are made when a job
/// first asks for them.
class Subject {
  public:
    struct Grid {
        const char *name;
        FlatMesh (*make)(int32_t cells);
        int32_t cells;
    };

    Subject(const Grid &of_grid, Order in_order)
        : name(in_order == Order::natural ? of_grid.name : std::string("shuffled ") + of_grid.name),
          order(in_order), grid(of_grid)
    {}

    const std::string name;
    const Order order;

    const FlatMesh &flat()
    {
        if (flat_mesh.vertex_count() == 0)
            flat_mesh = order == Order::natural ? grid.make(grid.cells) : shuffled(grid.make(grid.cells));
        return flat_mesh;
    }

    korvane_mesh_t *mesh()
    {
        if (!held)
            held = in_memory(flat());
        return held.get();
    }

    /// A file that holds the mesh.
    const char *file(const char *extension)
    {
        std::unique_ptr<TemporaryFile> &file = files[extension];
        if (!file) {
            file = std::make_unique<TemporaryFile>(extension);
            korvane_mesh_write_mesh(mesh(), file->name());
        }
        return file->name();
    }

  private:
    const Grid grid;
    FlatMesh flat_mesh;
    Mesh held;
    std::map<std::string, std::unique_ptr<TemporaryFile>> files;
};

void add_reading(Subject &subject)
{
    const auto read = [&subject](const char *extension) {
        return [&subject, extension] {
            Mesh(korvane_mesh_new_read_mesh(silent_context(), subject.file(extension)));
        };
    };
    const std::string binary = "read binary " + subject.name, text = "read text " + subject.name;
    add(binary, read(".meshb"));
    add(binary + "/raw read", [&subject] { benchmark::DoNotOptimize(read_raw(subject.file(".meshb"))); });
    add_plain(binary, "read and decode", 1.3,
        [&subject] { benchmark::DoNotOptimize(read_and_decode(subject.file(".meshb"))); });
    add(text, read(".mesh"));
    add(text + "/raw read", [&subject] { benchmark::DoNotOptimize(read_raw(subject.file(".mesh"))); });
    add_plain(text, "fscanf", 1.0 / 12,
        [&subject] { benchmark::DoNotOptimize(read_with_fscanf(subject.file(".mesh"))); });
}

void add_writing(Subject &subject)
{
    static const TemporaryFile binary_file(".meshb"), text_file(".mesh"), bulk_file(".bdf");
    const std::string binary = "write binary " + subject.name, text = "write text " + subject.name,
                      bulk = "write bulk data " + subject.name;
    add(binary, [&subject] { korvane_mesh_write_mesh(subject.mesh(), binary_file.name()); });
    add_plain(binary, "encode and write", 1.3,
        [&subject] { encode_and_write(subject.flat(), binary_file.name()); });
    add(text, [&subject] { korvane_mesh_write_mesh(subject.mesh(), text_file.name()); });
    add_plain(text, "fprintf", 1.0 / 5, [&subject] { write_with_fprintf(subject.flat(), text_file.name()); });
    add(bulk, [&subject] { korvane_mesh_write_bdf(subject.mesh(), bulk_file.name()); });
    add_plain(bulk, "fprintf", 1.0 / 3.5,
        [&subject] { write_bulk_data_with_fprintf(subject.flat(), bulk_file.name()); });
}

/// Statistics of any mesh.
void add_statistics(Subject &subject)
{
    const std::string statistics = "statistics " + subject.name;
    add(statistics, [&subject] { korvane_mesh_compute_statistics(subject.mesh()); });
    add_plain(statistics, "plain loops", 1.3, [&subject] {
        const FlatMesh &flat = subject.flat();
        benchmark::DoNotOptimize(judge_elements(flat));
        if (flat.kind != &hexahedron)
            benchmark::DoNotOptimize(judge_edges(flat, subject.order));
    });
}

/// Topology of surfaces.
void add_topology(Subject &subject)
{
    const std::string topology = "topology " + subject.name;
    add(topology, [&subject] { korvane_mesh_compute_topological_statistics(subject.mesh()); });
    add_plain(topology, "hash, union-find", subject.order == Order::natural ? 2 : 3,
        [&subject] { benchmark::DoNotOptimize(count_topology(subject.flat(), subject.order)); });
}

} // namespace
} // namespace korvane::benchmarks

int main(int argc, char **argv)
{
    using namespace korvane::benchmarks;
    silent_context(); // made before the meshes, and deleted after them
    const Subject::Grid grids[] = {
        {"tetrahedra 1 M", grid_of_tetrahedra, 55}, // 998,250
        {"tetrahedra 6 M", grid_of_tetrahedra, 100},
        {"hexahedra 1 M", grid_of_hexahedra, 100},
        {"triangles 2 M", grid_of_triangles, 1000},
    };
    std::vector<std::unique_ptr<Subject>> subjects;
    for (const Subject::Grid &grid : grids) {
        for (const Order order : {Order::natural, Order::shuffled}) {
            Subject &subject = *subjects.emplace_back(std::make_unique<Subject>(grid, order));
            if (order == Order::natural) {
                add_reading(subject);
                add_writing(subject);
            }
            add_statistics(subject);
            if (grid.make == grid_of_triangles)
                add_topology(subject);
        }
    }
    return run_with_ratios(argc, argv, goals);
}
