// The callbacks that a context has until the client installs its own.
#pragma once

#include <korvane.h>

namespace korvane {

/// Prints a message on the stream given as user data: "ERROR -1 : text", "WARNING 1 : text" or "text",
/// without line end. STATUS_ERROR if the message or the stream is null.
korvane_status_t print_message(korvane_message_t *message, void *stream);

korvane_status_t ignore_message(korvane_message_t *message, void *user_data);

/// Writes 0 into the flag.
korvane_status_t never_interrupt(int32_t *interrupt, void *user_data);

} // namespace korvane
