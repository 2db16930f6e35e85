#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

/// What the default printer writes on standard output while `action` runs.
std::string printed_by(const std::function<void()> &action)
{
    ::testing::internal::CaptureStdout();
    action();
    std::fflush(stdout);
    return ::testing::internal::GetCapturedStdout();
}

struct Released {
    std::vector<int> *order;
    int number;
};

void note_release(void *object)
{
    auto *released = static_cast<Released *>(object);
    released->order->push_back(released->number);
}

korvane_status_t refuse(korvane_message_t *, void *calls)
{
    ++*static_cast<int *>(calls);
    return STATUS_ERROR;
}

TEST(Context, PrintsMessagesByDefault)
{
    korvane_context_t *context = korvane_context_new();
    EXPECT_EQ(printed_by([&] { korvane_context_send_message(context, -12, "x"); }), "ERROR -12 : x");
    EXPECT_EQ(printed_by([&] { korvane_context_send_message(context, 3, "x"); }), "WARNING 3 : x");
    EXPECT_EQ(printed_by([&] { korvane_context_send_message(context, 0, "x %s"); }), "x %s");
    EXPECT_EQ(printed_by([&] { korvane_context_send_message(context, 0, ""); }), "");
    korvane_context_delete(context);
}

TEST(Context, DefaultPrinterRefusesNull)
{
    korvane_context_t *context = korvane_context_new();
    korvane_message_callback_t print = nullptr;
    void *stream = nullptr;
    ASSERT_EQ(korvane_context_get_message_callback(context, &print, &stream), STATUS_OK);
    EXPECT_EQ(stream, stdout);
    korvane_message_t *message = korvane_message_new(context, 0, "", "tests");
    EXPECT_EQ(print(nullptr, stream), STATUS_ERROR);
    EXPECT_EQ(print(message, nullptr), STATUS_ERROR);
    EXPECT_EQ(print(message, stream), STATUS_OK);
    korvane_message_delete(message);
    korvane_context_delete(context);
}

TEST(Context, SendsMessagesAsKorvaneAndIgnoresTheCallbacksResult)
{
    korvane_context_t *context = korvane_context_new();
    int calls = 0;
    korvane_context_set_message_callback(context, refuse, &calls);
    EXPECT_EQ(korvane_context_send_message(context, 1, "text"), STATUS_OK);
    EXPECT_EQ(calls, 1);
    std::string sender;
    korvane_context_set_message_callback(
        context,
        [](korvane_message_t *message, void *sender_of_message) {
            const char *text = nullptr;
            korvane_message_get_sender(message, &text);
            *static_cast<std::string *>(sender_of_message) = text;
            return korvane_status_t{STATUS_OK};
        },
        &sender);
    korvane_context_send_message(context, 1, "text");
    EXPECT_EQ(sender, "Korvane");
    korvane_context_delete(context);
}

TEST(Context, NullMessageCallbackSilences)
{
    korvane_context_t *context = korvane_context_new();
    int anything = 0;
    ASSERT_EQ(korvane_context_set_message_callback(context, nullptr, &anything), STATUS_OK);
    EXPECT_EQ(printed_by([&] { korvane_context_send_message(context, -1, "x"); }), "");
    korvane_message_callback_t silent = nullptr;
    void *user_data = &anything;
    ASSERT_EQ(korvane_context_get_message_callback(context, &silent, &user_data), STATUS_OK);
    ASSERT_NE(silent, nullptr);
    EXPECT_EQ(user_data, nullptr);
    EXPECT_EQ(silent(nullptr, nullptr), STATUS_OK);
    korvane_context_delete(context);
}

TEST(Context, InterruptCallbackIsKeptAndNullBringsBackTheDefault)
{
    korvane_context_t *context = korvane_context_new();
    const auto always = [](int32_t *interrupt, void *) {
        *interrupt = 1;
        return korvane_status_t{STATUS_OK};
    };
    int data = 0;
    int32_t interrupt = 5;
    korvane_interrupt_callback_t callback = nullptr;
    void *user_data = &data;
    ASSERT_EQ(korvane_context_get_interrupt_callback(context, &callback, &user_data), STATUS_OK);
    EXPECT_EQ(user_data, nullptr);
    EXPECT_EQ(callback(&interrupt, user_data), STATUS_OK);
    EXPECT_EQ(interrupt, 0);

    ASSERT_EQ(korvane_context_set_interrupt_callback(context, always, &data), STATUS_OK);
    ASSERT_EQ(korvane_context_get_interrupt_callback(context, &callback, &user_data), STATUS_OK);
    EXPECT_EQ(callback, static_cast<korvane_interrupt_callback_t>(always));
    EXPECT_EQ(user_data, &data);

    ASSERT_EQ(korvane_context_set_interrupt_callback(context, nullptr, &data), STATUS_OK);
    ASSERT_EQ(korvane_context_get_interrupt_callback(context, &callback, &user_data), STATUS_OK);
    EXPECT_EQ(user_data, nullptr);
    interrupt = 5;
    EXPECT_EQ(callback(&interrupt, nullptr), STATUS_OK);
    EXPECT_EQ(interrupt, 0);
    korvane_context_delete(context);
}

TEST(Context, RefusesNull)
{
    korvane_message_callback_t message_callback = nullptr;
    korvane_interrupt_callback_t interrupt_callback = nullptr;
    void *user_data = nullptr;
    EXPECT_EQ(korvane_context_set_message_callback(nullptr, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_context_get_message_callback(nullptr, &message_callback, &user_data), STATUS_ERROR);
    EXPECT_EQ(korvane_context_set_interrupt_callback(nullptr, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_context_get_interrupt_callback(nullptr, &interrupt_callback, &user_data), STATUS_ERROR);
    korvane_context_delete(nullptr);
    korvane_context_delete_attached_object(nullptr, &user_data);
}

TEST(Context, IdentifiesItselfInThreeLines)
{
    korvane_context_t *context = korvane_context_new();
    korvane_status_t status = STATUS_ERROR;
    const std::string banner = printed_by([&] { status = korvane_context_print_ident(context); });
    EXPECT_EQ(status, STATUS_OK);
    std::istringstream lines(banner);
    std::vector<std::string> contents;
    const std::string opening = "$KorvaneAPI: ", closing = " $";
    for (std::string line; std::getline(lines, line);) {
        ASSERT_TRUE(line.starts_with(opening) && line.ends_with(closing)) << line;
        contents.push_back(line.substr(opening.size(), line.size() - opening.size() - closing.size()));
    }
    ASSERT_EQ(contents.size(), 3u);
    EXPECT_NE(banner.back(), '\n');
    EXPECT_TRUE(contents[0].starts_with("1.4.0 (August, 2011)"));
    char month[4] = "";
    int day = 0, year = 0, hour = 0, minute = 0, second = 0, length = 0;
    EXPECT_EQ(std::sscanf(contents[2].c_str(), "Compiled %3[A-Za-z] %2d %4d %2d:%2d:%2d GMT%n", month, &day,
                  &year, &hour, &minute, &second, &length),
        6);
    EXPECT_EQ(static_cast<std::size_t>(length), contents[2].size()) << contents[2];
    korvane_context_delete(context);
}

TEST(Context, ReleasesAttachedObjectsNewestFirst)
{
    std::vector<int> order;
    Released objects[] = {{&order, 1}, {&order, 2}, {&order, 3}};
    korvane_context_t *context = korvane_context_new();
    for (Released &object : objects)
        EXPECT_EQ(korvane_context_attach_object(context, &object, note_release), STATUS_OK);
    korvane_context_delete(context);
    EXPECT_EQ(order, (std::vector<int>{3, 2, 1}));
}

TEST(Context, DetachesFromEveryPlaceOfTheListOnce)
{
    for (int detached = 1; detached <= 3; ++detached) {
        std::vector<int> order;
        std::vector<int> expected{3, 2, 1};
        std::erase(expected, detached);
        Released objects[] = {{&order, 1}, {&order, 2}, {&order, 3}};
        korvane_context_t *context = korvane_context_new();
        for (Released &object : objects)
            korvane_context_attach_object(context, &object, note_release);
        korvane_context_delete_attached_object(context, &objects[detached - 1]);
        korvane_context_delete_attached_object(context, &objects[detached - 1]);
        korvane_context_delete_attached_object(context, &order);
        korvane_context_delete(context);
        EXPECT_EQ(order, expected);
    }
}

TEST(Context, AnObjectAttachedTwiceIsDetachedOnceByOneCall)
{
    std::vector<int> order;
    Released object{&order, 1};
    korvane_context_t *context = korvane_context_new();
    korvane_context_attach_object(context, &object, note_release);
    korvane_context_attach_object(context, &object, note_release);
    korvane_context_delete_attached_object(context, &object);
    korvane_context_delete(context);
    EXPECT_EQ(order, (std::vector<int>{1}));
}

struct Chained {
    korvane_context_t *context;
    std::vector<int> *order;
    int number;
    Chained *detaches;
};

void release_and_detach(void *object)
{
    auto *chained = static_cast<Chained *>(object);
    chained->order->push_back(chained->number);
    korvane_context_delete_attached_object(chained->context, chained->detaches);
}

TEST(Context, AReleaseFunctionMayDetachAnyOtherObject)
{
    std::vector<int> order;
    korvane_context_t *context = korvane_context_new();
    Chained objects[4];
    for (int i = 0; i < 4; ++i)
        objects[i] = {context, &order, i + 1, nullptr};
    objects[3].detaches = &objects[2]; // the next one of the walk
    objects[1].detaches = &objects[3]; // one that is gone
    for (Chained &object : objects)
        korvane_context_attach_object(context, &object, release_and_detach);
    korvane_context_delete(context);
    EXPECT_EQ(order, (std::vector<int>{4, 2, 1}));
}

TEST(Context, LookupOfAnObjectsContext)
{
    korvane_context_t *context = korvane_context_new();
    korvane_context_t *found = context;
    EXPECT_EQ(korvane_mesh_get_context(nullptr, &found), STATUS_ERROR);
    EXPECT_EQ(found, nullptr);
    found = context;
    EXPECT_EQ(korvane_cad_get_context(nullptr, &found), STATUS_ERROR);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(korvane_mesh_get_context(nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_context(nullptr, nullptr), STATUS_ERROR);
    korvane_context_delete(context);
}

TEST(Context, SurvivesFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        fault.arm();
        korvane_context_t *context = korvane_context_new();
        EXPECT_EQ(context == nullptr, fault.disarm());
        korvane_context_delete(context);
    });
    oom_sweep([](AllocationFault &fault) {
        std::vector<int> order;
        Released objects[] = {{&order, 1}, {&order, 2}};
        korvane_context_t *context = korvane_context_new();
        korvane_context_attach_object(context, &objects[0], note_release);
        fault.arm();
        EXPECT_EQ(korvane_context_attach_object(context, &objects[1], note_release), STATUS_OK);
        const bool failed = fault.disarm();
        korvane_context_delete(context);
        EXPECT_EQ(order, failed ? std::vector<int>{1} : (std::vector<int>{2, 1}));
    });
    oom_sweep([](AllocationFault &fault) {
        RecordingContext context;
        fault.arm();
        const korvane_status_t sent = korvane_context_send_message(context, 4, "text");
        const bool failed = fault.disarm();
        EXPECT_EQ(sent, failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_EQ(context.messages.size(), failed ? 0u : 1u);
    });
    oom_sweep([](AllocationFault &fault) {
        RecordingContext context;
        fault.arm();
        const korvane_status_t sent = korvane_context_print_ident(context);
        EXPECT_EQ(sent, fault.disarm() ? STATUS_ERROR : STATUS_OK);
    });
}

} // namespace
} // namespace korvane::testing
