// Periodicity between lists of faces or of edges: two lists of records in the model, in the order of
// declaration.
//
// Records lie behind pointers and are never moved or removed, so the transformation data that were handed out
// stay valid until the model goes. A record is complete before it is counted, but for a transformation that
// is fitted: that is done on the counted record. Cost: a declaration and reading one copy their identifiers.
#include "cad/multiple_periodicity.h"

#include <algorithm>
#include <cstddef>

#include "cad/affine_fit.h"
#include "cad/list_growth.h"
#include "cad/records.h"
#include "common/memory.h"

namespace korvane {

MultiplePeriodicity::~MultiplePeriodicity()
{
    if (owns_data != 0)
        destroy(static_cast<AffineMap *>(transformation_data));
}

namespace {

/// Where a model keeps the records of one kind.
struct Kind {
    int32_t korvane_cad_t::*count;
    int32_t korvane_cad_t::*capacity;
    Array<MultiplePeriodicity *> korvane_cad_t::*records;
};

constexpr Kind faces{&korvane_cad_t::face_multiple_periodicity_count,
    &korvane_cad_t::face_multiple_periodicity_capacity, &korvane_cad_t::face_multiple_periodicities};
constexpr Kind edges{&korvane_cad_t::edge_multiple_periodicity_count,
    &korvane_cad_t::edge_multiple_periodicity_capacity, &korvane_cad_t::edge_multiple_periodicities};

/// The identifiers of a declaration, as the client gives them.
struct IdLists {
    const int32_t *source_ids;
    int32_t source_count;
    const int32_t *target_ids;
    int32_t target_count;

    [[nodiscard]] bool are_valid() const
    {
        return source_ids != nullptr && target_ids != nullptr && source_count >= 0 && target_count >= 0;
    }
};

[[nodiscard]] Owned<MultiplePeriodicity> try_create_record(const IdLists &ids)
{
    Owned<MultiplePeriodicity> record = create_owned<MultiplePeriodicity>();
    if (!record ||
        !try_assign(record->source_ids, ids.source_ids, static_cast<std::size_t>(ids.source_count)) ||
        !try_assign(record->target_ids, ids.target_ids, static_cast<std::size_t>(ids.target_count)))
        return nullptr;
    return record;
}

/// The last record of the list, after it was added, or null if memory runs out.
[[nodiscard]] MultiplePeriodicity *try_add(korvane_cad_t &cad, const Kind &kind, const IdLists &ids)
{
    Owned<MultiplePeriodicity> record = try_create_record(ids);
    if (!record || !try_make_place<grown_multiple_periodicity_capacity>(
                       cad.*kind.records, cad.*kind.capacity, cad.*kind.count))
        return nullptr;
    cad.generic_buffer_size =
        std::max(cad.generic_buffer_size, id_list_bytes(std::max(ids.source_count, ids.target_count)));
    MultiplePeriodicity *added = record.release();
    (cad.*kind.records)[static_cast<std::size_t>((cad.*kind.count)++)] = added;
    return added;
}

korvane_status_t add_with_function(korvane_cad_t *cad, const Kind &kind, const IdLists &ids,
    korvane_cad_transformation_t transformation, void *user_data)
{
    if (cad == nullptr || !ids.are_valid())
        return STATUS_ERROR;
    MultiplePeriodicity *record = try_add(*cad, kind, ids);
    if (record == nullptr)
        return STATUS_NOMEM;
    record->transformation = transformation;
    record->transformation_data = user_data;
    return STATUS_OK;
}

struct PointList {
    const double *points;
    int32_t count;
};

[[nodiscard]] korvane_status_t fit_transformation(
    MultiplePeriodicity &record, const PointList &source, const PointList &target)
{
    if (source.count != target.count || source.count < 1)
        return STATUS_ERROR;
    auto *map = create<AffineMap>();
    if (map == nullptr)
        return STATUS_NOMEM;
    record.transformation_data = map;
    record.owns_data = 1;
    const AffineFit fit = fit_affine_map(source.points, target.points, source.count, *map);
    if (fit == AffineFit::found)
        record.transformation = apply_affine_map;
    return fit == AffineFit::impossible ? STATUS_ERROR : STATUS_OK;
}

korvane_status_t add_by_points(korvane_cad_t *cad, const Kind &kind, const IdLists &ids,
    const PointList &source, const PointList &target)
{
    if (cad == nullptr || !ids.are_valid() || source.points == nullptr || target.points == nullptr)
        return STATUS_ERROR;
    MultiplePeriodicity *record = try_add(*cad, kind, ids);
    if (record == nullptr)
        return STATUS_NOMEM;
    // Kept on purpose: the record stays when it gets no transformation, because the lists alone say what is
    // periodic.
    return fit_transformation(*record, source, target);
}

korvane_status_t get_count(const korvane_cad_t *cad, const Kind &kind, int32_t *count)
{
    if (cad == nullptr || count == nullptr)
        return STATUS_ERROR;
    *count = cad->*kind.count;
    return STATUS_OK;
}

void copy_ids(const Array<int32_t> &list, int32_t *ids, int32_t *count)
{
    std::copy(list.begin(), list.end(), ids);
    *count = static_cast<int32_t>(list.size());
}

/// What a reader asks for; none may be null.
struct Outputs {
    int32_t *source_ids;
    int32_t *source_count;
    int32_t *target_ids;
    int32_t *target_count;
    korvane_cad_transformation_t *transformation;
    void **user_data;

    [[nodiscard]] bool are_complete() const
    {
        return source_ids != nullptr && source_count != nullptr && target_ids != nullptr &&
               target_count != nullptr && transformation != nullptr && user_data != nullptr;
    }
};

korvane_status_t get_record(const korvane_cad_t *cad, const Kind &kind, int32_t index, const Outputs &outputs)
{
    if (cad == nullptr || index < 1 || index > cad->*kind.count || !outputs.are_complete())
        return STATUS_ERROR;
    const MultiplePeriodicity &record = *(cad->*kind.records)[static_cast<std::size_t>(index - 1)];
    copy_ids(record.source_ids, outputs.source_ids, outputs.source_count);
    copy_ids(record.target_ids, outputs.target_ids, outputs.target_count);
    *outputs.transformation = record.transformation;
    *outputs.user_data = record.transformation_data;
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_status_t korvane_cad_add_edge_multiple_periodicity_with_transformation_function(korvane_cad_t *cad,
    const int32_t *source_ids, int32_t source_count, const int32_t *target_ids, int32_t target_count,
    korvane_cad_transformation_t transformation, void *user_data)
{
    return add_with_function(
        cad, edges, {source_ids, source_count, target_ids, target_count}, transformation, user_data);
}

korvane_status_t korvane_cad_add_face_multiple_periodicity_with_transformation_function(korvane_cad_t *cad,
    const int32_t *source_ids, int32_t source_count, const int32_t *target_ids, int32_t target_count,
    korvane_cad_transformation_t transformation, void *user_data)
{
    return add_with_function(
        cad, faces, {source_ids, source_count, target_ids, target_count}, transformation, user_data);
}

korvane_status_t korvane_cad_add_edge_multiple_periodicity_with_transformation_function_by_points(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, const double *source_points, int32_t source_point_count,
    const double *target_points, int32_t target_point_count)
{
    return add_by_points(cad, edges, {source_ids, source_count, target_ids, target_count},
        {source_points, source_point_count}, {target_points, target_point_count});
}

korvane_status_t korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, const double *source_points, int32_t source_point_count,
    const double *target_points, int32_t target_point_count)
{
    return add_by_points(cad, faces, {source_ids, source_count, target_ids, target_count},
        {source_points, source_point_count}, {target_points, target_point_count});
}

korvane_status_t korvane_cad_get_edge_multiple_periodicity_count(const korvane_cad_t *cad, int32_t *count)
{
    return get_count(cad, edges, count);
}

korvane_status_t korvane_cad_get_face_multiple_periodicity_count(const korvane_cad_t *cad, int32_t *count)
{
    return get_count(cad, faces, count);
}

korvane_status_t korvane_cad_get_edge_multiple_periodicity(const korvane_cad_t *cad, int32_t index,
    int32_t *source_ids, int32_t *source_count, int32_t *target_ids, int32_t *target_count,
    korvane_cad_transformation_t *transformation, void **user_data)
{
    return get_record(
        cad, edges, index, {source_ids, source_count, target_ids, target_count, transformation, user_data});
}

korvane_status_t korvane_cad_get_face_multiple_periodicity(const korvane_cad_t *cad, int32_t index,
    int32_t *source_ids, int32_t *source_count, int32_t *target_ids, int32_t *target_count,
    korvane_cad_transformation_t *transformation, void **user_data)
{
    return get_record(
        cad, faces, index, {source_ids, source_count, target_ids, target_count, transformation, user_data});
}

void *korvane_cad_calloc_generic_buffer(const korvane_cad_t *cad)
{
    if (cad == nullptr || cad->generic_buffer_size < 1)
        return nullptr;
    return allocate_zeroed(static_cast<std::size_t>(cad->generic_buffer_size));
}

void korvane_cad_free_generic_buffer(void *buffer)
{
    free_block(buffer);
}

} // extern "C"
