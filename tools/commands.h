// The subcommands. Each gives the exit status of the command.
#pragma once

#include <string>
#include <vector>

#include "output.h"

namespace korvane::tools {

/// Describes files: format, keywords, tags, required entities, bounding box.
int info(const std::vector<std::string> &files);

/// Reports on meshes in readable form or, with a name that is not empty, in keyed form.
int stats(const std::vector<std::string> &files, const std::string &name);

/// Reports on a size map against the lengths of the edges of its mesh.
int sizes(const std::string &mesh_file, const std::string &solution_file);

struct CheckOptions {
    std::vector<std::string> files;
    std::vector<std::string> limits;
    std::string limits_file; // further limits; empty for none
    std::string bad_ids;     // file for the findings; empty for none
    std::string bad;         // file for the bad entities; empty for none
};

/// Gives a verdict on meshes.
int check(const CheckOptions &options, const Presentation &presentation);

/// Compares two meshes; coordinates may differ by the tolerance.
int diff(
    const std::string &first, const std::string &second, double tolerance, const Presentation &presentation);

/// Writes a mesh file in other encodings or formats, and tells what they do not carry over.
int convert(
    const std::string &input, const std::vector<std::string> &outputs, const Presentation &presentation);

/// True for a file name that convert can write.
bool can_be_written(const std::string &file);

} // namespace korvane::tools
