#ifndef ZUTARNEX_XML_SAX_ERRORHANDLER_H
#define ZUTARNEX_XML_SAX_ERRORHANDLER_H

#include "xml/sax/SaxParseException.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Receives what a reader has to complain about. The argument is valid only during the call; copies live on.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Throws: an implementation may throw SaxException, commonly the one it was given, to stop the parse.
class ZUTARNEX_API ErrorHandler {
public:
    virtual ~ErrorHandler();

    virtual void warning(const SaxParseException& exception) = 0;
    virtual void error(const SaxParseException& exception) = 0;      ///< recoverable: the parse can go on
    virtual void fatalError(const SaxParseException& exception) = 0; ///< the document is not well-formed
};

} // namespace Quillon::Xml::Sax

#endif
