#include "mesh/extra_vertices.h"

#include <array>
#include <climits>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "mesh/slots.h"
#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

struct List {
    int32_t count = 0;
    std::vector<int32_t> vertices;
    bool operator==(const List &) const = default;
};

/// What the storage is to do, with a vector of lists.
struct Model {
    int32_t element_count = 0;
    std::vector<List> lists;

    /// The first part of a write: resizing.
    korvane_status_t fit()
    {
        if (element_count < 0)
            return STATUS_ERROR;
        lists.resize(static_cast<std::size_t>(element_count));
        return STATUS_OK;
    }

    [[nodiscard]] bool has(int32_t index) const { return index >= 1 && index <= element_count; }

    List &at(int32_t index) { return lists[static_cast<std::size_t>(index - 1)]; }

    [[nodiscard]] List read(int32_t index) const
    {
        const auto position = static_cast<std::size_t>(index - 1);
        return position < lists.size() ? lists[position] : List{};
    }
};

/// The vertices that the storage keeps of `count` that are given.
std::vector<int32_t> kept(int32_t count, std::vector<int32_t> vertices)
{
    vertices.resize(count % 1000 > 0 ? static_cast<std::size_t>(count % 1000) : 0);
    return vertices;
}

class ExtraVertices : public ::testing::Test {
  protected:
    ExtraVertices() : mesh(korvane_mesh_new_in_memory(context))
    {
        std::iota(indices.begin(), indices.end(), 5);
    }

    void set_element_count(int32_t count)
    {
        for (const ExtraVerticesAccessors &accessors : extra_vertices)
            ASSERT_EQ(counts[static_cast<std::size_t>(accessors.entity)].set(mesh, count), STATUS_OK);
        model.element_count = count;
    }

    void write(int32_t index, int32_t count)
    {
        korvane_status_t expected = model.fit();
        if (!model.has(index))
            expected = STATUS_ERROR;
        else
            model.at(index) = {count, kept(count, indices)};
        for (const ExtraVerticesAccessors &accessors : extra_vertices)
            EXPECT_EQ(accessors.set(mesh, index, count, indices.data()), expected) << accessors.name;
    }

    void expect_as_model(int32_t index) const
    {
        for (const ExtraVerticesAccessors &accessors : extra_vertices) {
            SCOPED_TRACE(accessors.name);
            int32_t count = -7;
            std::vector<int32_t> vertices(1000, -7);
            const korvane_status_t status = accessors.get(mesh, index, &count, vertices.data());
            if (!model.has(index)) {
                EXPECT_EQ(status, STATUS_ERROR);
                EXPECT_EQ(count, -7);
                EXPECT_EQ(vertices[0], -7);
                continue;
            }
            const List expected = model.read(index);
            EXPECT_EQ(status, STATUS_OK);
            EXPECT_EQ((List{count, kept(count, vertices)}), expected) << index;
            EXPECT_EQ(vertices[expected.vertices.size()], -7);
        }
    }

    void expect_all_as_model() const
    {
        for (int32_t index = -1; index < 14; ++index)
            expect_as_model(index);
    }

    RecordingContext context;
    korvane_mesh_t *mesh; // the context deletes it
    Model model;
    std::vector<int32_t> indices = std::vector<int32_t>(999);
};

TEST_F(ExtraVertices, StoresTheRemainderByThousandAndKeepsTheCountWhole)
{
    set_element_count(1);
    for (const int32_t count :
        {3, 1003, 1000, 0, 999, 2000999, -1, -999, -1000, -1003, INT32_MAX, INT32_MIN}) {
        write(1, count);
        expect_as_model(1);
    }
    ASSERT_EQ(korvane_mesh_set_edge_extra_vertices(mesh, 1, 1000, nullptr), STATUS_OK);
}

TEST_F(ExtraVertices, AreAsModelledWhateverTheCountDoes)
{
    std::mt19937 random(2);
    const auto below = [&](int32_t end) {
        return std::uniform_int_distribution<int32_t>(0, end - 1)(random);
    };
    for (int step = 0; step < 4000; ++step) {
        if (below(4) == 0)
            set_element_count(below(12) == 0 ? -3 : below(12));
        if (below(2) == 0) {
            const int32_t list_counts[] = {below(6), 1000 * below(3) + below(6), -below(2000)};
            write(below(14) - 1, list_counts[below(3)]);
        }
        expect_as_model(below(14) - 1);
        if (HasFailure())
            return;
    }
    expect_all_as_model();
}

TEST_F(ExtraVertices, SurviveFailuresOfMemoryInAnyOrder)
{
    std::mt19937 random(3);
    const auto below = [&](int32_t end) {
        return std::uniform_int_distribution<int32_t>(0, end - 1)(random);
    };
    for (int step = 0; step < 4000; ++step) {
        if (below(2) == 0)
            set_element_count(below(12));
        const int32_t count = below(5);
        const Failure kind = below(2) == 0 ? Failure::transient : Failure::persistent;
        const int32_t index = below(model.element_count + 1);
        // Arrays are fitted first, by a write that is then refused, so that it is known what failed.
        bool fitted_all = true;
        for (const ExtraVerticesAccessors &accessors : extra_vertices) {
            AllocationFault fault(1 + step % 2, kind);
            fault.arm();
            const korvane_status_t status = accessors.set(mesh, 0, count, indices.data());
            fault.disarm();
            EXPECT_TRUE(status == STATUS_ERROR || status == STATUS_NOMEM);
            fitted_all = fitted_all && status == STATUS_ERROR;
        }
        if (fitted_all) {
            EXPECT_EQ(model.fit(), STATUS_OK);
            const int32_t lists = index > 0 && count > 0 ? 1 : 0;
            for (const ExtraVerticesAccessors &accessors : extra_vertices) {
                AllocationFault fault(1, kind);
                fault.arm();
                EXPECT_EQ(accessors.set(mesh, index, count, indices.data()),
                    index == 0 ? STATUS_ERROR : (lists == 1 ? STATUS_NOMEM : STATUS_OK));
                fault.disarm();
            }
            if (index > 0)
                model.at(index) = {};
            if (below(2) == 0)
                write(index, count);
        }
        expect_all_as_model();
        if (HasFailure())
            return;
    }
}

TEST_F(ExtraVertices, OfDroppedElementsAreGone)
{
    set_element_count(3);
    for (int32_t index = 1; index <= 3; ++index)
        write(index, 10 * index);
    set_element_count(1);
    write(1, 4);
    set_element_count(3);
    expect_all_as_model(); // above the arrays
    write(1, 5);
    expect_all_as_model(); // within them
}

TEST_F(ExtraVertices, AreKeptWhenTheCountComesBackBeforeAWrite)
{
    set_element_count(3);
    for (int32_t index = 1; index <= 3; ++index)
        write(index, 10 * index);
    for (const int32_t between : {0, 1, -5, INT32_MAX}) {
        set_element_count(between);
        expect_as_model(1);
        expect_as_model(3);
        expect_as_model(INT32_MAX);
    }
    set_element_count(3);
    EXPECT_EQ(model.read(3).count, 30);
    expect_all_as_model();
}

TEST_F(ExtraVertices, AreFreedWithTheirMeshWhateverItsCount)
{
    const int64_t before = live_block_count();
    mesh = korvane_mesh_new_in_memory(context);
    set_element_count(3);
    for (int32_t index = 1; index <= 3; ++index)
        write(index, 10);
    set_element_count(1);
    EXPECT_GT(live_block_count(), before + 3 * std::ssize(extra_vertices));
    korvane_mesh_delete(mesh);
    EXPECT_EQ(live_block_count(), before);
}

TEST_F(ExtraVertices, AreFreedWhenTheCountIsZero)
{
    const int64_t before = live_block_count();
    set_element_count(2);
    write(2, 10);
    EXPECT_GT(live_block_count(), before);
    set_element_count(0);
    write(1, 10);
    EXPECT_EQ(live_block_count(), before);
    set_element_count(2);
    expect_all_as_model();
}

} // namespace
} // namespace korvane::testing
