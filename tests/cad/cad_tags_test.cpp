#include "cad_support.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

using CadTags = Cad;

TEST_F(CadTags, AreTheirOwnDefinitionWithoutATagSystem)
{
    korvane_tag_system_t *tag_system = korvane_tag_system_new(1);
    korvane_tag_system_t *found = tag_system;
    EXPECT_EQ(korvane_cad_get_tag_system(cad, &found), STATUS_OK);
    EXPECT_EQ(found, nullptr);
    korvane_tag_system_delete(tag_system);
    int32_t count = 7;
    int32_t value = 7;
    EXPECT_EQ(korvane_cad_get_composite_tag_definition(cad, 9, &count, &value), STATUS_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(value, 9);
    EXPECT_EQ(korvane_cad_get_composite_tag_list(cad, &count, &value), STATUS_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(value, 0);
}

TEST_F(CadTags, AreAskedOfTheTagSystem)
{
    korvane_tag_system_t *tag_system = korvane_tag_system_new(3);
    for (const int32_t tag : {1, 2})
        korvane_tag_system_add_base_tag(tag_system, tag);
    const std::array<int32_t, 2> tags{1, 2};
    int32_t composite = 0;
    ASSERT_EQ(korvane_tag_system_get_composite_tag(tag_system, tags.data(), 2, &composite), STATUS_OK);
    EXPECT_EQ(korvane_cad_set_tag_system(cad, tag_system), STATUS_OK);
    EXPECT_EQ(got(korvane_cad_get_tag_system, cad), tag_system);
    int32_t count = 0;
    std::array<int32_t, 8> values{};
    EXPECT_EQ(korvane_cad_get_composite_tag_list(cad, &count, values.data()), STATUS_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(values[0], composite);
    EXPECT_EQ(korvane_cad_get_composite_tag_definition(cad, composite, &count, values.data()), STATUS_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(values[0], 2);
    EXPECT_EQ(values[1], 1);
}

TEST_F(CadTags, AnEarlierTagSystemIsForgottenAndTheLastOneGoesWithTheModel)
{
    const int64_t before = live_block_count();
    korvane_tag_system_t *first = korvane_tag_system_new(1);
    const int64_t with_first = live_block_count();
    korvane_cad_t *model = korvane_cad_new(context);
    korvane_cad_set_tag_system(model, first);
    korvane_cad_set_tag_system(model, korvane_tag_system_new(1));
    EXPECT_GT(with_first, before);
    korvane_cad_delete(model);
    EXPECT_EQ(live_block_count(), with_first);
    EXPECT_EQ(korvane_tag_system_add_base_tag(first, 5), STATUS_OK);
    korvane_tag_system_delete(first);
}

TEST_F(CadTags, RefuseNull)
{
    int32_t value = 0;
    korvane_tag_system_t *tag_system = nullptr;
    EXPECT_EQ(korvane_cad_set_tag_system(nullptr, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_tag_system(nullptr, &tag_system), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_list(nullptr, &value, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_list(cad, nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_list(cad, &value, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_definition(nullptr, 1, &value, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_definition(cad, 1, nullptr, &value), STATUS_ERROR);
    EXPECT_EQ(korvane_cad_get_composite_tag_definition(cad, 1, &value, nullptr), STATUS_ERROR);
}

} // namespace
} // namespace korvane::testing
