#ifndef ZUTARNEX_DATACONV_C99CONVERSIONS_H
#define ZUTARNEX_DATACONV_C99CONVERSIONS_H

#include "dataconv/CvsnRegistryNode.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::DataConv {

/// The process's node of standard conversions, a child of CvsnRootNamespace::instance(): between C strings and
///
///     uint8_t  uint16_t  uint32_t  uint64_t  unsigned char  unsigned short  unsigned int  unsigned long
///     int8_t   int16_t   int32_t   int64_t   char           short           int           long
///     float    double    bool
///
/// under these names and under the run-time names of their types, both ways. int64_t and uint64_t stand for long long
/// and unsigned long long; char is converted as a small number.
class ZUTARNEX_API C99Conversions {
public:
    /// Made by the first call and let go at the process's exit. Each call binds what is not bound, neither here nor in
    /// the root (tests/dataconv/C99ConversionsTest.cpp, EachCallBindsWhatIsMissing).
    ///
    /// Threads: any at any time, as long as nobody changes the node: the first call makes it, bindings included, under
    ///          a lock, and the others only look whether something is missing.
    /// Throws:  std::bad_alloc; the next call begins again, or goes on where this one ended.
    /// Cost:    four lookups for each name.
    static boost::shared_ptr<CvsnRegistryNode> instance();
};

} // namespace Quillon::DataConv

#endif
