// Report lines: texts with a few conversions of printf, which do not depend on the client's locale.
#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>

#include <korvane.h>

#include "common/text_buffer.h"
#include "mesh/mesh.h"

namespace korvane {

/// One conversion: "%s" of a text, which may be null; "%i" of an integer; "%e" or "%.3e" of a real.
/// @{
template <std::size_t capacity>
void append_value(TextBuffer<capacity> &text, std::string_view, const char *value)
{
    text.append(std::string_view(value == nullptr ? "(null)" : value));
}

template <std::size_t capacity>
void append_value(TextBuffer<capacity> &text, std::string_view, std::integral auto value)
{
    text.append(value);
}

template <std::size_t capacity>
void append_value(TextBuffer<capacity> &text, std::string_view conversion, double value)
{
    text.append_scientific(value, conversion == "%.3e" ? 3 : 6);
}
/// @}

template <std::size_t capacity>
void append_format(TextBuffer<capacity> &text, std::string_view format)
{
    text.append(format);
}

/// Appends `format` with one value in the place of each conversion.
template <std::size_t capacity, class Value, class... Values>
void append_format(TextBuffer<capacity> &text, std::string_view format, Value value, Values... values)
{
    const std::size_t begin = format.find('%');
    const std::size_t end = format.find_first_of("sie", begin) + 1;
    text.append(format.substr(0, begin));
    append_value(text, format.substr(begin, end - begin), value);
    append_format(text, format.substr(end), values...);
}

/// Sends a text to the mesh's context. A message that memory does not suffice for is left out.
inline void send_text(const korvane_mesh_t *mesh, const char *text)
{
    korvane_context_send_message(mesh->context, 0, text);
}

/// Sends a formatted text of less than `capacity` bytes, cut where it is longer.
template <std::size_t capacity, class... Values>
void send_format(const korvane_mesh_t *mesh, std::string_view format, Values... values)
{
    TextBuffer<capacity> text;
    append_format(text, format, values...);
    send_text(mesh, text.c_str());
}

} // namespace korvane
