#include "xml/XmlStringPoolContext.h"

#include <utility>

namespace Quillon::Xml {

XmlStringPoolContext::XmlStringPoolContext(boost::shared_ptr<XmlStringPool> pool) : pool_(std::move(pool)) {}

XmlStringPoolContext::~XmlStringPoolContext() = default;

boost::shared_ptr<XmlStringPool> XmlStringPoolContext::getXmlStringPoolRef() const {
    return pool_;
}

} // namespace Quillon::Xml
