// Text files of the engine.
#pragma once

#include <cstdint>
#include <span>

#include "io/gmf_file.h"
#include "io/gmf_format.h"

namespace korvane {

/// Reads version and dimension; false if the file does not state them.
[[nodiscard]] bool read_text_header(gmf_file_t &file);

/// Finds the blocks behind the header; false if a type header is wrong.
[[nodiscard]] bool index_text_keywords(gmf_file_t &file);

/// As gmf_held_lines.
[[nodiscard]] int32_t held_text_lines(const gmf_file_t &file, const gmf_keyword_info_t &keyword);

/// As gmf_read_lines.
[[nodiscard]] int32_t read_text_lines(
    gmf_file_t &file, int32_t line_count, std::span<const GmfInput> columns);

void write_text_header(gmf_file_t &file);
void write_text_keyword_header(gmf_file_t &file, int32_t code);
void write_text_lines(gmf_file_t &file, int32_t line_count, std::span<const GmfOutput> columns);

} // namespace korvane
