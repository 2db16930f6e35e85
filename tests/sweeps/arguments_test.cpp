// Every exported function with null and extreme arguments: what its description says that is tested, and what
// it says that is accepted.
#include <set>

#include "sweeps/descriptions.h"
#include "sweeps/exports.h"
#include "sweeps/probe.h"

namespace korvane::testing {
namespace {

/// Makes one call of a row. False if the row has no such probe.
bool make_call(const Row &row, std::size_t number)
{
    SCOPED_TRACE(row.function + ", probe " + std::to_string(number));
    const std::int64_t live_before = live_block_count();
    bool exists = true;
    {
        Objects objects;
        Probe probe(number, row.wanted, objects);
        row.call(objects, probe);
        exists = probe.exists();
        if (row.heap == Heap::none) {
            EXPECT_EQ(probe.allocations(), 0) << "allocates";
        } else if (row.heap == Heap::used && number == 0) {
            EXPECT_GT(probe.allocations(), 0) << "does not allocate";
        }
    }
    EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
    return exists;
}

class Arguments : public ::testing::TestWithParam<RowFamily> {};

TEST_P(Arguments, are_tested_accepted_and_left_alone_as_described)
{
    make_sample_files(); // before blocks are counted
    int calls = 0;
    for (const Row &row : GetParam().rows())
        for (std::size_t number = 0; make_call(row, number); ++number)
            ++calls;
    RecordProperty("calls", calls);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Arguments, ::testing::ValuesIn(row_families), [](const auto &family) { return family.param.name; });

/// "(not checked)" is how the header says it everywhere.
TEST(ArgumentTable, trusts_callers_only_where_the_header_says_so)
{
    make_sample_files();
    for (const RowFamily &family : row_families) {
        for (const Row &row : family.rows()) {
            Objects objects;
            Probe probe(0, row.wanted, objects);
            row.call(objects, probe);
            const std::string description = description_of(row.function);
            EXPECT_FALSE(description.empty()) << row.function;
            if (row.wanted == STATUS_OK && probe.trusts_its_caller()) {
                EXPECT_NE(description.find("(not checked)"), std::string::npos) << row.function;
            }
        }
    }
}

TEST(ArgumentTable, covers_every_export_and_nothing_else)
{
    std::set<std::string> covered;
    for (const RowFamily &family : row_families)
        for (const Row &row : family.rows())
            covered.insert(row.function);
    expect_exports(covered, "the table of arguments");
}

} // namespace
} // namespace korvane::testing
