#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

/// A client's function that gives positions (t^3, 1 - t^2) only, notes where it was called, and fails from a
/// given call on.
struct Client {
    std::vector<double> calls;
    std::size_t failing_call = SIZE_MAX;
    bool positions_only = true;

    static korvane_status_t locate(double t, double *uv, double *dt, double *dtt, void *user_data)
    {
        auto &client = *static_cast<Client *>(user_data);
        client.calls.push_back(t);
        client.positions_only = client.positions_only && uv != nullptr && dt == nullptr && dtt == nullptr;
        if (client.calls.size() >= client.failing_call)
            return 1000 + static_cast<korvane_status_t>(client.calls.size());
        return polynomial_curve(t, uv, nullptr, nullptr, nullptr);
    }
};

class EdgeFiniteDifference : public Cad {
  protected:
    korvane_cad_edge_t *make(double tmin, double tmax)
    {
        return korvane_cad_edge_new0(face, 77, tmin, tmax, Client::locate, &client);
    }

    Client client;
    korvane_cad_face_t *face = new_face();
};

TEST_F(EdgeFiniteDifference, HasApproximateDerivatives)
{
    korvane_cad_edge_t *edge = make(0, 2);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, edge), 0);
    EXPECT_EQ(range_of(edge), (std::array<double, 2>{0, 2}));
    for (const double t : {0.0, 0.001, 0.7, 1.0, 1.9999, 2.0}) {
        const CurveValues values = evaluate(edge, t);
        ASSERT_EQ(values.status, STATUS_OK);
        CurveValues exact;
        polynomial_curve(t, exact.uv.data(), exact.dt.data(), exact.dtt.data(), nullptr);
        EXPECT_EQ(values.uv, exact.uv);
        for (std::size_t k = 0; k < 2; ++k) {
            EXPECT_NEAR(values.dt[k], exact.dt[k], 0.02);
            EXPECT_NEAR(values.dtt[k], exact.dtt[k], 0.02);
        }
    }
    EXPECT_TRUE(client.positions_only);
}

TEST_F(EdgeFiniteDifference, StepsAThousandthOfTheIntervalInTheMiddle)
{
    korvane_cad_edge_t *edge = make(0, 1);
    const double h = 0.001;
    const double t = 0.5;
    const CurveValues values = evaluate(edge, t);
    EXPECT_EQ(client.calls, (std::vector<double>{t - h, t, t + h, t + h / 2, t - h / 2, t}))
        << "second derivative, first derivative, point";
    const auto p = [](double x) { return Uv{x * x * x, 1 - x * x}; };
    for (std::size_t k = 0; k < 2; ++k) {
        EXPECT_EQ(values.dtt[k], (p(t + h)[k] - 2 * p(t)[k] + p(t - h)[k]) / (h * h));
        EXPECT_EQ(values.dt[k], (p(t + h / 2)[k] - p(t - h / 2)[k]) / h);
    }
}

TEST_F(EdgeFiniteDifference, LooksForwardAtTheStartAndBackwardAtTheEnd)
{
    korvane_cad_edge_t *edge = make(0, 1);
    const double h = 0.001;
    evaluate(edge, 0);
    EXPECT_EQ(client.calls, (std::vector<double>{0, 0 + h, 0 + 2 * h, 0 + h, 0, 0}));
    client.calls.clear();
    const CurveValues values = evaluate(edge, 1);
    EXPECT_EQ(client.calls, (std::vector<double>{1, 1 - h, 1 - 2 * h, 1, 1 - h, 1}));
    EXPECT_NEAR(values.dtt[0], 6, 0.02);
    EXPECT_NEAR(values.dt[0], 3, 0.01);
}

TEST_F(EdgeFiniteDifference, StepsAtLeast1e7th)
{
    korvane_cad_edge_t *edge = make(0, 1e-5);
    const double h = 1e-7;
    Uv dt{};
    EXPECT_EQ(korvane_cad_edge_curve(edge, 5e-6, nullptr, dt.data(), nullptr), STATUS_OK);
    EXPECT_EQ(client.calls, (std::vector<double>{5e-6 + h / 2, 5e-6 - h / 2}));
}

TEST_F(EdgeFiniteDifference, CallsOnlyForWhatIsAsked)
{
    korvane_cad_edge_t *edge = make(0, 1);
    Uv output{};
    EXPECT_EQ(korvane_cad_edge_curve(edge, 0.5, output.data(), nullptr, nullptr), STATUS_OK);
    EXPECT_EQ(client.calls, (std::vector<double>{0.5}));
    client.calls.clear();
    EXPECT_EQ(korvane_cad_edge_curve(edge, 0.5, nullptr, nullptr, output.data()), STATUS_OK);
    EXPECT_EQ(client.calls.size(), 3u);
    client.calls.clear();
    EXPECT_EQ(korvane_cad_edge_curve(edge, 0.5, nullptr, nullptr, nullptr), STATUS_OK);
    EXPECT_TRUE(client.calls.empty());
}

TEST_F(EdgeFiniteDifference, GivesUpWhereTheIntervalIsTooShort)
{
    korvane_cad_edge_t *edge = make(0, 0.9e-7); // shorter than h
    for (const double t : {0.0, 0.45e-7, 0.9e-7}) {
        Uv dt{1, 1};
        EXPECT_EQ(korvane_cad_edge_curve(edge, t, nullptr, dt.data(), nullptr), STATUS_ERROR);
        EXPECT_EQ(dt, Uv{});
        Uv dtt{1, 1};
        EXPECT_EQ(korvane_cad_edge_curve(edge, t, nullptr, nullptr, dtt.data()), STATUS_ERROR);
        EXPECT_EQ(dtt, Uv{});
    }
    EXPECT_TRUE(client.calls.empty());

    korvane_cad_edge_t *between = make(0, 1.5e-7); // between h and 2h
    Uv dt{};
    Uv dtt{1, 1};
    EXPECT_EQ(korvane_cad_edge_curve(between, 0.75e-7, nullptr, dt.data(), nullptr), STATUS_OK);
    EXPECT_EQ(korvane_cad_edge_curve(between, 0.75e-7, nullptr, nullptr, dtt.data()), STATUS_ERROR);
}

TEST_F(EdgeFiniteDifference, ReachesToTheVeryEndsOfTheInterval)
{
    const double h = 1e-7;
    Uv output{};
    const auto calls_for_first = [&](korvane_cad_edge_t *edge, double t) {
        client.calls.clear();
        EXPECT_EQ(korvane_cad_edge_curve(edge, t, nullptr, output.data(), nullptr), STATUS_OK);
        return client.calls;
    };
    const auto calls_for_second = [&](korvane_cad_edge_t *edge, double t) {
        client.calls.clear();
        EXPECT_EQ(korvane_cad_edge_curve(edge, t, nullptr, nullptr, output.data()), STATUS_OK);
        return client.calls;
    };
    using Calls = std::vector<double>;
    korvane_cad_edge_t *one_step = make(0, h);
    EXPECT_EQ(calls_for_first(one_step, h / 2), (Calls{h, 0}));
    EXPECT_EQ(calls_for_first(one_step, 0), (Calls{h, 0}));
    EXPECT_EQ(calls_for_first(one_step, h), (Calls{h, 0}));
    korvane_cad_edge_t *two_steps = make(0, 2 * h);
    EXPECT_EQ(calls_for_second(two_steps, h), (Calls{0, h, 2 * h}));
    EXPECT_EQ(calls_for_second(two_steps, 0), (Calls{0, h, 2 * h}));
    EXPECT_EQ(calls_for_second(two_steps, 2 * h), (Calls{2 * h, h, 0}));
    // A start away from 0 tells t - 2h from what is merely negative.
    korvane_cad_edge_t *elsewhere = make(-2 * h, 0);
    EXPECT_EQ(calls_for_second(elsewhere, 0), (Calls{0, -h, -2 * h}));
    EXPECT_EQ(calls_for_second(elsewhere, -2 * h), (Calls{-2 * h, -h, 0}));
    EXPECT_EQ(calls_for_second(elsewhere, -h), (Calls{-2 * h, -h, 0}));
}

TEST_F(EdgeFiniteDifference, ReturnsTheFirstBadStatusOfTheClientAtOnce)
{
    korvane_cad_edge_t *edge = make(0, 1);
    for (std::size_t call = 1; call <= 6; ++call) {
        client.calls.clear();
        client.failing_call = call;
        EXPECT_EQ(evaluate(edge, 0.5).status, 1000 + static_cast<korvane_status_t>(call));
        EXPECT_EQ(client.calls.size(), call);
    }
}

TEST_F(EdgeFiniteDifference, ItsCopyAsksTheSameClient)
{
    korvane_cad_edge_t *edge = make(0, 1);
    korvane_cad_edge_t *copy = korvane_cad_edge_new_copy(edge);
    EXPECT_EQ(evaluate(copy, 0.5).dtt, evaluate(edge, 0.5).dtt);
    EXPECT_EQ(got(korvane_cad_edge_get_wdef, copy), 0);
    korvane_cad_edge_delete(copy);
}

TEST_F(EdgeFiniteDifference, RefusesNullAndSurvivesFailingAllocations)
{
    EXPECT_EQ(korvane_cad_edge_new0(nullptr, 1, 0, 1, Client::locate, &client), nullptr);
    oom_sweep([&](AllocationFault &fault) {
        const int32_t count = got(korvane_cad_face_get_edge_count, face);
        fault.arm();
        korvane_cad_edge_t *edge = make(0, 1);
        EXPECT_EQ(edge == nullptr, fault.disarm());
        EXPECT_EQ(got(korvane_cad_face_get_edge_count, face), count + (edge == nullptr ? 0 : 1));
    });
}

} // namespace
} // namespace korvane::testing
