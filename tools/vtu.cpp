// Unstructured grids of VTK's XML format: the arrays stand behind the elements as they are in memory, each
// packed by zlib in blocks, with their number, their sizes before and after, all of 64 bits, in front of
// them.
#include "vtu.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <functional>
#include <new>

#include <zlib.h>

#include "element_measures.h"

namespace korvane::tools {

namespace {

std::vector<int32_t> vertices_of_cell(const korvane_mesh_t *mesh, const Cell &cell)
{
    if (cell.kind->corners == 0)
        return {cell.number};
    const ElementVertices vertices = vertices_of(*cell.kind, mesh, cell.number);
    const auto named = used(*cell.kind, vertices);
    return {named.begin(), named.end()};
}

template <class Value>
constexpr const char *vtk_name = nullptr;
template <>
constexpr const char *vtk_name<double> = "Float64";
template <>
constexpr const char *vtk_name<int32_t> = "Int32";
template <>
constexpr const char *vtk_name<int64_t> = "Int64";
template <>
constexpr const char *vtk_name<uint8_t> = "UInt8";

/// The elements of the file, and the data that they point to.
class Document {
  public:
    void line(const std::string &text) { xml += text + "\n"; }

    template <class Value>
    void array(const std::string &name, int components, const std::vector<Value> &values)
    {
        line("<DataArray type=\"" + std::string(vtk_name<Value>) + "\" Name=\"" + name +
             "\" NumberOfComponents=\"" + std::to_string(components) + "\" format=\"appended\" offset=\"" +
             std::to_string(data.size()) + "\"/>");
        pack(reinterpret_cast<const unsigned char *>(values.data()), values.size() * sizeof(Value));
    }

    [[nodiscard]] bool write(const std::string &file) const
    {
        std::ofstream stream(file, std::ios::binary);
        stream << xml << "<AppendedData encoding=\"raw\">\n_" << data << "\n</AppendedData>\n</VTKFile>\n";
        return stream.flush().good();
    }

  private:
    static constexpr std::size_t block_bytes = std::size_t{1} << 20U;

    void pack(const unsigned char *bytes, std::size_t count)
    {
        const std::size_t block_count = (count + block_bytes - 1) / block_bytes;
        std::vector<uint64_t> head = {block_count, block_bytes, count % block_bytes};
        std::vector<unsigned char> packed;
        for (std::size_t at = 0; at < count; at += block_bytes) {
            const std::size_t unpacked_size = std::min(block_bytes, count - at), begin = packed.size();
            uLongf size = compressBound(unpacked_size);
            packed.resize(begin + size);
            if (compress2(packed.data() + begin, &size, bytes + at, unpacked_size, Z_BEST_SPEED) != Z_OK)
                throw std::bad_alloc();
            packed.resize(begin + size);
            head.push_back(size);
        }
        data.append(reinterpret_cast<const char *>(head.data()), head.size() * sizeof(uint64_t));
        data.append(reinterpret_cast<const char *>(packed.data()), packed.size());
    }

    std::string xml;
    std::string data;
};

struct MeasureColumn {
    const char *name;
    std::string_view measure;
    double (*pick)(std::span<const double> values);
};

constexpr MeasureColumn measure_columns[] = {
    {"aspect_ratio", "aspect_ratio", [](std::span<const double> values) { return values.front(); }},
    {"minimum_angle", "angles", [](std::span<const double> values) { return std::ranges::min(values); }},
    {"maximum_angle", "angles", [](std::span<const double> values) { return std::ranges::max(values); }},
    {"planarity", "planarity", [](std::span<const double> values) { return values.front(); }},
};

class Grid {
  public:
    Grid(const korvane_mesh_t *shown, std::span<const Cell> wanted, bool all_vertices)
        : mesh(shown), cells(wanted), points(all_vertices ? all() : used_ones())
    {}

    [[nodiscard]] bool write(const std::string &file)
    {
        const char *const order = std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian";
        document.line(
            "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"" +
            std::string(order) +
            "\" header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n<UnstructuredGrid>");
        document.line("<Piece NumberOfPoints=\"" + std::to_string(points.size()) + "\" NumberOfCells=\"" +
                      std::to_string(cells.size()) + "\">");
        add_points();
        add_cells();
        document.line("</Piece>\n</UnstructuredGrid>");
        return document.write(file);
    }

  private:
    [[nodiscard]] std::vector<Cell> all() const
    {
        std::vector<Cell> vertices;
        for (int32_t vertex = 1, count = count_of(vertex_kind(), mesh); vertex <= count; ++vertex)
            vertices.push_back({&vertex_kind(), vertex});
        return vertices;
    }

    [[nodiscard]] std::vector<Cell> used_ones() const
    {
        std::vector<int32_t> numbers;
        for (const Cell &cell : cells)
            for (const int32_t vertex : vertices_of_cell(mesh, cell))
                numbers.push_back(vertex);
        std::ranges::sort(numbers);
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        std::vector<Cell> vertices;
        vertices.reserve(numbers.size());
        for (const int32_t number : numbers)
            vertices.push_back({&vertex_kind(), number});
        return vertices;
    }

    /// From 0.
    [[nodiscard]] int32_t point_of(int32_t vertex) const
    {
        const auto found = std::ranges::lower_bound(points, vertex, {}, &Cell::number);
        return static_cast<int32_t>(found - points.begin());
    }

    template <class Value>
    std::vector<Value> each(std::span<const Cell> entities, auto value_of) const
    {
        std::vector<Value> values;
        values.reserve(entities.size());
        for (const Cell &entity : entities)
            values.push_back(value_of(entity));
        return values;
    }

    void add_attributes(std::span<const Cell> entities)
    {
        document.array("number", 1, each<int32_t>(entities, std::mem_fn(&Cell::number)));
        document.array("tag", 1,
            each<int32_t>(entities, [&](const Cell &cell) { return tag_of(*cell.kind, mesh, cell.number); }));
        document.array("required", 1, each<uint8_t>(entities, [&](const Cell &cell) {
            return static_cast<uint8_t>(is_required(*cell.kind, mesh, cell.number));
        }));
    }

    void add_points()
    {
        std::vector<double> coordinates;
        coordinates.reserve(3 * points.size());
        for (const Cell &point : points) {
            const auto xyz = position_of(mesh, point.number);
            coordinates.insert(coordinates.end(), xyz.begin(), xyz.end());
        }
        document.line("<PointData Scalars=\"tag\">");
        add_attributes(points);
        document.line("</PointData>\n<Points>");
        document.array("Points", 3, coordinates);
        document.line("</Points>");
    }

    void add_cells()
    {
        std::vector<int32_t> connectivity;
        std::vector<int64_t> offsets;
        for (const Cell &cell : cells) {
            for (const int32_t vertex : vertices_of_cell(mesh, cell))
                connectivity.push_back(point_of(vertex));
            offsets.push_back(static_cast<int64_t>(connectivity.size()));
        }
        document.line("<CellData Scalars=\"tag\">");
        add_attributes(cells);
        for (const MeasureColumn &column : measure_columns)
            document.array(column.name, 1,
                each<double>(cells, [&](const Cell &cell) { return measured(column, cell); }));
        document.line("</CellData>\n<Cells>");
        document.array("connectivity", 1, connectivity);
        document.array("offsets", 1, offsets);
        document.array(
            "types", 1, each<uint8_t>(cells, [](const Cell &cell) { return cell.kind->vtk_type; }));
        document.line("</Cells>");
    }

    [[nodiscard]] double measured(const MeasureColumn &column, const Cell &cell) const
    {
        MeasuredValues values;
        for (const KindMeasure &row : element_measures())
            if (row.kind == cell.kind && row.name == column.measure)
                return column.pick(measure(row, mesh, cell.number, values));
        return NAN;
    }

    const korvane_mesh_t *mesh;
    std::span<const Cell> cells;
    std::vector<Cell> points; // vertices by rising number
    Document document;
};

} // namespace

bool can_be_cell(const korvane_mesh_t *mesh, const Cell &cell)
{
    const int32_t vertex_count = count_of(vertex_kind(), mesh);
    return std::ranges::all_of(
        vertices_of_cell(mesh, cell), [=](int32_t vertex) { return vertex >= 1 && vertex <= vertex_count; });
}

std::vector<Cell> cells_of(const korvane_mesh_t *mesh)
{
    std::vector<Cell> cells;
    for (const MeshKind &kind : element_kinds())
        for (int32_t i = 1, count = count_of(kind, mesh); i <= count; ++i)
            if (can_be_cell(mesh, {&kind, i}))
                cells.push_back({&kind, i});
    return cells;
}

bool write_vtu(
    const korvane_mesh_t *mesh, std::span<const Cell> cells, bool all_vertices, const std::string &file)
{
    return Grid(mesh, cells, all_vertices).write(file);
}

} // namespace korvane::tools
