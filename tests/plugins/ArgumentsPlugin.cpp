// A plug-in in C++ that takes its host's services out of the options and works with them.
#include "system/QVPI_Arguments.h"
#include "system/QVPI_Plugin.h"

#include <cstdarg>
#include <cstdint>
#include <new>

namespace {

struct Record : QVPI_Plugin_ {
    Quillon::System::QVPI_Arguments host;
};

Record& recordOf(QVPI_Plugin_* plugin) {
    return *static_cast<Record*>(plugin);
}

void print(const Quillon::System::QVPI_Arguments& host, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    host.vprintf(format, arguments);
    va_end(arguments);
}

std::int32_t version(QVPI_Plugin_*) {
    return 0x00010002;
}

void destroy(QVPI_Plugin_* plugin) {
    Record& record = recordOf(plugin);
    const auto release = record.host.free;
    record.~Record();
    release(&record);
}

std::int32_t attach(QVPI_Plugin_* plugin, void** context) {
    *context = recordOf(plugin).host.calloc(1, 64);
    return *context ? 0 : -1;
}

std::int32_t detach(QVPI_Plugin_* plugin) {
    print(recordOf(plugin).host, "%s %d\n", "detached", 7);
    return 0;
}

const QVPI_PluginFunctions functions = {{}, version, destroy, attach, detach};

} // namespace

extern "C" __attribute__((visibility("default"))) std::int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin,
                                                                                 void* initArgs, void*) {
    Quillon::System::QVPI_Arguments host;
    if (host.parse(static_cast<const QVPI_PluginInitArgs*>(initArgs)) != 0 || !host.malloc)
        return -1;
    void* const block = host.malloc(sizeof(Record));
    if (!block)
        return -2;
    auto* const record = new (block) Record{{&functions}, host};
    *plugin = record;
    return 0;
}
