#ifndef ZUTARNEX_XML_SAX_ATTACHEDTHREAD_H
#define ZUTARNEX_XML_SAX_ATTACHEDTHREAD_H

#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::Xml::Sax {

class ServiceFactory;

/// Keeps the calling thread attached to the parser's plug-in from its construction to its destruction.
///
///     const AttachedThread attached(factory);
///     // calls into the service
///
/// Ownership: shares the factory.
/// Threads:   made and destroyed by the same thread.
/// Throws:    nothing; a thread that cannot attach or detach ends the process (fatal error 3), and so does an empty
///            pointer.
class ZUTARNEX_API AttachedThread {
public:
    explicit AttachedThread(const boost::shared_ptr<ServiceFactory>& factory);
    AttachedThread(const AttachedThread&) = delete;
    AttachedThread& operator=(const AttachedThread&) = delete;
    ~AttachedThread();

    void* context() const noexcept; ///< the word that the plug-in keeps for this thread

private:
    boost::shared_ptr<ServiceFactory> factory_;
    void* context_;
};

} // namespace Quillon::Xml::Sax

#endif
