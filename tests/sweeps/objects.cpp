// The objects that sweeps call functions on.
#include "sweeps/objects.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>
#include <vector>

#include "mesh/slots.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"
#include "sweeps/dispose.h"

namespace korvane::testing {

namespace {

const TemporaryFolder &scratch_folder()
{
    static const TemporaryFolder folder;
    return folder;
}

void fill(korvane_mesh_t *mesh)
{
    for (const CountAccessors &count : counts)
        count.set(mesh, entity_count);
    for (const AttributeAccessors &attribute : attributes) {
        const bool is_required = attribute.name.ends_with("required_status");
        const bool is_coordinates = attribute.name == "vertex_coordinates";
        for (int32_t index = 1; index <= entity_count; ++index) {
            std::array<int32_t, max_width> values{1, 2, 3, 4, 1, 2, 3, 4};
            if (is_coordinates)
                values = {index == 2, index == 3, index == 4};
            else if (attribute.width == 1)
                values = {is_required ? index % 2 : index};
            attribute.set(mesh, index, values.data());
        }
    }
    for (const ExtraVerticesAccessors &list : extra_vertices)
        list.set(mesh, 1, 3, some_integers.data());
}

korvane_tag_system_t *new_tag_system()
{
    korvane_tag_system_t *tag_system = korvane_tag_system_new(3);
    for (const int32_t tag : {1, 2, 3})
        korvane_tag_system_add_base_tag(tag_system, tag);
    int32_t composite = 0;
    korvane_tag_system_get_composite_tag(tag_system, some_integers.data(), 2, &composite);
    return tag_system;
}

korvane_message_t *new_message(korvane_context_t *context)
{
    korvane_message_t *message = korvane_message_new(context, -7, "description", "sender");
    korvane_message_set_integer_data(message, some_integers.data(), payload_count);
    korvane_message_set_real_data(message, some_reals.data(), payload_count);
    return message;
}

void declare_periodicity(korvane_cad_t *cad)
{
    korvane_cad_add_point_periodicity(cad, 1, 5, 2, 7);
    korvane_cad_add_edge_periodicity(cad, 1, 5, 2, 7, -1);
    korvane_cad_add_face_periodicity(cad, 5, 7);
    korvane_cad_add_edge_multiple_periodicity_with_transformation_function(
        cad, some_integers.data(), 3, some_integers.data(), 2, some_transformation, cad);
    korvane_cad_add_face_multiple_periodicity_with_transformation_function(
        cad, some_integers.data(), 3, some_integers.data(), 2, some_transformation, cad);
}

korvane_cad_edge_t *new_free_edge()
{
    return korvane_cad_edge_new_segment(nullptr, 9, some_reals.data(), some_reals.data() + 3);
}

} // namespace

Objects::Objects()
    : context(korvane_context_new()), spare_context(korvane_context_new()), message(new_message(context)),
      spare_message(new_message(context)), tag_system(new_tag_system()), spare_tag_system(new_tag_system()),
      mesh(korvane_mesh_new_in_memory(context)), spare_mesh(korvane_mesh_new(context)),
      tagged_mesh(korvane_mesh_new(context)),
      sizemap(korvane_sizemap_new(mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, some_size, this)),
      spare_sizemap(korvane_sizemap_new(mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, some_size, this)),
      cad(korvane_cad_new(context)), spare_cad(korvane_cad_new(context)),
      face(korvane_cad_face_new(cad, 10, some_surface, this)), free_face(korvane_cad_face_new_copy(face)),
      spare_face(korvane_cad_face_new_copy(face)),
      edge(korvane_cad_edge_new(face, 20, 0, 1, some_curve, this)), free_edge(new_free_edge()),
      spare_edge(new_free_edge()), point(korvane_cad_point_new(face, 30, some_reals.data() + 3)),
      spare_point(korvane_cad_point_new(free_face, 31, some_reals.data())), dcad(korvane_dcad_new(cad)),
      spare_dcad(korvane_dcad_new(cad))
{
    korvane_context_set_message_callback(context, note_message, this);
    korvane_context_set_interrupt_callback(context, some_interrupt, this);
    fill(mesh);
    korvane_mesh_set_tag_system(tagged_mesh, new_tag_system());
    korvane_sizemap_set_delete_function(spare_sizemap, note_release);
    korvane_cad_set_tag_system(cad, new_tag_system());
    declare_periodicity(cad);
    korvane_cad_face_set_delete_function(face, note_deletion);
    korvane_cad_edge_set_delete_function(edge, note_deletion);
    korvane_cad_face_set_surface_parametric_range(face, some_reals.data() + 2, some_reals.data() + 2);
    korvane_cad_face_set_surface_periodicity(face, 1, 0, 3, 0);
    korvane_cad_edge_set_curve3d(edge, some_curve3d, this);
    korvane_cad_edge_set_support_vertex_count(edge, 3);
    for (int32_t index = 1; index <= 3; ++index)
        korvane_cad_edge_set_support_vertex(edge, index, index, some_reals.data(), some_reals.data());
    korvane_dcad_get_edge_discretization(dcad, edge, &discretization);
    korvane_dcad_edge_discretization_set_vertex_count(discretization, 3);
    mesh_buffer = korvane_mesh_calloc_generic_buffer(mesh);
    cad_buffer = korvane_cad_calloc_generic_buffer(cad);
}

Objects::~Objects()
{
    korvane_mesh_free_generic_buffer(mesh_buffer);
    korvane_cad_free_generic_buffer(cad_buffer);
    const auto dispose_all = [](auto *...objects) { (dispose(objects), ...); };
    dispose_all(dcad, spare_dcad, free_edge, spare_edge, free_face, spare_face, message, spare_message,
        tag_system, spare_tag_system, context, spare_context);
}

// -- Description

namespace {

/// Writes values with names, line by line.
class Description {
  public:
    template <class... Values>
    void line(const std::string &name, const Values &...values)
    {
        text << name;
        ((text << ' ' << values), ...);
        text << '\n';
    }

    /// What a getter with one output gives.
    template <class Value, class Object>
    Value got(
        const std::string &name, korvane_status_t (*getter)(const Object *, Value *), const Object *object)
    {
        Value value{};
        const korvane_status_t status = getter(object, &value);
        line(name, status, value);
        return value;
    }

    [[nodiscard]] std::string all() const { return text.str(); }

  private:
    std::ostringstream text;
};

void describe(Description &to, const korvane_message_t *message)
{
    std::array<int32_t, payload_count> integers{};
    std::array<double, payload_count> reals{};
    to.got("integers", korvane_message_get_integer_data_count, message);
    to.got("reals", korvane_message_get_real_data_count, message);
    to.line("status", korvane_message_get_integer_data(message, 1, payload_count, integers.data()));
    to.line("status", korvane_message_get_real_data(message, 1, payload_count, reals.data()));
    for (std::size_t i = 0; i < integers.size(); ++i)
        to.line("payload", integers[i], reals[i]);
}

void describe(Description &to, const korvane_tag_system_t *tag_system)
{
    std::vector<int32_t> tags(static_cast<std::size_t>(korvane_tag_system_get_buffer_size(tag_system)) / 4);
    int32_t count = 0;
    korvane_tag_system_get_composite_tag_list(tag_system, &count, tags.data());
    to.line("composite tags", count, tags[0], tags[1]);
    for (int32_t tag = 1; tag <= 8; ++tag) {
        std::fill(tags.begin(), tags.end(), 0);
        korvane_tag_system_get_composite_tag_defintion(tag_system, tag, &count, tags.data());
        to.line("definition", tag, count, tags[0], tags[1], tags[2]);
    }
}

void describe(Description &to, const korvane_mesh_t *mesh)
{
    std::vector<int32_t> numbers;
    for (const CountAccessors &count : counts)
        numbers.push_back(to.got(count.name, count.get, mesh));
    for (const AttributeAccessors &attribute : attributes) {
        for (int32_t index = 1; index <= numbers[static_cast<std::size_t>(attribute.entity)]; ++index) {
            std::array<int32_t, max_width> v{};
            const korvane_status_t status = attribute.get(mesh, index, v.data());
            to.line(attribute.name, status, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
        }
    }
    for (const ExtraVerticesAccessors &list : extra_vertices) {
        for (int32_t index = 1; index <= numbers[static_cast<std::size_t>(list.entity)]; ++index) {
            std::array<int32_t, 999> v{};
            int32_t count = 0;
            const korvane_status_t status = list.get(mesh, index, &count, v.data());
            to.line(list.name, status, count, v[0], v[1], v[2]);
        }
    }
}

void describe(Description &to, const korvane_cad_edge_t *edge)
{
    to.line("edge");
    for (const auto getter : {korvane_cad_edge_get_id, korvane_cad_edge_get_uid, korvane_cad_edge_get_tag})
        to.got("number", getter, edge);
    for (const auto getter : {korvane_cad_edge_get_orientation, korvane_cad_edge_get_coorientation,
             korvane_cad_edge_get_degenerated, korvane_cad_edge_get_wdef})
        to.got("value", getter, edge);
    for (const auto getter : {korvane_cad_edge_get_extremities, korvane_cad_edge_get_extremities_tag,
             korvane_cad_edge_get_uv_extremities}) {
        int32_t first = 0;
        int32_t second = 0;
        getter(edge, &first, &second);
        to.line("ends", first, second);
    }
    double tmin = 0;
    double tmax = 0;
    korvane_cad_edge_get_range(edge, &tmin, &tmax);
    to.line("range", tmin, tmax);
    to.got("originals", korvane_cad_edge_get_original_id_count, edge);
    int32_t count = 0;
    double *params = nullptr;
    double *uvs = nullptr;
    double *xyzs = nullptr;
    const korvane_status_t status = korvane_cad_edge_get_support_vertices(edge, &count, &params, &uvs, &xyzs);
    to.line("support vertices", status, count);
    for (int32_t i = 0; status == STATUS_OK && i < count; ++i)
        to.line("support vertex", params[i], uvs[2 * i], uvs[2 * i + 1], xyzs[3 * i], xyzs[3 * i + 2]);
}

void describe(Description &to, const korvane_cad_face_t *face)
{
    to.line("face");
    for (const auto getter : {korvane_cad_face_get_id, korvane_cad_face_get_uid, korvane_cad_face_get_tag})
        to.got("number", getter, face);
    to.got("orientation", korvane_cad_face_get_orientation, face);
    std::array<double, 6> reals{};
    std::array<int32_t, 2> periodic{};
    korvane_cad_face_get_surface_parametric_range(face, &reals[0], &reals[2]);
    korvane_cad_face_get_surface_periodicity(face, &periodic[0], &periodic[1], &reals[4], &reals[5]);
    to.line("ranges", reals[0], reals[1], reals[2], reals[3]);
    to.line("periods", periodic[0], periodic[1], reals[4], reals[5]);
    to.got("originals", korvane_cad_face_get_original_id_count, face);
    to.got("points", korvane_cad_face_get_point_count, face);
    const int32_t edge_count = to.got("edges", korvane_cad_face_get_edge_count, face);
    for (int32_t index = 1; index <= edge_count; ++index) {
        korvane_cad_edge_t *edge = nullptr;
        korvane_cad_face_get_edge(face, index, &edge);
        describe(to, edge);
    }
}

void describe(Description &to, const korvane_cad_t *cad)
{
    for (const auto getter : {korvane_cad_get_use_vtag, korvane_cad_get_use_etag, korvane_cad_get_use_ftag,
             korvane_cad_get_thread_safety})
        to.got("flag", getter, cad);
    const int32_t face_count = to.got("faces", korvane_cad_get_face_count, cad);
    for (int32_t index = 1; index <= face_count; ++index) {
        korvane_cad_face_t *face = nullptr;
        korvane_cad_get_face(cad, index, &face);
        describe(to, face);
    }
    for (int32_t identifier = 1; identifier <= 9; ++identifier) {
        std::array<int32_t, 3> count{};
        korvane_cad_get_point_id_periodicity_count(cad, identifier, &count[0]);
        korvane_cad_get_edge_id_periodicity_count(cad, identifier, &count[1]);
        korvane_cad_get_face_id_periodicity_count(cad, identifier, &count[2]);
        to.line("periodicity", identifier, count[0], count[1], count[2]);
    }
    to.got("edge lists", korvane_cad_get_edge_multiple_periodicity_count, cad);
    to.got("face lists", korvane_cad_get_face_multiple_periodicity_count, cad);
}

void describe(Description &to, const korvane_dcad_edge_discretization_t *discretization)
{
    const int32_t count =
        to.got("vertices", korvane_dcad_edge_discretization_get_vertex_count, discretization);
    for (int32_t index = 1; index <= count; ++index) {
        double t = 0;
        std::array<double, 2> uv{};
        std::array<double, 3> xyz{};
        int32_t tag = 0;
        korvane_dcad_edge_discretization_get_vertex_coordinates(
            discretization, index, &t, uv.data(), xyz.data());
        korvane_dcad_edge_discretization_get_vertex_tag(discretization, index, &tag);
        to.line("vertex", t, uv[0], uv[1], xyz[0], xyz[1], xyz[2], tag);
    }
}

} // namespace

std::string Objects::describe() const
{
    Description to;
    to.line("deletions", deletions);
    testing::describe(to, message);
    testing::describe(to, tag_system);
    testing::describe(to, mesh);
    testing::describe(to, cad);
    testing::describe(to, free_face);
    testing::describe(to, free_edge);
    testing::describe(to, discretization);
    return to.all();
}

::testing::AssertionResult is_described_as(const Objects &objects, const std::string &wanted)
{
    const std::string found = objects.describe();
    if (found == wanted)
        return ::testing::AssertionSuccess();
    const auto [a, b] = std::mismatch(found.begin(), found.end(), wanted.begin(), wanted.end());
    const auto line = [](const std::string &text, std::string::const_iterator at) {
        const auto begin = std::find(std::make_reverse_iterator(at), text.rend(), '\n').base();
        return std::string(begin, std::find(at, text.end(), '\n'));
    };
    return ::testing::AssertionFailure() << "\"" << line(found, a) << "\" for \"" << line(wanted, b) << '"';
}

// -- Callbacks

korvane_status_t some_surface(const double uv[2], double xyz[3], double du[3], double dv[3], double duu[3],
    double duv[3], double dvv[3], void *)
{
    for (double *output : {xyz, du, dv, duu, duv, dvv})
        if (output != nullptr)
            output[0] = uv == nullptr ? 1 : uv[0];
    return STATUS_OK;
}

korvane_status_t some_curve(double t, double uv[2], double dt[2], double dtt[2], void *)
{
    for (double *output : {uv, dt, dtt})
        if (output != nullptr)
            output[0] = t;
    return STATUS_OK;
}

korvane_status_t some_curve3d(double t, double xyz[3], void *)
{
    if (xyz != nullptr)
        xyz[0] = t;
    return STATUS_OK;
}

korvane_status_t some_transformation(const double source[3], double target[3], void *)
{
    target[0] = source[0];
    return STATUS_OK;
}

korvane_status_t some_size(int32_t vertex, double *size, void *)
{
    *size = vertex;
    return STATUS_OK;
}

korvane_status_t note_message(korvane_message_t *message, void *objects)
{
    const auto [number, text] = recorded(message);
    static_cast<Objects *>(objects)->messages += std::to_string(number) + ' ' + text;
    return STATUS_OK;
}

korvane_status_t some_interrupt(int32_t *interrupt, void *)
{
    *interrupt = 0;
    return STATUS_OK;
}

void note_release(void *objects)
{
    if (objects != nullptr)
        ++static_cast<Objects *>(objects)->releases;
}

void note_deletion(void *objects)
{
    ++static_cast<Objects *>(objects)->deletions;
}

// -- Files

std::string scratch_file(const std::string &name)
{
    return scratch_folder().name(name);
}

namespace {

/// Writes a file once for every name.
const std::string &made_once(
    const std::string &name, korvane_status_t (*write)(const Objects &, const char *))
{
    static std::map<std::string, std::string> files;
    const auto [file, is_new] = files.try_emplace(name, scratch_file(name));
    if (is_new) {
        const Objects objects;
        EXPECT_EQ(write(objects, file->second.c_str()), STATUS_OK);
    }
    return file->second;
}

} // namespace

const std::string &sample_mesh_file(const std::string &extension)
{
    return made_once("sample." + extension,
        [](const Objects &o, const char *name) { return korvane_mesh_write_mesh(o.mesh, name); });
}

const std::string &sample_solution_file(const std::string &extension)
{
    return made_once("sample." + extension,
        [](const Objects &o, const char *name) { return korvane_sizemap_write_sol(o.sizemap, name); });
}

void make_sample_files()
{
    for (const char *extension : {"mesh", "meshb"})
        static_cast<void>(sample_mesh_file(extension));
    for (const char *extension : {"sol", "solb"})
        static_cast<void>(sample_solution_file(extension));
}

} // namespace korvane::testing
