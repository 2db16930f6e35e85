// A folder for the files of one test, and whole files as strings.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace korvane::testing {

inline std::string read_file(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Made when it is constructed, removed with all that is in it when it is destroyed. Preferably in memory.
class TemporaryFolder {
  public:
    TemporaryFolder()
    {
        namespace fs = std::filesystem;
        const fs::path shared_memory = "/dev/shm";
        const bool in_memory = access(shared_memory.c_str(), W_OK | X_OK) == 0;
        std::string pattern = (in_memory ? shared_memory : fs::temp_directory_path()) / "korvane-XXXXXX";
        EXPECT_NE(mkdtemp(pattern.data()), nullptr);
        path = pattern;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] std::string name(const std::string &file) const { return path / file; }

    /// The name of a file, made as long as this by steps that lead nowhere.
    [[nodiscard]] std::string name_of_length(std::size_t length, const std::string &extension = "") const
    {
        std::string long_name = name("");
        while (long_name.size() + 22 <= length)
            long_name += "./";
        return long_name + std::string(length - long_name.size() - extension.size(), 'x') + extension;
    }

    /// Writes a file and gives its name.
    std::string write(const std::string &file, std::string_view content) const
    {
        std::ofstream stream(path / file, std::ios::binary);
        stream.write(content.data(), static_cast<std::streamsize>(content.size()));
        EXPECT_TRUE(stream.good());
        return name(file);
    }

    /// Makes a link, for example to a device.
    std::string link(const std::string &file, const std::string &target) const
    {
        std::filesystem::create_symlink(target, path / file);
        return name(file);
    }

  private:
    std::filesystem::path path;
};

} // namespace korvane::testing
