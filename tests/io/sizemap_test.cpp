#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "support/failing_allocations.h"
#include "support/recorded_messages.h"

namespace korvane::testing {
namespace {

korvane_status_t get_twice_the_vertex(int32_t vertex, double *size, void *calls)
{
    ++*static_cast<int *>(calls);
    *size = 2.0 * vertex;
    return vertex == 13 ? 42 : STATUS_OK;
}

void count_call(void *calls)
{
    ++*static_cast<int *>(calls);
}

class Sizemap : public ::testing::Test {
  protected:
    korvane_sizemap_t *make(int32_t type = KORVANE_SIZEMAP_ISO_MESH_VERTEX)
    {
        return korvane_sizemap_new(mesh, type, get_twice_the_vertex, &calls);
    }

    RecordingContext context;
    korvane_mesh_t *mesh = korvane_mesh_new(context);
    int calls = 0;
};

TEST_F(Sizemap, IsMadeOfSixTypes)
{
    for (const int32_t type : {1, 2, 3, 4, 5, 6}) {
        korvane_sizemap_t *sizemap = make(type);
        ASSERT_NE(sizemap, nullptr);
        int32_t own_type = 0;
        EXPECT_EQ(korvane_sizemap_get_type(sizemap, &own_type), STATUS_OK);
        EXPECT_EQ(own_type, type);
        korvane_sizemap_function_t function = nullptr;
        EXPECT_EQ(korvane_sizemap_get_function(sizemap, &function), STATUS_OK);
        EXPECT_EQ(function, get_twice_the_vertex);
        void *user_data = nullptr;
        EXPECT_EQ(korvane_sizemap_get_user_data(sizemap, &user_data), STATUS_OK);
        EXPECT_EQ(user_data, &calls);
        korvane_sizemap_delete(sizemap);
    }
    for (const int32_t type : {0, 7, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(make(type), nullptr);
    EXPECT_EQ(calls, 0);
}

TEST_F(Sizemap, IsMadeOnACadModelToo)
{
    korvane_cad_t *cad = korvane_cad_new(context);
    korvane_sizemap_t *sizemap = korvane_sizemap_new(cad, 1, get_twice_the_vertex, nullptr);
    ASSERT_NE(sizemap, nullptr);
    void *user_data = &calls;
    EXPECT_EQ(korvane_sizemap_get_user_data(sizemap, &user_data), STATUS_OK);
    EXPECT_EQ(user_data, nullptr);
}

TEST_F(Sizemap, NullArgumentsAreErrors)
{
    EXPECT_EQ(korvane_sizemap_new(nullptr, 4, get_twice_the_vertex, &calls), nullptr);
    EXPECT_EQ(korvane_sizemap_new(mesh, 4, nullptr, &calls), nullptr);
    korvane_sizemap_delete(nullptr);
    EXPECT_EQ(korvane_sizemap_set_delete_function(nullptr, count_call), STATUS_ERROR);
    korvane_sizemap_t *sizemap = make();
    korvane_sizemap_function_t function = get_twice_the_vertex;
    EXPECT_EQ(korvane_sizemap_get_function(nullptr, &function), STATUS_ERROR);
    EXPECT_EQ(korvane_sizemap_get_function(sizemap, nullptr), STATUS_ERROR);
    void *user_data = nullptr;
    EXPECT_EQ(korvane_sizemap_get_user_data(nullptr, &user_data), STATUS_ERROR);
    EXPECT_EQ(korvane_sizemap_get_user_data(sizemap, nullptr), STATUS_ERROR);
    int32_t type = 0;
    EXPECT_EQ(korvane_sizemap_get_type(nullptr, &type), STATUS_ERROR);
    double size = 5;
    EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(nullptr, 1, &size), STATUS_ERROR);
    EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, 1, nullptr), STATUS_ERROR);
    EXPECT_EQ(size, 5);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(context.text(), "");
}

TEST_F(Sizemap, AQueryReturnsWhatTheCallbackDoes)
{
    const korvane_sizemap_t *sizemap = make();
    double size = 0;
    EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, 4, &size), STATUS_OK);
    EXPECT_EQ(size, 8);
    EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, 13, &size), 42);
    EXPECT_EQ(size, 26);
    EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, INT32_MIN, &size), STATUS_OK);
    EXPECT_EQ(size, -4294967296.0);
    EXPECT_EQ(calls, 3);
    for (const int32_t type : {1, 2, 3, 5, 6})
        EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(make(type), 1, &size), STATUS_ERROR);
    EXPECT_EQ(calls, 3);
}

TEST_F(Sizemap, UserDataAreDeletedOnceIfTheyAreOwned)
{
    int deleted = 0;
    korvane_sizemap_t *owner = korvane_sizemap_new(mesh, 4, get_twice_the_vertex, &deleted);
    EXPECT_EQ(korvane_sizemap_set_delete_function(owner, count_call), STATUS_OK);
    korvane_sizemap_delete(owner);
    EXPECT_EQ(deleted, 1);
    korvane_sizemap_t *former_owner = korvane_sizemap_new(mesh, 4, get_twice_the_vertex, &deleted);
    korvane_sizemap_set_delete_function(former_owner, count_call);
    EXPECT_EQ(korvane_sizemap_set_delete_function(former_owner, nullptr), STATUS_OK);
    korvane_sizemap_delete(former_owner);
    EXPECT_EQ(deleted, 1);
    static int called_with_null = 0;
    korvane_sizemap_t *without_data = korvane_sizemap_new(mesh, 4, get_twice_the_vertex, nullptr);
    korvane_sizemap_set_delete_function(without_data, [](void *) { ++called_with_null; });
    korvane_sizemap_delete(without_data);
    EXPECT_EQ(called_with_null, 0);
}

TEST_F(Sizemap, TheContextReleasesWhatIsLeft)
{
    int deleted = 0;
    {
        RecordingContext own;
        korvane_mesh_t *own_mesh = korvane_mesh_new(own);
        for (const int32_t type : {4, 1, 4}) {
            korvane_sizemap_t *sizemap = korvane_sizemap_new(own_mesh, type, get_twice_the_vertex, &deleted);
            korvane_sizemap_set_delete_function(sizemap, count_call);
        }
        korvane_sizemap_t *early = korvane_sizemap_new(own_mesh, 4, get_twice_the_vertex, &deleted);
        korvane_mesh_delete(own_mesh); // a size map survives its mesh
        korvane_sizemap_delete(early);
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 3);
}

TEST_F(Sizemap, SurvivesFailingAllocations)
{
    oom_sweep([&](AllocationFault &fault) {
        fault.arm();
        korvane_sizemap_t *sizemap = make();
        EXPECT_TRUE(fault.disarm() || sizemap != nullptr);
        double size = 0;
        if (sizemap != nullptr) {
            EXPECT_EQ(korvane_sizemap_iso_mesh_vertex_get_size(sizemap, 1, &size), STATUS_OK);
        }
        korvane_sizemap_delete(sizemap);
    });
}

} // namespace
} // namespace korvane::testing
