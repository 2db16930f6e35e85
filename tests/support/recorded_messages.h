// A context whose messages are kept for the test to look at.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

namespace korvane::testing {

struct RecordedMessage {
    int32_t number;
    std::string text;
    bool operator==(const RecordedMessage &) const = default;
};

inline void PrintTo(const RecordedMessage &message, std::ostream *stream)
{
    *stream << message.number << " \"" << message.text << '"';
}

/// What a message tells.
inline RecordedMessage recorded(const korvane_message_t *message)
{
    int32_t number = 0;
    const char *text = nullptr;
    korvane_message_get_number(message, &number);
    korvane_message_get_description(message, &text);
    return {number, text};
}

/// Owns a context; `messages` holds what was sent to it, in order.
class RecordingContext {
  public:
    RecordingContext() : context(korvane_context_new())
    {
        korvane_context_set_message_callback(context, record, this);
    }
    ~RecordingContext() { korvane_context_delete(context); }
    RecordingContext(const RecordingContext &) = delete;
    RecordingContext &operator=(const RecordingContext &) = delete;

    operator korvane_context_t *() const { return context; }

    /// Expects just these messages, which are forgotten then; their texts begin with `prefix`.
    void expect(const std::string &prefix, std::vector<RecordedMessage> expected)
    {
        for (RecordedMessage &message : expected)
            message.text.insert(0, prefix);
        EXPECT_EQ(std::exchange(messages, {}), expected);
    }

    /// The texts of all messages, one after the other.
    std::string text() const
    {
        std::string all;
        for (const RecordedMessage &message : messages)
            all += message.text;
        return all;
    }

    std::vector<RecordedMessage> messages;

  private:
    static korvane_status_t record(korvane_message_t *message, void *self)
    {
        static_cast<RecordingContext *>(self)->messages.push_back(recorded(message));
        return STATUS_OK;
    }

    korvane_context_t *context;
};

} // namespace korvane::testing
