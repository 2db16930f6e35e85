#include "session.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include <sys/stat.h>
#include <unistd.h>

namespace korvane::tools {

namespace {

/// The library's texts open with the name of a function, which tells a user of the command nothing.
std::string without_function(const std::string &text)
{
    const std::size_t separator = text.find(" : ");
    std::string plain = separator == std::string::npos ? text : text.substr(separator + 3);
    while (!plain.empty() && (plain.back() == '\n' || plain.back() == ' '))
        plain.pop_back();
    return plain.substr(std::min(plain.find_first_not_of(' '), plain.size()));
}

} // namespace

Session::Session() : context(korvane_context_new())
{
    if (!context)
        throw std::bad_alloc();
    korvane_context_set_message_callback(context.get(), receive, this);
}

bool is_bulk_data(const std::string &file)
{
    return file.ends_with(".bdf");
}

/// False, as `complain`.
bool Session::tell(const std::string &text)
{
    problem = text;
    return complain(subject, text);
}

std::optional<FileDescription> Session::describe(const std::string &file, bool counts_lines)
{
    subject = file;
    struct stat status;
    std::optional<FileDescription> description;
    if (stat(file.c_str(), &status) != 0 || access(file.c_str(), R_OK) != 0)
        tell(std::strerror(errno));
    else if (S_ISDIR(status.st_mode))
        tell(std::strerror(EISDIR));
    else if (description = describe_file(file, counts_lines); !description)
        tell("cannot be opened as a mesh or solution file");
    else if (!description->shortfall.empty())
        tell(description->shortfall);
    return description;
}

/// False after it was told why.
bool Session::is_whole(const std::string &file)
{
    const std::optional<FileDescription> description = describe(file, true);
    return description && description->shortfall.empty();
}

Mesh Session::read(const std::string &file)
{
    return Mesh(is_whole(file) ? korvane_mesh_new_read_mesh(context.get(), file.c_str()) : nullptr);
}

Sizemap Session::read_sizes(const korvane_mesh_t *mesh, const std::string &file)
{
    return Sizemap(is_whole(file) ? korvane_sizemap_new_read_sol(mesh, file.c_str()) : nullptr);
}

bool Session::write(const korvane_mesh_t *mesh, const std::string &file, const std::string &shown)
{
    subject = shown;
    const auto write_file = is_bulk_data(file) ? korvane_mesh_write_bdf : korvane_mesh_write_mesh;
    return write_file(mesh, file.c_str()) == STATUS_OK;
}

bool Session::complain(const std::string &file, const std::string &text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "korvane: %s: %s\n", file.c_str(), text.c_str());
    return false;
}

korvane_status_t Session::receive(korvane_message_t *message, void *session)
{
    int32_t number = 0;
    const char *text = "";
    korvane_message_get_number(message, &number);
    korvane_message_get_description(message, &text);
    auto &self = *static_cast<Session *>(session);
    if (number != 0)
        self.tell(without_function(text));
    else if (self.diverted != nullptr)
        self.diverted->append(text);
    else
        std::fputs(text, stdout);
    return STATUS_OK;
}

} // namespace korvane::tools
