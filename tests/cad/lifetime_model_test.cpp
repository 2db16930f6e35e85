// The life of models, faces and edges as a state machine: random sequences of everything that counts, against
// a naive model of the counting rules. The delete functions in their order, every status of an evaluation and
// every original geometry must be as the model says; what is touched after its end shows under the
// sanitizers.
#include <algorithm>
#include <deque>
#include <random>

#include "cad_support.h"
#include "support/cad_handles.h"

namespace korvane::testing {
namespace {

struct Data;

/// All user data, and the order in which they were deleted.
struct Ledger {
    std::deque<Data> data;
    std::vector<const Data *> deletions;
    std::vector<const Data *> expected; // by the model
};

/// User data of a face or edge of the client.
struct Data {
    bool deleted;
    Ledger *ledger;

    static void remove(void *user_data)
    {
        auto &data = *static_cast<Data *>(user_data);
        data.deleted = true;
        data.ledger->deletions.push_back(&data);
    }
    static void *clone(void *user_data) { return &make(*static_cast<Data *>(user_data)->ledger); }
    static Data &make(Ledger &ledger) { return ledger.data.emplace_back(Data{false, &ledger}); }
};

constexpr korvane_status_t status_after_deletion = 77;

korvane_status_t living_surface(
    const double *uv, double *xyz, double *, double *, double *, double *, double *, void *user_data)
{
    write(xyz, uv[0], uv[1], 1);
    return static_cast<const Data *>(user_data)->deleted ? status_after_deletion : STATUS_OK;
}

korvane_status_t living_curve(double t, double *uv, double *, double *, void *user_data)
{
    write(uv, t, t);
    return static_cast<const Data *>(user_data)->deleted ? status_after_deletion : STATUS_OK;
}

korvane_status_t location(double t, double *uv, double *, double *, void *)
{
    write(uv, t, t);
    return STATUS_OK;
}

enum class Kind { client, transformed, segment, polyline, polyline_copy, approximate };

/// A model, face or edge, as the counting rules see it.
struct Object : CadHandle {
    Kind kind = Kind::client;
    std::size_t context = 0; // of a model
    Object *owner = nullptr;
    std::vector<Object *> parts;
    int count = 0; // own counter
    bool ended = false;
    Data *data = nullptr;       // whose deletion is counted
    std::vector<Object *> held; // references that its delete function gives back
    std::vector<Object *> runs; // of a polyline with parameters, per point
    Object *source = nullptr;   // that it is evaluated from
};

Object &unit(Object &object)
{
    return object.owner == nullptr ? object : unit(*object.owner);
}

/// True if that was the last reference: the unit has to end.
bool loses_last_reference(Object &unit)
{
    return !unit.ended && --unit.count <= 0;
}

/// What an object releases goes when its delete function has returned, in the order of its release.
void run_deletions(Object &object)
{
    for (Object *part : object.parts)
        run_deletions(*part);
    if (object.data != nullptr)
        object.data->ledger->expected.push_back(object.data);
    std::vector<Object *> released;
    for (Object *held : object.held) {
        Object &counted = unit(*held);
        if (!loses_last_reference(counted))
            continue;
        counted.ended = true;
        released.push_back(&counted);
    }
    for (Object *each : released)
        run_deletions(*each);
}

void end(Object &ended)
{
    ended.ended = true;
    run_deletions(ended);
}

void give_back(Object &object)
{
    if (Object &counted = unit(object); loses_last_reference(counted))
        end(counted);
}

class Machine {
  public:
    explicit Machine(unsigned seed) : random(seed)
    {
        for (korvane_context_t *&context : contexts)
            context = korvane_context_new();
        new_model();
    }
    ~Machine()
    {
        for (std::size_t i = 0; i < contexts.size(); ++i)
            end_context(i);
        for (Object &object : objects) { // free-standing ones have nobody else
            while (!unit(object).ended)
                remove(object);
        }
        check();
    }
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;

    void step()
    {
        static constexpr void (Machine::*steps[])() = {&Machine::new_model, &Machine::new_face,
            &Machine::new_face, &Machine::new_edge, &Machine::new_edge, &Machine::new_edge,
            &Machine::new_segment, &Machine::new_polyline, &Machine::new_polyline, &Machine::new_approximate,
            &Machine::transform_face, &Machine::transform_face, &Machine::transform_edge,
            &Machine::transform_edge, &Machine::copy_face, &Machine::copy_edge, &Machine::attach_face,
            &Machine::attach_edge, &Machine::retain, &Machine::change_lists, &Machine::restart_context,
            &Machine::remove_any, &Machine::remove_any, &Machine::remove_any};
        (this->*steps[random() % std::size(steps)])();
    }

    /// Everything that the client can see must be as the model says.
    void check()
    {
        ASSERT_EQ(ledger.deletions, ledger.expected);
        for (Object &object : objects) {
            if (unit(object).ended)
                continue;
            if (object.face != nullptr)
                check_face(object);
            else if (object.edge != nullptr)
                check_edge(object);
            else
                ASSERT_EQ(got(korvane_cad_get_face_count, object.cad), std::ssize(object.parts));
        }
    }

  private:
    // -- Choice

    template <class Condition>
    Object *pick(Condition condition)
    {
        return pick_from(
            objects, [&](Object &object) { return !unit(object).ended && condition(object); },
            [this](std::size_t count) { return random() % count; });
    }
    Object *pick_model() { return pick(is_model); }
    Object *pick_face() { return pick(is_face); }
    Object *pick_edge() { return pick(is_edge); }
    bool chance() { return random() % 2 == 0; }

    // -- The rules

    Object &record(Object object)
    {
        object.count = 1;
        return objects.emplace_back(std::move(object));
    }
    static void enter(Object &object, Object &owner)
    {
        object.owner = &owner;
        owner.parts.push_back(&object);
        ++unit(owner).count;
    }
    Object &record(Object object, Object *owner)
    {
        Object &recorded = record(std::move(object));
        if (owner != nullptr)
            enter(recorded, *owner);
        return recorded;
    }
    void remove(Object &object)
    {
        give_back(object);
        object.give_back();
    }

    // -- Operations

    void new_model()
    {
        Object model;
        model.context = random() % contexts.size();
        model.cad = korvane_cad_new(contexts[model.context]);
        record(std::move(model));
    }
    void new_face()
    {
        Object *model = pick_model();
        if (model == nullptr)
            return;
        Object face;
        face.data = &Data::make(ledger);
        face.face = korvane_cad_face_new(model->cad, 1, living_surface, face.data);
        korvane_cad_face_set_delete_function(face.face, Data::remove);
        korvane_cad_face_set_clone_function(face.face, Data::clone);
        record(std::move(face), model);
    }
    void new_edge()
    {
        Object *face = pick_face();
        if (face == nullptr)
            return;
        Object edge;
        edge.data = &Data::make(ledger);
        edge.edge = korvane_cad_edge_new(face->face, 1, 0, 1, living_curve, edge.data);
        korvane_cad_edge_set_delete_function(edge.edge, Data::remove);
        korvane_cad_edge_set_clone_function(edge.edge, Data::clone);
        record(std::move(edge), face);
    }
    void new_segment()
    {
        Object *face = chance() ? pick_face() : nullptr;
        Object edge;
        edge.kind = Kind::segment;
        edge.edge = korvane_cad_edge_new_segment(face_of(face), 1, place.data(), place.data());
        record(std::move(edge), face);
    }
    void new_approximate()
    {
        Object *face = pick_face();
        if (face == nullptr)
            return;
        Object edge;
        edge.kind = Kind::approximate;
        edge.edge = korvane_cad_edge_new0(face->face, 1, 0, 1, location, nullptr);
        record(std::move(edge), face);
    }
    void new_polyline()
    {
        Object *face = pick_face();
        if (face == nullptr)
            return;
        Object edge;
        edge.kind = Kind::polyline;
        std::vector<korvane_cad_edge_t *> handles;
        for (std::size_t i = 0; i < 1 + random() % 4; ++i) {
            Object *original = chance() && i > 0 ? edge.runs.back() : pick_edge();
            if (original == nullptr)
                return;
            if (i == 0 || edge.runs.back() != original)
                edge.held.push_back(original);
            edge.runs.push_back(original);
            handles.push_back(original->edge);
        }
        const std::vector<Uv> points(handles.size(), place);
        const std::vector<double> params(handles.size(), 0.5);
        const bool with_params = chance();
        edge.edge = korvane_cad_edge_new_newton1_with_ea(face->face, 1, static_cast<int32_t>(handles.size()),
            points[0].data(), handles.data(), with_params ? params.data() : nullptr);
        if (!with_params)
            edge.runs.clear();
        for (Object *held : edge.held)
            ++unit(*held).count;
        record(std::move(edge), face);
    }
    /// Takes over a reference that the client has taken before, or one that it counted on otherwise.
    void transform_face()
    {
        Object *source = pick_face();
        if (source == nullptr)
            return;
        if (chance()) {
            korvane_cad_face_clone(source->face);
            ++unit(*source).count;
        }
        Object *model = chance() ? pick_model() : nullptr;
        Object face;
        face.kind = Kind::transformed;
        face.source = source;
        face.held = {source};
        face.face = korvane_cad_face_new_pafftrans(
            model_of(model), source->face, 1, place.data(), place.data(), nullptr, 1);
        record(std::move(face), model);
    }
    void transform_edge()
    {
        Object *source = pick_edge();
        if (source == nullptr)
            return;
        Object *face = chance() ? pick_face() : nullptr;
        Object edge;
        edge.kind = Kind::transformed;
        edge.source = source;
        edge.edge = korvane_cad_edge_new_afftrans(face_of(face), source->edge, 1, place.data(), place.data());
        record(std::move(edge), face);
    }
    void copy_face()
    {
        Object *original = pick_face();
        if (original == nullptr)
            return;
        Object copy;
        copy.kind = original->kind;
        copy.source = original->source;
        copy.held = original->held;
        for (Object *held : copy.held)
            ++unit(*held).count;
        copy.face = korvane_cad_face_new_copy(original->face);
        copy.data = original->data == nullptr ? nullptr : &ledger.data.back();
        record(std::move(copy));
    }
    void copy_edge()
    {
        Object *original = pick_edge();
        if (original == nullptr)
            return;
        Object copy;
        copy.kind = original->kind == Kind::polyline && !original->runs.empty() ? Kind::polyline_copy
                                                                                : original->kind;
        copy.source = original->source;
        if (copy.source != nullptr) // for good
            ++unit(*copy.source).count;
        copy.edge = korvane_cad_edge_new_copy(original->edge);
        copy.data = original->data == nullptr ? nullptr : &ledger.data.back();
        // The copy of an edge takes over the own counter of the original.
        record(std::move(copy)).count = original->count;
    }
    void attach_face()
    {
        Object *face = pick([](const Object &object) { return is_face(object) && !object.owner; });
        Object *model = pick_model();
        if (face == nullptr || model == nullptr)
            return;
        ASSERT_EQ(korvane_cad_face_attach(face->face, model->cad), STATUS_OK);
        face->count = 0;
        enter(*face, *model);
    }
    void attach_edge()
    {
        Object *edge = pick([](const Object &object) { return is_edge(object) && !object.owner; });
        Object *face = pick_face();
        if (edge == nullptr || face == nullptr)
            return;
        ASSERT_EQ(korvane_cad_edge_attach(edge->edge, face->face), STATUS_OK);
        edge->count = 0;
        enter(*edge, *face);
    }
    void retain()
    {
        Object *object = pick([](const Object &each) { return !is_model(each); });
        if (object == nullptr)
            return;
        korvane_cad_face_clone(object->face);
        korvane_cad_edge_clone(object->edge);
        ++unit(*object).count;
    }
    /// What is owned without being counted.
    void change_lists()
    {
        if (Object *face = pick_face(); face != nullptr) {
            korvane_cad_point_t *point = korvane_cad_point_new(face->face, 1, place.data());
            if (chance())
                korvane_cad_point_delete(point);
            korvane_cad_face_add_original_id(face->face, 5);
        }
        if (Object *edge = pick_edge(); edge != nullptr) {
            korvane_cad_edge_set_support_vertex_count(edge->edge, static_cast<int32_t>(random() % 3));
            korvane_cad_edge_set_support_vertex(edge->edge, 1, 0, place.data(), here.data());
            korvane_cad_edge_add_original_id(edge->edge, 5);
        }
    }
    void end_context(std::size_t index)
    {
        for (std::size_t i = objects.size(); i-- > 0;) { // newest first
            if (objects[i].cad != nullptr && objects[i].context == index && !objects[i].ended)
                end(objects[i]);
        }
        korvane_context_delete(contexts[index]);
    }
    void remove_any()
    {
        if (Object *object = pick([](const Object &) { return true; }); object != nullptr)
            remove(*object);
    }
    void restart_context()
    {
        if (random() % 8 != 0)
            return;
        const std::size_t index = random() % contexts.size();
        end_context(index);
        contexts[index] = korvane_context_new();
    }

    // -- Checks

    static bool is_evaluable(Object &object)
    {
        return !unit(object).ended && (object.source == nullptr || is_evaluable(*object.source));
    }
    static Object &original_of(Object &object)
    {
        return object.source == nullptr ? object : original_of(*object.source);
    }
    static void check_face(Object &object)
    {
        const korvane_status_t expected = is_evaluable(object) ? STATUS_OK : STATUS_ERROR;
        ASSERT_EQ(evaluate(object.face, {1, 2}).status, expected);
        korvane_cad_face_t *original = nullptr;
        ASSERT_EQ(korvane_cad_face_get_original_geometry(object.face, nullptr, &original, nullptr, nullptr),
            expected);
        ASSERT_EQ(original, expected == STATUS_OK ? original_of(object).face : nullptr);
        ASSERT_EQ(got(korvane_cad_face_get_edge_count, object.face), std::ssize(object.parts));
        ASSERT_EQ(got(korvane_cad_face_get_cad, object.face), model_of(object.owner));
    }
    static void check_edge(Object &object)
    {
        const korvane_status_t expected = is_evaluable(object) ? STATUS_OK : STATUS_ERROR;
        ASSERT_EQ(evaluate(object.edge, 0.5).status, expected);
        ASSERT_EQ(got(korvane_cad_edge_get_face, object.edge), face_of(object.owner));
        Object &last = original_of(object);
        korvane_cad_edge_t *original = nullptr;
        const korvane_status_t status =
            korvane_cad_edge_get_original_geometry(object.edge, 0.5, &original, nullptr, nullptr, nullptr);
        if (expected == STATUS_OK && last.kind == Kind::polyline && !last.runs.empty()) {
            // All points coincide: the last segment, which starts at the last point but one.
            const std::size_t n = last.runs.size();
            Object &run = *last.runs[n < 2 ? 0 : n - 2];
            ASSERT_EQ(status, unit(run).ended ? STATUS_ERROR : STATUS_OK);
            ASSERT_EQ(original, unit(run).ended ? nullptr : run.edge);
        } else if (expected == STATUS_OK && last.kind == Kind::polyline_copy) {
            ASSERT_EQ(status, STATUS_ERROR);
        } else {
            ASSERT_EQ(status, expected);
            ASSERT_EQ(original, expected == STATUS_OK ? last.edge : nullptr);
        }
    }

    const Uv place{1, 2};
    const Xyz here{1, 2, 3};
    std::mt19937 random;
    std::array<korvane_context_t *, 2> contexts{};
    std::deque<Object> objects;
    Ledger ledger;
};

TEST(LifetimeModel, RandomSequencesEndAsTheCountingRulesSay)
{
    for (unsigned seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(seed);
        Machine machine(seed);
        for (int step = 0; step < 80; ++step) {
            machine.step();
            machine.check();
            if (::testing::Test::HasFailure())
                return;
        }
    }
}

TEST(LifetimeModel, LongSequencesToo)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE(seed);
        Machine machine(seed);
        for (int step = 0; step < 4000; ++step) {
            machine.step();
            if (step % 100 == 0)
                machine.check();
            if (::testing::Test::HasFailure())
                return;
        }
    }
}

} // namespace
} // namespace korvane::testing
