// The measures that clients can ask for.
#include "stats/quality.h"

using namespace korvane;

extern "C" {

korvane_status_t korvane_mesh_get_triangle_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    return quality_triangle_aspect_ratio(mesh, index, ratio);
}

korvane_status_t korvane_mesh_get_tetrahedron_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio)
{
    return quality_tetrahedron_aspect_ratio(mesh, index, ratio);
}

} // extern "C"
