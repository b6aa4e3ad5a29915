#ifndef ZUTARNEX_VERSION_H
#define ZUTARNEX_VERSION_H

#include "zutarnex/export.h"

/// The library's version, "major.minor.patch", and the day on which it was built, "YYYY-MM-DD" (UTC). The date
/// honours the environment variable SOURCE_DATE_EPOCH at build time, so that builds can be reproduced.
extern "C" ZUTARNEX_API const char libzutarnex_version[];
extern "C" ZUTARNEX_API const char libzutarnex_build_date[];

#endif
