/* A plug-in in plain C11. What it does is scripted, so that it also serves as the plug-ins that go wrong. */
#include "plugins/ScriptedPlugin.h"

static const QVPI_PluginFunctions functions = {
    .version = scriptedVersion,
    .destroy = scriptedDestroy,
    .attachThread = scriptedAttach,
    .detachThread = scriptedDetach,
};

ZT_EXPORT int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin, void* initArgs, void* loader);

int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin, void* initArgs, void* loader) {
    return scriptedCreate(&functions, plugin, initArgs, loader);
}
