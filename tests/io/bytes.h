// Binary files put together value by value.
#pragma once

#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>

namespace korvane::testing {

/// The bytes of a binary file, put together value by value.
class Bytes {
  public:
    explicit Bytes(bool opposite_order = false) : opposite(opposite_order) {}

    template <class Value>
    Bytes &add(Value value)
    {
        char raw[sizeof(Value)];
        std::memcpy(raw, &value, sizeof raw);
        if (opposite)
            content.append(std::make_reverse_iterator(raw + sizeof raw), std::make_reverse_iterator(raw + 0));
        else
            content.append(raw, sizeof raw);
        return *this;
    }

    template <class... Values>
    Bytes &integers(Values... values)
    {
        (add(static_cast<int32_t>(values)), ...);
        return *this;
    }

    /// Byte order, version, and the block of the dimension.
    Bytes &header(int version, int dimension) { return integers(1, version, 3, 20, dimension); }

    [[nodiscard]] int32_t size() const { return static_cast<int32_t>(content.size()); }
    [[nodiscard]] const std::string &text() const { return content; }
    operator const std::string &() const { return content; }

  private:
    bool opposite;
    std::string content;
};

} // namespace korvane::testing
