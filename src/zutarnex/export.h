#ifndef ZUTARNEX_EXPORT_H
#define ZUTARNEX_EXPORT_H

/// Marks what the shared library exports; everything else is hidden. The same in library and user builds, because
/// an exception's type information must be one and the same object on both sides.
#define ZUTARNEX_API __attribute__((visibility("default")))

#endif
