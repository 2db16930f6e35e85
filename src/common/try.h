// The only control-flow macro: returns from the enclosing function with a status that is not STATUS_OK.
#pragma once

#include <korvane.h>

#define TRY(expression)                                                                                      \
    do {                                                                                                     \
        if (const korvane_status_t try_status = (expression); try_status != STATUS_OK)                       \
            return try_status;                                                                               \
    } while (false)
