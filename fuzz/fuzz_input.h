// What fuzz targets of files share: inputs as files, and checks that stop the fuzzer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace korvane::fuzz {

/// Ends the process, as the fuzzer expects it from a finding, unless `condition` holds.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Binary files begin with a word 1 of either byte order, texts with anything else.
inline bool is_binary(const std::uint8_t *data, std::size_t size)
{
    return size > 0 && data[0] <= 1;
}

/// The name of a file in memory that is this process's own.
inline std::string file_name(const std::string &extension)
{
    static const std::string start = "/dev/shm/korvane-fuzz-" + std::to_string(getpid());
    return start + extension;
}

/// A file that lives as long as its owner.
class InputFile {
  public:
    InputFile(const std::string &extension, const std::uint8_t *data, std::size_t size)
        : path(file_name(extension))
    {
        std::FILE *file = std::fopen(path.c_str(), "wb");
        require(file != nullptr && (size == 0 || std::fwrite(data, 1, size, file) == size));
        require(std::fclose(file) == 0);
    }
    ~InputFile() { std::remove(path.c_str()); }
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    [[nodiscard]] const char *name() const { return path.c_str(); }

  private:
    std::string path;
};

} // namespace korvane::fuzz
