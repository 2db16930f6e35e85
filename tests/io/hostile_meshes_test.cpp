// Writing of meshes whose callbacks fail, write less than they should, state counts that are not so, or name
// vertices that there are not: the file that is left is well-formed, and holds nothing that nobody gave.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvane.h>

#include "io/mesh_content.h"
#include "support/hostile_client.h"
#include "support/recorded_messages.h"
#include "support/temporary_folder.h"

namespace korvane::testing {
namespace {

class WriteHostileMesh : public ::testing::Test {
  protected:
    ~WriteHostileMesh() override { EXPECT_EQ(client.complaints, std::vector<std::string>()); }

    /// What the file holds that was just written.
    MeshContent read_back(const std::string &name)
    {
        korvane_mesh_t *mesh = korvane_mesh_new_read_mesh(context, name.c_str());
        EXPECT_NE(mesh, nullptr);
        MeshContent content = content_of(mesh);
        korvane_mesh_delete(mesh);
        return content;
    }

    /// Anything in a text is 0 or a number of the client's. In a binary file that ends early, the end is read
    /// as lines, too: it must only be free of what the stack and the heap are filled with.
    void expect_known_values(const std::string &name)
    {
        const MeshContent content = read_back(name);
        const std::string bytes = read_file(name);
        ASSERT_EQ(bytes.find("ZZZZ"), bytes.npos);
        ASSERT_EQ(bytes.find("\xa5\xa5\xa5\xa5"), bytes.npos);
        if (name.ends_with(".meshb"))
            return;
        for (const EntityContent &entity : content.entities) {
            for (const double value : entity.coordinates)
                ASSERT_TRUE(value == 0 || value == 1);
            for (const int32_t vertex : entity.vertices)
                ASSERT_TRUE(vertex >= 0 && vertex <= HostileClient::vertex_count);
            for (const int32_t tag : entity.tags)
                ASSERT_TRUE(tag == 0 || (tag > 100 && tag <= 100 + HostileClient::vertex_count));
        }
    }

    TemporaryFolder folder;
    RecordingContext context;
    HostileClient client{context};
};

TEST_F(WriteHostileMesh, MeshFilesSurviveAnyCall)
{
    for (const char *file : {"a.mesh", "a.meshb"}) {
        const std::string name = folder.name(file);
        ASSERT_EQ(korvane_mesh_write_mesh(client, name.c_str()), STATUS_OK);
        const MeshContent undisturbed = read_back(name);
        sweep_deviations(client, [&](Deviation how) {
            context.messages.clear();
            const korvane_status_t status = korvane_mesh_write_mesh(client, name.c_str());
            ASSERT_EQ(context.messages.size(), status == STATUS_OK ? 0u : 1u);
            ASSERT_NO_FATAL_FAILURE(expect_known_values(name));
            if (!client.deviated) {
                ASSERT_EQ(status, STATUS_OK);
                ASSERT_EQ(read_back(name), undisturbed);
            } else if (client.deviated_in == Call::element) {
                ASSERT_EQ(status, how == Deviation::stops_halfway ? STATUS_OK : STATUS_ERROR);
            } else if (client.deviated_in == Call::tag || client.deviated_in == Call::count) {
                ASSERT_EQ(status, STATUS_OK);
            } else { // a flag that is not the same in both passes
                ASSERT_EQ(status, STATUS_ERROR);
            }
        });
    }
}

TEST_F(WriteHostileMesh, NastranFilesSurviveAnyCall)
{
    const std::string name = folder.name("a.bdf");
    ASSERT_EQ(korvane_mesh_write_bdf(client, name.c_str()), STATUS_OK);
    const std::string undisturbed = read_file(name);
    sweep_deviations(client, [&](Deviation how) {
        context.messages.clear();
        const korvane_status_t status = korvane_mesh_write_bdf(client, name.c_str());
        const std::string content = read_file(name);
        ASSERT_TRUE(content.starts_with("BEGIN BULK\n"));
        ASSERT_EQ(content.find("15158708"), content.npos); // of 0x5a5a5a5a and 0xa5a5a5a5
        if (!client.deviated) {
            ASSERT_EQ(content, undisturbed);
        } else if (client.deviated_in == Call::element && how != Deviation::stops_halfway) {
            ASSERT_NE(status, STATUS_OK);
            ASSERT_EQ(context.messages.size(), 1u);
            ASSERT_TRUE(undisturbed.starts_with(content.substr(0, content.rfind("$\n"))));
        } else {
            ASSERT_EQ(status, STATUS_OK);
            ASSERT_EQ(context.messages.size(), 0u);
        }
    });
}

TEST_F(WriteHostileMesh, CountsThatChangeFromCallToCallAreSurvived)
{
    const std::array<int32_t, 7> counts = {2, -1, 1, 0, INT32_MIN, 2, 700};
    for (std::size_t first = 0; first < counts.size(); ++first) {
        for (std::size_t step = 0; step < counts.size(); ++step) {
            for (const char *file : {"a.mesh", "a.meshb", "a.bdf"}) {
                std::size_t next = first;
                client.behave();
                client.lie = [&] { return counts[(next += step) % counts.size()]; };
                poison_stack();
                const std::string name = folder.name(file);
                if (name.ends_with(".bdf")) {
                    korvane_mesh_write_bdf(client, name.c_str());
                } else {
                    korvane_mesh_write_mesh(client, name.c_str());
                    ASSERT_NO_FATAL_FAILURE(expect_known_values(name));
                }
            }
        }
    }
}

TEST_F(WriteHostileMesh, ACountWithLittleBehindItIsAnErrorAtItsEnd)
{
    static constexpr int32_t claimed = 50000;
    for (const char *file : {"a.mesh", "a.meshb"}) {
        client.lie = [] { return claimed; };
        const std::string name = folder.name(file);
        context.messages.clear();
        EXPECT_EQ(korvane_mesh_write_mesh(client, name.c_str()), STATUS_ERROR);
        EXPECT_EQ(context.messages.front().number, HostileClient::failure);
        client.lie = nullptr;
        const MeshContent content = read_back(name);
        EXPECT_EQ(content.entities[0].count(), claimed);
        EXPECT_EQ(content.entities[0].tags[HostileClient::vertex_count - 1], 108);
        EXPECT_EQ(content.entities[0].tags[HostileClient::vertex_count], 0);
    }
}

TEST_F(WriteHostileMesh, TheLargestCountEndsWithTheVerticesThatThereAre)
{
    client.lie = [] { return INT32_MAX; };
    const std::string text = folder.name("a.mesh");
    EXPECT_EQ(korvane_mesh_write_mesh(client, text.c_str()), STATUS_ERROR);
    EXPECT_EQ(context.messages.back().number, HostileClient::failure);
    EXPECT_TRUE(read_file(text).starts_with(
        "MeshVersionFormatted 2\n\nDimension 3\n\nVertices\n2147483647\n0 0 0 101 \n1 0 0 102 \n"));
    EXPECT_TRUE(read_file(text).ends_with("\n0 1 1 108 \n\nEnd\n"));
    const std::string binary = folder.name("a.meshb"); // which has no positions behind so many
    EXPECT_EQ(korvane_mesh_write_mesh(client, binary.c_str()), STATUS_ERROR);
    EXPECT_EQ(context.messages.back().text, "korvane_mesh_write_mesh : Error writing mesh file.\n");
    const std::string cards = folder.name("a.bdf");
    EXPECT_EQ(korvane_mesh_write_bdf(client, cards.c_str()), STATUS_ERROR);
    EXPECT_EQ(context.messages.size(), 3u);
}

TEST(WriteExtremeMesh, IndicesAndTagsAreKeptWhateverTheyAre)
{
    RecordingContext context;
    const TemporaryFolder folder;
    const std::array<int32_t, 7> numbers = {INT32_MIN, INT32_MIN + 1, -1, 0, 9, INT32_MAX - 1, INT32_MAX};
    MeshContent content;
    for (std::size_t kind = 0; kind < MeshContent::kinds; ++kind) {
        EntityContent &entity = content.entities[kind];
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            for (std::size_t j = 0; j < vertices_per_element(kind); ++j)
                entity.vertices.push_back(numbers[(i * (j + 1) + kind) % numbers.size()]);
            entity.tags.push_back(numbers[i]);
            entity.required.push_back(0);
            if (kind == 0)
                entity.coordinates.insert(entity.coordinates.end(), {1e308, -1e-308, static_cast<double>(i)});
        }
    }
    korvane_mesh_t *mesh = make_mesh(context, content);
    for (const char *file : {"a.mesh", "a.meshb"}) {
        const std::string name = folder.name(file);
        ASSERT_EQ(korvane_mesh_write_mesh(mesh, name.c_str()), STATUS_OK);
        korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, name.c_str());
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(content_of(again), content) << file;
    }
    EXPECT_EQ(korvane_mesh_write_bdf(mesh, folder.name("a.bdf").c_str()), STATUS_ERROR);
}

} // namespace
} // namespace korvane::testing
