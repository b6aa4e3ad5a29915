#ifndef ZUTARNEX_TESTS_SYSTEM_HOSTOVERRIDE_H
#define ZUTARNEX_TESTS_SYSTEM_HOSTOVERRIDE_H

#include "runtime/HostServices.h"

namespace Quillon::Testing {

/// Replaces members of the host's table as long as it lives. Memory stays where it is.
class HostOverride {
public:
    template <class Change>
    explicit HostOverride(Change change) : saved_(Runtime::hostServices()) {
        Runtime::HostServices changed = saved_;
        change(changed);
        Runtime::setHostServices(changed);
    }
    HostOverride(const HostOverride&) = delete;
    HostOverride& operator=(const HostOverride&) = delete;
    ~HostOverride() { Runtime::setHostServices(saved_); }

private:
    Runtime::HostServices saved_;
};

} // namespace Quillon::Testing

#endif
