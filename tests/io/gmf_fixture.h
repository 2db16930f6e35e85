// What the tests of the two encodings have in common.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "io/gmf.h"
#include "support/temporary_folder.h"

namespace korvane::testing {

/// Opens one file after the other.
class GmfEncoding : public ::testing::Test {
  protected:
    explicit GmfEncoding(std::string file_name) : file(std::move(file_name)) {}
    ~GmfEncoding() override { EXPECT_EQ(gmf_close_file(1), 0) << "a file was left open"; }

    /// The index of a file with this content; version and dimension are kept.
    int32_t open(const std::string &content)
    {
        return gmf_open_file(folder.write(file, content).c_str(), gmf_read_mode, &version, &dimension);
    }

    bool opens(const std::string &content) { return gmf_close_file(open(content)) == 1; }

    TemporaryFolder folder;
    int32_t version = 0;
    int32_t dimension = 0;

  private:
    const std::string file;
};

/// The first vertices of an open file, read all at once over values that no file has.
template <std::size_t count>
struct ReadVertices {
    explicit ReadVertices(int32_t index)
    {
        xyz.fill(-7);
        tags.fill(-7);
        const std::array<GmfInput, 2> columns = {{{3, nullptr, xyz.data()}, {1, tags.data(), nullptr}}};
        EXPECT_EQ(gmf_seek_keyword(index, gmf_vertices), 0);
        whole_lines = gmf_read_lines(index, gmf_vertices, static_cast<int32_t>(count), columns);
    }

    std::array<double, 3 * count> xyz;
    std::array<int32_t, count> tags;
    int32_t whole_lines = 0;
};

} // namespace korvane::testing
