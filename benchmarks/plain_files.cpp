#include "plain_files.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace korvane::benchmarks {

namespace {

struct File {
    File(const char *name, const char *mode) : stream(std::fopen(name, mode))
    {
        if (stream == nullptr)
            std::abort();
    }
    ~File() { std::fclose(stream); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    std::FILE *stream;
};

struct Bytes {
    std::unique_ptr<char[]> data;
    std::size_t size;
};

Bytes contents(const char *file_name)
{
    File file(file_name, "rb");
    std::fseek(file.stream, 0, SEEK_END);
    const auto size = static_cast<std::size_t>(std::ftell(file.stream));
    std::rewind(file.stream);
    Bytes bytes{std::make_unique_for_overwrite<char[]>(size), size};
    if (std::fread(bytes.data.get(), 1, size, file.stream) != size)
        std::abort();
    return bytes;
}

void append(std::vector<char> &bytes, const void *values, std::size_t count)
{
    const auto *first = static_cast<const char *>(values);
    bytes.insert(bytes.end(), first, first + count);
}

void append_integer(std::vector<char> &bytes, int32_t value)
{
    append(bytes, &value, sizeof value);
}

/// The kind of elements that a word or a code of a mesh file names, or null.
const ElementKind *kind_named(const char *keyword)
{
    for (const ElementKind *kind : element_kinds)
        if (std::strcmp(kind->keyword, keyword) == 0)
            return kind;
    return nullptr;
}

const ElementKind *kind_coded(int32_t code)
{
    for (const ElementKind *kind : element_kinds)
        if (kind->code == code)
            return kind;
    return nullptr;
}

/// Splits lines of `width` indices and a tag; the width is a constant, so that every copy is a few moves.
template <std::size_t width>
void decode_elements(const char *line, std::size_t count, int32_t *vertices, int32_t *tags)
{
    for (std::size_t i = 0; i < count; ++i, line += 4 * (width + 1)) {
        std::memcpy(&vertices[width * i], line, 4 * width);
        std::memcpy(&tags[i], line + 4 * width, 4);
    }
}

template <std::size_t width>
void encode_elements(std::vector<char> &bytes, const FlatMesh &mesh)
{
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        append(bytes, &mesh.vertices[width * i], 4 * width);
        append_integer(bytes, mesh.element_tags[i]);
    }
}

} // namespace

int64_t read_raw(const char *file_name)
{
    static std::array<char, std::size_t{1} << 18> block;
    File file(file_name, "rb");
    std::setvbuf(file.stream, nullptr, _IONBF, 0);
    int64_t size = 0;
    while (const std::size_t read = std::fread(block.data(), 1, block.size(), file.stream))
        size += static_cast<int64_t>(read);
    return size;
}

int64_t read_and_decode(const char *file_name)
{
    const Bytes bytes = contents(file_name);
    const auto integer = [&](std::size_t at) {
        int32_t value;
        std::memcpy(&value, &bytes.data[at], sizeof value);
        return value;
    };
    std::unique_ptr<double[]> coordinates;
    std::unique_ptr<int32_t[]> vertex_tags, vertices, element_tags;
    int64_t lines = 0;
    for (int32_t block = 8; block != 0; block = integer(static_cast<std::size_t>(block) + 4)) {
        const auto start = static_cast<std::size_t>(block);
        const int32_t code = integer(start);
        const ElementKind *kind = kind_coded(code);
        if (code != 4 && kind == nullptr)
            continue;
        const auto count = static_cast<std::size_t>(integer(start + 8));
        const char *line = &bytes.data[start + 12];
        lines += static_cast<int64_t>(count);
        if (code == 4) {
            coordinates = std::make_unique_for_overwrite<double[]>(3 * count);
            vertex_tags = std::make_unique_for_overwrite<int32_t[]>(count);
            for (std::size_t i = 0; i < count; ++i, line += 28) {
                std::memcpy(&coordinates[3 * i], line, 24);
                std::memcpy(&vertex_tags[i], line + 24, 4);
            }
            continue;
        }
        vertices = std::make_unique_for_overwrite<int32_t[]>(static_cast<std::size_t>(kind->corners) * count);
        element_tags = std::make_unique_for_overwrite<int32_t[]>(count);
        const auto decode = kind->corners == 3   ? decode_elements<3>
                            : kind->corners == 4 ? decode_elements<4>
                                                 : decode_elements<8>;
        decode(line, count, vertices.get(), element_tags.get());
    }
    return lines;
}

FlatMesh read_with_fscanf(const char *file_name)
{
    File file(file_name, "rb");
    FlatMesh mesh;
    char word[256];
    while (std::fscanf(file.stream, "%255s", word) == 1) {
        int count = 0;
        if (std::strcmp(word, "Vertices") == 0 && std::fscanf(file.stream, "%d", &count) == 1) {
            mesh.coordinates.resize(3 * static_cast<std::size_t>(count));
            mesh.vertex_tags.resize(static_cast<std::size_t>(count));
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
                for (std::size_t axis = 0; axis < 3; ++axis)
                    if (std::fscanf(file.stream, "%lf", &mesh.coordinates[3 * i + axis]) != 1)
                        std::abort();
                if (std::fscanf(file.stream, "%d", &mesh.vertex_tags[i]) != 1)
                    std::abort();
            }
        } else if (kind_named(word) != nullptr && std::fscanf(file.stream, "%d", &count) == 1) {
            mesh.kind = kind_named(word);
            const std::size_t width = mesh.width();
            mesh.vertices.resize(width * static_cast<std::size_t>(count));
            mesh.element_tags.resize(static_cast<std::size_t>(count));
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
                for (std::size_t k = 0; k < width; ++k)
                    if (std::fscanf(file.stream, "%d", &mesh.vertices[width * i + k]) != 1)
                        std::abort();
                if (std::fscanf(file.stream, "%d", &mesh.element_tags[i]) != 1)
                    std::abort();
            }
        }
    }
    return mesh;
}

void encode_and_write(const FlatMesh &mesh, const char *file_name)
{
    std::vector<char> bytes;
    const auto vertex_count = mesh.vertex_tags.size(), element_count = mesh.element_tags.size();
    const std::size_t width = mesh.width();
    const std::size_t elements_at = 32 + 28 * vertex_count;
    const std::size_t end_at = elements_at + 12 + 4 * (width + 1) * element_count;
    bytes.reserve(end_at + 8);
    for (const int32_t word : {1, 2, 3, 20, 3, 4, static_cast<int32_t>(elements_at), mesh.vertex_count()})
        append_integer(bytes, word);
    for (std::size_t i = 0; i < vertex_count; ++i) {
        append(bytes, &mesh.coordinates[3 * i], 24);
        append_integer(bytes, mesh.vertex_tags[i]);
    }
    for (const int32_t word : {mesh.kind->code, static_cast<int32_t>(end_at), mesh.element_count()})
        append_integer(bytes, word);
    const auto encode = width == 3   ? encode_elements<3>
                        : width == 4 ? encode_elements<4>
                                     : encode_elements<8>;
    encode(bytes, mesh);
    for (const int32_t word : {54, 0})
        append_integer(bytes, word);
    File file(file_name, "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), file.stream);
}

void write_with_fprintf(const FlatMesh &mesh, const char *file_name)
{
    File file(file_name, "wb");
    const std::size_t width = mesh.width();
    std::fprintf(file.stream, "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n%d\n", mesh.vertex_count());
    for (std::size_t i = 0; i < mesh.vertex_tags.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            std::fprintf(file.stream, "%.15lg ", mesh.coordinates[3 * i + axis]);
        std::fprintf(file.stream, "%d \n", mesh.vertex_tags[i]);
    }
    std::fprintf(file.stream, "\n%s\n%d\n", mesh.kind->keyword, mesh.element_count());
    for (std::size_t i = 0; i < mesh.element_tags.size(); ++i) {
        for (std::size_t k = 0; k < width; ++k)
            std::fprintf(file.stream, "%d ", mesh.vertices[width * i + k]);
        std::fprintf(file.stream, "%d \n", mesh.element_tags[i]);
    }
    std::fprintf(file.stream, "\nEnd\n");
}

void write_bulk_data_with_fprintf(const FlatMesh &mesh, const char *file_name)
{
    File file(file_name, "w");
    const std::size_t width = mesh.width();
    std::fprintf(file.stream, "BEGIN BULK\n");
    for (int32_t i = 0; i < mesh.vertex_count(); ++i) {
        const double *xyz = &mesh.coordinates[3 * static_cast<std::size_t>(i)];
        std::fprintf(file.stream, "GRID*   %16d               0%16.8E%16.8E*\n*       %16.8E\n", i + 1,
            xyz[0], xyz[1], xyz[2]);
    }
    for (int32_t i = 0; i < mesh.element_count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        std::fprintf(file.stream, "%s  %8d%8d", mesh.kind->card, i + 1, mesh.element_tags[at]);
        for (std::size_t k = 0; k < width; ++k)
            std::fprintf(file.stream, "%8d", mesh.vertices[width * at + k]);
        std::fprintf(file.stream, "\n");
    }
    std::fprintf(file.stream, "$\nENDDATA\n");
}

} // namespace korvane::benchmarks
