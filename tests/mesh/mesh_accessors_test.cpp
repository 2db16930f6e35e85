#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/slots.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

/// Arguments of any kind, to be compared: numbers as they are, pointers by their address.
using Words = std::vector<std::uintptr_t>;

std::uintptr_t word(int32_t number)
{
    return static_cast<std::uintptr_t>(number);
}

std::uintptr_t word(const void *pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

struct Call {
    int callback;
    Words arguments;
    bool operator==(const Call &) const = default;
};

std::vector<Call> calls;

/// A callback of any signature that notes what it is given, and has a status of its own.
template <int callback, class... Arguments>
korvane_status_t note(Arguments... arguments)
{
    calls.push_back({callback, {word(arguments)...}});
    return 1000 + callback;
}

/// Some argument, different from call to call.
template <class Argument>
Argument sample()
{
    static std::array<double, 1000> places;
    static std::size_t number = 0;
    ++number;
    if constexpr (std::is_pointer_v<Argument>)
        return reinterpret_cast<Argument>(&places[number % places.size()]);
    else
        return static_cast<Argument>(number);
}

/// What an accessor returned, and what it was given.
struct Outcome {
    korvane_status_t status;
    Words arguments;
};

/// One accessor with its registration.
struct Access {
    std::string name;
    int callback; // the number of the callback that `register_callback` registers
    std::function<korvane_status_t(korvane_mesh_t *mesh, void *user_data)> register_callback;
    std::function<Outcome(korvane_mesh_t *mesh)> call;
};

template <int callback, class Mesh, class... Arguments, class Callback>
Access access(std::string name, korvane_status_t (*accessor)(Mesh *, Arguments...),
    korvane_status_t (*registration)(korvane_mesh_t *, Callback, void *))
{
    return {name, callback,
        [=](korvane_mesh_t *mesh, void *user_data) {
            return registration(mesh, note<callback, Arguments..., void *>, user_data);
        },
        [=](korvane_mesh_t *mesh) {
            return [&](Arguments... arguments) {
                return Outcome{accessor(mesh, arguments...), {word(arguments)...}};
            }(sample<Arguments>()...);
        }};
}

// clang-format off
#define ACCESSES(number, name) \
    access<number>("get " #name, korvane_mesh_get_##name, korvane_mesh_set_get_##name), \
    access<100 + number>("set " #name, korvane_mesh_set_##name, korvane_mesh_set_set_##name)

const std::vector<Access> accesses = {
    ACCESSES(1, vertex_count),
    ACCESSES(2, vertex_coordinates),
    ACCESSES(3, vertex_tag),
    ACCESSES(4, vertex_periodic_id),
    ACCESSES(5, vertex_required_status),
    ACCESSES(6, edge_count),
    ACCESSES(7, edge_vertices),
    ACCESSES(8, edge_tag),
    ACCESSES(9, edge_periodic_id),
    ACCESSES(10, edge_required_status),
    ACCESSES(11, edge_extra_vertices),
    ACCESSES(12, triangle_count),
    ACCESSES(13, triangle_vertices),
    ACCESSES(14, triangle_tag),
    ACCESSES(15, triangle_periodic_id),
    ACCESSES(16, triangle_required_status),
    ACCESSES(17, triangle_extra_vertices),
    ACCESSES(18, quadrangle_count),
    ACCESSES(19, quadrangle_vertices),
    ACCESSES(20, quadrangle_tag),
    ACCESSES(21, quadrangle_periodic_id),
    ACCESSES(22, quadrangle_required_status),
    ACCESSES(23, quadrangle_extra_vertices),
    ACCESSES(24, tetrahedron_count),
    ACCESSES(25, tetrahedron_vertices),
    ACCESSES(26, tetrahedron_tag),
    ACCESSES(27, tetrahedron_required_status),
    ACCESSES(28, tetrahedron_extra_vertices),
    ACCESSES(29, hexahedron_count),
    ACCESSES(30, hexahedron_vertices),
    ACCESSES(31, hexahedron_tag),
    ACCESSES(32, hexahedron_required_status),
    ACCESSES(33, pyramid_count),
    ACCESSES(34, pyramid_vertices),
    ACCESSES(35, pyramid_tag),
    ACCESSES(36, pyramid_required_status),
};
// clang-format on

class MeshAccessors : public ::testing::Test {
  protected:
    MeshAccessors() : mesh(korvane_mesh_new(context)) { calls.clear(); }

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
};

TEST_F(MeshAccessors, CallTheCallbackOfTheirSlotAndPassItsStatusOn)
{
    ASSERT_EQ(accesses.size(), 72u);
    std::array<char, 36> data;
    for (std::size_t i = 0; i < accesses.size(); ++i)
        EXPECT_EQ(accesses[i].register_callback(mesh, &data[i / 2]), STATUS_OK);
    for (std::size_t i = 0; i < accesses.size(); ++i) {
        SCOPED_TRACE(accesses[i].name);
        calls.clear();
        Outcome outcome = accesses[i].call(mesh);
        EXPECT_EQ(outcome.status, 1000 + accesses[i].callback);
        outcome.arguments.push_back(word(&data[i / 2]));
        EXPECT_EQ(calls, (std::vector<Call>{{accesses[i].callback, outcome.arguments}}));
    }
}

TEST_F(MeshAccessors, TheLastRegistrationGivesBothCallbacksOfASlotItsUserData)
{
    for (std::size_t i = 0; i < accesses.size(); i += 2) {
        const Access &getter = accesses[i];
        const Access &setter = accesses[i + 1];
        SCOPED_TRACE(getter.name);
        const auto expect_user_data = [&](const void *expected) {
            calls.clear();
            getter.call(mesh);
            setter.call(mesh);
            EXPECT_EQ(calls.at(0).arguments.back(), word(expected));
            EXPECT_EQ(calls.at(1).arguments.back(), word(expected));
        };
        std::array<char, 2> data;
        getter.register_callback(mesh, &data[0]);
        setter.register_callback(mesh, &data[1]);
        expect_user_data(&data[1]);
        getter.register_callback(mesh, &data[0]);
        expect_user_data(&data[0]);
        setter.register_callback(mesh, nullptr);
        expect_user_data(nullptr);
    }
}

TEST_F(MeshAccessors, RefuseANullMesh)
{
    for (const Access &access : accesses) {
        SCOPED_TRACE(access.name);
        EXPECT_EQ(access.register_callback(nullptr, &calls), STATUS_ERROR);
        EXPECT_EQ(access.call(nullptr).status, STATUS_ERROR);
    }
    EXPECT_TRUE(calls.empty());
}

TEST_F(MeshAccessors, OfANewMeshReadCountsOfZeroAndRefuseNull)
{
    for (const CountAccessors &accessors : counts) {
        SCOPED_TRACE(accessors.name);
        int32_t count = 5;
        EXPECT_EQ(accessors.get(mesh, &count), STATUS_OK);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(accessors.get(mesh, nullptr), STATUS_ERROR);
        EXPECT_EQ(accessors.set(mesh, 0), STATUS_ERROR);
        EXPECT_EQ(accessors.set(mesh, 1), STATUS_ERROR);
    }
}

TEST_F(MeshAccessors, OfANewMeshReadOneZeroAndRefuseWrites)
{
    for (const AttributeAccessors &accessors : attributes) {
        SCOPED_TRACE(accessors.name);
        std::array<int32_t, max_width> values;
        values.fill(5);
        EXPECT_EQ(accessors.get(mesh, -3, values.data()), STATUS_OK);
        EXPECT_EQ(values, (std::array<int32_t, max_width>{0, 5, 5, 5, 5, 5, 5, 5}));
        EXPECT_EQ(accessors.set(mesh, 1, values.data()), STATUS_ERROR);
        if (accessors.get != get_coordinates) {
            EXPECT_EQ(accessors.get(mesh, 1, nullptr), STATUS_ERROR);
        }
    }
    EXPECT_EQ(korvane_mesh_get_vertex_coordinates(mesh, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_mesh_set_vertex_coordinates(mesh, 1, nullptr), STATUS_ERROR);
}

TEST_F(MeshAccessors, OfANewMeshReadNoExtraVerticesAndRefuseWrites)
{
    for (const ExtraVerticesAccessors &accessors : extra_vertices) {
        SCOPED_TRACE(accessors.name);
        int32_t count = 5;
        std::array<int32_t, 2> vertices = {5, 5};
        EXPECT_EQ(accessors.get(mesh, 1, &count, vertices.data()), STATUS_OK);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(vertices, (std::array{0, 5}));
        EXPECT_EQ(accessors.get(mesh, 1, &count, vertices.data()), STATUS_OK);
        EXPECT_EQ(count, 0);
        count = 5;
        EXPECT_EQ(accessors.get(mesh, 1, &count, nullptr), STATUS_ERROR);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(accessors.set(mesh, 1, 1, vertices.data()), STATUS_ERROR);
    }
}

} // namespace
} // namespace korvane::testing
