#include "mesh/storage.h"

#include <array>
#include <climits>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/memory_mesh.h"
#include "mesh/slots.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

using Element = std::array<int32_t, max_width>;

/// What the storage is to do, with a plain vector per attribute.
struct Model {
    std::vector<int32_t> count = std::vector<int32_t>(counts.size());
    std::vector<std::vector<Element>> elements = std::vector<std::vector<Element>>(attributes.size());

    korvane_status_t write(std::size_t attribute, int32_t index, const Element &element)
    {
        const int32_t entities = count[static_cast<std::size_t>(attributes[attribute].entity)];
        if (entities < 0)
            return STATUS_ERROR;
        elements[attribute].resize(static_cast<std::size_t>(entities));
        if (index < 1 || index > entities)
            return STATUS_ERROR;
        elements[attribute][static_cast<std::size_t>(index - 1)] = element;
        return STATUS_OK;
    }

    korvane_status_t read(std::size_t attribute, int32_t index, Element &element) const
    {
        const int32_t entities = count[static_cast<std::size_t>(attributes[attribute].entity)];
        if (index < 1 || index > entities)
            return STATUS_ERROR;
        const auto position = static_cast<std::size_t>(index - 1);
        Element held{};
        if (position < elements[attribute].size())
            held = elements[attribute][position];
        std::copy_n(held.begin(), attributes[attribute].width, element.begin());
        return STATUS_OK;
    }
};

class Storage : public ::testing::Test {
  protected:
    Storage() : mesh(korvane_mesh_new_in_memory(context)) {}

    void expect_as_model(std::size_t attribute, int32_t index) const
    {
        Element expected;
        expected.fill(-7);
        Element got = expected;
        EXPECT_EQ(attributes[attribute].get(mesh, index, got.data()), model.read(attribute, index, expected));
        EXPECT_EQ(got, expected) << attributes[attribute].name << ' ' << index;
    }

    void expect_all_as_model() const
    {
        for (std::size_t attribute = 0; attribute < attributes.size(); ++attribute)
            for (int32_t index = -1; index < 14; ++index)
                expect_as_model(attribute, index);
    }

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
    Model model;
};

TEST_F(Storage, BehavesAsAVectorPerAttribute)
{
    std::mt19937 random(1);
    const auto below = [&](std::size_t end) { return random() % end; };
    for (int step = 0; step < 40000; ++step) {
        if (below(8) == 0) {
            const std::size_t entity = below(counts.size());
            const int32_t count = below(12) == 0 ? -3 : static_cast<int32_t>(below(12));
            EXPECT_EQ(counts[entity].set(mesh, count), STATUS_OK);
            model.count[entity] = count;
            int32_t got = 99;
            EXPECT_EQ(counts[entity].get(mesh, &got), STATUS_OK);
            EXPECT_EQ(got, count);
        }
        const std::size_t attribute = below(attributes.size());
        const int32_t index = static_cast<int32_t>(below(14)) - 1;
        if (below(2) == 0) {
            Element element;
            for (int32_t &value : element)
                value = static_cast<int32_t>(random() >> 8);
            EXPECT_EQ(attributes[attribute].set(mesh, index, element.data()),
                model.write(attribute, index, element));
        }
        expect_as_model(attribute, index);
        if (HasFailure())
            return;
    }
    expect_all_as_model();
}

TEST_F(Storage, ReadsZerosUpToAnyCountThatIsSet)
{
    for (std::size_t attribute = 0; attribute < attributes.size(); ++attribute) {
        const AttributeAccessors &accessors = attributes[attribute];
        const auto entity = static_cast<std::size_t>(accessors.entity);
        ASSERT_EQ(counts[entity].set(mesh, model.count[entity] = 2), STATUS_OK);
        const Element element = {1, 2, 3, 4, 5, 6, 7, 8};
        EXPECT_EQ(accessors.set(mesh, 2, element.data()), model.write(attribute, 2, element));
        ASSERT_EQ(counts[entity].set(mesh, model.count[entity] = INT32_MAX), STATUS_OK);
        for (const int32_t index : {INT32_MIN, -1, 0, 1, 2, 3, 4, 1 << 30, INT32_MAX - 1, INT32_MAX})
            expect_as_model(attribute, index);
    }
}

TEST_F(Storage, IsAsItWasAfterAFailedWrite)
{
    for (std::size_t attribute = 0; attribute < attributes.size(); ++attribute) {
        const AttributeAccessors &accessors = attributes[attribute];
        const auto entity = static_cast<std::size_t>(accessors.entity);
        const auto set_count = [&](int32_t count) { counts[entity].set(mesh, model.count[entity] = count); };
        const Element element = {1, 2, 3, 4, 5, 6, 7, 8};
        for (const auto &[before, after] : {std::array{0, 3}, {4, 5}, {4, 12}, {9, 2}, {5, 5}}) {
            oom_sweep([&, before = before, after = after](AllocationFault &fault) {
                set_count(before);
                for (int32_t index = 1; index <= before; ++index)
                    EXPECT_EQ(
                        accessors.set(mesh, index, element.data()), model.write(attribute, index, element));
                set_count(after);
                fault.arm();
                const korvane_status_t status = accessors.set(mesh, 1, element.data());
                if (fault.disarm())
                    EXPECT_EQ(status, STATUS_NOMEM);
                else
                    EXPECT_EQ(status, model.write(attribute, 1, element));
                set_count(12);
                for (int32_t index = 1; index <= 12; ++index)
                    expect_as_model(attribute, index);
            });
        }
    }
}

TEST_F(Storage, AsksForAsMuchAsTheLargestCountNeeds)
{
    for (std::size_t attribute = 0; attribute < attributes.size(); ++attribute) {
        const AttributeAccessors &accessors = attributes[attribute];
        const auto entity = static_cast<std::size_t>(accessors.entity);
        const Element element = {1, 2, 3, 4, 5, 6, 7, 8};
        ASSERT_EQ(counts[entity].set(mesh, model.count[entity] = 1), STATUS_OK);
        EXPECT_EQ(accessors.set(mesh, 1, element.data()), model.write(attribute, 1, element));
        ASSERT_EQ(counts[entity].set(mesh, model.count[entity] = INT32_MAX), STATUS_OK);
        AllocationFault fault(1, Failure::persistent);
        fault.arm();
        EXPECT_EQ(accessors.set(mesh, 1, element.data()), STATUS_NOMEM);
        EXPECT_TRUE(fault.disarm());
        expect_as_model(attribute, 1);
        expect_as_model(attribute, INT32_MAX);
    }
}

TEST_F(Storage, AllocatesOncePerAttributeWhenTheCountIsSetFirst)
{
    const Element element = {1, 2, 3, 4, 5, 6, 7, 8};
    for (const AttributeAccessors &accessors : attributes) {
        ASSERT_EQ(counts[static_cast<std::size_t>(accessors.entity)].set(mesh, 50), STATUS_OK);
        const int64_t before = allocation_count();
        for (int32_t index = 1; index <= 50; ++index)
            EXPECT_EQ(accessors.set(mesh, index, element.data()), STATUS_OK);
        EXPECT_EQ(allocation_count() - before, 1) << accessors.name;
    }
}

TEST_F(Storage, IsResizedByAWriteThatIsRefused)
{
    ASSERT_EQ(korvane_mesh_set_pyramid_count(mesh, 3), STATUS_OK);
    const int32_t tag = 4;
    for (int32_t index = 1; index <= 3; ++index)
        ASSERT_EQ(korvane_mesh_set_pyramid_tag(mesh, index, &tag), STATUS_OK);
    ASSERT_EQ(korvane_mesh_set_pyramid_count(mesh, 2), STATUS_OK);
    EXPECT_EQ(korvane_mesh_set_pyramid_tag(mesh, 3, &tag), STATUS_ERROR);
    ASSERT_EQ(korvane_mesh_set_pyramid_count(mesh, 3), STATUS_OK);
    int32_t got = 9;
    EXPECT_EQ(korvane_mesh_get_pyramid_tag(mesh, 2, &got), STATUS_OK);
    EXPECT_EQ(got, 4);
    EXPECT_EQ(korvane_mesh_get_pyramid_tag(mesh, 3, &got), STATUS_OK);
    EXPECT_EQ(got, 0);
}

using Pairs = Attribute<int32_t, 2>;

std::array<int32_t, 2> pair_of(const Pairs &pairs, int32_t index)
{
    std::array<int32_t, 2> pair = {-7, -7};
    pairs.read(index, pair.data());
    return pair;
}

TEST(Attribute, IsFilledInPlaceAndCutToWhatCame)
{
    Pairs pairs;
    int32_t *values = pairs.try_open(5);
    ASSERT_NE(values, nullptr);
    for (int32_t i = 0; i < 6; ++i)
        values[i] = i + 1;
    pairs.truncate(3);
    EXPECT_EQ(pair_of(pairs, 3), (std::array{5, 6}));
    EXPECT_EQ(pair_of(pairs, 4), (std::array{0, 0}));

    values = pairs.try_open(4);
    ASSERT_NE(values, nullptr);
    EXPECT_EQ(values[5], 6);
    values[6] = values[7] = 9;
    EXPECT_EQ(pair_of(pairs, 4), (std::array{9, 9}));

    const std::array tens = {10, 10};
    EXPECT_EQ(pairs.write(5, 5, tens.data()), STATUS_OK);
    EXPECT_EQ(pair_of(pairs, 1), (std::array{1, 2}));
    EXPECT_EQ(pair_of(pairs, 4), (std::array{9, 9}));
    EXPECT_EQ(pair_of(pairs, 5), (std::array{10, 10}));

    pairs.truncate(7);
    EXPECT_EQ(pair_of(pairs, 5), (std::array{10, 10}));
    pairs.truncate(-1);
    EXPECT_EQ(pair_of(pairs, 1), (std::array{0, 0}));
}

TEST(Attribute, IsNotFilledWithoutElementsOrMemory)
{
    Pairs pairs;
    EXPECT_EQ(pairs.try_open(0), nullptr);
    EXPECT_EQ(pairs.try_open(-1), nullptr);
    int32_t *values = pairs.try_open(1);
    ASSERT_NE(values, nullptr);
    values[0] = values[1] = 3;
    AllocationFault fault(1, Failure::persistent);
    fault.arm();
    EXPECT_EQ(pairs.try_open(INT32_MAX), nullptr);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(pair_of(pairs, 1), (std::array{3, 3}));
}

TEST(Attribute, ReadsZerosAboveACutThatCouldNotBeMade)
{
    Pairs pairs;
    int32_t *values = pairs.try_open(4);
    ASSERT_NE(values, nullptr);
    std::fill_n(values, 8, 3);
    AllocationFault fault(1, Failure::persistent);
    fault.arm();
    pairs.truncate(2);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(pair_of(pairs, 2), (std::array{3, 3}));
    EXPECT_EQ(pair_of(pairs, 3), (std::array{0, 0}));
    EXPECT_EQ(pair_of(pairs, 4), (std::array{0, 0}));
}

TEST_F(Storage, GivesReadersTheAttributeOfASlot)
{
    auto &vertices = stored_attribute<&korvane_mesh_s::hexahedron_vertices>(*mesh);
    int32_t *values = vertices.try_open(2);
    ASSERT_NE(values, nullptr);
    for (int32_t i = 0; i < 16; ++i)
        values[i] = i;
    ASSERT_EQ(korvane_mesh_set_hexahedron_count(mesh, INT32_MAX), STATUS_OK);
    Element got;
    EXPECT_EQ(korvane_mesh_get_hexahedron_vertices(mesh, 2, got.data()), STATUS_OK);
    EXPECT_EQ(got, (Element{8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(korvane_mesh_get_hexahedron_vertices(mesh, 3, got.data()), STATUS_OK);
    EXPECT_EQ(got, Element{});
    EXPECT_EQ(korvane_mesh_get_hexahedron_vertices(mesh, INT32_MAX, got.data()), STATUS_OK);
    EXPECT_EQ(got, Element{});
}

} // namespace
} // namespace korvane::testing
