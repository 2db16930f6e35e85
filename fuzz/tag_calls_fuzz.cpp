// Any sequence of calls on tag systems gives what a naive model of them gives: numbers, definitions and
// lists, each in its order, within the room that the buffer size states.
#include <array>
#include <memory>
#include <utility>

#include <korvane.h>

#include "script.h"
#include "support/tag_model.h"

namespace {

using korvane::fuzz::require;
using korvane::fuzz::Script;
using korvane::testing::TagModel;
using korvane::testing::Tags;

struct Deletion {
    void operator()(korvane_tag_system_t *tag_system) const { korvane_tag_system_delete(tag_system); }
};

struct System {
    std::unique_ptr<korvane_tag_system_t, Deletion> handle;
    TagModel model;
};

/// What a listing function writes into a buffer of just the size that is asked for.
template <class List>
Tags listed(const System &system, List list)
{
    Tags tags(static_cast<std::size_t>(korvane_tag_system_get_buffer_size(system.handle.get())) / 4);
    int32_t count = -1;
    require(list(&count, tags.data()) == STATUS_OK);
    require(count >= 0 && static_cast<std::size_t>(count) <= tags.size());
    tags.resize(static_cast<std::size_t>(count));
    return tags;
}

void check_definition(const System &system, int32_t tag)
{
    require(listed(system, [&](int32_t *count, int32_t *tags) {
        return korvane_tag_system_get_composite_tag_defintion(system.handle.get(), tag, count, tags);
    }) == system.model.definition(tag));
}

void check_list(const System &system)
{
    require(listed(system, [&](int32_t *count, int32_t *tags) {
        return korvane_tag_system_get_composite_tag_list(system.handle.get(), count, tags);
    }) == system.model.composite_tags());
}

void check_composite_tag(System &system, const Tags &tags)
{
    int32_t tag = -1;
    require(korvane_tag_system_get_composite_tag(
                system.handle.get(), tags.data(), static_cast<int32_t>(tags.size()), &tag) == STATUS_OK);
    require(tag == system.model.composite_tag(tags));
    check_definition(system, tag);
}

void replace(System &system, int32_t hint)
{
    korvane_tag_system_t *made = korvane_tag_system_new(hint);
    require((made != nullptr) == (hint >= -2));
    if (made != nullptr)
        system = {decltype(system.handle)(made), {}};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Script script(data, size);
    std::array<System, 2> systems;
    for (System &system : systems)
        replace(system, static_cast<int32_t>(script.choice(20)));
    while (!script.has_ended()) {
        System &system = systems[script.choice(systems.size())];
        System &other = systems[script.choice(systems.size())];
        switch (script.choice(8)) {
        case 0:
            replace(system, static_cast<int32_t>(script.choice(40)) - 8);
            break;
        case 1:
            other = {decltype(other.handle)(korvane_tag_system_clone(system.handle.get())), system.model};
            break;
        case 2:
        case 3: {
            const int32_t tag = script.integer();
            require(korvane_tag_system_add_base_tag(system.handle.get(), tag) == STATUS_OK);
            system.model.add_base_tag(tag);
            break;
        }
        case 4:
            check_definition(system, script.integer());
            check_list(system);
            break;
        default:
            check_composite_tag(system, script.integers());
        }
    }
    for (const System &system : systems)
        check_list(system);
    return 0;
}
