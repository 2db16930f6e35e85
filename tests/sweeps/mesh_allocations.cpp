// Failing allocations in meshes, their files and their statistics, and in size maps.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "mesh/slots.h"
#include "support/temporary_folder.h"
#include "sweeps/allocation_sweep.h"

namespace korvane::testing {

namespace {

/// The lines of a text.
std::vector<std::string> lines_of(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// Whether `part` is `whole` with some lines left out.
bool is_part(const std::string &part, const std::string &whole)
{
    const std::vector<std::string> lines = lines_of(whole);
    auto position = lines.begin();
    for (const std::string &line : lines_of(part)) {
        position = std::find(position, lines.end(), line);
        if (position++ == lines.end())
            return false;
    }
    return true;
}

/// What memory does not suffice for is left out of the report.
template <class Report>
auto sweep_report(Report report)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        EXPECT_EQ(report(objects), STATUS_OK);
        const std::string whole = std::exchange(objects.messages, "");
        fault.arm();
        EXPECT_EQ(report(objects), STATUS_OK);
        const bool failed = fault.disarm();
        EXPECT_EQ(objects.messages != whole, failed);
        EXPECT_TRUE(is_part(objects.messages, whole)) << objects.messages;
        objects.messages.clear();
        EXPECT_EQ(report(objects), STATUS_OK);
        EXPECT_EQ(objects.messages, whole);
    };
}

/// Fails, with a message if there is memory for one, or writes all.
template <class Write>
auto sweep_writer(const std::string &name, Write write, std::string message)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        const std::string file = scratch_file(name);
        fault.arm();
        const korvane_status_t status = write(objects, file.c_str());
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_ERROR : STATUS_OK);
        EXPECT_TRUE(objects.messages.empty() || (failed && objects.messages == message)) << objects.messages;
        const std::string written = failed ? "" : read_file(file);
        EXPECT_EQ(write(objects, file.c_str()), STATUS_OK);
        if (!failed) {
            EXPECT_EQ(read_file(file), written);
        }
    };
}

/// The name of a text that lacks what comes behind a fraction of a file. (A binary file could not be opened.)
std::string cut_file(const std::string &file, const std::string &name)
{
    const std::string content = read_file(file);
    std::ofstream(scratch_file(name), std::ios::binary) << content.substr(0, 3 * content.size() / 4);
    return scratch_file(name);
}

/// What is written of what a reader made.
template <class Made, class Write>
std::string written(Made *made, Write write, const std::string &extension)
{
    const std::string name = scratch_file("again" + extension);
    EXPECT_EQ(write(made, name.c_str()), STATUS_OK);
    dispose(made);
    return read_file(name);
}

/// Gives null, with one message at most, or an object that is read as if nothing had failed.
template <class Read, class Write>
auto sweep_reader(const std::string &file, Read read, Write write)
{
    return [=](AllocationFault &fault) {
        Objects objects;
        const std::string extension = file.substr(file.rfind('.'));
        const std::string wanted = written(read(objects, file.c_str()), write, extension);
        const std::int64_t live_before = live_block_count();
        fault.arm();
        auto *made = read(objects, file.c_str());
        const bool failed = fault.disarm();
        EXPECT_LE(lines_of(objects.messages).size(), made == nullptr ? 1u : 0u) << objects.messages;
        if (made == nullptr) {
            EXPECT_TRUE(failed);
            EXPECT_EQ(live_block_count(), live_before) << "blocks stayed";
            made = read(objects, file.c_str());
        }
        EXPECT_EQ(written(made, write, extension), wanted);
    };
}

AllocationEntry mesh_reader_entry(const std::string &file)
{
    return {"korvane_mesh_new_read_mesh",
        sweep_reader(
            file, [](Objects &o, const char *name) { return korvane_mesh_new_read_mesh(o.context, name); },
            korvane_mesh_write_mesh)};
}

AllocationEntry solution_reader_entry(const std::string &file)
{
    return {"korvane_sizemap_new_read_sol",
        sweep_reader(
            file, [](Objects &o, const char *name) { return korvane_sizemap_new_read_sol(o.mesh, name); },
            korvane_sizemap_write_sol)};
}

/// An element that had extra vertices has none when the new ones cannot be stored.
auto sweep_replaced_list(const ExtraVerticesAccessors &list)
{
    return [&list](AllocationFault &fault) {
        const Objects objects;
        std::array<int32_t, 3> read{};
        int32_t count = -1;
        fault.arm();
        const korvane_status_t status = list.set(objects.mesh, 1, 2, some_integers.data() + 1);
        const bool failed = fault.disarm();
        EXPECT_EQ(status, failed ? STATUS_NOMEM : STATUS_OK);
        EXPECT_EQ(list.get(objects.mesh, 1, &count, read.data()), STATUS_OK);
        EXPECT_EQ(count, failed ? 0 : 2);
        EXPECT_EQ(list.set(objects.mesh, 1, 2, some_integers.data() + 1), STATUS_OK);
        EXPECT_EQ(list.get(objects.mesh, 1, &count, read.data()), STATUS_OK);
        EXPECT_EQ(read, (std::array<int32_t, 3>{2, 3, 0}));
    };
}

/// A mesh in memory whose counts are higher than its arrays are long.
void raise_counts(Objects &objects)
{
    for (const CountAccessors &count : counts)
        count.set(objects.mesh, 3 * entity_count);
}

/// Counts are lower than the arrays are long.
void lower_counts(Objects &objects)
{
    for (const CountAccessors &count : counts)
        count.set(objects.mesh, 2);
}

/// A mesh in memory without any arrays, in place of the filled one.
void begin_anew(Objects &objects)
{
    korvane_mesh_delete(objects.mesh);
    objects.mesh = korvane_mesh_new_in_memory(objects.context);
    lower_counts(objects);
}

} // namespace

AllocationEntries mesh_allocations()
{
    return {
        {"korvane_mesh_new",
            sweep_attaching_constructor([](Objects &o) { return korvane_mesh_new(o.context); })},
        {"korvane_mesh_new_in_memory",
            sweep_attaching_constructor([](Objects &o) { return korvane_mesh_new_in_memory(o.context); })},
        {"korvane_mesh_calloc_generic_buffer",
            sweep_constructor([](Objects &o) { return korvane_mesh_calloc_generic_buffer(o.mesh); })},
        {"korvane_mesh_calloc_generic_buffer",
            sweep_constructor([](Objects &o) { return korvane_mesh_calloc_generic_buffer(o.tagged_mesh); })},
        {"korvane_mesh_write_mesh",
            sweep_writer(
                "swept.mesh",
                [](Objects &o, const char *name) { return korvane_mesh_write_mesh(o.mesh, name); },
                "-1 korvane_mesh_write_mesh : Error opening mesh file for writing.\n")},
        {"korvane_mesh_write_mesh",
            sweep_writer(
                "swept.meshb",
                [](Objects &o, const char *name) { return korvane_mesh_write_mesh(o.mesh, name); },
                "-1 korvane_mesh_write_mesh : Error opening mesh file for writing.\n")},
        mesh_reader_entry(sample_mesh_file("mesh")),
        mesh_reader_entry(sample_mesh_file("meshb")),
        mesh_reader_entry(cut_file(sample_mesh_file("mesh"), "cut.mesh")),
        {"korvane_mesh_write_bdf",
            sweep_writer(
                "swept.bdf",
                [](Objects &o, const char *name) { return korvane_mesh_write_bdf(o.mesh, name); },
                "-1 korvane_mesh_write_mesh : Error opening bdf file for writing.\n")},
        {"korvane_sizemap_new", sweep_attaching_constructor([](Objects &o) {
             return korvane_sizemap_new(o.mesh, KORVANE_SIZEMAP_ISO_MESH_VERTEX, some_size, nullptr);
         })},
        {"korvane_sizemap_write_sol",
            sweep_writer(
                "swept.sol",
                [](Objects &o, const char *name) { return korvane_sizemap_write_sol(o.sizemap, name); },
                "-1 korvane_mesh_new_read_mesh : Error opening solution file for writing.\n"
                "-1 korvane_mesh_new_read_mesh : Error closing solution file after writing.\n")},
        solution_reader_entry(sample_solution_file("sol")),
        solution_reader_entry(sample_solution_file("solb")),
        solution_reader_entry(cut_file(sample_solution_file("sol"), "cut.sol")),
        {"korvane_mesh_compute_statistics",
            sweep_report([](Objects &o) { return korvane_mesh_compute_statistics(o.mesh); })},
        {"korvane_mesh_compute_statistics_valid",
            sweep_report([](Objects &o) { return korvane_mesh_compute_statistics_valid(o.mesh, "swept"); })},
        {"korvane_mesh_compute_topological_statistics",
            sweep_report([](Objects &o) { return korvane_mesh_compute_topological_statistics(o.mesh); })},
    };
}

AllocationEntries mesh_slot_allocations()
{
    AllocationEntries entries;
    for (const AttributeAccessors &attribute : attributes) {
        const auto set = [&attribute](Objects &o) { return attribute.set(o.mesh, 2, some_integers.data()); };
        for (const Preparation prepare : {raise_counts, lower_counts, begin_anew})
            entries.push_back({"korvane_mesh_set_" + attribute.name,
                sweep_status(STATUS_NOMEM, Remainder::nothing, set, prepare)});
    }
    for (const ExtraVerticesAccessors &list : extra_vertices) {
        entries.push_back({"korvane_mesh_set_" + list.name, sweep_replaced_list(list)});
        const auto set = [&list](Objects &o) { return list.set(o.mesh, 2, 3, some_integers.data()); };
        for (const Preparation prepare : {prepare_nothing, raise_counts, lower_counts, begin_anew})
            entries.push_back({"korvane_mesh_set_" + list.name,
                sweep_status(STATUS_NOMEM, Remainder::nothing_or_all, set, prepare)});
    }
    return entries;
}

} // namespace korvane::testing
