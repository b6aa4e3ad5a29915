// The plug-in module: its entry, its record and the parser service. Everything here is called through C functions, so
// no exception leaves; readers are made with a status, an error number.
#include "ExpatBuild.h"
#include "Reader.h"
#include "system/OutOfMemoryException.h"
#include "system/QVPI_Arguments.h"
#include "xml/sax/SaxSvc.h"

#include <cerrno>
#include <new>

namespace Quillon::SaxEngine {

namespace {

constexpr std::int32_t kInterfaceVersion = 0x00010000;

/// The record, with what was handed over at its creation.
struct Service : SaxSvc_ {
    XML_Memory_Handling_Suite memory{};
    bool hasMemory = false;
};

Service& serviceOf(SaxSvc_* record) {
    return *static_cast<Service*>(record);
}
Service& serviceOf(QVPI_Plugin_* record) {
    return serviceOf(reinterpret_cast<SaxSvc_*>(record)); // the two records share their beginning
}
Reader* readerOf(void* reader) {
    return static_cast<Reader*>(static_cast<Xml::Sax::XmlReader*>(reader));
}

std::int32_t createReader(SaxSvc_* record, void** reader) {
    if (!isUsableBuild(XML_GetFeatureList()))
        return ENOTSUP;
    const Service& service = serviceOf(record);
    try {
        Xml::Sax::XmlReader* made = new Reader(service.hasMemory ? &service.memory : nullptr);
        *reader = made;
        return 0;
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    } catch (const System::OutOfMemoryException&) {
        return ENOMEM;
    } catch (...) {
        return EINVAL;
    }
}

void destroyReader(SaxSvc_*, void* reader) {
    delete readerOf(reader);
}

const char* engineName(SaxSvc_*) {
    return XML_ExpatVersion();
}

void setMaximumDepth(SaxSvc_*, void* reader, std::uint32_t depth) {
    readerOf(reader)->setMaximumDepth(depth);
}

std::int32_t version(QVPI_Plugin_*) {
    return kInterfaceVersion;
}

void destroy(QVPI_Plugin_* record) {
    delete &serviceOf(record);
}

/// Nothing is kept per thread: the word is the record itself.
std::int32_t attachThread(QVPI_Plugin_* record, void** context) {
    *context = record;
    return 0;
}

std::int32_t detachThread(QVPI_Plugin_*) {
    return 0;
}

constexpr SaxSvcFunctions kFunctions = {createReader, destroyReader, engineName,   setMaximumDepth,
                                        version,      destroy,       attachThread, detachThread};

/// The options of the host are the seven common ones; others are accepted and mean nothing.
std::int32_t createService(QVPI_Plugin_** record, const QVPI_PluginInitArgs* initArgs) {
    System::QVPI_Arguments arguments;
    if (arguments.parse(initArgs) != 0)
        return -1;
    auto* service = new (std::nothrow) Service;
    if (!service)
        return -1;
    service->functions = &kFunctions;
    service->hasMemory = arguments.malloc;
    service->memory = {arguments.malloc, arguments.realloc, arguments.free};
    *record = reinterpret_cast<QVPI_Plugin_*>(static_cast<SaxSvc_*>(service));
    return 0;
}

} // namespace

} // namespace Quillon::SaxEngine

extern "C" __attribute__((visibility("default"))) std::int32_t QVPI_CreatePlugin(QVPI_Plugin_** plugin,
                                                                                 void* initArgs, void*) {
    try {
        return Quillon::SaxEngine::createService(plugin, static_cast<const QVPI_PluginInitArgs*>(initArgs));
    } catch (...) {
        return -1;
    }
}
