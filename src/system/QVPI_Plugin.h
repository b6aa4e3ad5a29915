#ifndef ZUTARNEX_SYSTEM_QVPI_PLUGIN_H
#define ZUTARNEX_SYSTEM_QVPI_PLUGIN_H

/* The boundary between the library and its plug-ins: C11 and C++17.
 *
 * A plug-in is a shared object named "lib" + name + ".so" that exports one unmangled function, QVPI_CreatePlugin. It
 * hands out a record whose first field points at a table of functions; nothing else of the record is looked at.
 *
 *     record               table                          one pointer per slot
 *     +-----------+        +----+--------------------------------------------------------------+
 *     | functions |------->|  0 | the service's own operations                                 |
 *     +-----------+        |  1 |                                                              |
 *     | plug-in's |        |  2 |                                                              |
 *     | own       |        |  3 |                                                              |
 *     :           :        +----+--------------------------------------------------------------+
 *                          |  4 | version       the interface version: major << 16 | minor     |
 *                          |  5 | destroy       frees the record                               |
 *                          |  6 | attachThread  once per thread, before its first call         |
 *                          |  7 | detachThread  once per thread, after its last call           |
 *                          +----+--------------------------------------------------------------+
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QVPI_Plugin_ QVPI_Plugin_;
typedef struct QVPI_PluginFunctions QVPI_PluginFunctions;
typedef struct QVPI_PluginOption QVPI_PluginOption;
typedef struct QVPI_PluginInitArgs QVPI_PluginInitArgs;

/** One of a service's own operations; the service's header gives its true type. */
typedef void (*QVPI_ServiceOperation)(void);

struct QVPI_PluginFunctions {
    QVPI_ServiceOperation service[4];

    /** The major version in the upper 16 bits; the library accepts 1 there and ignores the minor version below. It
        is called more than once and must have no side effect. */
    int32_t (*version)(QVPI_Plugin_* plugin);
    /** Called once, when the last owner has gone. */
    void (*destroy)(QVPI_Plugin_* plugin);
    /** `context`: a word, null so far, to fill for the thread. Negative: failed. */
    int32_t (*attachThread)(QVPI_Plugin_* plugin, void** context);
    /** Not 0: failed. */
    int32_t (*detachThread)(QVPI_Plugin_* plugin);
};

/** A plug-in's record. It belongs to the plug-in, which may keep fields of its own behind this one. */
struct QVPI_Plugin_ {
    const QVPI_PluginFunctions* functions;
};

/** A named value; those named "abort", "exit", "vprintf", "malloc", "realloc", "calloc" and "free" hold a pointer to
    the host's function (see system/QVPI_Arguments.h). */
struct QVPI_PluginOption {
    const char* name;
    void* value;
};

/** What QVPI_CreatePlugin is given. The records live only as long as that call: a plug-in copies what it needs. */
struct QVPI_PluginInitArgs {
    uint32_t version; /**< of this record: 0x00010000 */
    uint32_t count;
    const QVPI_PluginOption* options; /**< `count` of them */
    uint8_t quiet;                    /**< not 0: bad options are not reported, though they still fail */
};

/** The type of the entry, QVPI_CreatePlugin. It stores a new record in `*plugin` and returns 0, or returns anything
    else. `initArgs`: what the host gave to the load call, as a rule a QVPI_PluginInitArgs. `loader`: the
    Quillon::System::QVPI_PluginLoader that is loading. */
typedef int32_t (*QVPI_CreatePluginFunction)(QVPI_Plugin_** plugin, void* initArgs, void* loader);

#ifdef __cplusplus
} /* extern "C" */

namespace Quillon {
namespace System {

using ::QVPI_CreatePluginFunction;
using ::QVPI_Plugin_;
using ::QVPI_PluginFunctions;
using ::QVPI_PluginInitArgs;
using ::QVPI_PluginOption;
using ::QVPI_ServiceOperation;

} /* namespace System */
} /* namespace Quillon */
#endif

#endif
