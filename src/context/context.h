// The context record, whose fields no other file writes.
#pragma once

#include "context/attached_objects.h"

struct korvane_context_s {
    korvane::AttachedObjects *attached_objects; // owned
    korvane_interrupt_callback_t interrupt_callback;
    void *interrupt_user_data;
    korvane_message_callback_t message_callback;
    void *message_user_data;
};
