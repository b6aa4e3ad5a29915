// The destructors of the interfaces stand here so that each class has one vtable and one type_info.
#include "xml/sax/Attributes.h"
#include "xml/sax/Attributes2.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/EntityResolver.h"
#include "xml/sax/EntityResolver2.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/EventConsumer.h"
#include "xml/sax/LexicalHandler.h"
#include "xml/sax/Locator.h"
#include "xml/sax/Locator2.h"
#include "xml/sax/XmlFilter.h"
#include "xml/sax/XmlReader.h"

namespace Quillon::Xml::Sax {

EntityResolver::~EntityResolver() = default;
EntityResolver2::~EntityResolver2() = default;
DTDHandler::~DTDHandler() = default;
ContentHandler::~ContentHandler() = default;
ErrorHandler::~ErrorHandler() = default;
LexicalHandler::~LexicalHandler() = default;
DeclHandler::~DeclHandler() = default;
EventConsumer::~EventConsumer() = default;

Attributes::~Attributes() = default;
Attributes2::~Attributes2() = default;
Locator::~Locator() = default;
Locator2::~Locator2() = default;

XmlReader::~XmlReader() = default;
XmlFilter::~XmlFilter() = default;

} // namespace Quillon::Xml::Sax
