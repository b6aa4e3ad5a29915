#include "xml/sax/writer/StrictNamespacesInternal.h"

#include "xml/Utf16LiteralInternal.h"

namespace Quillon::Xml::Sax {

namespace {

template <std::size_t N>
constexpr Units unitsOf(const Utf16Literal<N>& literal) noexcept {
    return Units(literal.units, N - 1);
}

constexpr Utf16Literal kXmlLiteral(u"xml");
constexpr Utf16Literal kXmlUriLiteral(u"http://www.w3.org/XML/1998/namespace");
constexpr Utf16Literal kXmlnsUriLiteral(u"http://www.w3.org/2000/xmlns/");
constexpr Units kXml = unitsOf(kXmlLiteral);
constexpr Units kXmlUri = unitsOf(kXmlUriLiteral), kXmlnsUri = unitsOf(kXmlnsUriLiteral);

} // namespace

std::optional<Units> StrictNamespaces::boundTo(Units prefix) const {
    if (const Binding* const found = bindings_.find(prefix))
        return found->uri;
    if (isSame(prefix, kXml))
        return kXmlUri;
    return prefix.empty() ? std::optional<Units>(Units()) : std::nullopt;
}

const StrictNamespaces::Binding* StrictNamespaces::broughtAt(std::size_t depth, Units prefix) const {
    const Binding* const found = bindings_.find(prefix);
    return found && found->depth == depth ? found : nullptr;
}

bool isLegalBinding(Units prefix, Units uri) noexcept {
    if (isSame(prefix, kXmlns) || isSame(uri, kXmlnsUri) || isSame(prefix, kXml) != isSame(uri, kXmlUri))
        return false;
    return prefix.empty() || !uri.empty();
}

} // namespace Quillon::Xml::Sax
