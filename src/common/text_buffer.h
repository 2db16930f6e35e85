// A zero-terminated text of bounded length, formatted piece by piece as printf would in the C locale,
// whatever locale the client has set. What does not fit is cut; the text stays terminated.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvane {

template <std::size_t capacity>
class TextBuffer {
  public:
    TextBuffer &append(std::string_view piece)
    {
        const std::size_t room = capacity - 1 - length;
        const std::size_t taken = piece.size() < room ? piece.size() : room;
        if (taken > 0)
            std::memcpy(text.data() + length, piece.data(), taken);
        length += taken;
        text[length] = '\0';
        return *this;
    }

    /// As "%i", for integers of up to 64 bits.
    TextBuffer &append(std::int64_t value)
    {
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        return append(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
    }

    /// As "%.<precision>e".
    TextBuffer &append_scientific(double value, int precision)
    {
        std::array<char, 48> digits;
        const auto end = std::to_chars(
            digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific, precision)
                             .ptr;
        return append(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
    }

    [[nodiscard]] const char *c_str() const { return text.data(); }

  private:
    std::array<char, capacity> text{};
    std::size_t length = 0;
};

} // namespace korvane
