// The command, run as a user runs it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>

namespace korvane::tests {

namespace fs = std::filesystem;

struct Outcome {
    int exit_status;
    std::string output;
    std::string errors;
};

inline std::string contents(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs the command in a fresh folder of its own.
class Command : public ::testing::Test {
  protected:
    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "korvane-command-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    Outcome run(const std::string &arguments, const std::string &redirection = "") const
    {
        const fs::path output = folder / "standard-output", errors = folder / "standard-error";
        const std::string line = "cd '" + folder.string() + "' && '" KORVANE_COMMAND "' " + arguments + " >" +
                                 (redirection.empty() ? output.string() : redirection) + " 2>" +
                                 errors.string();
        const int status = std::system(line.c_str());
        return {WEXITSTATUS(status), contents(output), contents(errors)};
    }

    void write(const std::string &name, const std::string &text) const
    {
        std::ofstream(folder / name, std::ios::binary) << text;
    }

    std::vector<std::string> files_besides(const std::vector<std::string> &known) const
    {
        std::vector<std::string> found;
        for (const auto &entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (std::find(known.begin(), known.end(), name) == known.end() && !name.starts_with("standard-"))
                found.push_back(name);
        }
        return found;
    }

    fs::path folder;
    const std::string sample = KORVANE_EXAMPLE_MESHES "/spindle.mesh";
};

inline bool holds(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

} // namespace korvane::tests
