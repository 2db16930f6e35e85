/* For clients in C: conditions that are printed and counted where they do not hold. */
#ifndef KORVANE_TESTS_CHECK_H
#define KORVANE_TESTS_CHECK_H

#include <stdio.h>

static int failures = 0;

#define CHECK(condition)                                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            printf("%s:%d: %s\n", __FILE__, __LINE__, #condition);                                           \
            ++failures;                                                                                      \
        }                                                                                                    \
    } while (0)

#endif
