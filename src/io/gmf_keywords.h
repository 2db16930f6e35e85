// The keywords of GMF files.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvane {

inline constexpr int32_t GMF_MAX_KEYWORDS = 79; // valid codes are 1..79

/// The codes that the library names.
enum gmf_code_t : int32_t {
    gmf_mesh_version_formatted = 1,
    gmf_dimension = 3,
    gmf_vertices = 4,
    gmf_edges = 5,
    gmf_triangles = 6,
    gmf_quadrilaterals = 7,
    gmf_tetrahedra = 8,
    gmf_hexahedra = 10,
    gmf_required_vertices = 15,
    gmf_required_edges = 16,
    gmf_required_triangles = 17,
    gmf_required_quadrilaterals = 18,
    gmf_pyramids = 49,
    gmf_end = 54,
    gmf_sol_at_vertices = 62
};

struct gmf_keyword_row_t {
    std::string_view name;   // as written in text files
    std::string_view entity; // carried for completeness: nothing consults it
    std::string_view count;  // "i" if a block carries a line count
    std::string_view format; // the letters of a line, before expansion

    [[nodiscard]] constexpr bool has_count() const { return !count.empty(); }
    // Kept on purpose: a reader takes a count for exactly "i", a writer for any text, because the columns of
    // "Body" are shifted
    [[nodiscard]] constexpr bool reads_count() const { return count == "i"; }
    [[nodiscard]] constexpr bool reads_types() const { return format == "sr"; }
};

/// The most runs of equal letters that an expanded line has.
inline constexpr std::size_t gmf_max_runs = 2;

/// Indexed by keyword code.
extern const std::array<gmf_keyword_row_t, GMF_MAX_KEYWORDS + 1> gmf_keyword_table;

[[nodiscard]] inline const gmf_keyword_row_t &gmf_row(int32_t code)
{
    return gmf_keyword_table[static_cast<std::size_t>(code)];
}

/// The lowest code of 1..79 with this name, or 0.
[[nodiscard]] int32_t gmf_find_keyword(std::string_view name);

[[nodiscard]] constexpr bool gmf_is_code(int32_t code)
{
    return code >= 1 && code <= GMF_MAX_KEYWORDS;
}

} // namespace korvane
