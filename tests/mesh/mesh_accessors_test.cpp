#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

/// What the last callback was, and what it was given.
struct Call {
    int slot;
    bool is_setter;
    int32_t index;
    int32_t count;
    const void *values;
    void *user_data;
    bool operator==(const Call &) const = default;
};

std::vector<Call> calls;

korvane_status_t note(const Call &call)
{
    calls.push_back(call);
    return 1000 * (call.is_setter ? 2 : 1) + call.slot; // a status of its own for every callback
}

template <int slot>
korvane_status_t get_count(int32_t *count, void *user_data)
{
    return note({slot, false, 0, 0, count, user_data});
}

template <int slot>
korvane_status_t set_count(int32_t count, void *user_data)
{
    return note({slot, true, 0, count, nullptr, user_data});
}

template <int slot, class Value>
korvane_status_t get_values(int32_t index, Value *values, void *user_data)
{
    return note({slot, false, index, 0, values, user_data});
}

template <int slot, class Value>
korvane_status_t set_values(int32_t index, const Value *values, void *user_data)
{
    return note({slot, true, index, 0, values, user_data});
}

int32_t the_count = 0;

template <int slot>
korvane_status_t get_extra(int32_t index, int32_t *count, int32_t *vertices, void *user_data)
{
    EXPECT_EQ(count, &the_count);
    return note({slot, false, index, 0, vertices, user_data});
}

template <int slot>
korvane_status_t set_extra(int32_t index, int32_t count, const int32_t *vertices, void *user_data)
{
    return note({slot, true, index, count, vertices, user_data});
}

/// The four functions of a slot under one signature, made by pasting its name.
struct Row {
    std::string name;
    void (*register_both)(korvane_mesh_t *mesh, void *getter_data, void *setter_data);
    korvane_status_t (*register_getter)(korvane_mesh_t *mesh, void *user_data);
    korvane_status_t (*register_setter)(korvane_mesh_t *mesh, void *user_data);
    korvane_status_t (*get)(const korvane_mesh_t *mesh, int32_t index, void *values);
    korvane_status_t (*set)(korvane_mesh_t *mesh, int32_t index, int32_t count, const void *values);
    Call got;   // what `get` with index 7 comes to
    Call given; // what `set` with index 8 and count 9 comes to
    int values; // how many values an entity has; 0 for counts and extra vertices
    bool is_real;
};

#define ROW(name, number, getter, setter, get_call, set_call, got_index, set_index, set_count_, width, real) \
    Row                                                                                                      \
    {                                                                                                        \
#name,                                                                                               \
            [](korvane_mesh_t *mesh, void *getter_data, void *setter_data) {                                 \
                EXPECT_EQ(korvane_mesh_set_get_##name(mesh, getter, getter_data), STATUS_OK);                \
                EXPECT_EQ(korvane_mesh_set_set_##name(mesh, setter, setter_data), STATUS_OK);                \
            },                                                                                               \
            [](korvane_mesh_t *mesh, void *user_data) {                                                      \
                return korvane_mesh_set_get_##name(mesh, getter, user_data);                                 \
            },                                                                                               \
            [](korvane_mesh_t *mesh, void *user_data) {                                                      \
                return korvane_mesh_set_set_##name(mesh, setter, user_data);                                 \
            },                                                                                               \
            []([[maybe_unused]] const korvane_mesh_t *mesh, [[maybe_unused]] int32_t index, void *values) {  \
                return korvane_mesh_get_##name get_call;                                                     \
            },                                                                                               \
            []([[maybe_unused]] korvane_mesh_t *mesh, [[maybe_unused]] int32_t index,                        \
                [[maybe_unused]] int32_t count, [[maybe_unused]] const void *values) {                       \
                return korvane_mesh_set_##name set_call;                                                     \
            },                                                                                               \
            {number, false, got_index, 0, nullptr, nullptr},                                                 \
            {number, true, set_index, set_count_, nullptr, nullptr}, width, real       \
    }
#define COUNT(number, name)                                                                                  \
    ROW(name, number, get_count<number>, set_count<number>, (mesh, static_cast<int32_t *>(values)),          \
        (mesh, count), 0, 0, 9, 0, false)
#define REALS(number, name, width)                                                                           \
    ROW(name, number, (get_values<number, double>), (set_values<number, double>),                            \
        (mesh, index, static_cast<double *>(values)), (mesh, index, static_cast<const double *>(values)), 7, \
        8, 0, width, true)
#define VALUES(number, name, width)                                                                          \
    ROW(name, number, (get_values<number, int32_t>), (set_values<number, int32_t>),                          \
        (mesh, index, static_cast<int32_t *>(values)), (mesh, index, static_cast<const int32_t *>(values)),  \
        7, 8, 0, width, false)
#define EXTRA(number, name)                                                                                  \
    ROW(name, number, get_extra<number>, set_extra<number>,                                                  \
        (mesh, index, &the_count, static_cast<int32_t *>(values)),                                           \
        (mesh, index, count, static_cast<const int32_t *>(values)), 7, 8, 9, 0, false)

const std::vector<Row> rows = {
    COUNT(1, vertex_count),
    REALS(2, vertex_coordinates, 3),
    VALUES(3, vertex_tag, 1),
    VALUES(4, vertex_periodic_id, 1),
    VALUES(5, vertex_required_status, 1),
    COUNT(6, edge_count),
    VALUES(7, edge_vertices, 2),
    VALUES(8, edge_tag, 1),
    VALUES(9, edge_periodic_id, 1),
    VALUES(10, edge_required_status, 1),
    EXTRA(11, edge_extra_vertices),
    COUNT(12, triangle_count),
    VALUES(13, triangle_vertices, 3),
    VALUES(14, triangle_tag, 1),
    VALUES(15, triangle_periodic_id, 1),
    VALUES(16, triangle_required_status, 1),
    EXTRA(17, triangle_extra_vertices),
    COUNT(18, quadrangle_count),
    VALUES(19, quadrangle_vertices, 4),
    VALUES(20, quadrangle_tag, 1),
    VALUES(21, quadrangle_periodic_id, 1),
    VALUES(22, quadrangle_required_status, 1),
    EXTRA(23, quadrangle_extra_vertices),
    COUNT(24, tetrahedron_count),
    VALUES(25, tetrahedron_vertices, 4),
    VALUES(26, tetrahedron_tag, 1),
    VALUES(27, tetrahedron_required_status, 1),
    EXTRA(28, tetrahedron_extra_vertices),
    COUNT(29, hexahedron_count),
    VALUES(30, hexahedron_vertices, 8),
    VALUES(31, hexahedron_tag, 1),
    VALUES(32, hexahedron_required_status, 1),
    COUNT(33, pyramid_count),
    VALUES(34, pyramid_vertices, 5),
    VALUES(35, pyramid_tag, 1),
    VALUES(36, pyramid_required_status, 1),
};

class MeshAccessors : public ::testing::Test {
  protected:
    MeshAccessors() : mesh(korvane_mesh_new(context)) { calls.clear(); }

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
};

TEST_F(MeshAccessors, EverySlotCallsItsOwnCallbacks)
{
    ASSERT_EQ(rows.size(), 36u);
    std::vector<char> data(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        rows[row].register_both(mesh, &data[row], &data[row]);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        SCOPED_TRACE(rows[row].name);
        char values = 0;
        calls.clear();
        EXPECT_EQ(rows[row].get(mesh, 7, &values), 1001 + static_cast<int>(row));
        EXPECT_EQ(rows[row].set(mesh, 8, 9, &values), 2001 + static_cast<int>(row));
        Call got = rows[row].got;
        got.values = &values;
        got.user_data = &data[row];
        Call given = rows[row].given;
        given.values = rows[row].name.ends_with("_count") ? nullptr : &values;
        given.user_data = &data[row];
        EXPECT_EQ(calls, (std::vector{got, given}));
    }
}

TEST_F(MeshAccessors, TheLastRegistrationGivesBothCallbacksTheirUserData)
{
    char first = 0;
    char second = 0;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const auto seen = [&] {
            char values = 0;
            calls.clear();
            row.get(mesh, 1, &values);
            row.set(mesh, 1, 0, &values);
            return std::tuple(calls.at(0).user_data, calls.at(1).user_data);
        };
        row.register_both(mesh, &first, &second);
        EXPECT_EQ(seen(), std::tuple(&second, &second));
        EXPECT_EQ(row.register_getter(mesh, &first), STATUS_OK);
        EXPECT_EQ(seen(), std::tuple(&first, &first));
        EXPECT_EQ(row.register_setter(mesh, nullptr), STATUS_OK);
        EXPECT_EQ(seen(), std::tuple(nullptr, nullptr));
    }
}

TEST_F(MeshAccessors, RefuseANullMesh)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        char values = 0;
        EXPECT_EQ(row.register_getter(nullptr, &values), STATUS_ERROR);
        EXPECT_EQ(row.register_setter(nullptr, &values), STATUS_ERROR);
        EXPECT_EQ(row.get(nullptr, 1, &values), STATUS_ERROR);
        EXPECT_EQ(row.set(nullptr, 1, 1, &values), STATUS_ERROR);
    }
    EXPECT_TRUE(calls.empty());
}

TEST_F(MeshAccessors, OfANewMeshReadOneZeroAndRefuseWrites)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        double reals[8];
        int32_t integers[8];
        std::fill_n(reals, 8, 5.0);
        std::fill_n(integers, 8, 5);
        the_count = 5;
        void *values = row.is_real ? static_cast<void *>(reals) : static_cast<void *>(integers);
        EXPECT_EQ(row.get(mesh, -3, values), STATUS_OK);
        EXPECT_EQ(row.is_real ? reals[0] : integers[0], 0);
        EXPECT_EQ(reals[1], 5.0);
        EXPECT_EQ(integers[1], 5);
        EXPECT_EQ(the_count, row.name.ends_with("_extra_vertices") ? 0 : 5);

        the_count = 5;
        EXPECT_EQ(row.get(mesh, 1, nullptr), STATUS_ERROR);
        EXPECT_EQ(the_count, row.name.ends_with("_extra_vertices") ? 0 : 5);
        EXPECT_EQ(row.set(mesh, 1, 0, values), STATUS_ERROR);
        EXPECT_EQ(row.set(mesh, 1, 0, nullptr), STATUS_ERROR);
    }
}

} // namespace
} // namespace korvane::testing
