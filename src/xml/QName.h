#ifndef ZUTARNEX_XML_QNAME_H
#define ZUTARNEX_XML_QNAME_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// A qualified name.
///
/// Layout: namespaceURI, localPart, prefix, in this order (tests/abi/).
/// Throws: nothing; the strings are shared, not copied.
class ZUTARNEX_API QName {
public:
    /// No namespace and no prefix: both are empty.
    QName(XmlString localPart);
    /// The prefix is empty.
    QName(XmlString namespaceURI, XmlString localPart);
    /// A null `namespaceURI` becomes the empty string.
    ///
    /// Deliberate: a null `localPart` or `prefix` is kept as it is (tests/xml/QNameTest.cpp,
    /// KeepsNullLocalPartAndPrefix).
    QName(XmlString namespaceURI, XmlString localPart, XmlString prefix);
    QName(const QName& other);
    /// Takes over the three values, whatever flags the old ones had: immutable ones are replaced, too.
    QName& operator=(const QName& other);
    ~QName();

    XmlString getNamespaceURI() const;
    XmlString getLocalPart() const;
    XmlString getPrefix() const;

    /// Compares namespace URI and local part; the prefix does not count.
    bool operator==(const QName& other) const noexcept;
    bool operator!=(const QName& other) const noexcept;

private:
    void init(const XmlString& namespaceURI, const XmlString& localPart, const XmlString& prefix);

    XmlString namespaceURI_;
    XmlString localPart_;
    XmlString prefix_;
};

} // namespace Quillon::Xml

#endif
