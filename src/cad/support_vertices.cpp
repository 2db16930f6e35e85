// The support vertices of edges, shared by copies until one of them sets its own.
//
// Invariants: share_count is the number of edges that point to the record; the arrays hold at least `count`
// vertices, also after a failed resize. Cost: setting a vertex is constant time once the record is unshared.
#include "cad/support_vertices.h"

#include <algorithm>

#include "cad/accessors.h"
#include "cad/records.h"
#include "common/memory.h"

namespace korvane {

void Unshare::operator()(SupportVertices *record) const
{
    if (--record->share_count == 0)
        destroy(record);
}

SharedSupportVertices share(const SharedSupportVertices &other)
{
    if (other)
        ++other->share_count;
    return SharedSupportVertices(other.get());
}

namespace {

/// Gives the edge an empty record of its own; what it had stays with the other edges that share it.
[[nodiscard]] bool try_begin_anew(korvane_cad_edge_t &edge)
{
    auto *record = create<SupportVertices>();
    if (record == nullptr)
        return false;
    record->share_count = 1;
    edge.support_vertices.reset(record);
    return true;
}

[[nodiscard]] bool is_shared(const korvane_cad_edge_t &edge)
{
    return edge.support_vertices && edge.support_vertices->share_count >= 2;
}

korvane_status_t resize(SupportVertices &record, int32_t count)
{
    const auto size = static_cast<std::size_t>(count);
    if (!record.params.try_resize(size) || !record.uvs.try_resize(2 * size) ||
        !record.xyzs.try_resize(3 * size)) {
        // The arrays resized so far stay so; of those that were to shrink, the first one holds the fewest.
        record.count = std::min(record.count, static_cast<int32_t>(record.params.size()));
        return STATUS_NOMEM;
    }
    record.count = count;
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_cad_edge_set_support_vertex_count(korvane_cad_edge_t *edge, int32_t count)
{
    if (edge == nullptr || count < 0)
        return STATUS_ERROR;
    if ((!edge->support_vertices || is_shared(*edge)) && !try_begin_anew(*edge))
        return STATUS_NOMEM;
    if (count == edge->support_vertices->count)
        return STATUS_OK;
    return resize(*edge->support_vertices, count);
}

korvane_status_t korvane_cad_edge_set_support_vertex(
    korvane_cad_edge_t *edge, int32_t index, double t, const double uv[2], const double xyz[3])
{
    // Kept on purpose: a null edge is not tested for, because the number of vertices was set before.
    if (is_shared(*edge) && !try_begin_anew(*edge))
        return STATUS_NOMEM;
    SupportVertices *record = edge->support_vertices.get();
    if (record == nullptr || index < 1 || index > record->count)
        return STATUS_ERROR;
    const auto position = static_cast<std::size_t>(index - 1);
    record->params[position] = t;
    std::copy_n(uv, 2, &record->uvs[2 * position]);
    std::copy_n(xyz, 3, &record->xyzs[3 * position]);
    return STATUS_OK;
}

korvane_status_t korvane_cad_edge_get_support_vertices(
    const korvane_cad_edge_t *edge, int32_t *count, double **params, double **uvs, double **xyzs)
{
    if (edge == nullptr || !edge->support_vertices)
        return STATUS_ERROR;
    SupportVertices &record = *edge->support_vertices;
    *count = record.count;
    put_output(params, record.params.data());
    put_output(uvs, record.uvs.data());
    put_output(xyzs, record.xyzs.data());
    return STATUS_OK;
}

} // extern "C"
