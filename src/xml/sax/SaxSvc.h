#ifndef ZUTARNEX_XML_SAX_SAXSVC_H
#define ZUTARNEX_XML_SAX_SAXSVC_H

/* The parser service, as its plug-in "saxengine" offers it: C11 and C++17.
 *
 *     record               table                          one pointer per slot
 *     +-----------+        +----+---------------------------------------------------------+
 *     | functions |------->|  0 | createReader                                            |
 *     +-----------+        |  1 | destroyReader                                           |
 *     | plug-in's |        |  2 | engineName                                              |
 *     | own       |        |  3 | setMaximumDepth                                         |
 *     :           :        +----+---------------------------------------------------------+
 *                          |  4 | version       of this service's interface: major 1      |
 *                          |  5 | destroy       \                                         |
 *                          |  6 | attachThread   > as for every plug-in                   |
 *                          |  7 | detachThread  /  (system/QVPI_Plugin.h)                 |
 *                          +----+---------------------------------------------------------+
 *
 * A thread is attached while it calls slot 0 or 1 and during every parse.
 */

#include "system/QVPI_Plugin.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SaxSvc_ SaxSvc_;
typedef struct SaxSvcFunctions SaxSvcFunctions;

struct SaxSvcFunctions {
    /** Stores a new Quillon::Xml::Sax::XmlReader* in `*reader` and returns 0, or returns anything else. */
    int32_t (*createReader)(SaxSvc_* service, void** reader);
    /** `reader`: one from slot 0, not in the middle of a parse. */
    void (*destroyReader)(SaxSvc_* service, void* reader);
    /** The name and version of the parser; it lives as long as the service. */
    const char* (*engineName)(SaxSvc_* service);
    /** How deep the elements of a document may be nested, for the reader's next parse. */
    void (*setMaximumDepth)(SaxSvc_* service, void* reader, uint32_t depth);

    int32_t (*version)(QVPI_Plugin_* plugin);
    void (*destroy)(QVPI_Plugin_* plugin);
    int32_t (*attachThread)(QVPI_Plugin_* plugin, void** context);
    int32_t (*detachThread)(QVPI_Plugin_* plugin);
};

/** The record of the plug-in, seen with the service's own functions: a QVPI_Plugin_ and a SaxSvc_ share one address.
    It belongs to the plug-in, which may keep fields of its own behind this one. */
struct SaxSvc_ {
    const SaxSvcFunctions* functions;
};

#ifdef __cplusplus
} /* extern "C" */

namespace Quillon {
namespace Xml {
namespace Sax {

using ::SaxSvc_;
using ::SaxSvcFunctions;

} /* namespace Sax */
} /* namespace Xml */
} /* namespace Quillon */
#endif

#endif
