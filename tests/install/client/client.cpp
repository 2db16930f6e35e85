// A client in C++: owns its objects by smart pointers and measures a triangle.
#include <korvane.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>

int main()
{
    const std::unique_ptr<korvane_context_t, decltype(&korvane_context_delete)> context(
        korvane_context_new(), korvane_context_delete);
    const std::unique_ptr<korvane_mesh_t, decltype(&korvane_mesh_delete)> mesh(
        korvane_mesh_new_in_memory(context.get()), korvane_mesh_delete);
    const double corners[3][3] = {{0, 0, 0}, {1, 0, 0}, {0.5, std::sqrt(0.75), 0}};
    const std::int32_t triangle[3] = {1, 2, 3};
    korvane_mesh_set_vertex_count(mesh.get(), 3);
    for (std::int32_t i = 1; i <= 3; ++i)
        korvane_mesh_set_vertex_coordinates(mesh.get(), i, corners[i - 1]);
    korvane_mesh_set_triangle_count(mesh.get(), 1);
    korvane_mesh_set_triangle_vertices(mesh.get(), 1, triangle);

    double ratio = 0;
    const korvane_status_t status = korvane_mesh_get_triangle_aspect_ratio(mesh.get(), 1, &ratio);
    std::printf("aspect ratio of an equilateral triangle: %g\n", ratio);
    return status == STATUS_OK && std::fabs(ratio - 1) < 1e-12 ? 0 : 1;
}
