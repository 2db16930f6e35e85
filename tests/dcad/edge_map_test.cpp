#include "dcad/edge_map.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"
#include "tags/keys_support.h"

namespace korvane::testing {
namespace {

/// An edge at an address, which the map never looks behind.
const korvane_cad_edge_t *edge_at(uint64_t address)
{
    return reinterpret_cast<const korvane_cad_edge_t *>(static_cast<uintptr_t>(address));
}

std::vector<const korvane_cad_edge_t *> edges_by_bucket(const EdgeMap &map)
{
    std::vector<const korvane_cad_edge_t *> edges;
    for (const int32_t number : identifiers_by_bucket(map.edges))
        edges.push_back(map.edges.key(number));
    return edges;
}

TEST(EdgeMap, BehavesAsItsModel)
{
    std::mt19937 engine(20110808);
    for (const int32_t capacity : {2, 7, 100, 3000}) {
        EdgeMap map;
        ASSERT_TRUE(map.try_create(capacity));
        std::map<uint32_t, korvane_dcad_edge_discretization_t *> model;
        std::vector<std::vector<const korvane_cad_edge_t *>> buckets(static_cast<std::size_t>(capacity));
        int32_t room = capacity;
        for (int step = 0; step < 3000; ++step) {
            const auto low = static_cast<uint32_t>(engine() % 2 == 0 ? engine() : 16 * (engine() % 500));
            const korvane_cad_edge_t *edge = edge_at(low + (static_cast<uint64_t>(engine() % 3) << 32));
            auto *found = map.find(edge);
            const auto known = model.find(low);
            ASSERT_EQ(found, known == model.end() ? nullptr : known->second);
            if (found != nullptr)
                continue;
            if (static_cast<int32_t>(model.size()) == room)
                room += std::max(room / 17, 21);
            model[low] = map.try_add(edge);
            ASSERT_NE(model[low], nullptr);
            buckets[(low >> 3) % static_cast<uint32_t>(capacity)].push_back(edge);
            ASSERT_EQ(map.find(edge), model[low]);
        }
        EXPECT_EQ(map.edges.count, std::ssize(model));
        EXPECT_EQ(map.edges.capacity, room);
        EXPECT_EQ(map.edges.bucket_count, static_cast<uint32_t>(capacity));
        EXPECT_EQ(std::ssize(map.values), room + 1);
        for (const auto &[low, discretization] : model)
            EXPECT_EQ(map.find(edge_at(low)), discretization);
        std::vector<const korvane_cad_edge_t *> expected;
        for (const auto &bucket : buckets)
            expected.insert(expected.end(), bucket.begin(), bucket.end());
        EXPECT_EQ(edges_by_bucket(map), expected);
        EXPECT_TRUE(map.edges.finder.is_built() || capacity >= 100);
    }
}

TEST(EdgeMap, ComparesTheLow32BitsOnly)
{
    EdgeMap map;
    ASSERT_TRUE(map.try_create(10));
    auto *discretization = map.try_add(edge_at(0x1'2345'6780));
    ASSERT_NE(discretization, nullptr);
    EXPECT_EQ(map.find(edge_at(0x7'2345'6780)), discretization);
    EXPECT_EQ(map.find(edge_at(0x1'2345'6788)), nullptr);
    EXPECT_EQ(map.find(nullptr), nullptr);
}

TEST(EdgeMap, TellsEdgesOfOneBucketApart)
{
    EdgeMap map;
    ASSERT_TRUE(map.try_create(4));
    auto *first = map.try_add(edge_at(64));
    auto *second = map.try_add(edge_at(64 + 4 * 8));
    EXPECT_NE(first, second);
    EXPECT_EQ(map.find(edge_at(64)), first);
    EXPECT_EQ(map.find(edge_at(64 + 4 * 8)), second);
    EXPECT_EQ(map.find(edge_at(64 + 8 * 8)), nullptr);
}

TEST(EdgeMap, TheThirdEdgeOfAMapForTwoGrowsItTo23)
{
    EdgeMap map;
    ASSERT_TRUE(map.try_create(2));
    for (const uint64_t address : {8u, 16u})
        ASSERT_NE(map.try_add(edge_at(address)), nullptr);
    EXPECT_EQ(map.edges.capacity, 2);
    ASSERT_NE(map.try_add(edge_at(24)), nullptr);
    EXPECT_EQ(map.edges.capacity, 23);
    EXPECT_EQ(map.values.size(), 24u);
    EXPECT_EQ(map.edges.bucket_count, 2u);
}

TEST(EdgeMap, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        EdgeMap map;
        fault.arm();
        const bool created = map.try_create(2);
        EXPECT_EQ(created, !fault.disarm());
        if (!created) {
            ASSERT_TRUE(map.try_create(2));
        }
        std::vector<korvane_dcad_edge_discretization_t *> added;
        for (uint64_t address = 8; address <= 8 * 50; address += 8) {
            fault.arm();
            auto *discretization = map.try_add(edge_at(address));
            const bool failed = fault.disarm();
            EXPECT_EQ(discretization == nullptr, failed);
            if (failed) {
                EXPECT_EQ(map.find(edge_at(address)), nullptr);
                EXPECT_EQ(map.edges.count, std::ssize(added));
                discretization = map.try_add(edge_at(address));
            }
            added.push_back(discretization);
            EXPECT_EQ(map.find(edge_at(address)), discretization);
        }
        for (std::size_t i = 0; i < added.size(); ++i)
            EXPECT_EQ(map.find(edge_at(8 * (i + 1))), added[i]);
    });
}

} // namespace
} // namespace korvane::testing
