// Binary files of the engine.
#pragma once

#include <cstdint>
#include <span>

#include "io/gmf_file.h"
#include "io/gmf_format.h"

namespace korvane {

/// Reads byte order, version and dimension; false if the file is not what they can be.
[[nodiscard]] bool read_binary_header(gmf_file_t &file);

/// Follows the chain of the blocks behind the header; false if it is broken.
[[nodiscard]] bool index_binary_keywords(gmf_file_t &file);

/// As gmf_held_lines.
[[nodiscard]] int32_t held_binary_lines(const gmf_file_t &file, const gmf_keyword_info_t &keyword);

/// As gmf_read_lines.
[[nodiscard]] int32_t read_binary_lines(gmf_file_t &file, const gmf_keyword_info_t &keyword,
    int32_t line_count, std::span<const GmfInput> columns);

void write_binary_header(gmf_file_t &file);

/// True if a block of so many lines ends at a position that the file can state.
[[nodiscard]] bool binary_block_fits(const gmf_file_t &file, const gmf_keyword_info_t &keyword);

void write_binary_keyword_header(gmf_file_t &file, int32_t code);

/// False, and nothing is written, if the lines would end at a position that the file cannot state.
[[nodiscard]] bool write_binary_lines(gmf_file_t &file, const gmf_keyword_info_t &keyword, int32_t line_count,
    std::span<const GmfOutput> columns);

} // namespace korvane
