// Runs a fuzz target once on every file, and every file of every folder, that is named.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz_input.h"

namespace {

void replay(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
    // A copy of the exact size, so that reading beyond it is noticed.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

int main(int argument_count, char **arguments)
{
    namespace fs = std::filesystem;
    int count = 0;
    for (int i = 1; i < argument_count; ++i) {
        std::vector<fs::path> files;
        if (fs::is_directory(arguments[i]))
            for (const fs::directory_entry &entry : fs::directory_iterator(arguments[i]))
                files.push_back(entry.path());
        else
            files.emplace_back(arguments[i]);
        for (const fs::path &file : files) {
            if (!fs::is_regular_file(file))
                continue;
            replay(file);
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
