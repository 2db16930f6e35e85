// Every exported function that allocates, while allocations fail one after the other; and that all others are
// known not to allocate, which is looked at when their arguments are.
#include <set>

#include "sweeps/allocation_sweep.h"
#include "sweeps/exports.h"
#include "sweeps/probe.h"

namespace korvane::testing {
namespace {

class FailingAllocations : public ::testing::TestWithParam<AllocationFamily> {};

TEST_P(FailingAllocations, leave_objects_in_the_described_state_and_no_blocks)
{
    make_sample_files();                    // before blocks are counted
    constexpr int runs_without_failure = 2; // one of each kind of failure
    int failures = 0;
    for (const AllocationEntry &entry : GetParam().entries()) {
        SCOPED_TRACE(entry.function);
        int runs = 0;
        oom_sweep([&](AllocationFault &fault) {
            SCOPED_TRACE("run " + std::to_string(++runs));
            const std::int64_t live_before = live_block_count();
            entry.body(fault);
            fault.disarm();
            EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
        });
        EXPECT_TRUE(runs > runs_without_failure || entry.is_elidable) << "does not allocate";
        failures += runs - runs_without_failure;
    }
    RecordProperty("failures", failures);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingAllocations, ::testing::ValuesIn(allocation_families),
    [](const auto &family) { return family.param.name; });

/// A chain of faces, each derived from the one before; the last one is given.
korvane_cad_face_t *new_chain_of_faces(const Objects &objects)
{
    korvane_cad_face_t *last = korvane_cad_face_new_copy(objects.face);
    for (uint32_t id = 1; id < 1000; ++id)
        last = korvane_cad_face_new_pafftrans(
            nullptr, last, id, some_reals.data() + 3, some_reals.data(), nullptr, 0);
    return last;
}

/// What is in use when memory has run out can still be given back.
TEST(Deletion, of_everything_does_not_allocate)
{
    const std::int64_t live_before = live_block_count();
    std::int64_t allocations = 0;
    {
        const Objects objects;
        korvane_cad_face_t *chain = new_chain_of_faces(objects);
        const std::array<korvane_cad_edge_t *, 3> sources = {objects.edge, objects.free_edge, objects.edge};
        korvane_cad_edge_new_newton1_with_ea(
            objects.face, 1, 3, some_reals.data(), sources.data(), some_reals.data());
        korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(objects.edge);
        allocations = allocation_count();
        korvane_cad_edge_delete(copy);
        korvane_cad_face_delete(chain);
    }
    EXPECT_EQ(allocation_count(), allocations);
    EXPECT_EQ(live_block_count(), live_before);
}

/// A function without an entry of its own must have rows, all of which state that it does not allocate.
TEST(AllocationTable, covers_every_export_that_is_not_known_not_to_allocate)
{
    std::set<std::string> swept;
    for (const AllocationFamily &family : allocation_families)
        for (const AllocationEntry &entry : family.entries())
            swept.insert(entry.function);
    std::set<std::string> covered = swept;
    for (const RowFamily &family : row_families) {
        for (const Row &row : family.rows()) {
            EXPECT_TRUE(row.heap == Heap::none || swept.contains(row.function)) << row.function;
            covered.insert(row.function);
        }
    }
    expect_exports(covered, "the table of allocations");
}

} // namespace
} // namespace korvane::testing
