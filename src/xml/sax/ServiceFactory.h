#ifndef ZUTARNEX_XML_SAX_SERVICEFACTORY_H
#define ZUTARNEX_XML_SAX_SERVICEFACTORY_H

#include "system/ServiceProvisioning.h"
#include "xml/sax/SaxSvc.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

namespace Quillon::Xml::Sax {

/// What a factory of a service does, whatever the service: it keeps the plug-in alive, checks the version of its
/// record and attaches threads. The library holds one instance, the base of ServiceFactory.
///
/// Layout:    virtual table, plug-in, weak pointer to the owning factory, in this order (tests/abi/).
/// Ownership: shares the plug-in with everybody who holds a pointer to it; the last one's release destroys it.
/// Threads:   one factory is used by one thread at a time, but for attachThread() and detachThread().
template <class Factory, class Service>
class ZUTARNEX_API BasicServiceFactory : private System::ServiceProvisioning {
public:
    explicit BasicServiceFactory(boost::shared_ptr<QVPI_Plugin_> plugin);
    /// Deliberate: the copy holds the plug-in only; its getSelf() is empty, so that it never claims to be owned by
    /// the pointer of the factory that it was copied from (tests/xml/sax/ServiceFactoryTest.cpp, CopyHasNoSelf).
    BasicServiceFactory(const BasicServiceFactory& other);
    /// Takes over the plug-in only.
    BasicServiceFactory& operator=(const BasicServiceFactory& other);
    virtual ~BasicServiceFactory();

    /// The pointer that owns this factory; empty unless create() made it.
    boost::shared_ptr<Factory> getSelf() const;

    /// The plug-in's record as the service; it lives as long as the factory. Null when the factory has no plug-in.
    Service* getService() const;

    /// Ends the process (fatal error 3, "Incompatible SPEI version") unless the major version of `service` is 1. A
    /// null `service` is not compatible.
    void validateInterface(Service* service) const;

    /// Attach and detach the calling thread to and from the plug-in; a failure ends the process (fatal error 3).
    /// AttachedThread does both. Returned: the word that the plug-in keeps for the thread.
    void* attachThread() const;
    void detachThread() const;

protected:
    /// Loads the plug-in `moduleName` and makes a factory that knows the pointer that owns it.
    static boost::shared_ptr<Factory> createFor(const char* moduleName);

private:
    boost::shared_ptr<QVPI_Plugin_> plugin_;
    boost::weak_ptr<Factory> self_;
};

class ServiceFactory;
extern template class ZUTARNEX_API BasicServiceFactory<ServiceFactory, SaxSvc_>;

/// The library's handle on the parser, which lives in the plug-in "saxengine".
class ZUTARNEX_API ServiceFactory : public BasicServiceFactory<ServiceFactory, SaxSvc_> {
public:
    /// Loads the plug-in, or shares the one that is loaded already. The service's version is not checked: see
    /// validateInterface().
    ///
    /// Threads: one at a time.
    /// Throws:  System::PluginNotFoundException when libsaxengine.so cannot be opened, and everything else that
    ///          QVPI_PluginLoader::loadPlugin throws.
    static boost::shared_ptr<ServiceFactory> create();

    /// A factory over a plug-in that is loaded already; its getSelf() is empty.
    explicit ServiceFactory(boost::shared_ptr<QVPI_Plugin_> plugin);
    ServiceFactory(const ServiceFactory& other);
    ServiceFactory& operator=(const ServiceFactory& other);
    ~ServiceFactory() override;
};

} // namespace Quillon::Xml::Sax

#endif
