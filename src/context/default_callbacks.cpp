// The default callbacks of a context. The printer is the only place from which the library writes to a stream
// that it did not open.
#include "context/default_callbacks.h"

#include <cstdio>

#include "context/message.h"

namespace korvane {

korvane_status_t print_message(korvane_message_t *message, void *stream)
{
    if (message == nullptr || stream == nullptr)
        return STATUS_ERROR;
    auto *file = static_cast<std::FILE *>(stream);
    const char *description = message->description.data();
    if (message->number == 0)
        std::fprintf(file, "%s", description);
    else if (message->number < 0)
        std::fprintf(file, "ERROR %i : %s", message->number, description);
    else
        std::fprintf(file, "WARNING %i : %s", message->number, description);
    return STATUS_OK;
}

korvane_status_t ignore_message(korvane_message_t *, void *)
{
    return STATUS_OK;
}

korvane_status_t never_interrupt(int32_t *interrupt, void *)
{
    *interrupt = 0;
    return STATUS_OK;
}

} // namespace korvane
