// Opens a file with the library's engine and asks it for every keyword that there is.
#include "file_description.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "io/entity_table.h"
#include "io/gmf.h"

namespace korvane::tools {

namespace {

/// The header and the end are no contents.
constexpr std::array frame_codes = {gmf_mesh_version_formatted, gmf_dimension, gmf_end};

bool is_frame(int32_t code)
{
    return std::ranges::find(frame_codes, code) != frame_codes.end();
}

/// True for the blocks that make up a mesh of the library.
bool is_carried(int32_t code)
{
    return std::ranges::any_of(entity_table,
        [=](const Entity &entity) { return entity.keyword == code || entity.required_keyword == code; });
}

bool has_card(int32_t code)
{
    return std::ranges::any_of(
        entity_table, [=](const Entity &entity) { return entity.keyword == code && !entity.card.empty(); });
}

/// How many lines of a block a text holds, by reading them.
int32_t count_text_lines(int32_t index, int32_t code)
{
    const int32_t stated = gmf_keyword_count(index, code);
    std::array<int32_t, std::tuple_size_v<decltype(gmf_keyword_info_t::format)>> integers{};
    std::array<double, integers.size()> reals{};
    gmf_seek_keyword(index, code);
    int32_t held = 0;
    while (held < stated && gmf_read_line(index, code, integers.data(), reals.data()) != 0)
        ++held;
    return held;
}

/// The lines of a block that stand in the file; of a text, unless they are counted, those that its size
/// leaves room for.
int32_t count_held_lines(int32_t index, int32_t code, bool counts_lines)
{
    const gmf_file_t &file = *gmf_find_file(index);
    const gmf_keyword_info_t &keyword = file.keywords[static_cast<std::size_t>(code)];
    if (keyword.values_per_line == 0)
        return keyword.line_count;
    if (file.is_binary()) {
        const int64_t bytes = file.stream.file_size() - keyword.data_position;
        return static_cast<int32_t>(
            std::min<int64_t>(bytes / (int64_t{4} * keyword.words_per_line), keyword.line_count));
    }
    return counts_lines ? count_text_lines(index, code) : gmf_held_lines(index, code);
}

/// What the file states but does not hold, of the first such block in it. The library reads it as zeros.
std::string shortfall_of(int32_t index, bool counts_lines)
{
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code) {
        const int32_t stated = gmf_keyword_count(index, code);
        const int32_t held = stated == 0 ? 0 : count_held_lines(index, code, counts_lines);
        if (held < stated)
            return std::string("holds no more than ")
                .append(std::to_string(held))
                .append(" of the ")
                .append(std::to_string(stated))
                .append(" lines of ")
                .append(gmf_row(code).name);
    }
    return {};
}

} // namespace

std::optional<FileDescription> describe_file(const std::string &file, bool counts_lines)
{
    int32_t version = 0, dimension = 0;
    const int32_t index = gmf_open_file(file.c_str(), gmf_read_mode, &version, &dimension);
    if (index == 0)
        return {};
    const GmfFileGuard guard(index);
    const gmf_file_t &record = *gmf_find_file(index);
    FileDescription description{record.is_binary(), record.has_opposite_byte_order(), version, dimension,
        (record.kind_flags & gmf_solution) != 0, {}, shortfall_of(index, counts_lines)};
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code) {
        const int32_t count = gmf_keyword_count(index, code);
        if (count != 0 && !is_frame(code))
            description.blocks.push_back({std::string(gmf_row(code).name), count, is_carried(code),
                has_card(code), gmf_row(code).reads_types()});
    }
    return description;
}

} // namespace korvane::tools
