// What becomes of a function's objects when allocations fail: entries that make a call while the N-th
// allocation fails, look at what it left behind, and make it again.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"
#include "sweeps/dispose.h"
#include "sweeps/objects.h"

namespace korvane::testing {

/// An entry of one exported function; a function can have several. The body is run by `oom_sweep`.
struct AllocationEntry {
    std::string function;
    std::function<void(AllocationFault &fault)> body;
    bool is_elidable = false; // a compiler may see that the function can do without allocations
};

using AllocationEntries = std::vector<AllocationEntry>;

/// Makes objects ready for a call that has to allocate.
using Preparation = void (*)(Objects &objects);

inline void prepare_nothing(Objects &) {}

/// What a failed call may leave behind.
enum class Remainder {
    nothing,        // all is as it was before
    nothing_or_all, // as above, or the call does not need what failed and succeeds
    part            // a part of its work, which a repeated call completes
};

/// What `call` makes of objects when nothing fails.
template <class Call>
std::string description_after(Preparation prepare, Call call)
{
    Objects objects;
    prepare(objects);
    auto result = call(objects);
    std::string description = objects.describe();
    dispose(result);
    return description;
}

/// A call that gives STATUS_OK, or `failure` exactly when an allocation failed. Repeated, it succeeds, and
/// leaves the same as if it had succeeded at once.
template <class Call>
auto sweep_status(
    korvane_status_t failure, Remainder remainder, Call call, Preparation prepare = prepare_nothing)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        prepare(objects);
        const std::string before = objects.describe();
        fault.arm();
        const korvane_status_t status = call(objects);
        const bool failed = fault.disarm();
        const bool went_on = failed && status == STATUS_OK && remainder == Remainder::nothing_or_all;
        EXPECT_EQ(status, failed && !went_on ? failure : korvane_status_t{STATUS_OK});
        if (failed && !went_on) {
            EXPECT_TRUE(remainder == Remainder::part || is_described_as(objects, before));
            EXPECT_EQ(call(objects), STATUS_OK);
        }
        EXPECT_TRUE(is_described_as(objects, description_after(prepare, call)));
    };
}

/// A constructor, which gives null exactly when an allocation failed, and has changed nothing then. Repeated,
/// it succeeds.
template <class Make>
auto sweep_constructor(Make make, Preparation prepare = prepare_nothing)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        prepare(objects);
        const std::string before = objects.describe();
        const std::int64_t live_before = live_block_count();
        fault.arm();
        auto *made = make(objects);
        const bool failed = fault.disarm();
        EXPECT_EQ(made == nullptr, failed);
        if (made == nullptr) {
            EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
            EXPECT_TRUE(is_described_as(objects, before));
            made = make(objects);
        }
        EXPECT_NE(made, nullptr);
        EXPECT_TRUE(is_described_as(objects, description_after(prepare, make)));
        dispose(made);
    };
}

/// A constructor of an object that attaches itself to a context. One that cannot attach itself is made all
/// the same: then its client has to delete it, else its context does.
template <class Make>
auto sweep_attaching_constructor(Make make)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        const std::int64_t live_before = live_block_count();
        fault.arm();
        auto *made = make(objects);
        const bool failed = fault.disarm();
        if (made == nullptr) {
            EXPECT_TRUE(failed);
            EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
            EXPECT_NE(make(objects), nullptr) << "and is deleted by its context";
            return;
        }
        dispose(made);
        EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
    };
}

// By source file.
AllocationEntries context_allocations();
AllocationEntries mesh_allocations();
AllocationEntries mesh_slot_allocations();
AllocationEntries cad_allocations();
AllocationEntries derived_allocations();
AllocationEntries periodicity_allocations();
AllocationEntries dcad_allocations();

/// The entries of one family of functions.
struct AllocationFamily {
    std::string name;
    AllocationEntries (*entries)();
};

inline void PrintTo(const AllocationFamily &family, std::ostream *stream)
{
    *stream << family.name;
}

/// All of them.
inline const std::vector<AllocationFamily> allocation_families = {
    {"context", context_allocations},
    {"mesh", mesh_allocations},
    {"mesh_slots", mesh_slot_allocations},
    {"cad", cad_allocations},
    {"derived", derived_allocations},
    {"periodicity", periodicity_allocations},
    {"dcad", dcad_allocations},
};

} // namespace korvane::testing
