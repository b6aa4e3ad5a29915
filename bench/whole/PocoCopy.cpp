// Reads a file with POCO's SAX parser and writes it to standard output with its XMLWriter.

#include <Poco/SAX/SAXParser.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>

using namespace Poco::XML;

int main(int, char** arguments) {
    std::ios::sync_with_stdio(false);
    SAXParser parser;
    XMLWriter writer(std::cout, XMLWriter::CANONICAL | XMLWriter::WRITE_XML_DECLARATION);
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
    parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    parser.setContentHandler(&writer);
    parser.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<LexicalHandler*>(&writer));
    parser.parse(arguments[1]);
    std::cout.flush();
    return std::cout ? 0 : 1;
}
