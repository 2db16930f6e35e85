// One run of the command: a context whose reports go to standard output and whose errors go to standard
// error.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <korvane.h>

#include "file_description.h"

namespace korvane::tools {

/// The exit statuses of the command.
enum Exit { done = 0, file_problem = 1, wrong_usage = 2, unreadable = 3 };

struct Delete {
    void operator()(korvane_context_t *context) const { korvane_context_delete(context); }
    void operator()(korvane_mesh_t *mesh) const { korvane_mesh_delete(mesh); }
    void operator()(korvane_sizemap_t *sizemap) const { korvane_sizemap_delete(sizemap); }
};
using Mesh = std::unique_ptr<korvane_mesh_t, Delete>;
using Sizemap = std::unique_ptr<korvane_sizemap_t, Delete>;

/// True for the name of a file of bulk data.
bool is_bulk_data(const std::string &file);

class Session {
  public:
    Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// What a file says of itself; nothing after it was told that it cannot be opened. That it holds less
    /// than it states is told, too; `counts_lines` as in describe_file.
    std::optional<FileDescription> describe(const std::string &file, bool counts_lines);

    /// Reads a mesh; null after what is wrong was told.
    Mesh read(const std::string &file);

    /// Reads the size map of a mesh; null after what is wrong was told.
    Sizemap read_sizes(const korvane_mesh_t *mesh, const std::string &file);

    /// Writes a mesh in the format that the end of the name states; false after what is wrong was told, which
    /// names `shown` rather than `file`.
    bool write(const korvane_mesh_t *mesh, const std::string &file, const std::string &shown);

    [[nodiscard]] korvane_context_t *own_context() const { return context.get(); }

    /// Has reports appended to a text rather than printed, until null is given.
    void divert(std::string *text) { diverted = text; }

    /// Tells on standard error what is wrong with a file. False, for callers that give up.
    static bool complain(const std::string &file, const std::string &text);

    /// What was last wrong with a file that was to be read or written.
    [[nodiscard]] const std::string &last_problem() const { return problem; }

  private:
    bool tell(const std::string &text);
    bool is_whole(const std::string &file);
    static korvane_status_t receive(korvane_message_t *message, void *session);

    std::unique_ptr<korvane_context_t, Delete> context;
    std::string subject; // the file that errors are about
    std::string problem;
    std::string *diverted = nullptr;
};

} // namespace korvane::tools
