#ifndef ZUTARNEX_SAXENGINE_EXPATCALLBACKS_H
#define ZUTARNEX_SAXENGINE_EXPATCALLBACKS_H

#include <expat.h>

namespace Quillon::SaxEngine {

class ParseSession;

/// Makes `parser` report to `session`; declarations are reported as a DeclarationTracker says.
void setCallbacks(XML_Parser parser, ParseSession& session);

// The switches of DeclarationTracker.
void reportDoctype(XML_Parser parser);
void reportElementDeclarations(XML_Parser parser, bool on);
void reportAttributeDeclarations(XML_Parser parser, bool on);
void reportEntityDeclarations(XML_Parser parser, bool on);
void reportNotationDeclarations(XML_Parser parser, bool on);

} // namespace Quillon::SaxEngine

#endif
