// The rows of the entity table. Each is made from the slots of its entity, so that meshes in memory are read
// in blocks, while the callbacks of a client are called in the order of the entities.
#include "io/entity_table.h"

#include <algorithm>

#include "mesh/fetch.h"

namespace korvane {

namespace {

template <class Value>
Value *values_of(EntityBlock &block)
{
    if constexpr (std::is_same_v<Value, double>)
        return block.coordinates.data();
    else
        return block.vertices.data();
}

template <auto values_slot, auto tag_slot>
FetchedEntities fetch_entities(const korvane_mesh_t *mesh, int32_t first, int32_t count, EntityBlock &block)
{
    auto *values = values_of<typename Stored<values_slot>::value_type>(block);
    if (are_stored<values_slot, tag_slot>(mesh)) {
        const Fetched fetched = fetch_block<values_slot>(mesh, first, count, values);
        fetch_block_or_zeros<tag_slot>(mesh, first, fetched.count, block.tags.data());
        return {fetched.count, fetched.status, STATUS_OK};
    }
    korvane_status_t tag_status = STATUS_OK;
    for (int32_t done = 0; done < count; ++done, values += Stored<values_slot>::values_per_element) {
        std::fill_n(values, Stored<values_slot>::values_per_element, 0); // a getter may leave some out
        const korvane_status_t status = fetch<values_slot>(mesh, first + done, values);
        if (status != STATUS_OK)
            return {done, status, tag_status};
        int32_t tag = 0;
        tag_status = fetch<tag_slot>(mesh, first + done, &tag);
        block.tags[static_cast<std::size_t>(done)] = tag_status == STATUS_OK ? tag : 0;
    }
    return {count, STATUS_OK, tag_status};
}

template <auto required_slot>
void fetch_flags(const korvane_mesh_t *mesh, int32_t first, int32_t count, int32_t *flags)
{
    std::fill_n(flags, count, 0);
    fetch_block_or_zeros<required_slot>(mesh, first, count, flags);
}

template <auto values_slot, auto tag_slot>
EntityArrays try_open_arrays(korvane_mesh_t &mesh, int32_t count)
{
    auto *values = stored_attribute<values_slot>(mesh).try_open(count);
    int32_t *tags = values == nullptr ? nullptr : stored_attribute<tag_slot>(mesh).try_open(count);
    if constexpr (std::is_same_v<typename Stored<values_slot>::value_type, double>)
        return {values, nullptr, tags};
    else
        return {nullptr, values, tags};
}

template <auto required_slot>
int32_t *try_open_flags(korvane_mesh_t &mesh, int32_t count)
{
    return stored_attribute<required_slot>(mesh).try_open(count);
}

/// What files state of an entity.
struct FileNames {
    int32_t keyword;
    int32_t required_keyword;
    std::string_view plural;
    std::string_view data_name;
    std::string_view card;
};

template <auto count_slot, auto values_slot, auto tag_slot, auto required_slot>
constexpr Entity make_row(const FileNames &names)
{
    return {names.keyword, names.required_keyword, Stored<values_slot>::values_per_element, names.plural,
        names.data_name, names.card,
        [](const korvane_mesh_t *mesh, int32_t *count) { return fetch<count_slot>(mesh, count); },
        [](korvane_mesh_t *mesh, int32_t count) {
            return (mesh->*count_slot).set(count, (mesh->*count_slot).user_data);
        },
        fetch_entities<values_slot, tag_slot>, fetch_flags<required_slot>,
        try_open_arrays<values_slot, tag_slot>, try_open_flags<required_slot>};
}

using Mesh = korvane_mesh_s;

} // namespace

constexpr std::array<Entity, 7> entity_table = {
    make_row<&Mesh::vertex_count, &Mesh::vertex_coordinates, &Mesh::vertex_tag,
        &Mesh::vertex_required_status>(
        {gmf_vertices, gmf_required_vertices, "vertices", "vertices coordinates", "GRID*"}),
    make_row<&Mesh::edge_count, &Mesh::edge_vertices, &Mesh::edge_tag, &Mesh::edge_required_status>(
        {gmf_edges, gmf_required_edges, "edges", "edges vertices", "CBAR"}),
    make_row<&Mesh::triangle_count, &Mesh::triangle_vertices, &Mesh::triangle_tag,
        &Mesh::triangle_required_status>(
        {gmf_triangles, gmf_required_triangles, "triangles", "triangles vertices", "CTRIA3"}),
    make_row<&Mesh::quadrangle_count, &Mesh::quadrangle_vertices, &Mesh::quadrangle_tag,
        &Mesh::quadrangle_required_status>({gmf_quadrilaterals, gmf_required_quadrilaterals, "quadrilaterals",
        "quadrilaterals vertices", "CQUAD4"}),
    make_row<&Mesh::tetrahedron_count, &Mesh::tetrahedron_vertices, &Mesh::tetrahedron_tag,
        &Mesh::tetrahedron_required_status>(
        {gmf_tetrahedra, 0, "tetrahedra", "tetrahedra vertices", "CTETRA"}),
    // Kept on purpose: "hexaedra" and the singular "pyramid", because the messages always had them so
    make_row<&Mesh::hexahedron_count, &Mesh::hexahedron_vertices, &Mesh::hexahedron_tag,
        &Mesh::hexahedron_required_status>({gmf_hexahedra, 0, "hexahedra", "hexaedra vertices", "CHEXA"}),
    make_row<&Mesh::pyramid_count, &Mesh::pyramid_vertices, &Mesh::pyramid_tag,
        &Mesh::pyramid_required_status>({gmf_pyramids, 0, "pyramid", "pyramid vertices", ""}),
};

} // namespace korvane
