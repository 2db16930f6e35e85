// The kinds of entities that mesh files hold: one row each, which readers and writers walk.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include <korvane.h>

#include "common/try.h"
#include "io/gmf_keywords.h"

namespace korvane {

/// Some consecutive entities of one kind.
struct EntityBlock {
    static constexpr int32_t capacity = 512;
    union {
        std::array<double, std::size_t{3} * capacity> coordinates;
        std::array<int32_t, std::size_t{8} * capacity> vertices;
    };
    std::array<int32_t, capacity> tags;
};

struct FetchedEntities {
    int32_t count;               // how many were fetched before one failed
    korvane_status_t status;     // of that one, or STATUS_OK
    korvane_status_t tag_status; // of the last tag
};

/// The arrays of a kind in an in-memory mesh: either coordinates or vertices, and tags.
struct EntityArrays {
    double *coordinates;
    int32_t *vertices;
    int32_t *tags;

    [[nodiscard]] explicit operator bool() const
    {
        return (coordinates != nullptr || vertices != nullptr) && tags != nullptr;
    }
};

struct Entity {
    int32_t keyword;
    int32_t required_keyword;   // of the list of required entities, 0 if there is none
    int32_t values_per_entity;  // coordinates or vertices
    std::string_view plural;    // as the messages about reading have it
    std::string_view data_name; // as the messages about writing have it
    std::string_view card;      // of bulk data, empty if there is none

    korvane_status_t (*get_count)(const korvane_mesh_t *mesh, int32_t *count);
    korvane_status_t (*set_count)(korvane_mesh_t *mesh, int32_t count);

    /// Fetches `count` entities from `first` on, at most a block, until the coordinates or vertices of one
    /// fail. A tag that fails is 0. All getters of an entity are called before those of the next.
    FetchedEntities (*fetch)(const korvane_mesh_t *mesh, int32_t first, int32_t count, EntityBlock &block);

    /// Fetches the required flags of `count` entities from `first` on; those that fail are 0.
    void (*fetch_required)(const korvane_mesh_t *mesh, int32_t first, int32_t count, int32_t *flags);

    /// Sizes the arrays of a new in-memory mesh for a reader that fills them whole; null if memory runs out.
    EntityArrays (*try_open)(korvane_mesh_t &mesh, int32_t count);
    int32_t *(*try_open_required)(korvane_mesh_t &mesh, int32_t count);

    [[nodiscard]] bool has_coordinates() const { return keyword == gmf_vertices; }
};

/// In the order of the blocks of a file.
extern const std::array<Entity, 7> entity_table;

/// How many entities of a kind a mesh has; 0 if it cannot tell.
[[nodiscard]] inline int32_t count_of(const Entity &entity, const korvane_mesh_t *mesh)
{
    int32_t count = 0;
    return entity.get_count(mesh, &count) == STATUS_OK ? count : 0;
}

/// Calls `use(first, count)` for blocks of the entities 1..count in turn, until one fails.
template <class Use>
[[nodiscard]] korvane_status_t for_each_block(int32_t count, Use use)
{
    for (int32_t done = 0; done < count;) {
        const int32_t part = std::min(count - done, EntityBlock::capacity);
        TRY(use(done + 1, part));
        done += part;
    }
    return STATUS_OK;
}

} // namespace korvane
