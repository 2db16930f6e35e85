// The record of an open GMF file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/file_stream.h"
#include "io/gmf_keywords.h"

namespace korvane {

inline constexpr int32_t GMF_MAX_TYPES = 20;

enum gmf_mode_t : int32_t { gmf_read_mode = 1, gmf_write_mode = 2 };

enum gmf_kind_flag_t : int32_t { gmf_text = 1, gmf_binary = 2, gmf_mesh = 4, gmf_solution = 8 };

enum gmf_keyword_kind_t : int32_t {
    gmf_unknown_keyword = 0,
    gmf_information_keyword = 1, // without line count
    gmf_regular_keyword = 2,
    gmf_solution_keyword = 3 // with a type header
};

/// The types of the values of a solution: `dimension` reals for a vector, and so on.
enum gmf_value_type_t : int32_t {
    gmf_scalar = 1,
    gmf_vector = 2,
    gmf_symmetric_matrix = 3, // the upper triangle
    gmf_full_matrix = 4
};

/// What is known of the block of one keyword.
struct gmf_keyword_info_t {
    int32_t kind;
    int32_t values_per_line;
    int32_t words_per_line; // 32-bit words of a binary line
    int32_t line_count;     // 0: the keyword is absent
    int32_t type_count;
    std::array<int32_t, GMF_MAX_TYPES> types;
    int64_t data_position;        // of the first line
    std::array<char, 180> format; // the letters of a line, `values_per_line` of them
};

struct gmf_file_t {
    int32_t dimension = 0;
    int32_t version = 0;
    int32_t mode = 0;
    int32_t kind_flags = 0;
    int32_t byte_order_code = 0;    // 1, or 0x01000000 if the file has the other byte order
    bool block_ended = false;       // a value was missing since the last seek: there are no more lines
    bool refused = false;           // something could not be expressed in the file being written
    bool complete = false;          // the file being written has its "End"
    int64_t next_keyword_field = 0; // of the last block written, 0 if there is none
    std::array<gmf_keyword_info_t, GMF_MAX_KEYWORDS + 1> keywords{};
    std::array<char, 1024> file_name{};
    FileStream stream;

    gmf_file_t() noexcept {} // user-provided, so that creation leaves the block of the stream alone

    [[nodiscard]] gmf_keyword_info_t &keyword(int32_t code)
    {
        return keywords[static_cast<std::size_t>(code)];
    }
    [[nodiscard]] bool is_binary() const { return (kind_flags & gmf_binary) != 0; }
    [[nodiscard]] bool has_opposite_byte_order() const { return byte_order_code != 1; }
};

} // namespace korvane
