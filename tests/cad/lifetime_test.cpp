// Who keeps models, faces and edges alive, and what happens when they go: scenario by scenario. Most of what
// these tests are about shows under the address and leak sanitizers.
#include "cad/lifetime.h"

#include <cstdlib>
#include <deque>
#include <functional>
#include <string>

#include "cad_support.h"

namespace korvane::testing {
namespace {

const Uv one{1, 1};

korvane_cad_face_t *derive(korvane_cad_t *owner, korvane_cad_face_t *source)
{
    return korvane_cad_face_new_pafftrans(owner, source, 1, one.data(), one.data(), nullptr, 0);
}

korvane_cad_edge_t *derive(korvane_cad_face_t *owner, korvane_cad_edge_t *source)
{
    return korvane_cad_edge_new_afftrans(owner, source, 1, one.data(), one.data());
}

korvane_cad_edge_t *polyline_of(korvane_cad_face_t *owner, const std::vector<korvane_cad_edge_t *> &edges)
{
    const std::vector<double> params(edges.size(), 0.5);
    const std::vector<Uv> points(edges.size(), one);
    return korvane_cad_edge_new_newton1_with_ea(
        owner, 1, static_cast<int32_t>(edges.size()), points[0].data(), edges.data(), params.data());
}

class Lifetime : public Cad {
  protected:
    /// User data that write their name when they are deleted, and then do what they are told.
    struct Noted {
        std::string *log;
        std::string name;
        std::function<void()> action;

        static void note(void *user_data)
        {
            const auto *noted = static_cast<const Noted *>(user_data);
            *noted->log += noted->name;
            if (noted->action)
                noted->action();
        }
    };

    void *noted(const std::string &name, std::function<void()> action = {})
    {
        return &notes.emplace_back(Noted{&log, name, std::move(action)});
    }
    korvane_cad_face_t *noted_face(
        korvane_cad_t *owner, const std::string &name, std::function<void()> action = {})
    {
        korvane_cad_face_t *face =
            korvane_cad_face_new(owner, 1, polynomial_surface, noted(name, std::move(action)));
        korvane_cad_face_set_delete_function(face, Noted::note);
        return face;
    }
    korvane_cad_edge_t *noted_edge(
        korvane_cad_face_t *face, const std::string &name, std::function<void()> action = {})
    {
        korvane_cad_edge_t *edge =
            korvane_cad_edge_new(face, 1, 0, 1, polynomial_curve, noted(name, std::move(action)));
        korvane_cad_edge_set_delete_function(edge, Noted::note);
        return edge;
    }
    ~Lifetime() override { delete_context(); }

    std::string log;
    std::deque<Noted> notes;
};

TEST_F(Lifetime, TheModelGoesWithTheLastHandleInAnyOrder)
{
    korvane_cad_face_t *face = noted_face(cad, "f");
    korvane_cad_delete(cad);
    EXPECT_EQ(log, "");
    EXPECT_EQ(got(korvane_cad_get_face_count, cad), 1) << "the face keeps it";
    korvane_cad_face_delete(face);
    EXPECT_EQ(log, "f");
}

TEST_F(Lifetime, EveryFaceAndEdgeAndCloneCountsOnTheModel)
{
    korvane_cad_face_t *face = noted_face(cad, "f");
    korvane_cad_edge_t *edge = noted_edge(face, "e");
    EXPECT_EQ(cad->reference_count, 3u);
    EXPECT_EQ(korvane_cad_face_clone(face), face);
    EXPECT_EQ(korvane_cad_edge_clone(edge), edge);
    EXPECT_EQ(cad->reference_count, 5u);
    korvane_cad_edge_delete(edge);
    korvane_cad_edge_delete(edge);
    korvane_cad_face_delete(face);
    korvane_cad_delete(cad);
    EXPECT_EQ(log, "");
    korvane_cad_face_delete(face);
    EXPECT_EQ(log, "ef");
}

TEST_F(Lifetime, DeleteFunctionsRunEdgesFirstInTheOrderOfTheFaces)
{
    korvane_cad_face_t *first = noted_face(cad, "A");
    korvane_cad_face_t *second = noted_face(cad, "B");
    noted_edge(second, "1");
    noted_edge(first, "2");
    noted_edge(second, "3");
    noted_edge(first, "4");
    delete_context();
    EXPECT_EQ(log, "24A13B");
}

TEST_F(Lifetime, TheContextEndsAModelWhateverItsCounter)
{
    korvane_cad_face_t *face = noted_face(cad, "f");
    for (int i = 0; i < 10; ++i)
        korvane_cad_face_clone(face);
    delete_context();
    EXPECT_EQ(log, "f");
}

TEST_F(Lifetime, ADeletedModelHasLeftItsContext)
{
    korvane_cad_face_delete(noted_face(cad, "f"));
    korvane_cad_delete(cad);
    EXPECT_EQ(log, "f");
    delete_context(); // would end it a second time
    EXPECT_EQ(log, "f");
}

TEST_F(Lifetime, AFreeStandingFaceCountsForItself)
{
    korvane_cad_face_t *face = korvane_cad_face_new_copy(noted_face(cad, "f"));
    EXPECT_EQ(cad->reference_count, 2u);
    EXPECT_EQ(face->reference_count, 1);
    korvane_cad_edge_t *edge = noted_edge(face, "e");
    EXPECT_EQ(face->reference_count, 2) << "an edge counts on its face";
    korvane_cad_edge_clone(edge);
    korvane_cad_face_clone(face);
    EXPECT_EQ(face->reference_count, 4);
    korvane_cad_face_delete(face);
    korvane_cad_edge_delete(edge);
    korvane_cad_face_delete(face);
    EXPECT_EQ(log, "");
    korvane_cad_edge_delete(edge);
    EXPECT_EQ(log, "ef");
}

TEST_F(Lifetime, AFreeStandingEdgeCountsForItself)
{
    korvane_cad_edge_t *edge = korvane_cad_edge_new_copy(noted_edge(new_face(), "e"));
    korvane_cad_edge_clone(edge);
    korvane_cad_edge_delete(edge);
    EXPECT_EQ(log, "");
    korvane_cad_edge_delete(edge);
    EXPECT_EQ(log, "e");
}

TEST_F(Lifetime, AttachingMovesOneReferenceToTheOwner)
{
    korvane_cad_face_t *face = korvane_cad_face_new_copy(noted_face(cad, "f"));
    korvane_cad_edge_t *edge = korvane_cad_edge_new_copy(noted_edge(face, "e"));
    korvane_cad_edge_clone(edge);
    EXPECT_EQ(korvane_cad_edge_attach(edge, face), STATUS_OK);
    EXPECT_EQ(edge->reference_count, 0);
    EXPECT_EQ(face->reference_count, 3);
    EXPECT_EQ(korvane_cad_face_attach(face, cad), STATUS_OK);
    EXPECT_EQ(face->reference_count, 0);
    EXPECT_EQ(cad->reference_count, 3u);
    korvane_cad_face_delete(face);
    EXPECT_EQ(cad->reference_count, 2u) << "the reference that moved";
}

TEST_F(Lifetime, AModelWithAFaceDerivedFromItsOwnGoesWithItsLastReference)
{
    korvane_cad_face_t *source = noted_face(cad, "s");
    korvane_cad_face_t *derived = derive(cad, korvane_cad_face_clone(source));
    EXPECT_EQ(cad->reference_count, 4u);
    noted_face(cad, "t");
    for (korvane_cad_face_t *face : {source, source, derived})
        korvane_cad_face_delete(face); // the second time in place of the derived face, which holds it
    korvane_cad_delete(cad);
    EXPECT_EQ(log, "");
    korvane_cad_face_delete(source);
    EXPECT_EQ(log, "st") << "the reference that the derived face gives back has no effect";
}

TEST_F(Lifetime, AModelThatAFaceDerivedFromItsOwnKeepsGoesWithItsContext)
{
    korvane_cad_face_t *source = noted_face(cad, "s");
    korvane_cad_face_delete(derive(cad, source)); // takes over the handle of the source
    korvane_cad_delete(cad);
    EXPECT_EQ(cad->reference_count, 1u);
    delete_context();
    EXPECT_EQ(log, "s");
}

TEST_F(Lifetime, AModelWithAPolylineOfItsOwnEdgesGoesEitherWay)
{
    for (const bool with_context : {false, true}) {
        log.clear();
        korvane_context_t *other = korvane_context_new();
        korvane_cad_t *model = korvane_cad_new(other);
        korvane_cad_face_t *face = noted_face(model, "f");
        korvane_cad_edge_t *edges[] = {noted_edge(face, "1"), noted_edge(face, "2")};
        polyline_of(face, {edges[0], edges[0], edges[1]});
        noted_edge(noted_face(model, "g"), "3");
        if (!with_context) {
            while (model->reference_count > 1)
                korvane_cad_face_delete(face);
            korvane_cad_delete(model);
            EXPECT_EQ(log, "12f3g");
        }
        korvane_context_delete(other);
        EXPECT_EQ(log, "12f3g");
    }
}

/// A face of one model holds the last reference to another one, which is older or newer, in the same context.
TEST_F(Lifetime, AModelMayHoldTheLastReferenceToAnother)
{
    for (const bool source_is_older : {false, true}) {
        for (const bool with_context : {false, true}) {
            log.clear();
            korvane_context_t *other = korvane_context_new();
            korvane_cad_t *older = korvane_cad_new(other);
            korvane_cad_t *newer = korvane_cad_new(other);
            korvane_cad_t *source_model = source_is_older ? older : newer;
            korvane_cad_t *holder = source_is_older ? newer : older;
            korvane_cad_face_t *source = noted_face(source_model, "s");
            korvane_cad_face_delete(noted_face(holder, "1"));
            korvane_cad_face_delete(derive(holder, source));
            korvane_cad_face_delete(noted_face(holder, "2"));
            korvane_cad_delete(source_model);
            EXPECT_EQ(log, "");
            if (!with_context) {
                korvane_cad_delete(holder);
                EXPECT_EQ(log, "1s2") << "the other model goes where the derived face stands";
            }
            korvane_context_delete(other);
            EXPECT_EQ(log, with_context && !source_is_older ? "s12" : "1s2");
        }
    }
}

TEST_F(Lifetime, WhatAModelReleasesGoesBeforeItsNextFace)
{
    korvane_cad_t *models[] = {cad, korvane_cad_new(context), korvane_cad_new(context)};
    korvane_cad_face_t *x = noted_face(models[0], "x");
    korvane_cad_face_t *a = noted_face(models[1], "a");
    korvane_cad_face_delete(derive(models[1], x));
    korvane_cad_face_delete(noted_face(models[1], "b"));
    korvane_cad_face_delete(noted_face(models[2], "1"));
    korvane_cad_face_delete(derive(models[2], a));
    korvane_cad_face_t *last = noted_face(models[2], "2");
    for (korvane_cad_t *model : models)
        korvane_cad_delete(model);
    EXPECT_EQ(log, "");
    korvane_cad_face_delete(last);
    EXPECT_EQ(log, "1axb2");
}

/// The other model goes while this one is ending: that one's delete functions may still use its handles.
TEST_F(Lifetime, DeleteFunctionsMayGiveBackHandlesOfTheModelThatReleasedTheirs)
{
    for (const bool with_context : {false, true}) {
        log.clear();
        korvane_context_t *other = korvane_context_new();
        korvane_cad_t *source_model = korvane_cad_new(other);
        korvane_cad_t *holder = korvane_cad_new(other);
        korvane_cad_face_t *first = noted_face(holder, "1");
        korvane_cad_face_t *source = noted_face(source_model, "s", [&] {
            EXPECT_EQ(got(korvane_cad_face_get_cad, first), holder);
            EXPECT_EQ(got(korvane_cad_get_face_count, holder), 2);
            korvane_cad_face_delete(first);
        });
        korvane_cad_face_delete(derive(holder, source));
        korvane_cad_delete(source_model);
        if (!with_context) {
            korvane_cad_face_delete(first);
            korvane_cad_delete(holder);
            EXPECT_EQ(log, "1s");
        }
        korvane_context_delete(other);
        EXPECT_EQ(log, "1s");
    }
}

TEST_F(Lifetime, WhatHasGoneInAModelThatIsEndingIsOutOfUse)
{
    korvane_cad_face_t *derived = derive(cad, korvane_cad_face_clone(new_face()));
    noted_face(cad, "2", [&] {
        EXPECT_EQ(evaluate(derived, one).status, STATUS_ERROR);
        korvane_cad_face_delete(korvane_cad_face_new_copy(derived));
    });
    delete_context();
    EXPECT_EQ(log, "2");
}

TEST_F(Lifetime, ModelsThatHoldEachOtherGoWithTheirContext)
{
    korvane_cad_t *other = korvane_cad_new(context);
    korvane_cad_face_t *faces[] = {noted_face(cad, "a"), noted_face(other, "b")};
    derive(cad, korvane_cad_face_clone(faces[1]));
    derive(other, korvane_cad_face_clone(faces[0]));
    korvane_cad_edge_t *edges[] = {noted_edge(faces[0], "1"), noted_edge(faces[1], "2")};
    polyline_of(faces[0], {edges[1], edges[0], edges[1]});
    polyline_of(faces[1], {edges[0], edges[1], edges[0]});
    derive(faces[0], edges[1]);
    derive(faces[1], edges[0]);
    delete_context();
    EXPECT_EQ(log, "2b1a");
}

TEST_F(Lifetime, ModelsOfDifferentContextsMayHoldEachOther)
{
    korvane_context_t *contexts[] = {korvane_context_new(), korvane_context_new()};
    korvane_cad_t *models[] = {korvane_cad_new(contexts[0]), korvane_cad_new(contexts[1])};
    korvane_cad_face_t *faces[] = {noted_face(models[0], "a"), noted_face(models[1], "b")};
    derive(models[0], korvane_cad_face_clone(faces[1]));
    derive(models[1], korvane_cad_face_clone(faces[0]));
    korvane_context_delete(contexts[0]);
    EXPECT_EQ(log, "a");
    EXPECT_EQ(evaluate(faces[1], one).status, STATUS_OK);
    korvane_cad_face_t *orphan = nullptr;
    EXPECT_EQ(korvane_cad_get_face(models[1], 2, &orphan), STATUS_OK);
    EXPECT_EQ(evaluate(orphan, one).status, STATUS_ERROR);
    korvane_context_delete(contexts[1]);
    EXPECT_EQ(log, "ab");
}

TEST_F(Lifetime, WhatWasDerivedElsewhereOutlivesTheContextOfItsSource)
{
    korvane_cad_face_t *source = noted_face(cad, "s");
    korvane_cad_edge_t *source_edge = noted_edge(source, "e");
    korvane_cad_face_t *face = derive(nullptr, korvane_cad_face_clone(source));
    korvane_cad_face_t *copy = korvane_cad_face_new_copy(face);
    korvane_cad_edge_t *edge = derive(nullptr, source_edge);
    korvane_cad_edge_t *edge_copy = korvane_cad_edge_new_copy(edge);
    korvane_cad_edge_t *polyline = polyline_of(face, {source_edge, source_edge});
    delete_context();
    EXPECT_EQ(log, "es");
    const SurfaceValues values = evaluate(copy, one);
    EXPECT_EQ(values.status, STATUS_ERROR);
    EXPECT_EQ(values.xyz, Xyz{});
    korvane_cad_face_t *original = nullptr;
    EXPECT_EQ(
        korvane_cad_face_get_original_geometry(face, one.data(), &original, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(evaluate(edge_copy, 0).status, STATUS_ERROR);
    EXPECT_EQ(evaluate(polyline, 0).uv, one) << "has points of its own";
    korvane_cad_face_delete(copy);
    korvane_cad_edge_delete(edge);
    korvane_cad_edge_delete(edge_copy);
    korvane_cad_edge_delete(polyline);
    korvane_cad_face_delete(face);
}

TEST_F(Lifetime, APinnedEdgeThatHasGoneIsNoOriginalAndHasNo3dCurve)
{
    korvane_cad_face_t *face = korvane_cad_face_new_copy(new_face());
    korvane_cad_edge_t *source = new_edge(new_face());
    korvane_cad_edge_set_curve3d(
        source, [](double, double *, void *) { return korvane_status_t{STATUS_OK}; }, nullptr);
    korvane_cad_edge_t *polyline = polyline_of(face, {source, source});
    korvane_cad_edge_t *original = nullptr;
    double t = 0;
    EXPECT_EQ(
        korvane_cad_edge_get_original_geometry(polyline, 0, &original, &t, nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(original, source);
    delete_context();
    original = nullptr;
    EXPECT_EQ(
        korvane_cad_edge_get_original_geometry(polyline, 0, &original, &t, nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(original, nullptr);
    EXPECT_EQ(got(korvane_cad_edge_has_curve3d, source), 0) << "its record is pinned";
    korvane_cad_edge_delete(polyline);
    korvane_cad_face_delete(face);
}

TEST_F(Lifetime, APinnedEdgeThatHasGoneHasNoShareInSupportVertices)
{
    korvane_cad_edge_t *source = new_edge(new_face());
    korvane_cad_edge_set_support_vertex_count(source, 1);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(source);
    korvane_cad_edge_t *pinning = derive(nullptr, source);
    EXPECT_EQ(copy->support_vertices->share_count, 2);
    delete_context();
    EXPECT_EQ(copy->support_vertices->share_count, 1);
    korvane_cad_edge_delete(copy);
    korvane_cad_edge_delete(pinning);
}

TEST_F(Lifetime, ADerivedFaceSurvivesASourceThatIsReleasedOnceTooOften)
{
    korvane_cad_face_t *source = korvane_cad_face_new_copy(noted_face(cad, "s"));
    korvane_cad_face_t *face = derive(nullptr, source); // which takes over the only reference
    EXPECT_EQ(evaluate(face, one).status, STATUS_OK);
    korvane_cad_face_delete(source);
    EXPECT_EQ(log, "s");
    EXPECT_EQ(evaluate(face, one).status, STATUS_ERROR);
    korvane_cad_face_delete(face);
    EXPECT_EQ(log, "s");
}

TEST_F(Lifetime, PinsMoveWithWhatIsAttached)
{
    korvane_cad_face_t *source = korvane_cad_face_new_copy(noted_face(cad, "s"));
    korvane_cad_edge_t *source_edge = korvane_cad_edge_new_copy(noted_edge(source, "e"));
    korvane_cad_face_t *face = derive(nullptr, korvane_cad_face_clone(source));
    korvane_cad_edge_t *edge = derive(nullptr, source_edge);
    EXPECT_EQ(korvane_cad_edge_attach(source_edge, source), STATUS_OK);
    EXPECT_EQ(korvane_cad_face_attach(source, cad), STATUS_OK);
    EXPECT_EQ(evaluate(face, one).status, STATUS_OK);
    EXPECT_EQ(evaluate(edge, 0.5).status, STATUS_OK);
    delete_context();
    EXPECT_EQ(evaluate(face, one).status, STATUS_ERROR);
    EXPECT_EQ(evaluate(edge, 0.5).status, STATUS_ERROR);
    korvane_cad_face_delete(face);
    korvane_cad_edge_delete(edge);
}

TEST_F(Lifetime, AReplacedDeleteFunctionTakesOverRecordAndReference)
{
    korvane_cad_face_t *source = noted_face(cad, "s");
    korvane_cad_face_t *face = derive(nullptr, korvane_cad_face_clone(source));
    korvane_cad_face_set_delete_function(face, [](void *user_data) { std::free(user_data); });
    const uint32_t references = cad->reference_count;
    korvane_cad_face_delete(face);
    EXPECT_EQ(cad->reference_count, references) << "the client's to give back";
    korvane_cad_face_delete(source);
}

TEST_F(Lifetime, DeleteFunctionsMayGiveBackHandlesOfTheirOwnModel)
{
    korvane_cad_face_t *first = nullptr;
    first = noted_face(cad, "1", [&] { korvane_cad_face_delete(first); });
    korvane_cad_face_t *second = noted_face(cad, "2", [&] {
        korvane_cad_delete(cad);
        korvane_cad_face_delete(first);
        korvane_cad_face_clone(first);
    });
    korvane_cad_face_delete(first);
    korvane_cad_face_delete(second);
    korvane_cad_delete(cad);
    EXPECT_EQ(log, "12");
}

TEST_F(Lifetime, DeleteFunctionsMayGiveBackHandlesOfOtherModels)
{
    korvane_cad_t *other = cad;
    korvane_cad_face_t *held = noted_face(other, "o");
    korvane_cad_delete(other);
    cad = korvane_cad_new(context);
    noted_face(cad, "1", [&] { korvane_cad_face_delete(held); });
    noted_face(cad, "2");
    delete_context();
    EXPECT_EQ(log, "1o2") << "at once, when the client asks for it";
}

TEST_F(Lifetime, AnEndingModelTakesNothingNewButStaysReadable)
{
    korvane_cad_face_t *spare = korvane_cad_face_new_copy(new_face());
    korvane_cad_edge_t *on_spare = new_edge(spare);
    korvane_cad_edge_t *spare_edge = korvane_cad_edge_new_copy(on_spare);
    korvane_cad_face_t *first = noted_face(cad, "1");
    noted_face(cad, "2", [&] {
        EXPECT_EQ(new_face(), nullptr);
        EXPECT_EQ(new_edge(first), nullptr);
        EXPECT_EQ(derive(cad, korvane_cad_face_clone(spare)), nullptr);
        EXPECT_EQ(derive(first, spare_edge), nullptr);
        EXPECT_EQ(korvane_cad_face_attach(spare, cad), STATUS_ERROR);
        EXPECT_EQ(korvane_cad_edge_attach(spare_edge, first), STATUS_ERROR);
        EXPECT_EQ(got(korvane_cad_get_face_count, cad), 4);
        EXPECT_EQ(got(korvane_cad_face_get_id, first), 1u);
        korvane_cad_point_delete(korvane_cad_point_new(first, 1, one.data()));
        korvane_cad_face_delete(spare); // for the derivation that took over nothing
    });
    new_face();
    delete_context();
    EXPECT_EQ(log, "12");
    korvane_cad_edge_delete(spare_edge);
    korvane_cad_face_delete(spare);
    korvane_cad_edge_delete(on_spare);
}

TEST_F(Lifetime, AnEndingFreeStandingFaceIsNotAttached)
{
    korvane_cad_face_t *face = nullptr;
    korvane_cad_face_t *pattern = noted_face(cad, "f", [&] {
        EXPECT_EQ(korvane_cad_face_attach(face, cad), STATUS_ERROR);
        EXPECT_EQ(new_edge(face), nullptr);
    });
    face = korvane_cad_face_new_copy(pattern);
    korvane_cad_face_delete(face);
    EXPECT_EQ(log, "f");
    face = pattern;
    delete_context();
    EXPECT_EQ(log, "ff") << "the copy shared the user data";
}

TEST_F(Lifetime, DeleteFunctionsMayDeleteAnotherContext)
{
    korvane_context_t *other = korvane_context_new();
    korvane_cad_t *model = korvane_cad_new(other);
    korvane_cad_face_t *source = noted_face(model, "s");
    noted_face(cad, "1", [&] { korvane_context_delete(other); });
    korvane_cad_face_t *derived = derive(cad, korvane_cad_face_clone(source));
    derive(model, korvane_cad_face_clone(derived));
    noted_face(cad, "2");
    delete_context();
    EXPECT_EQ(log, "1s2");
}

/// In place of the library's delete function of a face that is derived from a model of that context.
TEST_F(Lifetime, ReplacedDeleteFunctionsMayDeleteTheContextOfTheSource)
{
    korvane_context_t *other = korvane_context_new();
    korvane_cad_face_t *source = noted_face(korvane_cad_new(other), "s");
    korvane_cad_face_t *derived = derive(cad, source);
    static korvane_context_t *context_of_source;
    static std::string *log_of_test;
    context_of_source = other;
    log_of_test = &log;
    korvane_cad_face_set_delete_function(derived, [](void *user_data) {
        korvane_context_delete(context_of_source);
        *log_of_test += "d";
        std::free(user_data);
    });
    noted_face(cad, "2");
    delete_context();
    EXPECT_EQ(log, "sd2") << "the model goes with its context, not later";
}

TEST_F(Lifetime, WhatADeleteFunctionReleasesGoesInTheOrderOfItsRelease)
{
    std::vector<korvane_cad_edge_t *> edges;
    korvane_cad_face_t *face = new_face();
    for (const char *name : {"1", "2", "3"}) {
        edges.push_back(korvane_cad_edge_new_copy(noted_edge(face, name)));
        korvane_cad_edge_set_delete_function(edges.back(), Noted::note);
    }
    korvane_cad_face_t *free_face = korvane_cad_face_new_copy(face);
    korvane_cad_edge_t *polyline = polyline_of(free_face, edges);
    for (korvane_cad_edge_t *edge : edges)
        korvane_cad_edge_delete(edge);
    korvane_cad_face_delete(free_face);
    EXPECT_EQ(log, "");
    korvane_cad_edge_delete(polyline);
    EXPECT_EQ(log, "123");
}

TEST_F(Lifetime, ChainsOfModelsEndWithoutRecursion)
{
    constexpr int length = 3000;
    korvane_cad_face_t *last = noted_face(cad, "x");
    korvane_cad_delete(cad);
    for (int i = 0; i < length; ++i) {
        korvane_cad_t *model = korvane_cad_new(context);
        last = derive(model, last);
        korvane_cad_delete(model);
    }
    korvane_cad_face_delete(last);
    EXPECT_EQ(log, "x");
}

TEST_F(Lifetime, ChainsOfFreeStandingFacesEndWithoutRecursion)
{
    constexpr int length = 200000;
    korvane_cad_face_t *last = korvane_cad_face_new_copy(noted_face(cad, "x"));
    for (int i = 0; i < length; ++i)
        last = derive(nullptr, last);
    EXPECT_EQ(log, "");
    korvane_cad_face_delete(last);
    EXPECT_EQ(log, "x");
}

} // namespace
} // namespace korvane::testing
