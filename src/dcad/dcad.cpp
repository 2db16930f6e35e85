// The discrete CAD: a CAD model and the map from its edges to their discretizations.
//
// It holds no reference to the model, which therefore must outlive it, and looks at it on two occasions: at
// its creation, to size the map, and before a discretization is made, to see that the edge belongs to it.
#include <algorithm>
#include <cstdint>

#include <korvane.h>

#include "common/memory.h"
#include "common/try.h"
#include "dcad/edge_map.h"

struct korvane_dcad_s {
    korvane_context_t *context; // of the model
    korvane_cad_t *cad;         // not owned
    korvane::EdgeMap edge_map;
};

namespace korvane {

namespace {

constexpr int64_t capacity_without_edges = 50000;
constexpr int64_t smallest_capacity = 2;

/// Sums up the edges of all faces. An edge that bounds two faces usually is one on each.
[[nodiscard]] korvane_status_t count_edges(const korvane_cad_t *cad, int64_t &sum)
{
    int32_t face_count = 0;
    TRY(korvane_cad_get_face_count(cad, &face_count));
    sum = 0;
    for (int32_t index = 1; index <= face_count; ++index) {
        korvane_cad_face_t *face = nullptr;
        int32_t edge_count = 0;
        TRY(korvane_cad_get_face(cad, index, &face));
        TRY(korvane_cad_face_get_edge_count(face, &edge_count));
        sum += edge_count;
    }
    return STATUS_OK;
}

[[nodiscard]] int32_t initial_capacity(int64_t edge_count)
{
    const int64_t wanted = edge_count == 0 ? capacity_without_edges : std::max(edge_count, smallest_capacity);
    return static_cast<int32_t>(std::min<int64_t>(wanted, INT32_MAX));
}

/// STATUS_OK for an edge on a face of the model.
[[nodiscard]] korvane_status_t check_membership(const korvane_cad_t *cad, const korvane_cad_edge_t *edge)
{
    korvane_cad_face_t *face = nullptr;
    korvane_cad_t *owner = nullptr;
    TRY(korvane_cad_edge_get_face(edge, &face));
    TRY(korvane_cad_face_get_cad(face, &owner));
    return owner == cad ? STATUS_OK : STATUS_ERROR;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_dcad_t *korvane_dcad_new(korvane_cad_t *cad)
{
    Owned<korvane_dcad_t> dcad = create_owned<korvane_dcad_t>();
    int64_t edge_count = 0;
    if (!dcad || korvane_cad_get_context(cad, &dcad->context) != STATUS_OK ||
        count_edges(cad, edge_count) != STATUS_OK || !dcad->edge_map.try_create(initial_capacity(edge_count)))
        return nullptr;
    dcad->cad = cad;
    return dcad.release();
}

void korvane_dcad_delete(korvane_dcad_t *dcad)
{
    destroy(dcad);
}

korvane_status_t korvane_dcad_get_cad(const korvane_dcad_t *dcad, korvane_cad_t **cad)
{
    *cad = dcad->cad;
    return STATUS_OK;
}

korvane_status_t korvane_dcad_get_edge_discretization(
    korvane_dcad_t *dcad, korvane_cad_edge_t *edge, korvane_dcad_edge_discretization_t **discretization)
{
    *discretization = nullptr;
    if (dcad == nullptr)
        return STATUS_ERROR;
    TRY(check_membership(dcad->cad, edge));
    *discretization = dcad->edge_map.find(edge);
    if (*discretization == nullptr)
        *discretization = dcad->edge_map.try_add(edge);
    return *discretization == nullptr ? STATUS_NOMEM : STATUS_OK;
}

korvane_status_t korvane_dcad_query_edge_discretization(const korvane_dcad_t *dcad,
    const korvane_cad_edge_t *edge, korvane_dcad_edge_discretization_t **discretization)
{
    *discretization = dcad->edge_map.find(edge);
    return STATUS_OK;
}

} // extern "C"
