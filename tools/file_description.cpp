// Opens a file with the library's engine and asks it for every keyword that there is.
#include "file_description.h"

#include <algorithm>
#include <array>

#include "io/gmf.h"

namespace korvane::tools {

namespace {

/// The blocks that make up a mesh of the library.
constexpr std::array carried_codes = {gmf_vertices, gmf_edges, gmf_triangles, gmf_quadrilaterals,
    gmf_tetrahedra, gmf_hexahedra, gmf_pyramids, gmf_required_vertices, gmf_required_edges,
    gmf_required_triangles, gmf_required_quadrilaterals};

/// The header and the end are no contents.
constexpr std::array frame_codes = {gmf_mesh_version_formatted, gmf_dimension, gmf_end};

template <std::size_t count>
bool is_among(const std::array<gmf_code_t, count> &codes, int32_t code)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
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
    FileDescription description{record.is_binary(), record.has_opposite_byte_order(), version, dimension, {}};
    for (int32_t code = 1; code <= GMF_MAX_KEYWORDS; ++code) {
        const int32_t count = gmf_keyword_count(index, code);
        if (count != 0 && !is_among(frame_codes, code))
            description.blocks.push_back(
                {std::string(gmf_row(code).name), count, is_among(carried_codes, code)});
    }
    return description;
}

} // namespace korvane::tools
