#ifndef ZUTARNEX_SYSTEM_IDENTIFIABLE_H
#define ZUTARNEX_SYSTEM_IDENTIFIABLE_H

#include "zutarnex/export.h"

#include <string>

namespace Quillon::System {

/// Something with an identifier, such as "KAVOLT:PluginNotFound". It has no base.
class ZUTARNEX_API Identifiable {
public:
    virtual ~Identifiable();

    virtual const std::string& getIdentifier() const noexcept = 0;
};

} // namespace Quillon::System

#endif
