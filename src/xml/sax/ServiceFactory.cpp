#include "xml/sax/ServiceFactory.h"

#include "runtime/HostServices.h"
#include "runtime/ThrowGuardInternal.h"

#include <utility>

namespace Quillon::Xml::Sax {

namespace {

constexpr char kModuleName[] = "saxengine";
constexpr std::int32_t kMajorVersion = 1;

template <class Service>
std::int32_t versionOf(Service* service) {
    return service->functions->version(reinterpret_cast<QVPI_Plugin_*>(service));
}

} // namespace

template <class Factory, class Service>
BasicServiceFactory<Factory, Service>::BasicServiceFactory(boost::shared_ptr<QVPI_Plugin_> plugin)
    : plugin_(std::move(plugin)) {}

template <class Factory, class Service>
BasicServiceFactory<Factory, Service>::BasicServiceFactory(const BasicServiceFactory& other)
    : System::ServiceProvisioning(other), plugin_(other.plugin_) {}

template <class Factory, class Service>
BasicServiceFactory<Factory, Service>&
BasicServiceFactory<Factory, Service>::operator=(const BasicServiceFactory& other) {
    plugin_ = other.plugin_;
    return *this;
}

template <class Factory, class Service>
BasicServiceFactory<Factory, Service>::~BasicServiceFactory() = default;

template <class Factory, class Service>
boost::shared_ptr<Factory> BasicServiceFactory<Factory, Service>::getSelf() const {
    return self_.lock();
}

template <class Factory, class Service>
Service* BasicServiceFactory<Factory, Service>::getService() const {
    return reinterpret_cast<Service*>(plugin_.get());
}

template <class Factory, class Service>
void BasicServiceFactory<Factory, Service>::validateInterface(Service* service) const {
    if (!service || versionOf(service) >> 16 != kMajorVersion) {
        Runtime::hostServices().fatalError(3, "Incompatible SPEI version");
        Runtime::unexpectedException(); // a host whose function returns, although it must not
    }
    versionOf(service); // Deliberate: asked twice (tests/xml/sax/ServiceFactoryTest.cpp, VersionIsAskedTwice)
}

template <class Factory, class Service>
void* BasicServiceFactory<Factory, Service>::attachThread() const {
    return doAttach(plugin_);
}

template <class Factory, class Service>
void BasicServiceFactory<Factory, Service>::detachThread() const {
    doDetach(plugin_.get());
}

template <class Factory, class Service>
boost::shared_ptr<Factory> BasicServiceFactory<Factory, Service>::createFor(const char* moduleName) {
    const boost::shared_ptr<Factory> factory(new Factory(doCreate(moduleName)));
    factory->self_ = factory;
    return factory;
}

template class BasicServiceFactory<ServiceFactory, SaxSvc_>;

boost::shared_ptr<ServiceFactory> ServiceFactory::create() {
    return createFor(kModuleName);
}

ServiceFactory::ServiceFactory(boost::shared_ptr<QVPI_Plugin_> plugin)
    : BasicServiceFactory(std::move(plugin)) {}
ServiceFactory::ServiceFactory(const ServiceFactory& other) = default;
ServiceFactory& ServiceFactory::operator=(const ServiceFactory& other) = default;
ServiceFactory::~ServiceFactory() = default;

} // namespace Quillon::Xml::Sax
