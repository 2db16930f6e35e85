// Calls of a function with one argument after the other replaced by something extreme.
//
// A row names a function and its arguments; an argument is a good value with its alternatives, of which each
// states the status that it is to lead to. Probe 0 of a row is the call with good values only; the others put
// in one alternative each. Outputs are rooms filled with a pattern: what a call must not write is seen.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"
#include "sweeps/dispose.h"
#include "sweeps/objects.h"

namespace korvane::testing {

/// Why a call is to fail.
enum class Cause { none, null_handle, null_pointer, bad_value };

/// Where a call writes an output, and a guard behind it.
class OutputRoom {
  public:
    explicit OutputRoom(std::size_t bytes) : size(bytes), content(bytes + guard, pattern) {}

    [[nodiscard]] void *data() { return content.data(); }
    void expect_guard_untouched() const { expect_all("behind the output", size, content.size(), pattern); }
    void expect_untouched() const { expect_all("in the output", 0, content.size(), pattern); }
    void expect_zero() const { expect_all("in the output", 0, size, 0); }
    void expect_written() const
    {
        const std::vector<unsigned char> untouched(size, pattern);
        EXPECT_NE(std::memcmp(content.data(), untouched.data(), size), 0) << "nothing was written";
    }

  private:
    static constexpr std::size_t guard = 64;
    static constexpr unsigned char pattern = 0xa5;

    void expect_all(const char *where, std::size_t from, std::size_t to, unsigned char wanted) const
    {
        for (std::size_t i = from; i < to; ++i)
            ASSERT_EQ(content[i], wanted) << where << ", byte " << i;
    }

    std::size_t size;
    std::vector<unsigned char> content;
};

template <class T>
struct Alternative {
    T value;
    korvane_status_t wanted;
    Cause cause;
};

template <class T>
struct Argument {
    T good;
    std::vector<Alternative<T>> alternatives = {};
    T *slot = nullptr;                     // set to null by a call that takes the good value over
    std::shared_ptr<OutputRoom> room = {}; // of an output
    Cause zeroed_by = Cause::none;         // failures of this cause make the output zero
    bool is_trusted = false;               // a pointer that the call takes as it is
    bool is_silent = false;                // the output is not written on success either

    /// The output is set to zero, not left as it was, by failures of a cause.
    [[nodiscard]] Argument zero_for(Cause cause) &&
    {
        zeroed_by = cause;
        return std::move(*this);
    }
    [[nodiscard]] Argument silent() &&
    {
        is_silent = true;
        return std::move(*this);
    }
    /// The good value is an object of `Objects` that the call takes over.
    [[nodiscard]] Argument taken_from(T &object) &&
    {
        slot = &object;
        return std::move(*this);
    }
    /// Further values that lead to a status.
    [[nodiscard]] Argument also(korvane_status_t wanted, std::initializer_list<T> values) &&
    {
        for (const T value : values)
            alternatives.push_back({value, wanted, wanted == STATUS_OK ? Cause::none : Cause::bad_value});
        return std::move(*this);
    }
};

// -- Arguments

/// Left to the caller.
template <class T>
Argument<T> given(T value)
{
    Argument<T> argument{value};
    if constexpr (std::is_pointer_v<T>)
        argument.is_trusted = value != nullptr;
    return argument;
}

/// Null is refused.
template <class T>
Argument<T> handle(T object)
{
    return {object, {{T{}, STATUS_ERROR, Cause::null_handle}}};
}

template <class T>
Argument<T> input(T pointer)
{
    return {pointer, {{T{}, STATUS_ERROR, Cause::null_pointer}}};
}

/// Null is accepted.
template <class T>
Argument<T> nullable(T pointer)
{
    return {pointer, {{T{}, STATUS_OK, Cause::none}}};
}

/// An object of `Objects` that the call takes over; null is accepted.
template <class T>
Argument<T> taken(T &object)
{
    return nullable(object).taken_from(object);
}

template <class T>
Argument<T> refused(T good, std::initializer_list<T> values)
{
    return Argument<T>{good}.also(STATUS_ERROR, values);
}

/// An index from 1 to `count`.
inline Argument<int32_t> index(int32_t good, int32_t count)
{
    return refused(good, {INT32_MIN, -1, 0, count + 1, INT32_MAX});
}

/// A number whose every value is accepted.
inline Argument<int32_t> any(int32_t good)
{
    return Argument<int32_t>{good}.also(STATUS_OK, {INT32_MIN, -1, 0, INT32_MAX});
}

inline Argument<uint32_t> any(uint32_t good)
{
    return Argument<uint32_t>{good}.also(STATUS_OK, {0, UINT32_MAX});
}

inline Argument<double> any(double good)
{
    using Limits = std::numeric_limits<double>;
    return Argument<double>{good}.also(
        STATUS_OK, {0, Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max()});
}

/// An output of `count` values.
template <class T>
Argument<T *> room_for(std::size_t count)
{
    Argument<T *> argument{nullptr};
    argument.room = std::make_shared<OutputRoom>(count * sizeof(T));
    argument.good = static_cast<T *>(argument.room->data());
    return argument;
}

/// An output that the call trusts.
template <class T>
Argument<T *> trusted_output(std::size_t count = 1)
{
    Argument<T *> argument = room_for<T>(count);
    argument.is_trusted = true;
    return argument;
}

/// An output that must not be null.
template <class T>
Argument<T *> output(std::size_t count = 1)
{
    Argument<T *> argument = room_for<T>(count);
    argument.alternatives.push_back({nullptr, STATUS_ERROR, Cause::null_pointer});
    return argument;
}

/// An output that is passed over if it is null.
template <class T>
Argument<T *> optional_output(std::size_t count = 1)
{
    return room_for<T>(count).also(STATUS_OK, {nullptr});
}

// -- Calls

class Probe {
  public:
    /// `good_status` is what the call with good values leads to. A call that fails leaves the objects as they
    /// were.
    Probe(std::size_t probe_number, korvane_status_t good_status, const Objects &described)
        : number(probe_number), left(probe_number), wanted(good_status), objects(described)
    {}

    template <class Result, class... Parameters, class... Values>
    void call(Result (*function)(Parameters...), Argument<Values>... arguments)
    {
        trusts = (arguments.is_trusted || ...);
        (choose(arguments), ...);
        if (!exists())
            return;
        (hand_over(arguments), ...);
        const std::string before = wanted == STATUS_OK ? "" : objects.describe();
        const std::int64_t live_before = live_block_count();
        const std::int64_t allocations_before = allocation_count();
        if constexpr (std::is_void_v<Result>) {
            function(arguments.good...);
            allocation_sum = allocation_count() - allocations_before;
            (expect_output(arguments), ...);
        } else {
            const Result result = function(arguments.good...);
            allocation_sum = allocation_count() - allocations_before;
            expect_result(result);
            if (wanted != STATUS_OK) {
                EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
                EXPECT_TRUE(is_described_as(objects, before));
            }
            (expect_output(arguments), ...);
            dispose(result);
        }
    }

    /// False if the row has fewer alternatives than the number says.
    [[nodiscard]] bool exists() const { return left == 0; }
    /// Whether the call takes a pointer as it is.
    [[nodiscard]] bool trusts_its_caller() const { return trusts; }
    /// How many blocks the call asked for.
    [[nodiscard]] std::int64_t allocations() const { return allocation_sum; }

  private:
    /// Replaces the good value if the probe is about one of the argument's alternatives.
    template <class T>
    void choose(Argument<T> &argument)
    {
        if (left == 0)
            return;
        if (left > argument.alternatives.size()) {
            left -= argument.alternatives.size();
            return;
        }
        const Alternative<T> &chosen = argument.alternatives[left - 1];
        left = 0;
        argument.good = chosen.value;
        wanted = chosen.wanted;
        cause = chosen.cause;
        if (argument.room && chosen.value == T{})
            argument.room = nullptr;
    }

    template <class T>
    void hand_over(const Argument<T> &argument) const
    {
        if (wanted == STATUS_OK && argument.slot != nullptr && argument.good == *argument.slot)
            *argument.slot = T{};
    }

    void expect_result(korvane_status_t status) const { EXPECT_EQ(status, wanted); }
    void expect_result(const void *made) const { EXPECT_EQ(made != nullptr, wanted == STATUS_OK); }

    template <class T>
    void expect_output(const Argument<T> &argument) const
    {
        if (!argument.room)
            return;
        argument.room->expect_guard_untouched();
        if (wanted != STATUS_OK && cause != Cause::none && cause == argument.zeroed_by)
            argument.room->expect_zero();
        else if (wanted != STATUS_OK || argument.is_silent)
            argument.room->expect_untouched();
        else if (number == 0)
            argument.room->expect_written();
    }

    std::size_t number;
    std::size_t left;
    korvane_status_t wanted;
    const Objects &objects;
    Cause cause = Cause::none;
    bool trusts = false;
    std::int64_t allocation_sum = 0;
};

enum class Heap {
    none,
    used,
    elidable // a compiler may see that it can do without
};

struct Row {
    std::string function;
    Heap heap; // whether the call with good values allocates; if not, no call of the row may
    korvane_status_t wanted;
    std::function<void(Objects &objects, Probe &probe)> call;
};

using Rows = std::vector<Row>;

// clang-format off
/// A row of a function, with arguments made of the objects `o`.
#define KORVANE_ROW(heap, wanted, function, ...) \
    korvane::testing::Row{#function, heap, wanted, \
        []([[maybe_unused]] korvane::testing::Objects &o, korvane::testing::Probe &probe) { \
            probe.call(function __VA_OPT__(,) __VA_ARGS__); \
        }}
#define ROW(function, ...) \
    KORVANE_ROW(korvane::testing::Heap::none, STATUS_OK, function __VA_OPT__(,) __VA_ARGS__)
#define ALLOCATING_ROW(function, ...) \
    KORVANE_ROW(korvane::testing::Heap::used, STATUS_OK, function __VA_OPT__(,) __VA_ARGS__)
/// A row whose calls all fail.
#define REFUSING_ROW(function, ...) \
    KORVANE_ROW(korvane::testing::Heap::none, STATUS_ERROR, function __VA_OPT__(,) __VA_ARGS__)
// clang-format on

/// The rows of one family of functions.
struct RowFamily {
    std::string name;
    Rows (*rows)();
};

inline void PrintTo(const RowFamily &family, std::ostream *stream)
{
    *stream << family.name;
}

// By source file.
Rows context_rows();
Rows message_rows();
Rows tag_rows();
Rows mesh_rows();
Rows mesh_slot_rows();
Rows sizemap_rows();
Rows model_rows();
Rows face_rows();
Rows edge_rows();
Rows derived_rows();
Rows periodicity_rows();
Rows dcad_rows();

/// All of them.
inline const std::vector<RowFamily> row_families = {
    {"context", context_rows},
    {"message", message_rows},
    {"tags", tag_rows},
    {"mesh", mesh_rows},
    {"mesh_slots", mesh_slot_rows},
    {"sizemap", sizemap_rows},
    {"model", model_rows},
    {"face", face_rows},
    {"edge", edge_rows},
    {"derived", derived_rows},
    {"periodicity", periodicity_rows},
    {"dcad", dcad_rows},
};

} // namespace korvane::testing
