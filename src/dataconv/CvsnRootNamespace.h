#ifndef ZUTARNEX_DATACONV_CVSNROOTNAMESPACE_H
#define ZUTARNEX_DATACONV_CVSNROOTNAMESPACE_H

#include "dataconv/CvsnRegistryNode.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::DataConv {

/// The root of the process's registry nodes, empty at first.
class ZUTARNEX_API CvsnRootNamespace {
public:
    /// Made by the first call, whatever thread it is on, and let go at the process's exit.
    static boost::shared_ptr<CvsnRegistryNode> instance();
};

} // namespace Quillon::DataConv

#endif
