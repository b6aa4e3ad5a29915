#ifndef ZUTARNEX_TESTS_PLUGINS_SCRIPTEDPLUGIN_H
#define ZUTARNEX_TESTS_PLUGINS_SCRIPTEDPLUGIN_H

/* The operations that the plug-ins of the tests share; each includes this once and brings a table of its own. */

#include "plugins/PluginState.h"
#include "system/QVPI_Plugin.h"

#include <stdio.h>
#include <string.h>

#ifndef ZT_VERSION
#define ZT_VERSION 0x00010000
#endif
#ifndef ZT_ENTRY_STATUS
#define ZT_ENTRY_STATUS 0
#endif
#ifndef ZT_LEAVES_NO_RECORD
#define ZT_LEAVES_NO_RECORD 0
#endif

/* Records are taken from here in turn, so that one that nobody destroys is no leak. */
#define ZT_RECORDS 64
static QVPI_Plugin_ records[ZT_RECORDS];
static unsigned recordsUsed;

static PluginState state = {
    .entryStatus = ZT_ENTRY_STATUS, .leavesNoRecord = ZT_LEAVES_NO_RECORD, .version = ZT_VERSION};

PluginState* pluginState(void) {
    return &state;
}

void resetPluginState(void) {
    memset(&state, 0, sizeof state);
    state.entryStatus = ZT_ENTRY_STATUS;
    state.leavesNoRecord = ZT_LEAVES_NO_RECORD;
    state.version = ZT_VERSION;
}

static int32_t scriptedVersion(QVPI_Plugin_* plugin) {
    state.lastRecord = plugin;
    return state.versionAsked++ > 0 && state.changesVersion ? state.laterVersion : state.version;
}

static void scriptedDestroy(QVPI_Plugin_* plugin) {
    state.lastRecord = plugin;
    ++state.destroyed;
    if (state.announces)
        fputs("record destroyed\n", stderr);
    if (state.onDestroy)
        state.onDestroy(plugin);
}

static int32_t scriptedAttach(QVPI_Plugin_* plugin, void** context) {
    state.lastRecord = plugin;
    ++state.attached;
    state.contextBefore = *context;
    if (state.onAttach)
        state.onAttach(plugin);
    if (state.attachContext)
        *context = state.attachContext;
    return state.attachStatus;
}

static int32_t scriptedDetach(QVPI_Plugin_* plugin) {
    state.lastRecord = plugin;
    ++state.detached;
    if (state.onDetach)
        state.onDetach(plugin);
    return state.detachStatus;
}

static void rememberOptions(const QVPI_PluginInitArgs* args) {
    state.argsVersion = args->version;
    state.argsCount = args->count;
    state.argsQuiet = args->quiet;
    for (uint32_t i = 0; i < args->count && i < ZT_MAX_OPTIONS; ++i) {
        strncpy(state.options[i].name, args->options[i].name, sizeof state.options[i].name - 1);
        state.options[i].value = args->options[i].value;
    }
}

static int32_t scriptedCreate(const QVPI_PluginFunctions* functions, QVPI_Plugin_** plugin, void* initArgs,
                              void* loader) {
    ++state.created;
    state.initArgs = initArgs;
    state.loader = loader;
    if (state.readsOptions)
        rememberOptions((const QVPI_PluginInitArgs*)initArgs);
    if (state.leavesNoRecord)
        return state.entryStatus;
    QVPI_Plugin_* const record = &records[recordsUsed++ % ZT_RECORDS];
    record->functions = state.leavesNoFunctions ? NULL : functions;
    *plugin = record;
    return state.entryStatus;
}

__attribute__((destructor)) static void announceUnloading(void) {
    if (state.announces)
        fputs("module unloaded\n", stderr);
}

#endif
