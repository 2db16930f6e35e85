// The message record.
#pragma once

#include <korvane.h>

#include "common/array.h"

struct korvane_message_s {
    korvane_context_t *context; // not owned, never looked at
    int32_t number;
    korvane::Array<char> description; // zero-terminated
    korvane::Array<char> sender;      // zero-terminated
    int32_t integer_data_count;
    korvane::Array<int32_t> integer_data;
    int32_t real_data_count;
    korvane::Array<double> real_data;
};
