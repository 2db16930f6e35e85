#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace korvane::tools {

namespace {

using namespace std::chrono_literals;

constexpr auto clear_line = "\r\033[K";

} // namespace

Progress::Progress(std::string what, int64_t steps)
    : title(std::move(what)), total(std::max<int64_t>(steps, 1)), on_terminal(isatty(STDERR_FILENO) != 0),
      next_look(std::chrono::steady_clock::now() + 1s)
{}

Progress::~Progress()
{
    if (shown)
        std::fputs(clear_line, stderr);
}

void Progress::look()
{
    const auto now = std::chrono::steady_clock::now();
    if (now < next_look)
        return;
    next_look = now + 100ms;
    constexpr int64_t width = 40;
    const int64_t filled = std::min(width, width * done / total);
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(width - filled), '.');
    std::fprintf(stderr, "%s%s [%s] %3lld %%", clear_line, title.c_str(), bar.c_str(),
        static_cast<long long>(std::min<int64_t>(100, 100 * done / total)));
    std::fflush(stderr);
    shown = true;
}

std::string coloured(const std::string &text, Colour colour)
{
    const char *const refusal = std::getenv("NO_COLOR");
    if (isatty(STDOUT_FILENO) == 0 || (refusal != nullptr && *refusal != '\0'))
        return text;
    return (colour == Colour::good ? "\033[32m" : "\033[31m") + text + "\033[0m";
}

} // namespace korvane::tools
