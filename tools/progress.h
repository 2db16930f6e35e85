// What only a terminal gets: a progress bar on standard error for long work, and colour.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace korvane::tools {

class Progress {
  public:
    Progress(std::string what, int64_t steps);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    void advance()
    {
        if (++done % steps_per_look == 0 && on_terminal)
            look();
    }

  private:
    static constexpr int64_t steps_per_look = 4096;

    void look();

    std::string title;
    int64_t total;
    int64_t done = 0;
    bool on_terminal;
    bool shown = false;
    std::chrono::steady_clock::time_point next_look; // the first after a second
};

enum class Colour { good, bad };

/// The text in colour where standard output is a terminal and NO_COLOR is not set.
std::string coloured(const std::string &text, Colour colour);

} // namespace korvane::tools
