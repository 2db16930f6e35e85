// Locales that write numbers with a decimal comma, which nothing of the library may follow.
#pragma once

#include <clocale>
#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <locale.h>

namespace korvane::testing {

/// Does something while the process, and then while this thread alone, has such a locale. False where the
/// machine has none.
[[nodiscard]] inline bool try_with_decimal_comma(const std::function<void()> &action)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char *name = nullptr;
    for (const char *each : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE"})
        if ((name = std::setlocale(LC_ALL, each)) != nullptr)
            break;
    if (name == nullptr)
        return false;
    const locale_t comma = newlocale(LC_ALL_MASK, name, locale_t{});
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    action();
    std::setlocale(LC_ALL, before.c_str());

    const locale_t used = uselocale(comma);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    action();
    uselocale(used);
    freelocale(comma);
    return true;
}

} // namespace korvane::testing
