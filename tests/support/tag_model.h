// A tag system written the slow way.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <vector>

namespace korvane::testing {

using Tags = std::vector<int32_t>;

class TagModel {
  public:
    void add_base_tag(int32_t tag) { record(tag, tag); }

    /// The number that stands for the tags, which is handed out if there is none.
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
        while (recorded.contains(last_number));
        for (const int32_t base : united)
            record(last_number, base);
        return last_number;
    }

    /// The base tags of a tag, even ones first.
    [[nodiscard]] Tags definition(int32_t tag) const
    {
        const auto found = recorded.find(tag);
        Tags bases = found == recorded.end() ? Tags() : found->second;
        std::stable_partition(bases.begin(), bases.end(), [](int32_t base) { return base % 2 == 0; });
        return bases;
    }

    /// The tags that do not stand for themselves.
    [[nodiscard]] Tags composite_tags() const
    {
        Tags tags;
        std::copy_if(order.begin(), order.end(), std::back_inserter(tags), [this](int32_t tag) {
            const Tags &bases = recorded.at(tag);
            return std::find(bases.begin(), bases.end(), tag) == bases.end();
        });
        return tags;
    }

  private:
    void record(int32_t tag, int32_t base)
    {
        if (!recorded.contains(tag))
            order.push_back(tag);
        add(recorded[tag], base);
    }
    [[nodiscard]] Tags unite(const Tags &tags) const
    {
        Tags united;
        for (const int32_t tag : tags)
            for (const int32_t base : definition(tag))
                add(united, base);
        return united;
    }
    static void add(Tags &tags, int32_t tag)
    {
        if (std::find(tags.begin(), tags.end(), tag) == tags.end())
            tags.push_back(tag);
    }

    std::map<int32_t, Tags> recorded; // base tags of each tag, in the order of recording
    Tags order;                       // of the first recording
    int32_t last_number = 0;          // that was handed out
};

} // namespace korvane::testing
