#ifndef ZUTARNEX_TESTS_SYSTEM_DLCALLS_H
#define ZUTARNEX_TESTS_SYSTEM_DLCALLS_H

namespace Quillon::Testing {

/// The calls of dlopen and dlclose in this process: the program's own versions stand before the C library's.
struct DlCalls {
    int opens = 0;
    int closes = 0;
    int lastFlags = 0;
};
DlCalls& dlCalls() noexcept;

/// While it lives, what is to be opened as `path` is opened as `target`.
class DlRedirection {
public:
    DlRedirection(const char* path, const char* target) noexcept;
    DlRedirection(const DlRedirection&) = delete;
    DlRedirection& operator=(const DlRedirection&) = delete;
    ~DlRedirection();
};

} // namespace Quillon::Testing

#endif
