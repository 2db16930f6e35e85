#include <cmath>
#include <cstdio>

#include "commands.h"
#include "mesh_kinds.h"
#include "progress.h"
#include "session.h"

namespace korvane::tools {

namespace {

constexpr std::size_t most_shown = 5; // of each attribute

/// What entities are compared by.
struct Attribute {
    const char *name;
    bool (*applies)(const MeshKind &kind);
    bool (*same)(const MeshKind &kind, const korvane_mesh_t *a, const korvane_mesh_t *b, int32_t number,
        double tolerance);
    Json (*value)(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number);
};

bool is_vertex(const MeshKind &kind)
{
    return kind.corners == 0;
}

bool is_any(const MeshKind &)
{
    return true;
}

/// Not-a-number is the same as itself, and so are infinite values.
bool within(double a, double b, double tolerance)
{
    return a == b || std::fabs(a - b) <= tolerance || (std::isnan(a) && std::isnan(b));
}

bool same_position(
    const MeshKind &, const korvane_mesh_t *a, const korvane_mesh_t *b, int32_t number, double tolerance)
{
    const auto p = position_of(a, number), q = position_of(b, number);
    return within(p[0], q[0], tolerance) && within(p[1], q[1], tolerance) && within(p[2], q[2], tolerance);
}

Json vertices_as_json(const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number)
{
    const ElementVertices vertices = vertices_of(kind, mesh, number);
    return Json(std::vector<int32_t>(vertices.begin(), vertices.begin() + kind.corners));
}

constexpr Attribute attributes[] = {
    {"coordinates", is_vertex, same_position,
        [](const MeshKind &, const korvane_mesh_t *mesh, int32_t number) {
            return Json(position_of(mesh, number));
        }},
    {"vertices", [](const MeshKind &kind) { return !is_vertex(kind); },
        [](const MeshKind &kind, const korvane_mesh_t *a, const korvane_mesh_t *b, int32_t number, double) {
            return vertices_of(kind, a, number) == vertices_of(kind, b, number);
        },
        vertices_as_json},
    {"tag", is_any,
        [](const MeshKind &kind, const korvane_mesh_t *a, const korvane_mesh_t *b, int32_t number, double) {
            return tag_of(kind, a, number) == tag_of(kind, b, number);
        },
        [](const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number) {
            return Json(tag_of(kind, mesh, number));
        }},
    {"required", is_any,
        [](const MeshKind &kind, const korvane_mesh_t *a, const korvane_mesh_t *b, int32_t number, double) {
            return is_required(kind, a, number) == is_required(kind, b, number);
        },
        [](const MeshKind &kind, const korvane_mesh_t *mesh, int32_t number) {
            return Json(is_required(kind, mesh, number));
        }},
};

class Comparison {
  public:
    Comparison(const korvane_mesh_t *first, const korvane_mesh_t *second, double allowed, bool all)
        : a(first), b(second), tolerance(allowed), every_single(all)
    {}

    Json differences()
    {
        for (const MeshKind &kind : mesh_kinds())
            compare(kind);
        return std::move(found);
    }

  private:
    void compare(const MeshKind &kind)
    {
        const int32_t in_a = count_of(kind, a), in_b = count_of(kind, b);
        if (in_a != in_b)
            found.push_back({{"kind", kind.singular}, {"attribute", "count"}, {"a", in_a}, {"b", in_b}});
        for (const Attribute &attribute : attributes)
            if (attribute.applies(kind))
                compare(kind, attribute, std::min(in_a, in_b));
    }

    void compare(const MeshKind &kind, const Attribute &attribute, int32_t common_count)
    {
        int64_t count = 0;
        Json first = Json::array();
        for (int32_t i = 1; i <= common_count; ++i) {
            if (attribute.same(kind, a, b, i, tolerance))
                continue;
            ++count;
            if (every_single || first.size() < most_shown)
                first.push_back(
                    {{"number", i}, {"a", attribute.value(kind, a, i)}, {"b", attribute.value(kind, b, i)}});
        }
        if (count > 0)
            found.push_back({{"kind", kind.singular}, {"attribute", attribute.name}, {"count", count},
                {"first", std::move(first)}});
    }

    const korvane_mesh_t *a;
    const korvane_mesh_t *b;
    double tolerance;
    bool every_single;
    Json found = Json::array();
};

void print(const Json &record, const Presentation &)
{
    const bool equal = record["equal"];
    std::printf("%s, %s: %s\n", text_of(record["a"]).c_str(), text_of(record["b"]).c_str(),
        coloured(equal ? "equal" : "different", equal ? Colour::good : Colour::bad).c_str());
    for (const Json &difference : record["differences"]) {
        const std::string what = text_of(difference["kind"]) + "." + text_of(difference["attribute"]);
        if (difference.contains("a")) {
            std::printf("  %s : %s against %s\n", what.c_str(), text_of(difference["a"]).c_str(),
                text_of(difference["b"]).c_str());
            continue;
        }
        const Json &first = difference["first"];
        std::printf("  %s : %s\n", what.c_str(), text_of(difference["count"]).c_str());
        for (const Json &one : first)
            std::printf("    %s : %s against %s\n", text_of(one["number"]).c_str(), text_of(one["a"]).c_str(),
                text_of(one["b"]).c_str());
        if (first.size() < difference["count"].get<std::size_t>())
            std::printf("    ...\n");
    }
}

} // namespace

int diff(
    const std::string &first, const std::string &second, double tolerance, const Presentation &presentation)
{
    Session session;
    Output output("diff", presentation, print);
    std::array<Mesh, 2> meshes;
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string &file = i == 0 ? first : second;
        meshes[i] = session.read(file);
        if (!meshes[i])
            output.add_problem(file, session.last_problem());
    }
    if (!meshes[0] || !meshes[1])
        return output.finish(unreadable);
    Json differences =
        Comparison(meshes[0].get(), meshes[1].get(), tolerance, presentation.verbose).differences();
    const bool equal = differences.empty();
    output.add({{"a", first}, {"b", second}, {"tolerance", tolerance}, {"equal", equal},
        {"differences", std::move(differences)}});
    return output.finish(equal ? done : file_problem);
}

} // namespace korvane::tools
