#include "progress.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace korvane::tools {

namespace {

using namespace std::chrono_literals;

constexpr auto clear_line = "\r\033[K";

auto next_look = std::chrono::steady_clock::now() + 1s; // the first when the command has lasted a second

/// Empty if it is not set.
std::string variable(const char *name)
{
    const char *const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// True for a terminal that knows more than to print.
bool is_capable_terminal(int descriptor)
{
    return isatty(descriptor) != 0 && variable("TERM") != "dumb";
}

/// The end of a text that is too long for a line of 80 beside the bar; UTF-8 characters stay whole.
std::string shortened(const std::string &text)
{
    constexpr std::size_t most = 30;
    if (text.size() <= most)
        return text;
    std::size_t begin = text.size() - most + 3;
    while (begin < text.size() && (static_cast<unsigned char>(text[begin]) & 0xC0U) == 0x80U)
        ++begin;
    return std::string("...").append(text, begin);
}

} // namespace

Progress::Progress(const std::string &what, int64_t steps, bool quiet)
    : title(shortened(what)), total(std::max<int64_t>(steps, 1)),
      wanted(!quiet && is_capable_terminal(STDERR_FILENO))
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
    if (!is_capable_terminal(STDOUT_FILENO) || !variable("NO_COLOR").empty())
        return text;
    return (colour == Colour::good ? "\033[32m" : "\033[31m") + text + "\033[0m";
}

} // namespace korvane::tools
