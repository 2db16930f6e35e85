// The identification banner. The build date is stated by the build system, in GMT.
#include "context/identification.h"

#include "build_date.h"

namespace korvane {

const char *const identification_banner =
    "$KorvaneAPI: 1.4.0 (August, 2011) Copyright the korvane authors. $\n"
    "$KorvaneAPI: Licensed under the Apache License, Version 2.0. No warranty of any kind. $\n"
    "$KorvaneAPI: Compiled " KORVANE_BUILD_DATE " GMT $";

} // namespace korvane
