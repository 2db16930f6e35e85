// Any sequence of calls on CAD models is survived, by a client that uses only what it holds references to:
// user data are deleted once, after the last call of their function, and none is left when all is given back.
//
// The client knows per unit of lifetime how many references it holds. It keeps away from what is documented
// to leave objects behind: free-standing ones that hold references to themselves, or that copies of affine
// images hold for good, and references that attaching forgets.
#include <deque>
#include <utility>

#include <korvane.h>

#include "script.h"
#include "support/cad_handles.h"

namespace {

using namespace korvane::testing;
using korvane::fuzz::require;
using korvane::fuzz::Script;

/// User data of a surface or curve, which note their end.
struct Data {
    std::deque<Data> *all;
    bool deleted = false;

    static void remove(void *data) { require(!std::exchange(static_cast<Data *>(data)->deleted, true)); }
    static void *clone(void *data)
    {
        require(!static_cast<Data *>(data)->deleted);
        return make(*static_cast<Data *>(data)->all);
    }
    static Data *make(std::deque<Data> &all) { return &all.emplace_back(Data{&all}); }
};

korvane_status_t surface(
    const double *uv, double *xyz, double *du, double *dv, double *duu, double *duv, double *dvv, void *data)
{
    require(!static_cast<const Data *>(data)->deleted);
    for (double *output : {xyz, du, dv, duu, duv, dvv})
        if (output != nullptr)
            output[0] = uv[0] * uv[1];
    return STATUS_OK;
}

korvane_status_t curve(double t, double *uv, double *dt, double *dtt, void *data)
{
    require(!static_cast<const Data *>(data)->deleted);
    for (double *output : {uv, dt, dtt})
        if (output != nullptr)
            output[1] = t;
    return STATUS_OK;
}

korvane_status_t location(double t, double *uv, double *dt, double *dtt, void *)
{
    require(dt == nullptr && dtt == nullptr);
    uv[0] = t;
    return STATUS_OK;
}

/// What lives and ends as a whole.
struct Unit {
    int references = 0; // that the client holds
    std::size_t context = 0;
    bool has_model = false;
    bool is_lent = false; // other units hold references, or evaluate it
};

struct Object : CadHandle {
    Unit *unit = nullptr;
    bool is_part = false;
    bool is_attached = false; // it was free-standing before: its copies go with the first handle
    bool is_image = false;    // an affine image, or the copy of one
};

class Client {
  public:
    explicit Client(Script &calls) : script(calls)
    {
        for (korvane_context_t *&context : contexts)
            context = korvane_context_new();
        new_model();
    }
    ~Client()
    {
        for (std::size_t i = 0; i < contexts.size(); ++i)
            end_context(i);
        for (Object &object : objects)
            while (object.unit->references > 0)
                remove(object);
        for (const Data &each : data)
            require(each.deleted);
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    void step()
    {
        static constexpr void (Client::*steps[])() = {&Client::new_model, &Client::new_face,
            &Client::new_face, &Client::new_edge, &Client::new_edge, &Client::new_segment,
            &Client::new_polyline, &Client::new_polyline, &Client::new_approximate, &Client::transform_face,
            &Client::transform_edge, &Client::copy_face, &Client::copy_edge, &Client::attach_face,
            &Client::attach_edge, &Client::retain, &Client::give_back, &Client::give_back, &Client::evaluate,
            &Client::evaluate, &Client::change_lists, &Client::change_values, &Client::declare_periodic,
            &Client::declare_multiple_periodic, &Client::discretize, &Client::walk_model,
            &Client::restart_context};
        (this->*steps[script.choice(std::size(steps))])();
    }

  private:
    // -- What the client holds

    template <class Condition>
    Object *pick(Condition condition)
    {
        return pick_from(
            objects, [&](const Object &object) { return object.unit->references > 0 && condition(object); },
            [this](std::size_t count) { return script.choice(count); });
    }
    Object *pick_model() { return pick(is_model); }
    Object *pick_face() { return pick(is_face); }
    Object *pick_edge() { return pick(is_edge); }
    Unit *new_unit() { return &units.emplace_back(); }
    /// Records a handle that was given, in the unit of its owner or in a new one.
    void record(Object object, const Object *owner)
    {
        object.unit = owner == nullptr ? new_unit() : owner->unit;
        object.is_part = owner != nullptr;
        ++object.unit->references;
        objects.push_back(object);
    }
    static void remove(const Object &object)
    {
        --object.unit->references;
        object.give_back();
    }

    // -- Making

    void new_model()
    {
        const std::size_t context = script.choice(contexts.size());
        Object model{};
        model.cad = korvane_cad_new(contexts[context]);
        record(model, nullptr);
        objects.back().unit->context = context;
        objects.back().unit->has_model = true;
    }
    void new_face()
    {
        const Object *model = pick_model();
        Object face{};
        Data *own = Data::make(data);
        face.face = korvane_cad_face_new(model_of(model), script.byte(), surface, own);
        if (face.face == nullptr) {
            require(model == nullptr);
            return Data::remove(own);
        }
        korvane_cad_face_set_delete_function(face.face, Data::remove);
        korvane_cad_face_set_clone_function(face.face, Data::clone);
        record(face, model);
    }
    void new_edge()
    {
        const Object *face = pick_face();
        Object edge{};
        Data *own = Data::make(data);
        edge.edge =
            korvane_cad_edge_new(face_of(face), script.byte(), script.real(), script.real(), curve, own);
        if (edge.edge == nullptr) {
            require(face == nullptr);
            return Data::remove(own);
        }
        korvane_cad_edge_set_delete_function(edge.edge, Data::remove);
        korvane_cad_edge_set_clone_function(edge.edge, Data::clone);
        record(edge, face);
    }
    void new_segment()
    {
        const Object *face = script.chance() ? pick_face() : nullptr;
        const auto ends = script.reals<4>();
        Object edge{};
        edge.edge = korvane_cad_edge_new_segment(face_of(face), script.byte(), ends.data(), ends.data() + 2);
        record(edge, face);
    }
    void new_approximate()
    {
        const Object *face = pick_face();
        Object edge{};
        edge.edge = korvane_cad_edge_new0(
            face_of(face), script.byte(), script.real(), script.real(), location, nullptr);
        if (edge.edge != nullptr)
            record(edge, face);
    }
    void new_polyline()
    {
        const Object *face = pick_face();
        if (face == nullptr)
            return;
        std::vector<double> points;
        std::vector<double> params;
        std::vector<korvane_cad_edge_t *> originals;
        for (std::size_t left = script.choice(6); left > 0; --left) {
            const Object *original = pick([&](const Object &object) {
                return is_edge(object) && (object.unit->has_model || face->unit->has_model);
            });
            if (original == nullptr)
                break;
            original->unit->is_lent = true;
            originals.push_back(original->edge);
            for (int i = 0; i < 2; ++i)
                points.push_back(script.real());
            params.push_back(script.real());
        }
        const auto n = static_cast<int32_t>(originals.size());
        Object edge{};
        if (script.chance())
            edge.edge = korvane_cad_edge_new_newton1(face->face, 1, n, points.data());
        else
            edge.edge = korvane_cad_edge_new_newton1_with_ea(face->face, 1, n, points.data(),
                script.choice(4) == 0 ? nullptr : originals.data(),
                script.choice(4) == 0 ? nullptr : params.data());
        require((edge.edge == nullptr) == (n < 1));
        if (edge.edge != nullptr)
            record(edge, face);
    }
    void transform_face()
    {
        const Object *source = pick_face();
        if (source == nullptr)
            return;
        const Object *model = script.chance() ? pick_model() : nullptr;
        const auto numbers = script.reals<4>();
        korvane_cad_face_clone(source->face); // that the new face takes over
        source->unit->is_lent = true;
        Object face{};
        face.face = korvane_cad_face_new_pafftrans(
            model_of(model), source->face, script.byte(), numbers.data(), numbers.data() + 2, nullptr, 1);
        record(face, model);
    }
    void transform_edge()
    {
        const Object *source = pick_edge();
        if (source == nullptr)
            return;
        const Object *face = script.chance() ? pick_face() : nullptr;
        const auto numbers = script.reals<4>();
        source->unit->is_lent = true;
        Object edge{};
        edge.is_image = true;
        edge.edge = korvane_cad_edge_new_afftrans(
            face_of(face), source->edge, script.byte(), numbers.data(), numbers.data() + 2);
        record(edge, face);
    }
    void copy_face()
    {
        const Object *original = pick_face();
        Object face{};
        face.face = korvane_cad_face_new_copy(face_of(original));
        if (face.face != nullptr)
            record(face, nullptr);
    }
    void copy_edge()
    {
        const Object *original = pick([](const Object &object) {
            return is_edge(object) && !object.is_image && !object.is_attached &&
                   (object.is_part || !object.unit->is_lent);
        });
        if (original == nullptr)
            return;
        Object edge{};
        edge.edge = korvane_cad_edge_new_copy(original->edge);
        record(edge, nullptr);
        if (!original->is_part)
            objects.back().unit->references = original->unit->references;
    }

    // -- Counting

    /// One reference of many would remain, so there has to be one; it moves with all handles.
    void move_to(Object &object, const Object &owner)
    {
        Unit *before = object.unit;
        for (Object &each : objects)
            if (each.unit == before)
                each.unit = owner.unit;
        before->references = 0;
        ++owner.unit->references;
        object.is_part = true;
        object.is_attached = true;
    }
    void attach_face()
    {
        Object *face = pick([](const Object &object) {
            return is_face(object) && !object.is_part && !object.unit->is_lent &&
                   object.unit->references == 1;
        });
        const Object *model = pick_model();
        if (face == nullptr || model == nullptr)
            return;
        require(korvane_cad_face_attach(face->face, model->cad) == STATUS_OK);
        require(korvane_cad_face_attach(face->face, model->cad) == STATUS_ERROR);
        move_to(*face, *model);
    }
    void attach_edge()
    {
        Object *edge = pick([](const Object &object) {
            return is_edge(object) && !object.is_part && !object.unit->is_lent &&
                   object.unit->references == 1;
        });
        const Object *face = pick_face();
        if (edge == nullptr || face == nullptr)
            return;
        require(korvane_cad_edge_attach(edge->edge, face->face) == STATUS_OK);
        move_to(*edge, *face);
    }
    void retain()
    {
        const Object *object = pick([](const Object &each) { return !is_model(each); });
        if (object == nullptr)
            return;
        require(korvane_cad_face_clone(object->face) == object->face);
        require(korvane_cad_edge_clone(object->edge) == object->edge);
        ++object->unit->references;
    }
    void give_back()
    {
        if (const Object *object = pick([](const Object &) { return true; }); object != nullptr)
            remove(*object);
    }
    void end_context(std::size_t index)
    {
        korvane_context_delete(contexts[index]);
        for (Unit &unit : units)
            if (unit.has_model && unit.context == index)
                unit.references = 0;
    }
    void restart_context()
    {
        if (script.choice(4) != 0)
            return;
        const std::size_t index = script.choice(contexts.size());
        end_context(index);
        contexts[index] = korvane_context_new();
    }

    // -- Using

    void evaluate()
    {
        std::array<double, 18> out{};
        if (const Object *face = pick_face(); face != nullptr) {
            const auto uv = script.reals<2>();
            const korvane_status_t status = korvane_cad_face_surface(face->face, uv.data(), out.data(),
                out.data() + 3, script.chance() ? out.data() + 6 : nullptr, out.data() + 9, nullptr,
                script.chance() ? out.data() + 15 : nullptr);
            korvane_cad_face_t *original = nullptr;
            int64_t aux = 0;
            require(korvane_cad_face_get_original_geometry(
                        face->face, uv.data(), &original, out.data(), &aux) == status);
            require(status == (original == nullptr ? STATUS_ERROR : STATUS_OK));
        }
        if (const Object *edge = pick_edge(); edge != nullptr) {
            const double t = script.real();
            korvane_cad_edge_curve(edge->edge, t, out.data(), script.chance() ? out.data() + 2 : nullptr,
                script.chance() ? out.data() + 4 : nullptr);
            korvane_cad_edge_t *original = nullptr;
            const korvane_status_t status = korvane_cad_edge_get_original_geometry(
                edge->edge, t, &original, out.data(), out.data() + 1, out.data() + 2);
            require(status == (original == nullptr ? STATUS_ERROR : STATUS_OK));
        }
    }
    /// From the top down: everything is where its owner lists it.
    void walk_model()
    {
        const Object *model = pick_model();
        int32_t count = 0;
        korvane_cad_face_t *face = nullptr;
        if (model == nullptr || korvane_cad_get_face_count(model->cad, &count) != STATUS_OK)
            return;
        for (int32_t i = 1; i <= count; ++i) {
            korvane_cad_t *owner = nullptr;
            require(korvane_cad_get_face(model->cad, i, &face) == STATUS_OK);
            require(korvane_cad_face_get_cad(face, &owner) == STATUS_OK && owner == model->cad);
            walk_face(face);
        }
        require(korvane_cad_get_face(model->cad, count + 1, &face) == STATUS_ERROR);
        require(korvane_cad_get_face(model->cad, 0, &face) == STATUS_ERROR);
    }
    static void walk_face(korvane_cad_face_t *face)
    {
        int32_t count = 0;
        require(korvane_cad_face_get_edge_count(face, &count) == STATUS_OK);
        for (int32_t i = 1; i <= count; ++i) {
            korvane_cad_edge_t *edge = nullptr;
            korvane_cad_face_t *owner = nullptr;
            require(korvane_cad_face_get_edge(face, i, &edge) == STATUS_OK);
            require(korvane_cad_edge_get_face(edge, &owner) == STATUS_OK && owner == face);
        }
        require(korvane_cad_face_get_point_count(face, &count) == STATUS_OK);
        for (int32_t i = 1; i <= count; ++i) {
            korvane_cad_point_t *point = nullptr;
            std::array<double, 2> uv{};
            require(korvane_cad_face_get_point(face, i, &point) == STATUS_OK);
            require(korvane_cad_point_get_uv(point, uv.data()) == STATUS_OK);
        }
        require(korvane_cad_face_get_original_id_count(face, &count) == STATUS_OK);
        uint32_t id = 0;
        for (int32_t i = 1; i <= count; ++i)
            require(korvane_cad_face_get_original_id(face, i, &id) == STATUS_OK);
    }
    void change_lists()
    {
        if (const Object *face = pick_face(); face != nullptr) {
            const auto uv = script.reals<2>();
            korvane_cad_point_t *point = korvane_cad_point_new(face->face, script.byte(), uv.data());
            require(korvane_cad_point_set_tag(point, script.byte()) == STATUS_OK);
            if (script.chance())
                korvane_cad_point_delete(point);
            korvane_cad_face_add_original_id(face->face, script.byte());
            if (script.choice(4) == 0)
                korvane_cad_face_reset_original_id(face->face);
            const Object *target = pick_face();
            require(korvane_cad_face_clone_points(face->face, face_of(target)) == STATUS_OK);
        }
        if (const Object *edge = pick_edge(); edge != nullptr) {
            const auto numbers = script.reals<5>();
            const int32_t wanted = static_cast<int32_t>(script.choice(12)) - 2;
            require(korvane_cad_edge_set_support_vertex_count(edge->edge, wanted) ==
                    (wanted < 0 ? STATUS_ERROR : STATUS_OK));
            korvane_cad_edge_set_support_vertex(
                edge->edge, script.integer(), script.real(), numbers.data(), numbers.data() + 2);
            int32_t count = 0;
            double *values = nullptr;
            if (korvane_cad_edge_get_support_vertices(edge->edge, &count, nullptr, nullptr, &values) ==
                STATUS_OK)
                require(count >= 0 && (values != nullptr) == (count > 0));
            require(korvane_cad_edge_add_original_id(edge->edge, script.byte()) == STATUS_OK);
        }
    }
    void change_values()
    {
        if (const Object *face = pick_face(); face != nullptr) {
            const auto range = script.reals<4>();
            auto uv = script.reals<2>();
            korvane_cad_face_set_surface_parametric_range(face->face, range.data(), range.data() + 2);
            korvane_cad_face_set_surface_periodicity(
                face->face, script.chance(), script.chance(), script.real(), script.real());
            int32_t clamps = 0;
            korvane_cad_face_check_point_parametric_range(face->face, uv.data(), &clamps);
            require(clamps >= 0 && clamps <= 4);
            korvane_cad_face_set_tag(face->face, script.byte());
        }
        if (const Object *edge = pick_edge(); edge != nullptr) {
            korvane_cad_edge_set_range(edge->edge, script.real(), script.real());
            korvane_cad_edge_set_extremities_tag(edge->edge, script.integer(), script.integer());
        }
        if (const Object *model = pick_model(); model != nullptr && script.choice(4) == 0) {
            korvane_tag_system_t *before = nullptr;
            require(korvane_cad_get_tag_system(model->cad, &before) == STATUS_OK);
            require(korvane_cad_set_tag_system(model->cad, korvane_tag_system_new(3)) == STATUS_OK);
            korvane_tag_system_delete(before); // which the model has forgotten
        }
    }
    void declare_periodic()
    {
        const Object *model = pick_model();
        if (model == nullptr)
            return;
        const int32_t first = script.integer();
        const int32_t second = script.integer();
        const bool stored = first != 0 && second != 0 && first != second;
        const int32_t companion = script.integer();
        require(korvane_cad_add_face_periodicity(model->cad, first, second) == STATUS_OK);
        require(korvane_cad_add_edge_periodicity(model->cad, companion, first, 1, second, script.byte()) ==
                STATUS_OK);
        require(korvane_cad_add_point_periodicity(model->cad, companion, first, 2, second) == STATUS_OK);
        int32_t count = 0;
        require(korvane_cad_get_face_id_periodicity_count(model->cad, first, &count) == STATUS_OK);
        require(count >= stored);
        bool found = false;
        for (int32_t i = 0; i <= count + 1; ++i) {
            int32_t other = 0;
            const korvane_status_t status = korvane_cad_get_face_id_periodicity(model->cad, first, i, &other);
            require(status == (i >= 1 && i <= count ? STATUS_OK : STATUS_ERROR));
            found = found || other == second;
        }
        require(found || !stored);
        int32_t companions[2] = {};
        int32_t other = 0;
        int32_t orientation = 0;
        korvane_cad_get_edge_id_periodicity(
            model->cad, first, script.integer(), companions, companions + 1, &other, &orientation);
    }
    void declare_multiple_periodic()
    {
        const Object *model = pick_model();
        if (model == nullptr)
            return;
        std::vector<int32_t> ids = script.integers();
        ids.reserve(1); // an empty list is not null
        const auto id_count = static_cast<int32_t>(ids.size());
        const auto points = script.reals<30>();
        korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points(model->cad,
            ids.data(), id_count, ids.data(), id_count, points.data(), script.byte() % 7 - 1,
            points.data() + 15, script.byte() % 7 - 1);
        int32_t count = 0;
        require(korvane_cad_get_face_multiple_periodicity_count(model->cad, &count) == STATUS_OK);
        require(count > 0);
        auto *sources = static_cast<int32_t *>(korvane_cad_calloc_generic_buffer(model->cad));
        auto *targets = static_cast<int32_t *>(korvane_cad_calloc_generic_buffer(model->cad));
        int32_t counts[2] = {-1, -1};
        korvane_cad_transformation_t transformation = nullptr;
        void *user_data = nullptr;
        require(korvane_cad_get_face_multiple_periodicity(model->cad, count, sources, &counts[0], targets,
                    &counts[1], &transformation, &user_data) == STATUS_OK);
        require(counts[0] == id_count && counts[1] == id_count);
        if (double image[3] = {}; transformation != nullptr)
            transformation(points.data(), image, user_data);
        korvane_cad_free_generic_buffer(sources);
        korvane_cad_free_generic_buffer(targets);
    }
    void discretize()
    {
        const Object *model = pick_model();
        if (model == nullptr)
            return;
        korvane_dcad_t *dcad = korvane_dcad_new(model->cad);
        for (std::size_t left = script.choice(8); left > 0; --left) {
            const Object *edge = pick_edge();
            korvane_dcad_edge_discretization_t *made = nullptr;
            if (edge == nullptr || korvane_dcad_get_edge_discretization(dcad, edge->edge, &made) != STATUS_OK)
                continue;
            require(edge->unit == model->unit);
            const auto count = static_cast<int32_t>(script.choice(9));
            require(korvane_dcad_edge_discretization_set_vertex_count(made, count) == STATUS_OK);
            if (count > 0)
                korvane_dcad_edge_discretization_set_vertex_tag(made, count, script.integer());
            korvane_dcad_edge_discretization_t *again = nullptr;
            require(korvane_dcad_query_edge_discretization(dcad, edge->edge, &again) == STATUS_OK);
            require(again == made);
        }
        korvane_dcad_delete(dcad);
    }

    Script &script;
    std::array<korvane_context_t *, 2> contexts{};
    std::deque<Unit> units;
    std::deque<Object> objects;
    std::deque<Data> data;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Script script(data, size);
    Client client(script);
    for (int steps = 0; !script.has_ended() && steps < 400; ++steps)
        client.step();
    return 0;
}
