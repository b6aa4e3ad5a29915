/* Stands for the parser plug-in where the factory is tested: its readers are mere addresses. */
#include "plugins/ScriptedPlugin.h"
#include "xml/sax/SaxSvc.h"

static int reader;

static int32_t createReader(SaxSvc_* service, void** out) {
    state.lastRecord = service;
    *out = &reader;
    return 0;
}

static void destroyReader(SaxSvc_* service, void* unused) {
    (void)unused;
    state.lastRecord = service;
}

static const char* engineName(SaxSvc_* service) {
    state.lastRecord = service;
    return "fake engine 1.0";
}

static void setMaximumDepth(SaxSvc_* service, void* unused, uint32_t depth) {
    (void)unused;
    (void)depth;
    state.lastRecord = service;
}

/* The service's own operations, seen as the framework sees them. */
static const SaxSvcFunctions functions = {
    .createReader = createReader,
    .destroyReader = destroyReader,
    .engineName = engineName,
    .setMaximumDepth = setMaximumDepth,
    .version = scriptedVersion,
    .destroy = scriptedDestroy,
    .attachThread = scriptedAttach,
    .detachThread = scriptedDetach,
};

ZT_EXPORT int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin, void* initArgs, void* loader);

int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin, void* initArgs, void* loader) {
    return scriptedCreate((const QVPI_PluginFunctions*)&functions, plugin, initArgs, loader);
}
