// Composite tags: numbers that stand for sets of base tags, and base tags, which stand for themselves.
//
// Two sets of pairs hold the same relation in both directions, so that a set of base tags finds the tags that
// contain one of them. Whatever a failed call has recorded stays recorded.
// Cost: a composite tag is found by comparing with all tags that share its first base tag.
#include "tags/tag_system.h"

#include <algorithm>
#include <utility>

#include "common/try.h"

namespace korvane {

namespace {

constexpr int64_t grown_union_capacity(int32_t capacity)
{
    return int64_t{capacity} + std::max(capacity / 3, 21);
}

/// Base tags without duplicates, in the order of their first appearance.
using BaseTagUnion = tuple_major_set_t<ordered_key<1>, grown_union_capacity>;

[[nodiscard]] Owned<tag_pair_set_t> create_pairs(int32_t base_tag_count)
{
    const int64_t bucket_count = int64_t{base_tag_count} + 3;
    if (bucket_count > INT32_MAX)
        return nullptr;
    return tuple_set_new<tag_pair_set_t>(static_cast<int32_t>(bucket_count), base_tag_count / 2 + 2, 2, 2);
}

/// The base tags that a tag stands for are the minor keys of these.
auto definition(const korvane_tag_system_t &tag_system, int32_t tag)
{
    return tag_system.definitions->row(tag_system.definitions->major.find({tag}));
}

int32_t base_tag(const korvane_tag_system_t &tag_system, int32_t pair)
{
    return tag_system.definitions->minor_keys.key(pair)[0];
}

/// A base tag is in its own definition; a tag that a failed call left without a definition is none at all.
bool is_composite_tag(const korvane_tag_system_t &tag_system, int32_t tag)
{
    const tag_pair_set_t &definitions = *tag_system.definitions;
    return definitions.find({tag}, {tag}) == 0 && definitions.row_length(definitions.major.find({tag})) > 0;
}

[[nodiscard]] korvane_status_t record(korvane_tag_system_t &tag_system, int32_t tag, int32_t base)
{
    const bool recorded = tuple_set_insert(*tag_system.definitions, {tag}, {base}) != 0 &&
                          tuple_set_insert(*tag_system.memberships, {base}, {tag}) != 0;
    return recorded ? STATUS_OK : STATUS_NOMEM;
}

[[nodiscard]] korvane_status_t unite(
    const korvane_tag_system_t &tag_system, const int32_t *tags, int32_t count, BaseTagUnion &united)
{
    const int64_t size = 2 * int64_t{count} + 1;
    if (size > INT32_MAX || !united.try_create(static_cast<int32_t>(size), static_cast<int32_t>(size)))
        return STATUS_NOMEM;
    for (int32_t i = 0; i < count; ++i) {
        for (const int32_t pair : definition(tag_system, tags[i])) {
            if (united.insert({base_tag(tag_system, pair)}) == 0)
                return STATUS_NOMEM;
        }
    }
    return STATUS_OK;
}

bool is_definition(const korvane_tag_system_t &tag_system, int32_t tag, const BaseTagUnion &united)
{
    int32_t length = 0;
    for (const int32_t pair : definition(tag_system, tag)) {
        if (united.find({base_tag(tag_system, pair)}) == 0)
            return false;
        ++length;
    }
    return length == united.count;
}

/// Looks for the first tag that stands for a set of base tags, which is not empty.
bool find_defined(const korvane_tag_system_t &tag_system, const BaseTagUnion &united, int32_t *tag)
{
    const tag_pair_set_t &memberships = *tag_system.memberships;
    for (const int32_t pair : memberships.row(memberships.major.find(united.key(1)))) {
        const int32_t candidate = memberships.minor_keys.key(pair)[0];
        if (is_definition(tag_system, candidate, united)) {
            *tag = candidate;
            return true;
        }
    }
    return false;
}

/// Hands out the next number that no tag uses; STATUS_ERROR when there is none left.
[[nodiscard]] korvane_status_t take_number(korvane_tag_system_t &tag_system, int32_t *tag)
{
    do {
        if (tag_system.next_composite_tag == INT32_MAX)
            return STATUS_ERROR;
        ++tag_system.next_composite_tag;
    } while (tag_system.definitions->major.find({tag_system.next_composite_tag}) != 0);
    *tag = tag_system.next_composite_tag;
    return STATUS_OK;
}

[[nodiscard]] korvane_status_t find_or_define(
    korvane_tag_system_t &tag_system, const int32_t *tags, int32_t count, int32_t *composite_tag)
{
    BaseTagUnion united;
    TRY(unite(tag_system, tags, count, united));
    if (united.count > 0 && find_defined(tag_system, united, composite_tag))
        return STATUS_OK;
    int32_t tag = 0;
    TRY(take_number(tag_system, &tag));
    for (int32_t i = 1; i <= united.count; ++i)
        TRY(record(tag_system, tag, united.key(i)[0]));
    *composite_tag = tag;
    return STATUS_OK;
}

} // namespace

korvane_status_t list_composite_tags(const korvane_tag_system_t *tag_system, int32_t *count, int32_t *list)
{
    if (tag_system != nullptr)
        return korvane_tag_system_get_composite_tag_list(tag_system, count, list);
    *count = 0;
    *list = 0;
    return STATUS_OK;
}

korvane_status_t list_definition(
    const korvane_tag_system_t *tag_system, int32_t tag, int32_t *count, int32_t *base_tags)
{
    if (tag_system != nullptr)
        return korvane_tag_system_get_composite_tag_defintion(tag_system, tag, count, base_tags);
    *count = 1;
    *base_tags = tag;
    return STATUS_OK;
}

} // namespace korvane

using namespace korvane;

extern "C" {

korvane_tag_system_t *korvane_tag_system_new(int32_t base_tag_count)
{
    Owned<korvane_tag_system_t> tag_system = create_owned<korvane_tag_system_t>();
    if (!tag_system)
        return nullptr;
    tag_system->definitions = create_pairs(base_tag_count);
    tag_system->memberships = create_pairs(base_tag_count);
    if (!tag_system->definitions || !tag_system->memberships)
        return nullptr;
    return tag_system.release();
}

korvane_tag_system_t *korvane_tag_system_clone(const korvane_tag_system_t *tag_system)
{
    if (tag_system == nullptr)
        return nullptr;
    Owned<korvane_tag_system_t> clone = create_owned<korvane_tag_system_t>();
    if (!clone)
        return nullptr;
    clone->definitions = tuple_set_clone(*tag_system->definitions);
    clone->memberships = tuple_set_clone(*tag_system->memberships);
    if (!clone->definitions || !clone->memberships)
        return nullptr;
    clone->next_composite_tag = tag_system->next_composite_tag;
    return clone.release();
}

void korvane_tag_system_delete(korvane_tag_system_t *tag_system)
{
    destroy(tag_system);
}

korvane_status_t korvane_tag_system_add_base_tag(korvane_tag_system_t *tag_system, int32_t tag)
{
    return record(*tag_system, tag, tag);
}

korvane_status_t korvane_tag_system_get_composite_tag(
    korvane_tag_system_t *tag_system, const int32_t *tags, int32_t count, int32_t *composite_tag)
{
    // The output is written last, because it may be one of the tags.
    int32_t tag = 0;
    const korvane_status_t status = count < 1 ? STATUS_OK : find_or_define(*tag_system, tags, count, &tag);
    *composite_tag = tag;
    return status;
}

korvane_status_t korvane_tag_system_get_composite_tag_defintion(
    const korvane_tag_system_t *tag_system, int32_t tag, int32_t *count, int32_t *base_tags)
{
    if (tag_system == nullptr || count == nullptr || base_tags == nullptr)
        return STATUS_ERROR;
    *count = 0;
    for (const int32_t pair : definition(*tag_system, tag))
        base_tags[(*count)++] = base_tag(*tag_system, pair);
    return STATUS_OK;
}

korvane_status_t korvane_tag_system_get_composite_tag_list(
    const korvane_tag_system_t *tag_system, int32_t *count, int32_t *tags)
{
    if (tag_system == nullptr || count == nullptr || tags == nullptr)
        return STATUS_ERROR;
    if (!tag_system->definitions)
        return STATUS_NOMEM;
    *count = 0;
    for (int32_t i = 1; i <= tag_system->definitions->major.count; ++i) {
        const int32_t tag = tag_system->definitions->major.key(i)[0];
        if (is_composite_tag(*tag_system, tag))
            tags[(*count)++] = tag;
    }
    return STATUS_OK;
}

int32_t korvane_tag_system_get_buffer_size(const korvane_tag_system_t *tag_system)
{
    const tag_pair_set_t &definitions = *tag_system->definitions;
    const int32_t tag_count = definitions.major.count;
    int32_t definition_length = definitions.minor_keys.count;
    if (definition_length > 10) {
        definition_length = 0;
        for (int32_t i = 1; i <= tag_count; ++i)
            definition_length = std::max(definition_length, definitions.row_length(i));
    }
    const int64_t bytes = 4 * int64_t{std::max({2, tag_count, definition_length})};
    return static_cast<int32_t>(std::min(bytes, int64_t{INT32_MAX}));
}

} // extern "C"
