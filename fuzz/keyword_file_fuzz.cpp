// Any file is opened or refused by the engine; every block of an opened one can be read line by line, as far
// as the file holds it.
#include <vector>

#include "fuzz_input.h"
#include "io/gmf.h"

namespace {

using korvane::fuzz::require;

void read_block(int32_t index, int32_t code)
{
    std::vector<int32_t> integers(180); // more than a line has
    std::vector<double> reals(180);
    const int32_t count = korvane::gmf_keyword_count(index, code);
    const int32_t held = korvane::gmf_held_lines(index, code);
    require(count >= 0 && held >= 0 && held <= count);
    require(korvane::gmf_seek_keyword(index, code) == 0);
    bool whole = true;
    for (int32_t i = 0; i < held && i < 100'000; ++i) {
        const bool got = korvane::gmf_read_line(index, code, integers.data(), reals.data()) == 1;
        require(whole || !got); // behind a line that is cut there is none
        whole = got;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const korvane::fuzz::InputFile input(korvane::fuzz::is_binary(data, size) ? ".solb" : ".sol", data, size);
    int32_t version = 0;
    int32_t dimension = 0;
    const int32_t index = korvane::gmf_open_file(input.name(), korvane::gmf_read_mode, &version, &dimension);
    require(index == 0 || index == 1); // no slot is lost
    if (index == 0)
        return 0;
    require(version >= 1 && version <= 3 && (dimension == 2 || dimension == 3));
    for (int32_t code = 1; code <= korvane::GMF_MAX_KEYWORDS; ++code)
        read_block(index, code);
    require(korvane::gmf_close_file(index) == 1);
    return 0;
}
