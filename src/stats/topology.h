// Topological statistics of the surface elements of a mesh.
#pragma once

#include <korvane.h>

namespace korvane {

/// Reports free edges, non-manifold edges and connected components to the mesh's context: in keyed form under
/// `name`, or in readable form if it is null. STATUS_ERROR for a null mesh or one without context; STATUS_OK
/// also if the mesh cannot be read or memory runs out, when the values are not sent.
korvane_status_t compute_topological_statistics(const korvane_mesh_t *mesh, const char *name);

} // namespace korvane
