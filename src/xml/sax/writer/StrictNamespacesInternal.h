#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTNAMESPACESINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTNAMESPACESINTERNAL_H

#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/writer/PrefixStackInternal.h"
#include "xml/sax/writer/StrictRefusalInternal.h"

#include <optional>
#include <utility>

namespace Quillon::Xml::Sax {

inline constexpr Utf16Literal kXmlnsLiteral(u"xmlns");
inline constexpr Units kXmlns(kXmlnsLiteral.units, 5);

/// Which prefix stands for which namespace in the elements that are open.
class StrictNamespaces {
public:
    struct Binding {
        OwnedUnits prefix; ///< empty: the default namespace
        OwnedUnits uri;    ///< empty: none
        std::size_t depth; ///< of the element that brought it
    };

    void clear() noexcept { bindings_.clear(); }

    void bind(Binding binding) { bindings_.push(std::move(binding)); }
    /// Forgets what elements deeper than `depth` have brought.
    void leave(std::size_t depth) noexcept {
        while (!bindings_.empty() && bindings_.top().depth > depth)
            bindings_.pop();
    }

    /// Nothing when the prefix is not bound; the empty prefix always is, at first to "", and `xml` to its namespace.
    std::optional<Units> uriOf(Units prefix) const {
        return bindings_.empty() && prefix.empty() ? Units() : boundTo(prefix);
    }
    /// The one that the element of that depth has brought itself; null when it has not.
    const Binding* broughtAt(std::size_t depth, Units prefix) const;

private:
    std::optional<Units> boundTo(Units prefix) const;

    PrefixStack<Binding> bindings_;
};

/// Whether Namespaces in XML lets a document declare that (its constraints on reserved and empty names).
bool isLegalBinding(Units prefix, Units uri) noexcept;

/// What stands before the first colon of a qualified name, and what behind it.
struct QualifiedName {
    Units prefix, localName;
    bool hasColon = false;
    bool qualifies = false; ///< whether Namespaces in XML let the name have that colon, or it has none

    QualifiedName() = default;
    /// `colon` is the index of the first one, the size of the name when there is none.
    QualifiedName(Units name, std::size_t colon, bool qualifies) noexcept
        : localName(name), hasColon(colon != name.size()), qualifies(qualifies) {
        if (!hasColon)
            return;
        prefix = name.first(colon);
        localName = name.subspan(colon + 1);
    }
};

/// The name of an attribute that is `xmlns` or `xmlns:...`.
inline bool isNamespaceDeclaration(const QualifiedName& attributeName) noexcept {
    return isSame(attributeName.hasColon ? attributeName.prefix : attributeName.localName, kXmlns);
}

} // namespace Quillon::Xml::Sax

#endif
