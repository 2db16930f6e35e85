// The bytes of an input as the calls and arguments of a client.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "fuzz_input.h"

namespace korvane::fuzz {

/// Gives values byte by byte, and zeros behind the end.
class Script {
  public:
    Script(const std::uint8_t *data, std::size_t size) : next(data), end(data + size) {}

    [[nodiscard]] bool has_ended() const { return next == end; }

    std::uint8_t byte() { return has_ended() ? 0 : *next++; }

    /// Less than `count`.
    std::size_t choice(std::size_t count) { return byte() % count; }

    bool chance() { return byte() % 2 != 0; }

    /// Small as a rule, now and then extreme or anything.
    std::int32_t integer()
    {
        using Limits = std::numeric_limits<std::int32_t>;
        const std::uint8_t first = byte();
        switch (first) {
        case 0xff:
            return raw<std::int32_t>();
        case 0xfe:
            return Limits::max();
        case 0xfd:
            return Limits::min();
        case 0xfc:
            return Limits::max() - byte();
        default:
            return first % 64 - 8;
        }
    }

    /// A few values that make simple geometry, now and then anything.
    double real()
    {
        constexpr std::array<double, 8> usual = {0, 1, 2, -1, 0.5, 1e-7, 1e300, HUGE_VAL};
        const std::uint8_t first = byte();
        return first == 0xff ? raw<double>() : usual[first % usual.size()];
    }

    template <std::size_t count>
    std::array<double, count> reals()
    {
        std::array<double, count> values{};
        for (double &value : values)
            value = real();
        return values;
    }

    /// At most 15.
    std::vector<std::int32_t> integers()
    {
        std::vector<std::int32_t> values(byte() % 16);
        for (std::int32_t &value : values)
            value = integer();
        return values;
    }

  private:
    template <class Value>
    Value raw()
    {
        std::array<std::uint8_t, sizeof(Value)> bytes{};
        for (std::uint8_t &each : bytes)
            each = byte();
        Value value;
        std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }

    const std::uint8_t *next;
    const std::uint8_t *end;
};

} // namespace korvane::fuzz
