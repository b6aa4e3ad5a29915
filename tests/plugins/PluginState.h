#ifndef ZUTARNEX_TESTS_PLUGINS_PLUGINSTATE_H
#define ZUTARNEX_TESTS_PLUGINS_PLUGINSTATE_H

/* What the plug-ins of the tests do and what they saw: C11 and C++. */

#include <stdint.h>

#define ZT_EXPORT __attribute__((visibility("default")))
#define ZT_MAX_OPTIONS 8

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SeenOption {
    char name[16];
    void* value;
} SeenOption;

typedef struct PluginState {
    /* What to do. */
    int32_t entryStatus;
    int32_t leavesNoRecord;
    int32_t leavesNoFunctions;
    int32_t readsOptions;
    int32_t announces; /* destruction and unloading, on standard error */
    int32_t version;
    int32_t changesVersion; /* laterVersion is what every answer but the first says */
    int32_t laterVersion;
    int32_t attachStatus;
    int32_t detachStatus;
    void* attachContext;      /* stored as the context unless null */
    void (*onDestroy)(void*); /* called with the record unless null */
    void (*onAttach)(void*);  /* likewise */
    void (*onDetach)(void*);  /* likewise */

    /* What was seen. */
    int32_t created;
    int32_t destroyed;
    int32_t versionAsked;
    int32_t attached;
    int32_t detached;
    void* lastRecord; /* of the last call of an operation */
    void* contextBefore;
    void* initArgs;
    void* loader;
    uint32_t argsVersion;
    uint32_t argsCount;
    uint8_t argsQuiet;
    SeenOption options[ZT_MAX_OPTIONS];
} PluginState;

/* Exported by every plug-in but the one without an entry. The reset gives what the module was built with. */
typedef PluginState* (*PluginStateFunction)(void);
typedef void (*ResetPluginStateFunction)(void);
ZT_EXPORT PluginState* pluginState(void);
ZT_EXPORT void resetPluginState(void);

#ifdef __cplusplus
}
#endif

#endif
