#include "tags/tag_system.h"

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"
#include "support/tag_model.h"

namespace korvane::testing {
namespace {

struct Deleter {
    void operator()(korvane_tag_system_t *tag_system) const { korvane_tag_system_delete(tag_system); }
};
using TagSystem = std::unique_ptr<korvane_tag_system_t, Deleter>;

TagSystem tag_system_of(const std::vector<int32_t> &base_tags)
{
    TagSystem tag_system(korvane_tag_system_new(static_cast<int32_t>(base_tags.size())));
    for (const int32_t tag : base_tags)
        EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), tag), STATUS_OK);
    return tag_system;
}

int32_t composite(const TagSystem &tag_system, const std::vector<int32_t> &tags)
{
    int32_t tag = -77;
    EXPECT_EQ(korvane_tag_system_get_composite_tag(
                  tag_system.get(), tags.data(), static_cast<int32_t>(tags.size()), &tag),
        STATUS_OK);
    return tag;
}

/// An array of the size that the tag system states; what it writes beyond is seen by the sanitizers.
std::vector<int32_t> array_for(const TagSystem &tag_system)
{
    const int32_t bytes = korvane_tag_system_get_buffer_size(tag_system.get());
    EXPECT_EQ(bytes % 4, 0);
    return std::vector<int32_t>(static_cast<std::size_t>(bytes / 4));
}

std::vector<int32_t> definition(const TagSystem &tag_system, int32_t tag)
{
    std::vector<int32_t> base_tags = array_for(tag_system);
    int32_t count = -1;
    EXPECT_EQ(korvane_tag_system_get_composite_tag_defintion(tag_system.get(), tag, &count, base_tags.data()),
        STATUS_OK);
    EXPECT_LE(count, std::ssize(base_tags));
    base_tags.resize(static_cast<std::size_t>(count));
    return base_tags;
}

std::vector<int32_t> composite_tags(const TagSystem &tag_system)
{
    std::vector<int32_t> tags = array_for(tag_system);
    int32_t count = -1;
    EXPECT_EQ(korvane_tag_system_get_composite_tag_list(tag_system.get(), &count, tags.data()), STATUS_OK);
    EXPECT_LE(count, std::ssize(tags));
    tags.resize(static_cast<std::size_t>(count));
    return tags;
}

TEST(TagSystem, NumbersAndListsTheExample)
{
    const TagSystem tag_system = tag_system_of({1, 2, 3});
    EXPECT_EQ(composite(tag_system, {1, 2}), 4);
    EXPECT_EQ(composite(tag_system, {2, 1}), 4);
    EXPECT_EQ(composite(tag_system, {4, 3}), 5);
    EXPECT_EQ(definition(tag_system, 5), (Tags{2, 1, 3}));
    EXPECT_EQ(composite(tag_system, {1}), 1);
    EXPECT_EQ(composite(tag_system, {4, 1}), 4);
    EXPECT_EQ(composite(tag_system, {1, 1, 2, 4, 2}), 4);
    EXPECT_EQ(composite_tags(tag_system), (Tags{4, 5}));
}

TEST(TagSystem, CompositeTagsTakeTheSmallestNumbersThatAreFree)
{
    EXPECT_EQ(composite(tag_system_of({4, 5}), {4, 5}), 1);
    const TagSystem tag_system = tag_system_of({2, 4, 9});
    EXPECT_EQ(composite(tag_system, {2, 4}), 1);
    EXPECT_EQ(composite(tag_system, {2, 9}), 3);
    EXPECT_EQ(composite(tag_system, {4, 9}), 5);
}

TEST(TagSystem, EmptyListGivesZero)
{
    const TagSystem tag_system = tag_system_of({1, 2});
    EXPECT_EQ(composite(tag_system, {}), 0);
    int32_t tag = -1;
    EXPECT_EQ(korvane_tag_system_get_composite_tag(tag_system.get(), nullptr, 0, &tag), STATUS_OK);
    EXPECT_EQ(tag, 0);
    tag = -1;
    EXPECT_EQ(korvane_tag_system_get_composite_tag(tag_system.get(), nullptr, INT32_MIN, &tag), STATUS_OK);
    EXPECT_EQ(tag, 0);
    EXPECT_EQ(composite(tag_system, {1, 2}), 3);
}

TEST(TagSystem, UnknownTagsGiveAFreshNumberThatIsNotRecorded)
{
    const TagSystem tag_system = tag_system_of({1, 2});
    EXPECT_EQ(composite(tag_system, {8, 9}), 3);
    EXPECT_EQ(composite(tag_system, {8, 9}), 4);
    EXPECT_EQ(definition(tag_system, 3), Tags{});
    EXPECT_EQ(composite_tags(tag_system), Tags{});
    EXPECT_EQ(composite(tag_system, {3, 1}), 1);
    EXPECT_EQ(composite(tag_system, {8, 1, 2}), 5);
    EXPECT_EQ(composite_tags(tag_system), Tags{5});
}

TEST(TagSystem, AddingABaseTagTwiceChangesNothing)
{
    const TagSystem tag_system = tag_system_of({7, 7, 8, 7});
    EXPECT_EQ(definition(tag_system, 7), Tags{7});
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), 8);
    EXPECT_EQ(composite(tag_system, {7, 8}), 1);
}

TEST(TagSystem, DefinitionsListEvenBaseTagsFirst)
{
    const TagSystem tag_system = tag_system_of({-3, 0, 5, -8, INT32_MIN, INT32_MAX});
    EXPECT_EQ(composite(tag_system, {5, -8, -3, INT32_MAX, INT32_MIN, 0}), 1);
    EXPECT_EQ(definition(tag_system, 1), (Tags{-8, INT32_MIN, 0, 5, -3, INT32_MAX}));
    EXPECT_EQ(definition(tag_system, INT32_MIN), Tags{INT32_MIN});
    EXPECT_EQ(composite(tag_system, {INT32_MIN}), INT32_MIN);
}

TEST(TagSystem, BaseTagDeclaredOverACompositeJoinsItsDefinition)
{
    const TagSystem tag_system = tag_system_of({2, 4});
    EXPECT_EQ(composite(tag_system, {2, 4}), 1);
    EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), 1), STATUS_OK);
    EXPECT_EQ(definition(tag_system, 1), (Tags{2, 4, 1}));
    EXPECT_EQ(composite_tags(tag_system), Tags{});
    EXPECT_EQ(composite(tag_system, {2, 4}), 3);
}

TEST(TagSystem, OutputMayBeOneOfTheTags)
{
    const TagSystem tag_system = tag_system_of({3, 4});
    int32_t tags[] = {4, 3};
    EXPECT_EQ(korvane_tag_system_get_composite_tag(tag_system.get(), tags, 2, &tags[0]), STATUS_OK);
    EXPECT_EQ(tags[0], 1);
    EXPECT_EQ(definition(tag_system, 1), (Tags{4, 3}));
}

TEST(TagSystem, StatesTheBufferSizeOfItsLists)
{
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system_of({}).get()), 8);
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system_of({1}).get()), 8);
    const TagSystem tag_system = tag_system_of({1, 2, 3, 4});
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), 4 * 4);
    EXPECT_EQ(composite(tag_system, {1, 2, 3, 4}), 5);
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), 4 * 8); // few pairs: all of them
    EXPECT_EQ(composite(tag_system, {1, 2, 3}), 6);
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), 4 * 6); // many: the longest definition
}

TEST(TagSystem, BufferSizeDoesNotOverflow)
{
    const TagSystem tag_system = tag_system_of({1});
    const int32_t count = std::exchange(tag_system->definitions->major.count, 1 << 30);
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), INT32_MAX);
    tag_system->definitions->major.count = count;
}

Tags forty_tags()
{
    Tags tags(40);
    std::iota(tags.begin(), tags.end(), 100);
    return tags;
}

TEST(TagSystem, LongestDefinitionDecidesTheBufferSize)
{
    const Tags all = forty_tags();
    const TagSystem tag_system = tag_system_of(all);
    EXPECT_EQ(composite(tag_system, all), 1);
    EXPECT_EQ(korvane_tag_system_get_buffer_size(tag_system.get()), 4 * 41);
    EXPECT_EQ(definition(tag_system, 1).size(), 40u);
}

TEST(TagSystem, StopsWhenAllNumbersAreTaken)
{
    const TagSystem tag_system = tag_system_of({1, 2, 3, INT32_MAX});
    tag_system->next_composite_tag = INT32_MAX - 2;
    EXPECT_EQ(composite(tag_system, {1, 2}), INT32_MAX - 1);
    const int32_t tags[] = {2, 3};
    for (int i = 0; i < 2; ++i) {
        int32_t tag = -1;
        EXPECT_EQ(korvane_tag_system_get_composite_tag(tag_system.get(), tags, 2, &tag), STATUS_ERROR);
        EXPECT_EQ(tag, 0);
    }
    EXPECT_EQ(composite(tag_system, {2, 1}), INT32_MAX - 1);
}

TEST(TagSystem, RefusesMoreTagsThanItCouldUnite)
{
    const TagSystem tag_system = tag_system_of({1});
    const int32_t one = 1;
    int32_t tag = -1;
    EXPECT_EQ(korvane_tag_system_get_composite_tag(tag_system.get(), &one, INT32_MAX, &tag), STATUS_NOMEM);
    EXPECT_EQ(tag, 0);
}

TEST(TagSystem, RefusesNullArgumentsOfTheLists)
{
    const TagSystem tag_system = tag_system_of({1, 2});
    int32_t count = 5;
    int32_t tags[2] = {};
    EXPECT_EQ(korvane_tag_system_get_composite_tag_defintion(nullptr, 1, &count, tags), STATUS_ERROR);
    EXPECT_EQ(
        korvane_tag_system_get_composite_tag_defintion(tag_system.get(), 1, nullptr, tags), STATUS_ERROR);
    EXPECT_EQ(
        korvane_tag_system_get_composite_tag_defintion(tag_system.get(), 1, &count, nullptr), STATUS_ERROR);
    EXPECT_EQ(korvane_tag_system_get_composite_tag_list(nullptr, &count, tags), STATUS_ERROR);
    EXPECT_EQ(korvane_tag_system_get_composite_tag_list(tag_system.get(), nullptr, tags), STATUS_ERROR);
    EXPECT_EQ(korvane_tag_system_get_composite_tag_list(tag_system.get(), &count, nullptr), STATUS_ERROR);
    EXPECT_EQ(count, 5);
}

TEST(TagSystem, WithoutItsSetHasNoMemoryForTheList)
{
    const TagSystem tag_system = tag_system_of({1});
    const auto taken_away = std::move(tag_system->definitions);
    int32_t count = -7;
    int32_t tag = -7;
    EXPECT_EQ(korvane_tag_system_get_composite_tag_list(tag_system.get(), &count, &tag), STATUS_NOMEM);
    EXPECT_EQ(count, -7);
    EXPECT_EQ(tag, -7);
}

TEST(TagSystem, TakesAnySizeHint)
{
    for (const int32_t hint : {-2, -1, 0, 1, 1000}) {
        const TagSystem tag_system(korvane_tag_system_new(hint));
        ASSERT_NE(tag_system, nullptr) << hint;
        EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), 1), STATUS_OK);
        EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), 2), STATUS_OK);
        EXPECT_EQ(composite(tag_system, {1, 2}), 3);
    }
    for (const int32_t hint : {-3, -5, INT32_MIN, INT32_MAX, INT32_MAX - 3})
        EXPECT_EQ(korvane_tag_system_new(hint), nullptr) << hint;
}

TEST(TagSystem, DeletionAndCloneAcceptNull)
{
    korvane_tag_system_delete(nullptr);
    EXPECT_EQ(korvane_tag_system_clone(nullptr), nullptr);
}

TEST(TagSystem, CloneIsIndependent)
{
    const TagSystem tag_system = tag_system_of({1, 2, 3});
    EXPECT_EQ(composite(tag_system, {1, 2}), 4);
    const TagSystem clone(korvane_tag_system_clone(tag_system.get()));
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(composite(clone, {2, 1}), 4);
    EXPECT_EQ(composite(clone, {1, 3}), 5);
    EXPECT_EQ(korvane_tag_system_add_base_tag(clone.get(), 50), STATUS_OK);
    EXPECT_EQ(composite_tags(tag_system), Tags{4});
    EXPECT_EQ(definition(tag_system, 50), Tags{});
    EXPECT_EQ(composite(tag_system, {2, 3}), 5);
    EXPECT_EQ(definition(clone, 5), (Tags{1, 3}));
    EXPECT_EQ(definition(tag_system, 5), (Tags{2, 3}));
}

void expect_same(const TagSystem &tag_system, const TagModel &model)
{
    EXPECT_EQ(composite_tags(tag_system), model.composite_tags());
    for (int32_t tag = -40; tag <= 300; ++tag)
        EXPECT_EQ(definition(tag_system, tag), model.definition(tag));
}

TEST(TagSystem, BehavesAsItsModel)
{
    std::mt19937 engine(5);
    const auto below = [&engine](uint32_t bound) { return static_cast<int32_t>(engine() % bound); };
    for (const int32_t hint : {0, 3, 100}) {
        const TagSystem tag_system(korvane_tag_system_new(hint));
        TagModel model;
        for (int step = 0; step < 400; ++step) {
            if (const int32_t base = below(80) - 30; below(6) == 0) { // also one that is composite
                EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), base), STATUS_OK);
                model.add_base_tag(base);
                continue;
            }
            Tags list(static_cast<std::size_t>(below(5)));
            for (int32_t &tag : list)
                tag = below(80) - 30;
            ASSERT_EQ(composite(tag_system, list), model.composite_tag(list));
        }
        expect_same(tag_system, model);
    }
}

TEST(TagSystem, CreationAndCloneSurviveFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        fault.arm();
        const TagSystem tag_system(korvane_tag_system_new(3));
        EXPECT_EQ(fault.disarm(), tag_system == nullptr);
    });
    const TagSystem tag_system = tag_system_of({1, 2, 3});
    EXPECT_EQ(composite(tag_system, {1, 2}), 4);
    oom_sweep([&tag_system](AllocationFault &fault) {
        fault.arm();
        const TagSystem clone(korvane_tag_system_clone(tag_system.get()));
        EXPECT_EQ(fault.disarm(), clone == nullptr);
    });
    EXPECT_EQ(composite_tags(tag_system), Tags{4});
}

TEST(TagSystem, BaseTagsSurviveFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        const TagSystem tag_system = tag_system_of({});
        fault.arm();
        Tags refused;
        for (int32_t tag = 1; tag <= 60; ++tag) {
            const korvane_status_t status = korvane_tag_system_add_base_tag(tag_system.get(), tag);
            if (status != STATUS_OK) {
                EXPECT_EQ(status, STATUS_NOMEM);
                refused.push_back(tag);
            }
        }
        EXPECT_EQ(fault.disarm(), !refused.empty());
        EXPECT_EQ(composite_tags(tag_system), Tags{});
        for (const int32_t tag : refused)
            EXPECT_EQ(korvane_tag_system_add_base_tag(tag_system.get(), tag), STATUS_OK);
        for (int32_t tag = 1; tag <= 60; ++tag) {
            EXPECT_EQ(definition(tag_system, tag), Tags{tag});
            EXPECT_EQ(composite(tag_system, {tag}), tag);
        }
        EXPECT_EQ(composite(tag_system, {3, 60}), 61);
    });
}

TEST(TagSystem, LongUnionsSurviveFailingAllocations)
{
    const Tags all = forty_tags();
    const TagSystem tag_system = tag_system_of(all);
    EXPECT_EQ(composite(tag_system, all), 1);
    oom_sweep([&tag_system](AllocationFault &fault) {
        const int32_t composite_of_forty = 1;
        int32_t tag = -1;
        fault.arm();
        const korvane_status_t status =
            korvane_tag_system_get_composite_tag(tag_system.get(), &composite_of_forty, 1, &tag);
        EXPECT_EQ(fault.disarm(), status == STATUS_NOMEM);
        EXPECT_EQ(tag, status == STATUS_OK ? 1 : 0);
    });
    EXPECT_EQ(composite_tags(tag_system), Tags{1});
}

TEST(TagSystem, CompositeTagsSurviveFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        const TagSystem tag_system = tag_system_of({1, 2, 3, 4, 5, 6, 7, 8});
        std::map<Tags, int32_t> given;
        fault.arm();
        bool refused = false;
        for (int32_t a = 1; a <= 8; ++a) {
            for (int32_t b = a + 1; b <= 8; ++b) {
                const Tags list{a, b};
                int32_t tag = -1;
                const korvane_status_t status =
                    korvane_tag_system_get_composite_tag(tag_system.get(), list.data(), 2, &tag);
                if (status == STATUS_OK) {
                    given[list] = tag;
                } else {
                    EXPECT_EQ(status, STATUS_NOMEM);
                    EXPECT_EQ(tag, 0);
                    refused = true;
                }
            }
        }
        EXPECT_EQ(fault.disarm(), refused);
        std::set<int32_t> numbers;
        for (const auto &[list, tag] : given) {
            EXPECT_TRUE(numbers.insert(tag).second);
            EXPECT_EQ(composite(tag_system, list), tag);
        }
        for (int32_t a = 1; a <= 8; ++a) {
            for (int32_t b = a + 1; b <= 8; ++b) {
                Tags listed = definition(tag_system, composite(tag_system, {a, b}));
                std::sort(listed.begin(), listed.end());
                EXPECT_EQ(listed, (Tags{a, b}));
            }
        }
        for (const int32_t tag : composite_tags(tag_system))
            EXPECT_FALSE(definition(tag_system, tag).empty());
    });
}

TEST(TagSystem, ABaseTagStandsForItselfAfterFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        const TagSystem tag_system = tag_system_of({1, 3, 5});
        const Tags list{1, 3, 5};
        int32_t tag = 0;
        fault.arm();
        const korvane_status_t status =
            korvane_tag_system_get_composite_tag(tag_system.get(), list.data(), 3, &tag);
        EXPECT_EQ(status, fault.disarm() ? STATUS_NOMEM : STATUS_OK);
        for (const int32_t base : list)
            EXPECT_EQ(composite(tag_system, {base}), base);
    });
}

} // namespace
} // namespace korvane::testing
