#include "whole_file.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>

#include <unistd.h>

#include "session.h"

namespace korvane::tools {

namespace {

namespace fs = std::filesystem;

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP};

std::array<char, PATH_MAX> draft_path; // what an ending signal removes
volatile std::sig_atomic_t has_draft = 0;

void remove_draft_and_end(int signal_number)
{
    if (has_draft != 0)
        unlink(draft_path.data());
    std::signal(signal_number, SIG_DFL);
    std::raise(signal_number);
}

/// A signal that is ignored, as by nohup, stays so. A limit on the size of files is no signal but a problem,
/// like a full disk.
void watch_signals()
{
    std::signal(SIGXFSZ, SIG_IGN);
    for (const int number : ending_signals)
        if (std::signal(number, remove_draft_and_end) == SIG_IGN)
            std::signal(number, SIG_IGN);
}

/// A new name in the folder of a file, with its extension; the file of that name goes with the object.
class Draft {
  public:
    explicit Draft(const fs::path &target)
        : path(target.parent_path() / (".korvane-" + std::to_string(getpid()) + "-" + target.stem().string() +
                                          target.extension().string()))
    {
        const std::string name = path.string();
        if (name.size() >= draft_path.size())
            return;
        std::memcpy(draft_path.data(), name.c_str(), name.size() + 1);
        has_draft = 1;
        watch_signals();
    }
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;
    ~Draft()
    {
        std::error_code ignored;
        fs::remove(path, ignored);
        has_draft = 0;
    }

    const fs::path path;
};

} // namespace

bool write_whole_file(const std::string &file, const std::function<bool(const std::string &path)> &write)
{
    std::error_code problem;
    if (fs::is_directory(file, problem))
        return Session::complain(file, std::strerror(EISDIR));
    if (fs::exists(file, problem) && !fs::is_regular_file(file, problem))
        return write(file);
    const fs::path target = fs::is_symlink(file, problem) ? fs::canonical(file, problem) : fs::path(file);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        return Session::complain(file, std::strerror(errno));
    const Draft draft(target);
    if (!write(draft.path.string()))
        return false;
    problem.clear();
    fs::rename(draft.path, target, problem);
    if (problem)
        Session::complain(file, problem.message());
    return !problem;
}

} // namespace korvane::tools
