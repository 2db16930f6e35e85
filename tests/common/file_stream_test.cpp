#include "common/file_stream.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/memory.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

constexpr std::size_t block_size = FileStream::block_size;

std::string random_text(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    std::string text(size, ' ');
    for (char &character : text)
        character = static_cast<char>(random());
    return text;
}

class FileStreams : public ::testing::Test {
  protected:
    TemporaryFolder folder;
    Owned<FileStream> stream = create_owned<FileStream>();
};

TEST_F(FileStreams, ReadsAFileOfManyBlocks)
{
    const std::string content = random_text(3 * block_size + 17, 1);
    ASSERT_TRUE(stream->try_open_for_reading(folder.write("file", content).c_str()));
    EXPECT_EQ(stream->file_size(), static_cast<int64_t>(content.size()));
    std::string read(content.size() + 5, '!');
    EXPECT_EQ(stream->read(read.data(), read.size()), content.size());
    EXPECT_EQ(read, content + std::string(5, '\0'));
    EXPECT_EQ(stream->reading_position(), stream->file_size());
    EXPECT_FALSE(stream->fetch());
    EXPECT_EQ(stream->close(), 0);
}

TEST_F(FileStreams, FetchKeepsWhatIsAtHandAndPutsZerosBehindIt)
{
    const std::string content = random_text(block_size + 100, 2);
    ASSERT_TRUE(stream->try_open_for_reading(folder.write("file", content).c_str()));
    ASSERT_TRUE(stream->fetch());
    EXPECT_EQ(stream->at_hand(), block_size);
    EXPECT_FALSE(stream->fetch()); // the block is full
    stream->cursor += block_size - 10;
    ASSERT_TRUE(stream->fetch());
    EXPECT_EQ(stream->at_hand(), 110u);
    EXPECT_EQ(std::string(stream->cursor, 110), content.substr(block_size - 10));
    EXPECT_EQ(std::string(stream->limit, FileStream::overhang), std::string(FileStream::overhang, '\0'));
    EXPECT_EQ(stream->reading_position(), static_cast<int64_t>(block_size - 10));
    EXPECT_FALSE(stream->fetch()); // the file is at its end
    EXPECT_EQ(stream->at_hand(), 110u);
}

TEST_F(FileStreams, SeeksInsideAndOutsideOfTheBlock)
{
    const std::string content = random_text(5 * block_size, 3);
    ASSERT_TRUE(stream->try_open_for_reading(folder.write("file", content).c_str()));
    std::mt19937 random(4);
    for (int i = 0; i < 200; ++i) {
        const std::size_t position = random() % (content.size() + 1);
        const std::size_t wanted = random() % 300;
        ASSERT_EQ(stream->seek(static_cast<int64_t>(position)), 0);
        std::string read(wanted, '!');
        const std::size_t had = std::min(wanted, content.size() - position);
        ASSERT_EQ(stream->read(read.data(), wanted), had);
        ASSERT_EQ(read, content.substr(position, had) + std::string(wanted - had, '\0'));
    }
}

TEST_F(FileStreams, PositionsHave64Bits)
{
    constexpr int64_t far = int64_t{5} << 30;
    const std::string name = folder.write("file", "begin");
    std::error_code failure;
    std::filesystem::resize_file(name, far, failure); // a hole
    if (failure)
        GTEST_SKIP() << "no files of 5 GiB here";
    std::ofstream(name, std::ios::app) << "end";
    ASSERT_TRUE(stream->try_open_for_reading(name.c_str()));
    EXPECT_EQ(stream->file_size(), far + 3);
    std::string read(5, '!');
    EXPECT_EQ(stream->seek(far - 1), 0);
    EXPECT_EQ(stream->read(read.data(), 5), 4u);
    EXPECT_EQ(read, std::string("\0end\0", 5));
    EXPECT_EQ(stream->reading_position(), far + 3);
    EXPECT_EQ(stream->seek(0), 0);
    EXPECT_EQ(stream->read(read.data(), 5), 5u);
    EXPECT_EQ(read, "begin");
}

TEST_F(FileStreams, RefusesWhatCannotBeOpenedOrHasNoSize)
{
    EXPECT_FALSE(stream->try_open_for_reading(folder.name("absent").c_str()));
    EXPECT_FALSE(create_owned<FileStream>()->try_open_for_writing(folder.name("no/such/folder").c_str()));
}

TEST_F(FileStreams, AnEndlessDeviceAndAFolderAreEmpty)
{
    ASSERT_TRUE(stream->try_open_for_reading("/dev/zero"));
    EXPECT_FALSE(stream->fetch());
    const Owned<FileStream> other = create_owned<FileStream>();
    if (other->try_open_for_reading(folder.name("").c_str())) {
        EXPECT_FALSE(other->fetch());
    }
}

TEST_F(FileStreams, WhatIsAppendedAfterOpeningDoesNotExist)
{
    const std::string name = folder.write("file", "abc");
    ASSERT_TRUE(stream->try_open_for_reading(name.c_str()));
    std::ofstream(name, std::ios::app) << "def";
    char read[6];
    EXPECT_EQ(stream->read(read, 6), 3u);
}

TEST_F(FileStreams, AFileThatShrinksAfterOpeningEndsEarly)
{
    const std::string name = folder.write("file", std::string(2 * block_size, 'x'));
    ASSERT_TRUE(stream->try_open_for_reading(name.c_str()));
    std::filesystem::resize_file(name, 10);
    std::string read(20, '!');
    EXPECT_EQ(stream->read(read.data(), 20), 10u);
    EXPECT_EQ(read, std::string(10, 'x') + std::string(10, '\0'));
    EXPECT_EQ(stream->file_size(), 10);
}

TEST_F(FileStreams, WritesPiecesOfAllSizesInOrder)
{
    std::mt19937 random(5);
    std::string expected;
    ASSERT_TRUE(stream->try_open_for_writing(folder.name("file").c_str()));
    for (int i = 0; i < 100; ++i) {
        const std::string piece =
            random_text(i % 10 == 9 ? block_size : random() % 5000, static_cast<unsigned>(i));
        stream->write(piece.data(), piece.size());
        expected += piece;
        ASSERT_EQ(stream->writing_position(), static_cast<int64_t>(expected.size()));
    }
    EXPECT_TRUE(stream->flush());
    EXPECT_EQ(stream->close(), 0);
    EXPECT_TRUE(read_file(folder.name("file")) == expected);
}

TEST_F(FileStreams, OverwritesAndGoesOnAtTheEnd)
{
    ASSERT_TRUE(stream->try_open_for_writing(folder.name("file").c_str()));
    stream->write("abcdef", 6);
    stream->overwrite(2, "XY", 2);
    stream->write("gh", 2);
    EXPECT_TRUE(stream->flush());
    EXPECT_EQ(stream->close(), 0);
    EXPECT_EQ(read_file(folder.name("file")), "abXYefgh");
}

TEST_F(FileStreams, RemembersTheFirstError)
{
    ASSERT_TRUE(stream->try_open_for_writing("/dev/full"));
    stream->write("abc", 3);
    EXPECT_FALSE(stream->has_failed());
    EXPECT_FALSE(stream->flush());
    EXPECT_TRUE(stream->has_failed());
    stream->write("def", 3);
    stream->overwrite(0, "x", 1);
    EXPECT_FALSE(stream->flush());
    EXPECT_EQ(stream->writing_position(), 6);
}

} // namespace
} // namespace korvane::testing
