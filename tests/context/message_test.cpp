#include <array>
#include <string>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

class Message : public ::testing::Test {
  protected:
    void TearDown() override { korvane_message_delete(message); }

    int32_t integer_count() const
    {
        int32_t count = -1;
        EXPECT_EQ(korvane_message_get_integer_data_count(message, &count), STATUS_OK);
        return count;
    }

    int32_t real_count() const
    {
        int32_t count = -1;
        EXPECT_EQ(korvane_message_get_real_data_count(message, &count), STATUS_OK);
        return count;
    }

    korvane_message_t *message = korvane_message_new(nullptr, -7, "a text", "a sender");
};

TEST_F(Message, HoldsCopiesOfItsTexts)
{
    std::string description = "description";
    std::string sender = "sender";
    korvane_message_t *other = korvane_message_new(nullptr, 3, description.c_str(), sender.c_str());
    description[0] = sender[0] = 'X';
    int32_t number = 0;
    const char *text = nullptr;
    EXPECT_EQ(korvane_message_get_number(other, &number), STATUS_OK);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(korvane_message_get_description(other, &text), STATUS_OK);
    EXPECT_STREQ(text, "description");
    EXPECT_EQ(korvane_message_get_sender(other, &text), STATUS_OK);
    EXPECT_STREQ(text, "sender");
    korvane_message_delete(other);
}

TEST_F(Message, AnEmptyDescriptionIsOneByte)
{
    korvane_message_t *empty = korvane_message_new(nullptr, 0, "", "");
    const char *text = nullptr;
    EXPECT_EQ(korvane_message_get_description(empty, &text), STATUS_OK);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text[0], '\0');
    korvane_message_delete(empty);
}

TEST_F(Message, StartsWithoutPayload)
{
    EXPECT_EQ(integer_count(), 0);
    EXPECT_EQ(real_count(), 0);
    int32_t value = 5;
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 0, nullptr), STATUS_OK);
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 1, &value), STATUS_ERROR);
    EXPECT_EQ(value, 5);
}

TEST_F(Message, ReadsIntegerRanges)
{
    const std::array<int32_t, 5> values{10, 20, 30, 40, 50};
    ASSERT_EQ(korvane_message_set_integer_data(message, values.data(), 5), STATUS_OK);
    EXPECT_EQ(integer_count(), 5);
    std::array<int32_t, 5> read{};
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 5, read.data()), STATUS_OK);
    EXPECT_EQ(read, values);
    read = {};
    EXPECT_EQ(korvane_message_get_integer_data(message, 2, 4, read.data()), STATUS_OK);
    EXPECT_EQ(read, (std::array<int32_t, 5>{20, 30, 40, 0, 0}));
    read = {};
    EXPECT_EQ(korvane_message_get_integer_data(message, 0, 3, read.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 6, read.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data(message, 4, 3, read.data()), STATUS_OK);
    EXPECT_EQ(read, (std::array<int32_t, 5>{}));
    EXPECT_EQ(korvane_message_get_integer_data(message, 2, 3, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data(message, 5, INT32_MIN, nullptr), STATUS_OK);
    EXPECT_EQ(korvane_message_get_integer_data(message, INT32_MAX, 5, nullptr), STATUS_OK);
    EXPECT_EQ(korvane_message_get_integer_data(message, INT32_MIN, INT32_MAX, read.data()), STATUS_ERROR);
}

TEST_F(Message, ReadsRealRanges)
{
    const std::array<double, 3> values{0.5, -1.5, 2.5};
    ASSERT_EQ(korvane_message_set_real_data(message, values.data(), 3), STATUS_OK);
    EXPECT_EQ(real_count(), 3);
    double value = 0;
    EXPECT_EQ(korvane_message_get_real_data(message, 3, 3, &value), STATUS_OK);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(korvane_message_get_real_data(message, 1, 4, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_real_data(message, 1, 2, nullptr), STATUS_ERROR);
}

TEST_F(Message, AcceptsAnEmptyPayloadAndRefusesBadOnes)
{
    const std::array<int32_t, 2> values{1, 2};
    ASSERT_EQ(korvane_message_set_integer_data(message, values.data(), 2), STATUS_OK);
    EXPECT_EQ(korvane_message_set_integer_data(message, nullptr, 2), STATUS_ERROR);
    EXPECT_EQ(korvane_message_set_integer_data(message, values.data(), -1), STATUS_ERROR);
    EXPECT_EQ(integer_count(), 2);
    int32_t second = 0;
    EXPECT_EQ(korvane_message_get_integer_data(message, 2, 2, &second), STATUS_OK);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(korvane_message_set_integer_data(message, nullptr, 0), STATUS_OK);
    EXPECT_EQ(integer_count(), 0);
}

TEST_F(Message, ReplacesPayloads)
{
    const std::array<double, 3> many{1, 2, 3};
    const double one = 9;
    EXPECT_EQ(korvane_message_set_real_data(message, many.data(), 3), STATUS_OK);
    EXPECT_EQ(korvane_message_set_real_data(message, &one, 1), STATUS_OK);
    EXPECT_EQ(real_count(), 1);
    double value = 0;
    EXPECT_EQ(korvane_message_get_real_data(message, 1, 1, &value), STATUS_OK);
    EXPECT_EQ(value, 9);
}

TEST_F(Message, HoldsBothPayloadsSideBySide)
{
    const std::array<int32_t, 2> integers{1, 2};
    const std::array<double, 3> reals{0.5, 1.5, 2.5};
    ASSERT_EQ(korvane_message_set_integer_data(message, integers.data(), 2), STATUS_OK);
    ASSERT_EQ(korvane_message_set_real_data(message, reals.data(), 3), STATUS_OK);
    ASSERT_EQ(korvane_message_set_real_data(message, reals.data(), 1), STATUS_OK);
    EXPECT_EQ(integer_count(), 2);
    EXPECT_EQ(real_count(), 1);
    std::array<int32_t, 2> read{};
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 2, read.data()), STATUS_OK);
    EXPECT_EQ(read, integers);
}

TEST_F(Message, RefusesNull)
{
    int32_t count = 0;
    double real = 0;
    const char *text = nullptr;
    korvane_message_delete(nullptr);
    EXPECT_EQ(korvane_message_get_number(nullptr, &count), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_description(nullptr, &text), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_sender(nullptr, &text), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data_count(nullptr, &count), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data_count(message, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_real_data_count(nullptr, &count), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_real_data_count(message, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_message_set_integer_data(nullptr, &count, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_message_set_real_data(nullptr, &real, 1), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_integer_data(nullptr, 1, 0, &count), STATUS_ERROR);
    EXPECT_EQ(korvane_message_get_real_data(nullptr, 1, 0, &real), STATUS_ERROR);
}

TEST_F(Message, CreationSurvivesFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        fault.arm();
        korvane_message_t *made = korvane_message_new(nullptr, 0, "text", "sender");
        EXPECT_EQ(made == nullptr, fault.disarm());
        korvane_message_delete(made);
    });
}

TEST_F(Message, AFailedSetterLeavesAStaleCountOverAnEmptyPayload)
{
    const std::array<int32_t, 4> values{1, 2, 3, 4};
    ASSERT_EQ(korvane_message_set_integer_data(message, values.data(), 2), STATUS_OK);
    AllocationFault fault(1, Failure::transient);
    fault.arm();
    EXPECT_EQ(korvane_message_set_integer_data(message, values.data(), 4), STATUS_NOMEM);
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(integer_count(), 2);
    std::array<int32_t, 2> read{};
    EXPECT_EQ(korvane_message_get_integer_data(message, 1, 2, read.data()), STATUS_ERROR);
    EXPECT_EQ(korvane_message_set_integer_data(message, values.data(), 4), STATUS_OK);
    EXPECT_EQ(integer_count(), 4);
}

} // namespace
} // namespace korvane::testing
