/* The records of the plug-in boundary as a C11 compiler lays them out. */
#include "system/QVPI_Plugin.h"
#include "xml/sax/SaxSvc.h"

#include <stddef.h>

enum { WORD = sizeof(void*) };

_Static_assert(offsetof(struct QVPI_Plugin_, functions) == 0, "first field");
_Static_assert(offsetof(struct SaxSvc_, functions) == 0, "first field");

_Static_assert(offsetof(struct QVPI_PluginFunctions, service) == 0, "slots 0 to 3");
_Static_assert(offsetof(struct QVPI_PluginFunctions, version) == 4 * WORD, "slot 4");
_Static_assert(offsetof(struct QVPI_PluginFunctions, destroy) == 5 * WORD, "slot 5");
_Static_assert(offsetof(struct QVPI_PluginFunctions, attachThread) == 6 * WORD, "slot 6");
_Static_assert(offsetof(struct QVPI_PluginFunctions, detachThread) == 7 * WORD, "slot 7");
_Static_assert(sizeof(struct QVPI_PluginFunctions) == 8 * WORD, "no other slot");

_Static_assert(offsetof(struct SaxSvcFunctions, createReader) == 0 * WORD, "slot 0");
_Static_assert(offsetof(struct SaxSvcFunctions, destroyReader) == 1 * WORD, "slot 1");
_Static_assert(offsetof(struct SaxSvcFunctions, engineName) == 2 * WORD, "slot 2");
_Static_assert(offsetof(struct SaxSvcFunctions, setMaximumDepth) == 3 * WORD, "slot 3");
_Static_assert(offsetof(struct SaxSvcFunctions, version) == 4 * WORD, "slot 4");
_Static_assert(offsetof(struct SaxSvcFunctions, destroy) == 5 * WORD, "slot 5");
_Static_assert(offsetof(struct SaxSvcFunctions, attachThread) == 6 * WORD, "slot 6");
_Static_assert(offsetof(struct SaxSvcFunctions, detachThread) == 7 * WORD, "slot 7");
_Static_assert(sizeof(struct SaxSvcFunctions) == 8 * WORD, "no other slot");

_Static_assert(offsetof(struct QVPI_PluginOption, name) == 0, "first field");
_Static_assert(offsetof(struct QVPI_PluginOption, value) == WORD, "second field");
_Static_assert(sizeof(struct QVPI_PluginOption) == 2 * WORD, "entries of an array");

_Static_assert(offsetof(struct QVPI_PluginInitArgs, version) == 0, "first field");
_Static_assert(offsetof(struct QVPI_PluginInitArgs, count) == 4, "second field");
_Static_assert(offsetof(struct QVPI_PluginInitArgs, options) == 8, "third field");
_Static_assert(offsetof(struct QVPI_PluginInitArgs, quiet) == 8 + WORD, "fourth field");
_Static_assert(sizeof(((struct QVPI_PluginInitArgs*)0)->version) == 4, "32 bits");
_Static_assert(sizeof(((struct QVPI_PluginInitArgs*)0)->count) == 4, "32 bits");
_Static_assert(sizeof(((struct QVPI_PluginInitArgs*)0)->quiet) == 1, "8 bits");
_Static_assert(sizeof(struct QVPI_PluginInitArgs) == 8 + 2 * WORD,
               "nothing behind the last field but padding");

/* Every record has a typedef of its tag's name. */
const size_t sizesOfPluginRecords[] = {
    sizeof(QVPI_Plugin_),      sizeof(QVPI_PluginFunctions),
    sizeof(QVPI_PluginOption), sizeof(QVPI_PluginInitArgs),
    sizeof(SaxSvc_),           sizeof(SaxSvcFunctions),
};
