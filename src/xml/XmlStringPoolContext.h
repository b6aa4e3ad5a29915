#ifndef ZUTARNEX_XML_XMLSTRINGPOOLCONTEXT_H
#define ZUTARNEX_XML_XMLSTRINGPOOLCONTEXT_H

#include "xml/XmlStringPool.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::Xml {

/// A holder through which a component hands its pool on to others.
///
/// Layout:    the table of virtual functions, then the shared pointer.
/// Ownership: one share of the pool.
class ZUTARNEX_API XmlStringPoolContext {
public:
    XmlStringPoolContext(boost::shared_ptr<XmlStringPool> pool);
    virtual ~XmlStringPoolContext();

    boost::shared_ptr<XmlStringPool> getXmlStringPoolRef() const;

private:
    boost::shared_ptr<XmlStringPool> pool_;
};

} // namespace Quillon::Xml

#endif
