#include "mesh/fetch.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/slots.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

constexpr int32_t element_count = 12;
constexpr int32_t held_count = 9; // how many elements the arrays hold
constexpr korvane_status_t client_status = 77;

std::vector<int32_t> asked; // the indices that the client's callbacks were asked for

/// Callbacks of a client whose elements fail in several ways, or are written in part. The user data say how
/// many values an element has.
template <class Value>
korvane_status_t serve_values(int32_t index, Value *values, void *width)
{
    asked.push_back(index);
    if (index % 5 == 0)
        return client_status;
    const int written = index % 3 == 0 ? 1 : *static_cast<int *>(width);
    std::fill_n(values, written, static_cast<Value>(index % 1000 * 10));
    return index % 7 == 0 ? STATUS_ERROR : STATUS_OK;
}

korvane_status_t serve_count(int32_t *count, void *)
{
    asked.push_back(0);
    *count = 5;
    return client_status;
}

korvane_status_t serve_extra_vertices(int32_t index, int32_t *count, int32_t *vertices, void *)
{
    asked.push_back(index);
    *count = 1;
    *vertices = index;
    return index % 5 == 0 ? client_status : STATUS_OK;
}

int widths[max_width + 1] = {0, 1, 2, 3, 4, 5, 6, 7, 8};

template <auto slot>
void serve(korvane_mesh_t &mesh)
{
    using SlotType = std::remove_cvref_t<decltype(mesh.*slot)>;
    if constexpr (std::is_same_v<SlotType, CountSlot>)
        (mesh.*slot).get = serve_count;
    else if constexpr (std::is_same_v<SlotType, ExtraVerticesSlot>)
        (mesh.*slot).get = serve_extra_vertices;
    else
        mesh.*slot = {serve_values, refuse, &widths[Stored<slot>::values_per_element]};
}

/// What was asked of the client since the last call.
std::vector<int32_t> take_asked()
{
    return std::exchange(asked, {});
}

template <auto slot>
void expect_count_as(const korvane_mesh_t *mesh, const CountAccessors &accessors)
{
    int32_t expected = -7;
    int32_t got = -7;
    const korvane_status_t status = accessors.get(mesh, &expected);
    const std::vector<int32_t> asked_by_accessor = take_asked();
    EXPECT_EQ(fetch<slot>(mesh, &got), status);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(take_asked(), asked_by_accessor);
}

template <auto slot>
void expect_extra_vertices_as(const korvane_mesh_t *mesh, const ExtraVerticesAccessors &accessors)
{
    for (int32_t index = -1; index < element_count + 3; ++index) {
        std::array<int32_t, 4> expected = {-7, -7, -7, -7};
        std::array<int32_t, 4> got = expected;
        const korvane_status_t status = accessors.get(mesh, index, &expected[0], &expected[1]);
        const std::vector<int32_t> asked_by_accessor = take_asked();
        EXPECT_EQ(fetch<slot>(mesh, index, &got[0], &got[1]), status);
        EXPECT_EQ(got, expected);
        EXPECT_EQ(take_asked(), asked_by_accessor);
    }
}

/// What reading elements one by one through the accessor comes to.
struct Sequence {
    std::vector<int32_t> values;
    std::vector<int32_t> asked;
    Fetched fetched;
};

Sequence read_until_failure(
    const korvane_mesh_t *mesh, const AttributeAccessors &accessors, int32_t first, int32_t count)
{
    Sequence read{
        std::vector<int32_t>(static_cast<std::size_t>(count * accessors.width), -7), {}, {0, STATUS_OK}};
    for (; read.fetched.count < count; ++read.fetched.count) {
        int32_t *values = read.values.data() + read.fetched.count * accessors.width;
        read.fetched.status = accessors.get(mesh, first + read.fetched.count, values);
        if (read.fetched.status != STATUS_OK)
            break;
    }
    read.asked = take_asked();
    return read;
}

Sequence read_all(
    const korvane_mesh_t *mesh, const AttributeAccessors &accessors, int32_t first, int32_t count)
{
    Sequence read{std::vector<int32_t>(static_cast<std::size_t>(count * accessors.width), -7), {}, {}};
    for (int32_t i = 0; i < count; ++i) {
        int32_t *values = read.values.data() + i * accessors.width;
        if (accessors.get(mesh, first + i, values) != STATUS_OK)
            std::fill_n(values, accessors.width, 0);
    }
    read.asked = take_asked();
    return read;
}

template <auto slot>
void expect_block_as(
    const korvane_mesh_t *mesh, const AttributeAccessors &accessors, int32_t first, int32_t count)
{
    using Value = typename Stored<slot>::value_type;
    const Sequence expected = read_until_failure(mesh, accessors, first, count);
    std::vector<Value> got(expected.values.size(), -7);
    const Fetched fetched = fetch_block<slot>(mesh, first, count, got.data());
    EXPECT_EQ(fetched.count, expected.fetched.count);
    EXPECT_EQ(fetched.status, expected.fetched.status);
    EXPECT_EQ(std::vector<int32_t>(got.begin(), got.end()), expected.values);
    EXPECT_EQ(take_asked(), expected.asked);

    const Sequence all = read_all(mesh, accessors, first, count);
    std::fill(got.begin(), got.end(), -7);
    fetch_block_or_zeros<slot>(mesh, first, count, got.data());
    EXPECT_EQ(std::vector<int32_t>(got.begin(), got.end()), all.values);
    EXPECT_EQ(take_asked(), all.asked);
}

template <auto slot>
void expect_each_as(
    const korvane_mesh_t *mesh, const AttributeAccessors &accessors, const std::vector<int32_t> &indices)
{
    using Stored = Stored<slot>;
    std::vector<int32_t> expected(indices.size() * Stored::values_per_element, 0);
    for (std::size_t i = 0; i < indices.size(); ++i)
        accessors.get(mesh, indices[i], expected.data() + i * Stored::values_per_element);
    const std::vector<int32_t> asked_by_accessor = take_asked();
    std::vector<std::array<typename Stored::value_type, Stored::values_per_element>> elements(indices.size());
    for (auto &element : elements)
        element.fill(-7);
    fetch_each<slot>(mesh, indices, elements.data());
    std::vector<int32_t> got;
    for (const auto &element : elements)
        got.insert(got.end(), element.begin(), element.end());
    EXPECT_EQ(got, expected);
    EXPECT_EQ(take_asked(), asked_by_accessor);
}

template <auto slot>
void expect_attribute_as(const korvane_mesh_t *mesh, const AttributeAccessors &accessors)
{
    SCOPED_TRACE(accessors.name);
    ASSERT_EQ(Stored<slot>::values_per_element, accessors.width);
    for (const int32_t index : {INT32_MIN, -1, 0, 1, 3, 5, 7, 9, 10, 12, 13, INT32_MAX}) {
        const Sequence expected = read_until_failure(mesh, accessors, index, 1);
        std::vector<typename Stored<slot>::value_type> got(expected.values.size(), -7);
        EXPECT_EQ(fetch<slot>(mesh, index, got.data()), expected.fetched.status);
        EXPECT_EQ(std::vector<int32_t>(got.begin(), got.end()), expected.values);
        EXPECT_EQ(take_asked(), expected.asked);
    }
    for (int32_t first = -1; first <= element_count + 2; ++first)
        for (int32_t count = 0; count <= element_count + 2; ++count)
            expect_block_as<slot>(mesh, accessors, first, count);
    expect_block_as<slot>(mesh, accessors, INT32_MAX - 2, 3);
    expect_block_as<slot>(mesh, accessors, INT32_MIN, 3);
    expect_each_as<slot>(mesh, accessors, {});
    expect_each_as<slot>(mesh, accessors, {5, 3, 3, 12, 1, 9, 10, 0, -1, 13, 7, INT32_MIN, INT32_MAX, 2});
}

/// Every slot gives the same through `fetch` and through its accessor.
void expect_as_accessors(const korvane_mesh_t *mesh)
{
    std::size_t count = 0;
    std::size_t attribute = 0;
    std::size_t extra = 0;
    MeshSlots::for_each([&]<auto slot>() {
        using SlotType = std::remove_cvref_t<decltype(mesh->*slot)>;
        if constexpr (std::is_same_v<SlotType, CountSlot>)
            expect_count_as<slot>(mesh, counts[count++]);
        else if constexpr (std::is_same_v<SlotType, ExtraVerticesSlot>)
            expect_extra_vertices_as<slot>(mesh, extra_vertices[extra++]);
        else
            expect_attribute_as<slot>(mesh, attributes[attribute++]);
    });
    EXPECT_EQ(count + attribute + extra, MeshSlots::size);
}

void fill(korvane_mesh_t *mesh)
{
    for (const CountAccessors &accessors : counts)
        ASSERT_EQ(accessors.set(mesh, held_count), STATUS_OK);
    for (const AttributeAccessors &accessors : attributes) {
        for (int32_t index = 1; index <= held_count; ++index) {
            const std::array<int32_t, max_width> element = {index, 2 * index, 3, 4, 5, 6, 7, -index};
            ASSERT_EQ(accessors.set(mesh, index, element.data()), STATUS_OK);
        }
    }
    for (const ExtraVerticesAccessors &accessors : extra_vertices)
        for (int32_t index = 1; index <= held_count; ++index) {
            const std::array<int32_t, 2> list = {index, -index};
            ASSERT_EQ(accessors.set(mesh, index, index % 3, list.data()), STATUS_OK);
        }
    for (const CountAccessors &accessors : counts)
        ASSERT_EQ(accessors.set(mesh, element_count), STATUS_OK);
}

class Fetch : public ::testing::Test {
  protected:
    Fetch() : mesh(korvane_mesh_new_in_memory(context)) { take_asked(); }

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
};

TEST_F(Fetch, IsAsTheAccessorsOfAnEmptyMesh)
{
    expect_as_accessors(korvane_mesh_new(context));
    expect_as_accessors(mesh);
}

TEST_F(Fetch, IsAsTheAccessorsOfAnInMemoryMesh)
{
    fill(mesh);
    expect_as_accessors(mesh);
    for (const CountAccessors &accessors : counts)
        accessors.set(mesh, INT32_MAX);
    expect_as_accessors(mesh);
    for (const CountAccessors &accessors : counts)
        accessors.set(mesh, 4);
    expect_as_accessors(mesh);
    for (const int32_t count : {0, -4, INT32_MIN}) {
        for (const CountAccessors &accessors : counts)
            accessors.set(mesh, count);
        expect_as_accessors(mesh);
    }
}

TEST_F(Fetch, IsAsTheAccessorsOfAMeshServedByCallbacks)
{
    korvane_mesh_t *served = korvane_mesh_new(context);
    MeshSlots::for_each([&]<auto slot>() { serve<slot>(*served); });
    expect_as_accessors(served);
}

TEST_F(Fetch, IsAsTheAccessorsOfAMeshServedInPart)
{
    fill(mesh);
    int number = 0;
    MeshSlots::for_each([&]<auto slot>() {
        if (++number % 2 == 0)
            serve<slot>(*mesh);
    });
    expect_as_accessors(mesh);
}

TEST_F(Fetch, IsAsTheAccessorsOfASlotWithoutStorage)
{
    fill(mesh);
    MeshSlots::for_each([&]<auto slot>() { (mesh->*slot).user_data = nullptr; });
    expect_as_accessors(mesh);
}

TEST_F(Fetch, KnowsWhichSlotsRunClientCode)
{
    constexpr auto vertices = &korvane_mesh_s::triangle_vertices;
    constexpr auto tag = &korvane_mesh_s::triangle_tag;
    EXPECT_TRUE((are_stored<vertices, tag>(mesh)));
    EXPECT_FALSE((are_stored<vertices, tag>(korvane_mesh_new(context))));
    serve<tag>(*mesh);
    EXPECT_TRUE((are_stored<vertices>(mesh)));
    EXPECT_FALSE((are_stored<tag>(mesh)));
    EXPECT_FALSE((are_stored<vertices, tag>(mesh)));
}

/// Hands out triangles 1, 2, 3, and from its second call on leaves the mesh one vertex.
korvane_status_t shrink_and_serve(int32_t index, int32_t *vertices, void *user_data)
{
    auto *mesh = static_cast<korvane_mesh_t *>(user_data);
    if (index >= 2) {
        const double origin[3] = {0.5, 0.5, 0.5};
        EXPECT_EQ(korvane_mesh_set_vertex_count(mesh, 1), STATUS_OK);
        EXPECT_EQ(korvane_mesh_set_vertex_coordinates(mesh, 1, origin), STATUS_OK);
    }
    std::copy_n(std::array<int32_t, 3>{1, 2, 3}.begin(), 3, vertices);
    return STATUS_OK;
}

TEST_F(Fetch, FollowsACallbackThatShrinksTheMesh)
{
    fill(mesh);
    ASSERT_EQ(korvane_mesh_set_get_triangle_vertices(mesh, shrink_and_serve, mesh), STATUS_OK);
    std::vector<double> seen;
    for (int32_t triangle = 1; triangle <= 2; ++triangle) {
        std::array<int32_t, 3> vertices;
        ASSERT_EQ(fetch<&korvane_mesh_s::triangle_vertices>(mesh, triangle, vertices.data()), STATUS_OK);
        for (const int32_t vertex : vertices) {
            std::array<double, 3> xyz = {-1, -1, -1};
            fetch<&korvane_mesh_s::vertex_coordinates>(mesh, vertex, xyz.data());
            seen.push_back(xyz[0]);
        }
    }
    EXPECT_EQ(seen, (std::vector<double>{1, 2, 3, 0.5, -1, -1}));
}

/// Serves tags 1, 2, ... and passes the slot on at the third.
korvane_status_t serve_until_third(int32_t index, int32_t *tag, void *user_data)
{
    auto *mesh = static_cast<korvane_mesh_t *>(user_data);
    *tag = index;
    if (index == 3) {
        EXPECT_EQ(korvane_mesh_set_get_edge_tag(mesh, serve_values<int32_t>, &widths[1]), STATUS_OK);
    }
    return STATUS_OK;
}

TEST_F(Fetch, FollowsACallbackThatReplacesItself)
{
    ASSERT_EQ(korvane_mesh_set_get_edge_tag(mesh, serve_until_third, mesh), STATUS_OK);
    std::vector<int32_t> tags(6, -7);
    fetch_block_or_zeros<&korvane_mesh_s::edge_tag>(mesh, 1, 6, tags.data());
    EXPECT_EQ(tags, (std::vector<int32_t>{1, 2, 3, 40, 0, 60}));
    EXPECT_EQ(take_asked(), (std::vector<int32_t>{4, 5, 6}));
}

} // namespace
} // namespace korvane::testing
