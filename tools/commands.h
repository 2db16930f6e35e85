// The subcommands. Each gives the exit status of the command.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output.h"

namespace korvane::tools {

struct InfoOptions {
    std::vector<std::string> files;
    bool header = false; // read nothing else
};

/// Describes files: format, keywords, tags, required entities, bounding box.
int info(const InfoOptions &options, const Presentation &presentation);

struct StatsOptions {
    std::vector<std::string> files;
    std::string name; // of the keyed form; empty for the readable one
    bool histogram = false;
    bool by_tag = false;
    std::size_t worst = 0; // how many elements
};

/// Reports on the quality and topology of meshes.
int stats(const StatsOptions &options, const Presentation &presentation);

/// Reports on a size map against the lengths of the edges of its mesh.
int sizes(const std::string &mesh_file, const std::string &solution_file, const Presentation &presentation);

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

struct PeriodicOptions {
    std::vector<std::string> files;
    std::vector<int32_t> tags; // two
    double tolerance = 0;      // 0 for one that goes with the size of the region
};

/// Finds the transformation between two regions of meshes.
int periodic(const PeriodicOptions &options, const Presentation &presentation);

/// True for a file name that convert can write.
bool can_be_written(const std::string &file);

} // namespace korvane::tools
