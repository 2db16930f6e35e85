// The memory that a job takes from the heap at its peak, beside what the mesh itself holds. The allocations
// of the library are counted on their way to the C library's (glibc).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <malloc.h>

#include <korvane.h>

#include "flat_mesh.h"

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
void measure(const char *name, Job job)
{
    const std::int64_t before = held;
    peak = held;
    job();
    std::printf("%-40s %12lld %12lld\n", name, static_cast<long long>(held - before),
        static_cast<long long>(peak - held));
}

void measure_mesh(const char *subject, const FlatMesh &flat)
{
    const Mesh mesh = in_memory(flat);
    std::printf("%s\n", subject);
    measure("  statistics", [&] { korvane_mesh_compute_statistics(mesh.get()); });
    measure("  topology", [&] { korvane_mesh_compute_topological_statistics(mesh.get()); });
    for (const char *extension : {".meshb", ".mesh"}) {
        const TemporaryFile file(extension);
        measure("  write", [&] { korvane_mesh_write_mesh(mesh.get(), file.name()); });
        Mesh read;
        measure("  read", [&] { read.reset(korvane_mesh_new_read_mesh(silent_context(), file.name())); });
    }
}

} // namespace
} // namespace korvane::benchmarks

int main()
{
    using namespace korvane::benchmarks;
    silent_context();
    std::printf("%-40s %12s %12s\n", "job", "bytes kept", "bytes beside");
    measure_mesh("a million tetrahedra", million_tetrahedra(Order::natural));
    measure_mesh("two million triangles", two_million_triangles(Order::natural));
}
