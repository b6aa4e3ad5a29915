#ifndef ZUTARNEX_XML_SAX_WRITER_ESCAPINGINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_ESCAPINGINTERNAL_H

#include "xml/sax/writer/EventOutputInternal.h"
#include "xml/sax/writer/XmlWriter.h"

namespace Quillon::Xml::Sax {

/// Puts `text`, escaped as XmlWriter::escapeChars says. REQUIRES: one of the four contexts.
///
/// Cost: little for line ends with a short text of US-ASCII behind them, as layout and the content of records are.
void putEscaped(EventOutput& out, Units text, XmlWriter::EscapeContext context);

/// The same between quotation marks.
void putQuoted(EventOutput& out, Units text, XmlWriter::EscapeContext context);
/// What comes behind the first of them.
void putQuotedRest(EventOutput& out, Units text, XmlWriter::EscapeContext context);

} // namespace Quillon::Xml::Sax

#endif
