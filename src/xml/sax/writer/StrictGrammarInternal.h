#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTGRAMMARINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTGRAMMARINTERNAL_H

#include "xml/sax/writer/StrictRefusalInternal.h"

/// The pieces of declarations that events carry as ready text. All are taken only in the form in which a reader
/// delivers them, without white space, because any other form would not read back the same.
namespace Quillon::Xml::Sax {

/// `EMPTY`, `ANY`, `(#PCDATA|a|b)*` or `(a,(b|c)*,d?)+`, nested to any depth.
bool isContentModel(Units text);
/// Whether white space in such an element is none of its text. REQUIRES: isContentModel(text).
bool holdsElementsOnly(Units text) noexcept;

/// `CDATA`, `ID` ... `NMTOKENS`, `(a|b)` or `NOTATION (a|b)`.
bool isAttributeType(Units text);

/// No space at its ends and no two side by side: what a parser leaves of a value that is a list of tokens.
bool isTokenList(Units value) noexcept;

bool equals(Units units, const char* ascii) noexcept;
bool startsWith(Units units, const char* ascii) noexcept;

} // namespace Quillon::Xml::Sax

#endif
