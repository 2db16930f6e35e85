// A file that is read or written through one block of its own, past the buffering of the standard stream, so
// that scanners and formatters work on memory and every byte is copied once.
//
// Reading: the bytes at hand are [cursor, limit), zeros follow them, and some bytes may be read before them.
// `fetch` brings more bytes behind those at hand. What a file holds is fixed when it is opened: bytes that
// appear later, and endless devices, do not exist. Writing: `room` gives space at the end of the block,
// `commit` takes it over. The first error is remembered and nothing is written after it. Positions are 64
// bits.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

namespace korvane {

class FileStream {
  public:
    static constexpr std::size_t block_size = std::size_t{1} << 18;
    static constexpr std::size_t overhang = 64; // what may be read before and, as zeros, from `limit` on

    FileStream() noexcept // user-provided: value-initialisation leaves the block alone
    {
        std::memset(block.data(), 0, overhang);
        set_at_hand(0, 0);
    }
    FileStream(const FileStream &) = delete;
    FileStream &operator=(const FileStream &) = delete;
    ~FileStream() { static_cast<void>(close()); }

    /// Opens a file of any kind that has a size and can be positioned.
    [[nodiscard]] bool try_open_for_reading(const char *name)
    {
        if (!try_open(name, "rb") || fseeko(file, 0, SEEK_END) != 0)
            return false;
        size = ftello(file);
        return size >= 0 && fseeko(file, 0, SEEK_SET) == 0;
    }

    [[nodiscard]] bool try_open_for_writing(const char *name) { return try_open(name, "wb"); }

    /// Closes the file without writing what waits in the block. 0 if that went well.
    int close() { return file == nullptr ? 0 : std::fclose(std::exchange(file, nullptr)); }

    // Reading.

    const char *cursor;
    const char *limit;

    [[nodiscard]] std::size_t at_hand() const { return static_cast<std::size_t>(limit - cursor); }
    [[nodiscard]] int64_t file_size() const { return size; }
    [[nodiscard]] int64_t reading_position() const { return block_position + (cursor - begin()); }

    /// Moves the bytes at hand to the front of the block and reads on behind them. False if nothing comes:
    /// the file is at its end, or the block is full.
    [[nodiscard]] bool fetch()
    {
        const std::size_t kept = at_hand();
        block_position = reading_position();
        if (kept > 0)
            std::memmove(begin(), cursor, kept);
        const int64_t unread = size - block_position - static_cast<int64_t>(kept);
        const std::size_t wanted =
            static_cast<std::size_t>(std::clamp<int64_t>(unread, 0, static_cast<int64_t>(block_size - kept)));
        const std::size_t read = wanted == 0 ? 0 : std::fread(begin() + kept, 1, wanted, file);
        if (read < wanted)
            size = block_position + static_cast<int64_t>(kept + read);
        set_at_hand(0, kept + read);
        return read > 0;
    }

    /// Copies the next bytes. What the file lacks is filled with zeros; the number of bytes that it had.
    std::size_t read(void *bytes, std::size_t count)
    {
        std::size_t copied = 0;
        while (copied < count && (at_hand() > 0 || fetch())) {
            const std::size_t part = std::min(count - copied, at_hand());
            std::memcpy(static_cast<char *>(bytes) + copied, cursor, part);
            cursor += part;
            copied += part;
        }
        std::memset(static_cast<char *>(bytes) + copied, 0, count - copied);
        return copied;
    }

    /// The next byte comes from `position`. 0 if the file can be positioned there.
    [[nodiscard]] int seek(int64_t position)
    {
        const int64_t offset = position - block_position;
        if (offset >= 0 && offset <= limit - begin()) {
            cursor = begin() + offset;
            return 0;
        }
        if (const int failed = fseeko(file, position, SEEK_SET); failed != 0)
            return failed;
        block_position = position;
        set_at_hand(0, 0);
        return 0;
    }

    // Writing.

    /// Space for `bytes` bytes, which must not exceed the size of the block.
    [[nodiscard]] char *room(std::size_t bytes)
    {
        if (buffer_fill + bytes > block_size)
            static_cast<void>(flush());
        return begin() + buffer_fill;
    }

    /// Takes over what was written into the last room, up to `end`.
    void commit(const char *end) { buffer_fill = static_cast<std::size_t>(end - begin()); }

    void write(const void *bytes, std::size_t count)
    {
        char *space = room(count);
        std::memcpy(space, bytes, count);
        commit(space + count);
    }

    [[nodiscard]] int64_t writing_position() const
    {
        return block_position + static_cast<int64_t>(buffer_fill);
    }

    /// Hands what waits in the block to the system. True if it took all that was written so far.
    [[nodiscard]] bool flush()
    {
        if (buffer_fill > 0 && !error)
            error = std::fwrite(begin(), 1, buffer_fill, file) != buffer_fill;
        block_position += static_cast<int64_t>(std::exchange(buffer_fill, 0));
        return !error;
    }

    [[nodiscard]] bool has_failed() const { return error; }

    /// Replaces bytes that were written before, and goes on at the end.
    void overwrite(int64_t position, const void *bytes, std::size_t count)
    {
        if (!flush())
            return;
        error = fseeko(file, position, SEEK_SET) != 0 || std::fwrite(bytes, 1, count, file) != count ||
                fseeko(file, block_position, SEEK_SET) != 0;
    }

  private:
    [[nodiscard]] bool try_open(const char *name, const char *mode)
    {
        file = std::fopen(name, mode);
        return file != nullptr && std::setvbuf(file, nullptr, _IONBF, 0) == 0;
    }

    [[nodiscard]] char *begin() { return block.data() + overhang; }
    [[nodiscard]] const char *begin() const { return block.data() + overhang; }

    void set_at_hand(std::size_t from, std::size_t to)
    {
        cursor = begin() + from;
        limit = begin() + to;
        std::memset(begin() + to, 0, overhang);
    }

    std::FILE *file = nullptr;
    int64_t size = 0;            // of a file that is read
    int64_t block_position = 0;  // where the block starts in the file
    std::size_t buffer_fill = 0; // bytes that wait to be written
    bool error = false;
    std::array<char, overhang + block_size + overhang> block;
};

} // namespace korvane
