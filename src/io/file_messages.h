// The messages about files: those about reading and those about writing share a prefix each, which names the
// mesh functions whatever the file holds.
#pragma once

#include <korvane.h>

#include "common/text_buffer.h"

namespace korvane {

inline constexpr std::string_view reading_prefix = "korvane_mesh_new_read_mesh : ";
inline constexpr std::string_view writing_prefix = "korvane_mesh_write_mesh : ";

/// Sends the prefix, the pieces of a sentence and ".\n" under this number. The number, for the caller to
/// return.
template <class... Pieces>
korvane_status_t report(
    korvane_context_t *context, korvane_status_t number, std::string_view prefix, Pieces... pieces)
{
    TextBuffer<128> message;
    message.append(prefix);
    (message.append(pieces), ...);
    message.append(".\n");
    korvane_context_send_message(context, number, message.c_str());
    return number;
}

/// That a getter of the mesh that is written failed; the data are those that it gives.
inline korvane_status_t report_access(
    korvane_context_t *context, korvane_status_t number, std::string_view data_name)
{
    return report(context, number, writing_prefix, "Error accessing given mesh ", data_name);
}

} // namespace korvane
