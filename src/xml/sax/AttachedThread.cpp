#include "xml/sax/AttachedThread.h"

#include "system/ServiceProvisioning.h"
#include "xml/sax/ServiceFactory.h"

namespace Quillon::Xml::Sax {

AttachedThread::AttachedThread(const boost::shared_ptr<ServiceFactory>& factory)
    : factory_(factory),
      context_(factory ? factory->attachThread()
                       : System::ServiceProvisioning::doAttach(boost::shared_ptr<QVPI_Plugin_>())) {}

AttachedThread::~AttachedThread() {
    factory_->detachThread();
}

void* AttachedThread::context() const noexcept {
    return context_;
}

} // namespace Quillon::Xml::Sax
