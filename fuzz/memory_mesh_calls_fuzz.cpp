// Any sequence of calls on an in-memory mesh gives what a naive model of its arrays gives. Callbacks of a
// hostile client replace some of its own; reports and files are made whatever the mesh serves.
#include <bit>

#include <korvane.h>

#include "mesh_rows.h"
#include "script.h"

namespace {

using korvane::fuzz::file_name;
using korvane::fuzz::require;
using korvane::fuzz::Script;
using namespace korvane::fuzz::rows;

constexpr int32_t usual_count = 600; // attributes are written and reports made up to it

template <class Value>
struct ModelAttribute {
    bool replaced = false;
    std::vector<std::vector<Value>> elements;

    /// Fits the array and tells whether the element can be written.
    korvane_status_t open(int32_t count, int32_t index)
    {
        if (count < 0)
            return STATUS_ERROR;
        elements.resize(static_cast<std::size_t>(count));
        return index >= 1 && index <= count ? STATUS_OK : STATUS_ERROR;
    }
    [[nodiscard]] std::vector<Value> read(int32_t index, std::size_t width) const
    {
        const auto element = static_cast<std::size_t>(index) - 1;
        const bool written = element < elements.size() && !elements[element].empty();
        return written ? elements[element] : std::vector<Value>(width);
    }
};

struct List {
    int32_t count = 0;
    std::vector<int32_t> vertices;
};

class Machine {
  public:
    explicit Machine(Script &calls) : script(calls)
    {
        korvane_context_set_message_callback(context, nullptr, nullptr);
    }
    ~Machine() { korvane_context_delete(context); }
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;

    void step()
    {
        static constexpr void (Machine::*steps[])() = {&Machine::change_count, &Machine::change_count,
            &Machine::set_values, &Machine::set_values, &Machine::set_values, &Machine::get_values,
            &Machine::set_coordinates, &Machine::get_coordinates, &Machine::set_list, &Machine::get_list,
            &Machine::replace_callback, &Machine::use_whole};
        (this->*steps[script.choice(std::size(steps))])();
    }

  private:
    // -- Counts

    void change_count()
    {
        const std::size_t kind = script.choice(kinds.size());
        const int32_t count = script.integer();
        const korvane_status_t status = kinds[kind].set_count(mesh, count);
        require(status == (count_replaced[kind] ? STATUS_ERROR : STATUS_OK));
        if (!count_replaced[kind])
            counts[kind] = count;
        int32_t got = 0;
        kinds[kind].get_count(mesh, &got);
        require(count_replaced[kind] || got == counts[kind]);
    }
    [[nodiscard]] bool may_write(std::size_t kind) const { return counts[kind] <= usual_count; }
    [[nodiscard]] bool is_within(std::size_t kind, int32_t index) const
    {
        return index >= 1 && index <= counts[kind];
    }

    // -- Integers of an element

    void set_values()
    {
        const std::size_t row = script.choice(values_rows.size());
        const ValuesRow &values = values_rows[row];
        if (!may_write(values.kind))
            return;
        const int32_t index = script.integer();
        std::vector<int32_t> element(values.width);
        for (int32_t &value : element)
            value = script.integer();
        auto &model = values_model[row];
        const korvane_status_t status = values.set(mesh, index, element.data());
        if (model.replaced)
            return require(status == STATUS_ERROR);
        require(status == model.open(counts[values.kind], index));
        if (status == STATUS_OK)
            model.elements[static_cast<std::size_t>(index) - 1] = element;
    }
    void get_values()
    {
        const std::size_t row = script.choice(values_rows.size());
        const ValuesRow &values = values_rows[row];
        const int32_t index = script.integer();
        std::vector<int32_t> element(values.width, -77);
        const korvane_status_t status = values.get(mesh, index, element.data());
        if (values_model[row].replaced)
            return;
        require(status == (is_within(values.kind, index) ? STATUS_OK : STATUS_ERROR));
        if (status == STATUS_OK)
            require(element == values_model[row].read(index, values.width));
    }

    // -- Coordinates

    void set_coordinates()
    {
        if (!may_write(0))
            return;
        const int32_t index = script.integer();
        const std::array<double, 3> xyz = script.reals<3>();
        const korvane_status_t status = korvane_mesh_set_vertex_coordinates(mesh, index, xyz.data());
        if (coordinates.replaced)
            return require(status == STATUS_ERROR);
        require(status == coordinates.open(counts[0], index));
        if (status == STATUS_OK)
            coordinates.elements[static_cast<std::size_t>(index) - 1].assign(xyz.begin(), xyz.end());
    }
    void get_coordinates()
    {
        const int32_t index = script.integer();
        std::array<double, 3> xyz{};
        const korvane_status_t status = korvane_mesh_get_vertex_coordinates(mesh, index, xyz.data());
        if (coordinates.replaced)
            return;
        require(status == (is_within(0, index) ? STATUS_OK : STATUS_ERROR));
        if (status != STATUS_OK)
            return;
        const std::vector<double> expected = coordinates.read(index, 3);
        for (std::size_t i = 0; i < xyz.size(); ++i) // bit by bit: not-a-number equals nothing
            require(std::bit_cast<uint64_t>(expected[i]) == std::bit_cast<uint64_t>(xyz[i]));
    }

    // -- Extra vertices

    void set_list()
    {
        const std::size_t row = script.choice(list_rows.size());
        const ListRow &lists = list_rows[row];
        if (!may_write(lists.kind))
            return;
        const int32_t index = script.integer();
        const std::vector<int32_t> vertices = script.integers();
        // Any number of thousands may stand before the number of vertices, and any negative number.
        const auto stored = static_cast<int32_t>(vertices.size());
        const int32_t count = script.chance() ? script.byte() * 1000 + stored : -stored;
        const korvane_status_t status = lists.set(mesh, index, count, vertices.data());
        auto &model = list_model[row];
        if (model.replaced)
            return require(status == STATUS_ERROR);
        require(status == model.open(counts[lists.kind], index));
        if (status == STATUS_OK)
            model.elements[static_cast<std::size_t>(index) - 1] = {
                {count, count > 0 ? vertices : std::vector<int32_t>()}};
    }
    void get_list()
    {
        const std::size_t row = script.choice(list_rows.size());
        const ListRow &lists = list_rows[row];
        const int32_t index = script.integer();
        int32_t count = 0;
        std::vector<int32_t> vertices(999);
        const korvane_status_t status = lists.get(mesh, index, &count, vertices.data());
        if (list_model[row].replaced)
            return;
        require(status == (is_within(lists.kind, index) ? STATUS_OK : STATUS_ERROR));
        if (status != STATUS_OK)
            return;
        const List expected = list_model[row].read(index, 1).front();
        vertices.resize(expected.vertices.size());
        require(count == expected.count && vertices == expected.vertices);
    }

    // -- Hostile callbacks: anything may come, or nothing

    static korvane_status_t hostile_status(Script &script)
    {
        constexpr std::array<korvane_status_t, 4> statuses = {STATUS_OK, STATUS_OK, STATUS_ERROR, 77};
        return statuses[script.choice(statuses.size())];
    }
    static korvane_status_t hostile_count(int32_t *count, void *machine)
    {
        Script &script = static_cast<Machine *>(machine)->script;
        if (script.chance())
            *count = static_cast<int32_t>(script.choice(48)) - 8;
        return hostile_status(script);
    }
    static korvane_status_t hostile_values(int32_t, int32_t *values, void *machine)
    {
        Script &script = static_cast<Machine *>(machine)->script;
        if (script.chance())
            *values = script.integer();
        return hostile_status(script);
    }
    static korvane_status_t hostile_coordinates(int32_t, double *xyz, void *machine)
    {
        Script &script = static_cast<Machine *>(machine)->script;
        if (script.chance())
            *xyz = script.real();
        return hostile_status(script);
    }
    void replace_callback()
    {
        const std::size_t which = script.choice(kinds.size() + values_rows.size() + 1);
        if (which < kinds.size()) {
            count_replaced[which] = true;
            require(kinds[which].replace_get_count(mesh, hostile_count, this) == STATUS_OK);
        } else if (which < kinds.size() + values_rows.size()) {
            const std::size_t row = which - kinds.size();
            values_model[row].replaced = true;
            require(values_rows[row].replace_get(mesh, hostile_values, this) == STATUS_OK);
        } else {
            coordinates.replaced = true;
            require(korvane_mesh_set_get_vertex_coordinates(mesh, hostile_coordinates, this) == STATUS_OK);
        }
    }

    // -- The whole mesh

    void use_whole()
    {
        for (std::size_t kind = 0; kind < counts.size(); ++kind)
            if (!count_replaced[kind] && counts[kind] > usual_count)
                return;
        switch (script.choice(5)) {
        case 0:
            return require(korvane_mesh_compute_statistics(mesh) == STATUS_OK);
        case 1:
            return require(korvane_mesh_compute_statistics_valid(mesh, "name") == STATUS_OK);
        case 2:
            return require(korvane_mesh_compute_topological_statistics(mesh) == STATUS_OK);
        case 3:
            korvane_mesh_write_bdf(mesh, file_name("-memory.bdf").c_str());
            std::remove(file_name("-memory.bdf").c_str());
            return;
        default:
            return write(script.chance() ? "-memory.meshb" : "-memory.mesh");
        }
    }
    void write(const char *extension)
    {
        const std::string name = file_name(extension);
        const korvane_status_t status = korvane_mesh_write_mesh(mesh, name.c_str());
        require(status == STATUS_OK || status == STATUS_ERROR);
        korvane_mesh_t *again = korvane_mesh_new_read_mesh(context, name.c_str());
        require(again != nullptr); // well-formed even where it ended early
        korvane_mesh_delete(again);
        std::remove(name.c_str());
    }

    Script &script;
    korvane_context_t *context = korvane_context_new();
    korvane_mesh_t *mesh = korvane_mesh_new_in_memory(context);
    std::array<int32_t, kinds.size()> counts{}; // that the arrays are served by
    std::array<bool, kinds.size()> count_replaced{};
    std::array<ModelAttribute<int32_t>, values_rows.size()> values_model;
    std::array<ModelAttribute<List>, list_rows.size()> list_model;
    ModelAttribute<double> coordinates;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Script script(data, size);
    Machine machine(script);
    for (int steps = 0; !script.has_ended() && steps < 1000; ++steps)
        machine.step();
    return 0;
}
