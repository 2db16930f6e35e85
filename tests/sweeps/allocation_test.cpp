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
        EXPECT_GT(runs, runs_without_failure) << "does not allocate";
        failures += runs - runs_without_failure;
    }
    RecordProperty("failures", failures);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingAllocations, ::testing::ValuesIn(allocation_families),
    [](const auto &family) { return family.param.name; });

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
