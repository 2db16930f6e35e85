// Arguments of the functions of contexts, messages and tag systems.
#include "sweeps/probe.h"

namespace korvane::testing {

Rows context_rows()
{
    return {
        ALLOCATING_ROW(korvane_context_new),
        ROW(korvane_context_delete, taken(o.spare_context)),
        ROW(korvane_context_set_message_callback, handle(o.context), nullable(note_message), nullable(&o)),
        ROW(korvane_context_get_message_callback, handle(o.context),
            trusted_output<korvane_message_callback_t>(), trusted_output<void *>()),
        ROW(korvane_context_set_interrupt_callback, handle(o.context), nullable(some_interrupt),
            nullable(&o)),
        ROW(korvane_context_get_interrupt_callback, handle(o.context),
            trusted_output<korvane_interrupt_callback_t>(), trusted_output<void *>()),
        ALLOCATING_ROW(korvane_context_send_message, given(o.context), any(-1), given("text")),
        ALLOCATING_ROW(korvane_context_print_ident, given(o.context)),
        ALLOCATING_ROW(korvane_context_attach_object, given(o.context), nullable(&o), given(note_release)),
        ROW(korvane_context_delete_attached_object, nullable(o.context), nullable(&o)),
        ROW(korvane_mesh_get_context, handle(o.mesh),
            output<korvane_context_t *>().zero_for(Cause::null_handle)),
        ROW(korvane_cad_get_context, handle(o.cad),
            output<korvane_context_t *>().zero_for(Cause::null_handle)),
    };
}

namespace {

/// A range of a payload.
Argument<int32_t> first()
{
    return refused(2, {INT32_MIN, -1, 0});
}

Argument<int32_t> last()
{
    return refused(4, {payload_count + 1, INT32_MAX});
}

/// Ends of ranges from 4 on.
Argument<int32_t> last_before_first()
{
    return given(3).also(STATUS_OK, {INT32_MIN, -1, 0, 1});
}

Argument<int32_t> payload_size()
{
    return refused(3, {INT32_MIN, -1}).also(STATUS_OK, {0});
}

} // namespace

Rows message_rows()
{
    return {
        ALLOCATING_ROW(korvane_message_new, nullable(o.context), any(-1), given("text"), given("sender")),
        ROW(korvane_message_delete, taken(o.spare_message)),
        ROW(korvane_message_get_number, handle(o.message), trusted_output<int32_t>()),
        ROW(korvane_message_get_description, handle(o.message), trusted_output<const char *>()),
        ROW(korvane_message_get_sender, handle(o.message), trusted_output<const char *>()),
        ROW(korvane_message_get_integer_data_count, handle(o.message), output<int32_t>()),
        ROW(korvane_message_get_real_data_count, handle(o.message), output<int32_t>()),
        ALLOCATING_ROW(
            korvane_message_set_integer_data, handle(o.message), input(some_integers.data()), payload_size()),
        ROW(korvane_message_set_integer_data, handle(o.message), given<const int32_t *>(nullptr), given(0)),
        ALLOCATING_ROW(
            korvane_message_set_real_data, handle(o.message), input(some_reals.data()), payload_size()),
        ROW(korvane_message_set_real_data, handle(o.message), given<const double *>(nullptr), given(0)),
        ROW(korvane_message_get_integer_data, handle(o.message), first(), last(), output<int32_t>(3)),
        ROW(korvane_message_get_integer_data, handle(o.message), given(4), last_before_first(),
            optional_output<int32_t>(3).silent()),
        ROW(korvane_message_get_real_data, handle(o.message), first(), last(), output<double>(3)),
        ROW(korvane_message_get_real_data, handle(o.message), given(4), last_before_first(),
            optional_output<double>(3).silent()),
    };
}

namespace {

/// The size of the buffer as a status, because that is what rows expect of an integer.
korvane_status_t has_buffer_size(const korvane_tag_system_t *tag_system)
{
    return korvane_tag_system_get_buffer_size(tag_system) >= 8 ? STATUS_OK : STATUS_ERROR;
}

} // namespace

Rows tag_rows()
{
    constexpr int32_t new_tag = 77;
    Rows rows = {
        ALLOCATING_ROW(
            korvane_tag_system_new, refused(3, {INT32_MIN, -3, INT32_MAX}).also(STATUS_OK, {-2, -1, 0})),
        ALLOCATING_ROW(korvane_tag_system_clone, handle(o.tag_system)),
        ROW(korvane_tag_system_delete, taken(o.spare_tag_system)),
        ALLOCATING_ROW(korvane_tag_system_add_base_tag, given(o.tag_system), any(new_tag)),
        ALLOCATING_ROW(korvane_tag_system_get_composite_tag, given(o.tag_system), given(some_integers.data()),
            given(3).also(STATUS_OK, {INT32_MIN, -1, 0}).also(STATUS_NOMEM, {INT32_MAX}),
            trusted_output<int32_t>().zero_for(Cause::bad_value)),
        ROW(korvane_tag_system_get_composite_tag, given(o.tag_system), given<const int32_t *>(nullptr),
            given(0), trusted_output<int32_t>()),
        ROW(korvane_tag_system_get_composite_tag_defintion, handle(o.tag_system), any(4), output<int32_t>(),
            output<int32_t>(2)),
        ROW(korvane_tag_system_get_composite_tag_list, handle(o.tag_system), output<int32_t>(),
            output<int32_t>(1)),
        ROW(has_buffer_size, given(o.tag_system)),
    };
    rows.back().function = "korvane_tag_system_get_buffer_size";
    return rows;
}

} // namespace korvane::testing
