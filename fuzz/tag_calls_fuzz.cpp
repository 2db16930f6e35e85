// Any sequence of calls on tag systems gives what a naive model of them gives: numbers, definitions and
// lists, each in its order, within the room that the buffer size states.
#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include <korvane.h>

#include "script.h"

namespace {

using korvane::fuzz::require;
using korvane::fuzz::Script;
using Tags = std::vector<int32_t>;

/// What a tag system holds.
struct Model {
    std::map<int32_t, Tags> recorded; // base tags of each tag
    Tags order;                       // of the first recording
    int32_t last_number = 0;          // that was handed out

    void record(int32_t tag, int32_t base)
    {
        if (recorded.find(tag) == recorded.end())
            order.push_back(tag);
        Tags &bases = recorded[tag];
        if (std::find(bases.begin(), bases.end(), base) == bases.end())
            bases.push_back(base);
    }

    [[nodiscard]] Tags definition(int32_t tag) const
    {
        const auto found = recorded.find(tag);
        Tags bases = found == recorded.end() ? Tags() : found->second;
        std::stable_partition(bases.begin(), bases.end(), [](int32_t base) { return base % 2 == 0; });
        return bases;
    }

    [[nodiscard]] Tags unite(const Tags &tags) const
    {
        Tags united;
        for (const int32_t tag : tags)
            for (const int32_t base : definition(tag))
                if (std::find(united.begin(), united.end(), base) == united.end())
                    united.push_back(base);
        return united;
    }

    int32_t composite_tag(const Tags &tags)
    {
        if (tags.empty())
            return 0;
        const Tags united = unite(tags);
        for (const auto &[tag, bases] : recorded)
            if (!united.empty() &&
                std::is_permutation(bases.begin(), bases.end(), united.begin(), united.end()))
                return tag;
        do
            ++last_number;
        while (recorded.find(last_number) != recorded.end());
        for (const int32_t base : united)
            record(last_number, base);
        return last_number;
    }

    [[nodiscard]] Tags composite_tags() const
    {
        Tags tags;
        std::copy_if(order.begin(), order.end(), std::back_inserter(tags), [this](int32_t tag) {
            const Tags &bases = recorded.at(tag);
            return std::find(bases.begin(), bases.end(), tag) == bases.end();
        });
        return tags;
    }
};

struct Deletion {
    void operator()(korvane_tag_system_t *tag_system) const { korvane_tag_system_delete(tag_system); }
};

struct System {
    std::unique_ptr<korvane_tag_system_t, Deletion> handle;
    Model model;
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
            other = {
                decltype(other.handle)(korvane_tag_system_clone(system.handle.get())), Model(system.model)};
            break;
        case 2:
        case 3: {
            const int32_t tag = script.integer();
            require(korvane_tag_system_add_base_tag(system.handle.get(), tag) == STATUS_OK);
            system.model.record(tag, tag);
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
