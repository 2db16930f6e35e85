// Opens a file with the library's engine and asks it for every keyword that there is.
#include "file_description.h"

#include <algorithm>
#include <array>

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

} // namespace

std::optional<FileDescription> describe_file(const std::string &file)
{
    int32_t version = 0, dimension = 0;
    const int32_t index = gmf_open_file(file.c_str(), gmf_read_mode, &version, &dimension);
    if (index == 0)
        return {};
    const GmfFileGuard guard(index);
    const gmf_file_t &record = *gmf_find_file(index);
    FileDescription description{record.is_binary(), record.has_opposite_byte_order(), version, dimension,
        (record.kind_flags & gmf_solution) != 0, {}};
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code) {
        const int32_t count = gmf_keyword_count(index, code);
        if (count != 0 && !is_frame(code))
            description.blocks.push_back({std::string(gmf_row(code).name), count, is_carried(code),
                has_card(code), gmf_row(code).reads_types()});
    }
    return description;
}

} // namespace korvane::tools
