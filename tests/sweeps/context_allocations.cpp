// Failing allocations in contexts, messages and tag systems.
#include <algorithm>

#include "sweeps/allocation_sweep.h"

namespace korvane::testing {

namespace {

/// The object is attached, or it is not and nobody is told.
void sweep_attach_object(AllocationFault &fault)
{
    int releases = 0;
    korvane_context_t *context = korvane_context_new();
    fault.arm();
    EXPECT_EQ(
        korvane_context_attach_object(context, &releases, [](void *count) { ++*static_cast<int *>(count); }),
        STATUS_OK);
    const bool failed = fault.disarm();
    korvane_context_delete(context);
    EXPECT_EQ(releases, failed ? 0 : 1);
}

/// The callback is not called; afterwards it is called once.
template <class Send>
auto sweep_message(Send send)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        fault.arm();
        const korvane_status_t status = send(objects);
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_EQ(objects.messages.empty(), failed);
        objects.messages.clear();
        EXPECT_EQ(send(objects), STATUS_OK);
        EXPECT_FALSE(objects.messages.empty());
    };
}

/// The old values are gone and the count is stale, but nothing is read that is not there.
template <class Value>
auto sweep_payload(korvane_status_t (*set)(korvane_message_t *, const Value *, int32_t),
    korvane_status_t (*get_count)(const korvane_message_t *, int32_t *),
    korvane_status_t (*get)(const korvane_message_t *, int32_t, int32_t, Value *))
{
    return [=](AllocationFault &fault) {
        const Objects objects;
        const std::array<Value, 2> values = {7, 8};
        fault.arm();
        const korvane_status_t status = set(objects.message, values.data(), 2);
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_OK);
        int32_t count = 0;
        std::array<Value, payload_count> read{};
        EXPECT_EQ(get_count(objects.message, &count), STATUS_OK);
        EXPECT_EQ(count, failed ? payload_count : 2);
        EXPECT_EQ(get(objects.message, 1, count, read.data()), failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_EQ(set(objects.message, values.data(), 2), STATUS_OK);
        EXPECT_EQ(get(objects.message, 1, 2, read.data()), STATUS_OK);
        EXPECT_TRUE(std::equal(values.begin(), values.end(), read.begin()));
    };
}

/// A part of the definition can stay, under a number that is not handed out again.
void sweep_composite_tag(AllocationFault &fault)
{
    const Objects objects;
    const std::array<int32_t, 3> tags = {1, 2, 3};
    int32_t composite = -1;
    fault.arm();
    const korvane_status_t status =
        korvane_tag_system_get_composite_tag(objects.tag_system, tags.data(), 3, &composite);
    if (fault.disarm()) {
        EXPECT_EQ(status, STATUS_NOMEM);
        EXPECT_EQ(composite, 0);
        EXPECT_EQ(
            korvane_tag_system_get_composite_tag(objects.tag_system, tags.data(), 3, &composite), STATUS_OK);
    }
    std::vector<int32_t> definition(
        static_cast<std::size_t>(korvane_tag_system_get_buffer_size(objects.tag_system)) / 4);
    int32_t count = 0;
    korvane_tag_system_get_composite_tag_defintion(objects.tag_system, composite, &count, definition.data());
    definition.resize(static_cast<std::size_t>(count));
    EXPECT_EQ(definition, (std::vector<int32_t>{2, 1, 3}));
    int32_t again = 0;
    korvane_tag_system_get_composite_tag(objects.tag_system, tags.data(), 3, &again);
    EXPECT_EQ(again, composite);
}

} // namespace

AllocationEntries context_allocations()
{
    return {
        {"korvane_context_new", sweep_constructor([](Objects &) { return korvane_context_new(); })},
        {"korvane_context_attach_object", sweep_attach_object},
        {"korvane_context_send_message",
            sweep_message([](Objects &o) { return korvane_context_send_message(o.context, -3, "text"); })},
        {"korvane_context_print_ident",
            sweep_message([](Objects &o) { return korvane_context_print_ident(o.context); })},
        {"korvane_message_new", sweep_constructor([](Objects &o) {
             return korvane_message_new(o.context, 1, "text", "sender");
         })},
        {"korvane_message_set_integer_data",
            sweep_payload(korvane_message_set_integer_data, korvane_message_get_integer_data_count,
                korvane_message_get_integer_data)},
        {"korvane_message_set_real_data",
            sweep_payload(korvane_message_set_real_data, korvane_message_get_real_data_count,
                korvane_message_get_real_data)},
        {"korvane_tag_system_new", sweep_constructor([](Objects &) { return korvane_tag_system_new(3); })},
        {"korvane_tag_system_clone",
            sweep_constructor([](Objects &o) { return korvane_tag_system_clone(o.tag_system); })},
        {"korvane_tag_system_add_base_tag", sweep_status(STATUS_NOMEM, Remainder::part,
                                                [](Objects &o) {
                                                    for (int32_t tag = 100; tag < 140; ++tag)
                                                        if (korvane_tag_system_add_base_tag(
                                                                o.tag_system, tag) != STATUS_OK)
                                                            return korvane_status_t{STATUS_NOMEM};
                                                    return korvane_status_t{STATUS_OK};
                                                })},
        {"korvane_tag_system_get_composite_tag", sweep_composite_tag},
    };
}

} // namespace korvane::testing
