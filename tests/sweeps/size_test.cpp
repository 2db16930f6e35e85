// The largest numbers that functions accept: what they ask memory for is not a wrapped-around fraction of it,
// and that they do not get it leaves everything as it was.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/slots.h"
#include "support/failing_allocations.h"
#include "sweeps/objects.h"

namespace korvane::testing {
namespace {

constexpr std::size_t gigabyte = std::size_t{1} << 30;
constexpr std::size_t most = INT32_MAX;

struct Request {
    std::string function;
    std::size_t bytes; // of the first allocation that does not fit
    std::function<korvane_status_t(const Objects &objects)> call;
};

/// Null as a status, which constructors do not give.
korvane_status_t status_of(const void *made)
{
    return made == nullptr ? STATUS_NOMEM : STATUS_OK;
}

/// The payloads that go when they are set are those of a message that is not described.
const std::vector<Request> requests = {
    {"korvane_message_set_integer_data", most * 4,
        [](const Objects &o) {
            return korvane_message_set_integer_data(o.spare_message, some_integers.data(), INT32_MAX);
        }},
    {"korvane_message_set_real_data", most * 8,
        [](const Objects &o) {
            return korvane_message_set_real_data(o.spare_message, some_reals.data(), INT32_MAX);
        }},
    {"korvane_tag_system_new", (gigabyte + 5) * 8,
        [](const Objects &) { return status_of(korvane_tag_system_new(1 << 30)); }},
    {"korvane_tag_system_get_composite_tag", most * 4,
        [](const Objects &o) {
            int32_t composite = 0;
            return korvane_tag_system_get_composite_tag(
                o.tag_system, some_integers.data(), INT32_MAX / 2, &composite);
        }},
    {"korvane_cad_edge_set_support_vertex_count", most * 8,
        [](const Objects &o) { return korvane_cad_edge_set_support_vertex_count(o.edge, INT32_MAX); }},
    {"korvane_cad_edge_new_newton1", most * 8,
        [](const Objects &o) {
            return status_of(korvane_cad_edge_new_newton1(o.face, 1, INT32_MAX, some_reals.data()));
        }},
    {"korvane_cad_add_edge_multiple_periodicity_with_transformation_function", most * 4,
        [](const Objects &o) {
            return korvane_cad_add_edge_multiple_periodicity_with_transformation_function(
                o.cad, some_integers.data(), INT32_MAX, some_integers.data(), 1, nullptr, nullptr);
        }},
    {"korvane_cad_add_face_multiple_periodicity_with_transformation_function", most * 4,
        [](const Objects &o) {
            return korvane_cad_add_face_multiple_periodicity_with_transformation_function(
                o.cad, some_integers.data(), 1, some_integers.data(), INT32_MAX, nullptr, nullptr);
        }},
    {"korvane_dcad_edge_discretization_set_vertex_count", most * 8,
        [](const Objects &o) {
            return korvane_dcad_edge_discretization_set_vertex_count(o.discretization, INT32_MAX);
        }},
};

TEST(LargestSizes, are_asked_for_without_wrapping_around_and_refused_without_a_trace)
{
    for (const Request &request : requests) {
        SCOPED_TRACE(request.function);
        const Objects objects;
        const std::string before = objects.describe();
        const std::int64_t live_before = live_block_count();
        {
            const AllocationLimit limit(gigabyte);
            EXPECT_EQ(request.call(objects), STATUS_NOMEM);
            EXPECT_EQ(limit.refused(), request.bytes);
        }
        EXPECT_LE(live_block_count(), live_before) << "blocks stayed";
        EXPECT_TRUE(is_described_as(objects, before));
    }
}

/// A description would read all indices, so a few are looked at.
TEST(LargestSizes, of_meshes_in_memory_are_refused_without_a_trace)
{
    for (const AttributeAccessors &attribute : attributes) {
        SCOPED_TRACE(attribute.name);
        const Objects objects;
        std::array<int32_t, max_width> before{};
        std::array<int32_t, max_width> after{};
        attribute.get(objects.mesh, 2, before.data());
        counts[static_cast<std::size_t>(attribute.entity)].set(objects.mesh, INT32_MAX);
        {
            const AllocationLimit limit(gigabyte);
            EXPECT_EQ(attribute.set(objects.mesh, 2, some_integers.data()), STATUS_NOMEM);
            const std::size_t value_size = attribute.name == "vertex_coordinates" ? 8 : 4;
            EXPECT_EQ(limit.refused(), most * value_size * static_cast<std::size_t>(attribute.width));
        }
        EXPECT_EQ(attribute.get(objects.mesh, 2, after.data()), STATUS_OK);
        EXPECT_EQ(after, before);
        EXPECT_EQ(attribute.get(objects.mesh, INT32_MAX, after.data()), STATUS_OK);
        EXPECT_EQ(after[0], 0);
    }
}

TEST(LargestSizes, of_lists_of_extra_vertices_are_refused_without_a_trace)
{
    for (const ExtraVerticesAccessors &list : extra_vertices) {
        SCOPED_TRACE(list.name);
        const Objects objects;
        counts[static_cast<std::size_t>(list.entity)].set(objects.mesh, INT32_MAX);
        {
            const AllocationLimit limit(gigabyte);
            EXPECT_EQ(list.set(objects.mesh, 2, 3, some_integers.data()), STATUS_NOMEM);
            EXPECT_EQ(limit.refused(), most * sizeof(int32_t *));
        }
        int32_t count = 0;
        std::array<int32_t, 3> read{};
        EXPECT_EQ(list.get(objects.mesh, 1, &count, read.data()), STATUS_OK);
        EXPECT_EQ(count, 3);
        EXPECT_EQ(list.get(objects.mesh, INT32_MAX, &count, read.data()), STATUS_OK);
        EXPECT_EQ(count, 0);
    }
}

} // namespace
} // namespace korvane::testing
