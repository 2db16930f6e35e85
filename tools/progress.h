// What only a terminal gets: a progress bar on standard error for long work, and colour.
#pragma once

#include <cstdint>
#include <string>

namespace korvane::tools {

/// Shown once the command has lasted a second, and taken away at the end of the work.
class Progress {
  public:
    Progress(const std::string &what, int64_t steps, bool quiet = false);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    void advance()
    {
        if (++done % steps_per_look == 0 && wanted)
            look();
    }

  private:
    static constexpr int64_t steps_per_look = 4096;

    void look();

    std::string title;
    int64_t total;
    int64_t done = 0;
    bool wanted;
    bool shown = false;
};

enum class Colour { good, bad };

/// The text in colour where standard output is a terminal and NO_COLOR is not set.
std::string coloured(const std::string &text, Colour colour);

} // namespace korvane::tools
