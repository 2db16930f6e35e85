// Files are written beside their place and moved into it when they are whole, so that nothing ever harms what
// was there; an interrupt leaves nothing behind.
#pragma once

#include <functional>
#include <string>

namespace korvane::tools {

/// Has `write` fill a file that becomes `file`; false after it failed, or after what is wrong was told.
/// Devices and pipes are written as they are; links are followed, so that the file that they lead to is
/// replaced.
bool write_whole_file(const std::string &file, const std::function<bool(const std::string &path)> &write);

} // namespace korvane::tools
