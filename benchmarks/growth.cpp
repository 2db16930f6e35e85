// The cost per element of every job at 1, 2, 4 and 8 times a size of a million tetrahedra or two million
// triangles: best processor time of three runs. What grows with the mesh grows with its elements, but for the
// steps where data leave a cache.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>

#include <korvane.h>

#include "flat_mesh.h"

namespace korvane::benchmarks {
namespace {

template <class Job>
double best_time(Job job)
{
    double best = HUGE_VAL;
    for (int run = 0; run < 3; ++run) {
        const std::clock_t start = std::clock();
        job();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void measure(const std::string &subject, const FlatMesh &flat)
{
    const Mesh mesh = in_memory(flat);
    const auto report = [&](const char *job, double seconds) {
        std::printf("%-20s %-22s %9d %8.1f ns\n", job, subject.c_str(), flat.element_count(),
            1e9 * seconds / flat.element_count());
        std::fflush(stdout);
    };
    report("statistics", best_time([&] { korvane_mesh_compute_statistics(mesh.get()); }));
    if (flat.kind == &triangle)
        report("topology", best_time([&] { korvane_mesh_compute_topological_statistics(mesh.get()); }));
    const struct {
        const char *extension;
        const char *write;
        const char *read;
    } encodings[] = {{".meshb", "write binary", "read binary"}, {".mesh", "write text", "read text"}};
    for (const auto &encoding : encodings) {
        const TemporaryFile file(encoding.extension);
        report(encoding.write, best_time([&] { korvane_mesh_write_mesh(mesh.get(), file.name()); }));
        report(encoding.read,
            best_time([&] { Mesh(korvane_mesh_new_read_mesh(silent_context(), file.name())); }));
    }
    const TemporaryFile file(".bdf");
    report("write bulk data", best_time([&] { korvane_mesh_write_bdf(mesh.get(), file.name()); }));
}

} // namespace
} // namespace korvane::benchmarks

int main()
{
    using namespace korvane::benchmarks;
    silent_context();
    std::printf("%-20s %-22s %9s %11s\n", "job", "mesh", "elements", "per element");
    for (const int times : {1, 2, 4, 8}) {
        const FlatMesh tetrahedra =
            grid_of_tetrahedra(static_cast<int32_t>(std::lround(55 * std::cbrt(times))));
        measure("tetrahedra", tetrahedra);
        measure("shuffled tetrahedra", shuffled(tetrahedra));
        const FlatMesh triangles =
            grid_of_triangles(static_cast<int32_t>(std::lround(1000 * std::sqrt(times))));
        measure("triangles", triangles);
        measure("shuffled triangles", shuffled(triangles));
    }
}
