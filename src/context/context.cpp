// The context: two callbacks and the list of attached objects.
//
// The record and its list are released by korvane_context_delete only; every report of the library passes
// through korvane_context_send_message.
#include "context/context.h"

#include <cstdio>

#include "common/memory.h"
#include "context/default_callbacks.h"
#include "context/identification.h"

namespace korvane {

namespace {

/// Meshes, size maps and CAD models have their context as first field, so that one operation serves them all.
korvane_status_t get_context_of(const void *object, korvane_context_t **context)
{
    if (context == nullptr)
        return STATUS_ERROR;
    *context = nullptr;
    if (object == nullptr)
        return STATUS_ERROR;
    *context = *static_cast<korvane_context_t *const *>(object);
    return STATUS_OK;
}

} // namespace

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_context_t *korvane_context_new(void)
{
    Owned<korvane_context_t> context = create_owned<korvane_context_t>();
    Owned<AttachedObjects> attached_objects = create_owned<AttachedObjects>();
    if (!context || !attached_objects)
        return nullptr;
    *context = {attached_objects.release(), never_interrupt, nullptr, print_message, stdout};
    return context.release();
}

void korvane_context_delete(korvane_context_t *context)
{
    if (context == nullptr)
        return;
    release_all(*context->attached_objects);
    destroy(context->attached_objects);
    destroy(context);
}

korvane_status_t korvane_context_set_message_callback(
    korvane_context_t *context, korvane_message_callback_t callback, void *user_data)
{
    if (context == nullptr)
        return STATUS_ERROR;
    context->message_callback = callback == nullptr ? ignore_message : callback;
    context->message_user_data = callback == nullptr ? nullptr : user_data;
    return STATUS_OK;
}

korvane_status_t korvane_context_get_message_callback(
    const korvane_context_t *context, korvane_message_callback_t *callback, void **user_data)
{
    if (context == nullptr)
        return STATUS_ERROR;
    *callback = context->message_callback;
    *user_data = context->message_user_data;
    return STATUS_OK;
}

korvane_status_t korvane_context_set_interrupt_callback(
    korvane_context_t *context, korvane_interrupt_callback_t callback, void *user_data)
{
    if (context == nullptr)
        return STATUS_ERROR;
    context->interrupt_callback = callback == nullptr ? never_interrupt : callback;
    context->interrupt_user_data = callback == nullptr ? nullptr : user_data;
    return STATUS_OK;
}

korvane_status_t korvane_context_get_interrupt_callback(
    const korvane_context_t *context, korvane_interrupt_callback_t *callback, void **user_data)
{
    if (context == nullptr)
        return STATUS_ERROR;
    *callback = context->interrupt_callback;
    *user_data = context->interrupt_user_data;
    return STATUS_OK;
}

korvane_status_t korvane_context_send_message(
    korvane_context_t *context, int32_t number, const char *description)
{
    korvane_message_t *message = korvane_message_new(context, number, description, "Korvane");
    if (message == nullptr)
        return STATUS_ERROR;
    context->message_callback(message, context->message_user_data);
    korvane_message_delete(message);
    return STATUS_OK;
}

korvane_status_t korvane_context_print_ident(korvane_context_t *context)
{
    return korvane_context_send_message(context, 0, identification_banner);
}

korvane_status_t korvane_context_attach_object(
    korvane_context_t *context, void *object, korvane_object_release_t release)
{
    // Kept on purpose: a failure is no error, because the object then merely is the client's to delete.
    static_cast<void>(try_attach(*context->attached_objects, object, release));
    return STATUS_OK;
}

void korvane_context_delete_attached_object(korvane_context_t *context, void *object)
{
    if (context == nullptr)
        return;
    detach(*context->attached_objects, object);
}

korvane_status_t korvane_mesh_get_context(const korvane_mesh_t *mesh, korvane_context_t **context)
{
    return get_context_of(mesh, context);
}

korvane_status_t korvane_cad_get_context(const korvane_cad_t *cad, korvane_context_t **context)
{
    return get_context_of(cad, context);
}

} // extern "C"
