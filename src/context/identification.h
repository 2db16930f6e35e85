// The text by which the library identifies itself.
#pragma once

namespace korvane {

/// Three lines: version, legal notices, build date. Without a line feed at the end.
extern const char *const identification_banner;

} // namespace korvane
