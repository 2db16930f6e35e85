// The engine of GMF keyword files: mesh files (".mesh" text, ".meshb" binary) and solution files (".sol",
// ".solb"). It knows keywords, line counts and lines, and nothing of meshes.
//
// An open file is known by its index 1..100; 0 is no file. Functions report failure by returning 0 and send
// no messages. Reading: open, then per keyword, in any order, count, seek and lines; close. Writing: open,
// then per keyword a header and as many lines as it states; finish; close. The engine trusts nothing that a
// file states: what cannot be fails the open, and what is missing from a block reads as zeros. Text may hold
// comments from "#" to the end of the line anywhere. A token that is no number where one is expected ends the
// block: it and everything behind it read as zeros; of a token that only begins with a number, that number is
// taken ("1.5" is the integer 1), except that a sign begins a number of its own ("1.0-2.0" are two).
#pragma once

#include <cstdint>
#include <span>

#include "io/gmf_format.h"

namespace korvane {

inline constexpr int32_t GMF_MAX_FILES = 100;

/// Opens a file in read mode and gives its version and dimension. The index, or 0.
[[nodiscard]] int32_t gmf_open_file(const char *name, int32_t mode, int32_t *version, int32_t *dimension);

/// Opens a file in write mode: version 1 (single precision) or 2, dimension 2 or 3. The index, or 0.
[[nodiscard]] int32_t gmf_open_file(const char *name, int32_t mode, int32_t version, int32_t dimension);

/// Writes the end of a file in write mode and hands everything to the system. 1 if the file is whole.
int32_t gmf_finish_file(int32_t index);

/// Finishes a file in write mode, if that was not done, and closes it. 1 if the stream closed cleanly.
int32_t gmf_close_file(int32_t index);

/// What is known of an open file, or null.
[[nodiscard]] const gmf_file_t *gmf_find_file(int32_t index);

/// The line count of a keyword, 0 if it is absent. Of a solution keyword also the type header, as far as the
/// outputs are not null; `types` holds GMF_MAX_TYPES values.
[[nodiscard]] int32_t gmf_keyword_count(int32_t index, int32_t code, int32_t *type_count = nullptr,
    int32_t *values_per_line = nullptr, int32_t *types = nullptr);

/// The lines of a keyword that the file can hold: its line count, or fewer if the file is too short for it.
[[nodiscard]] int32_t gmf_held_lines(int32_t index, int32_t code);

/// Goes to the first line of a keyword. 0 on success, and also if there is no such keyword.
int32_t gmf_seek_keyword(int32_t index, int32_t code);

/// Reads the next lines of a keyword into columns that together make a line. The number of lines that the
/// file had whole; the others are zero where values are missing.
int32_t gmf_read_lines(int32_t index, int32_t code, int32_t line_count, std::span<const GmfInput> columns);

/// Reads one line: its integers, and its reals, in the order of the letters.
int32_t gmf_read_line(int32_t index, int32_t code, int32_t *integers, double *reals);

/// Starts a block; the type header is that of a solution keyword. The line count, which is 1 for a keyword
/// without count; 0 on failure, for example if a binary file would grow beyond positions of 32 bits.
int32_t gmf_write_keyword_header(int32_t index, int32_t code, int32_t line_count = 1, int32_t type_count = 0,
    const int32_t *types = nullptr);

/// Writes lines of the current block from columns that together make a line. The number of lines written: all
/// or 0.
int32_t gmf_write_lines(int32_t index, int32_t code, int32_t line_count, std::span<const GmfOutput> columns);

/// Writes one line: its integers, and its reals, in the order of the letters.
int32_t gmf_write_line(int32_t index, int32_t code, const int32_t *integers, const double *reals);

/// Closes a file on every path of its owner.
class GmfFileGuard {
  public:
    explicit GmfFileGuard(int32_t open_index) : index(open_index) {}
    GmfFileGuard(const GmfFileGuard &) = delete;
    GmfFileGuard &operator=(const GmfFileGuard &) = delete;
    ~GmfFileGuard() { gmf_close_file(index); }

  private:
    int32_t index;
};

} // namespace korvane
