// Reads the document named, takes one namespace out, indents what is left and writes it to standard output.

#include <saxengine/SaxEngineReader.h>
#include <xml/XmlString.h>
#include <xml/sax/RemoveNamespaceFilter.h>
#include <xml/sax/SaxException.h>
#include <xml/sax/SaxIdentifiers.h>
#include <xml/sax/XmlFilterFormat.h>
#include <xml/sax/writer/XmlWriter.h>
#include <zutarnex/version.h>

#include <exception>
#include <iostream>

using namespace Quillon::Xml;
using namespace Quillon::Xml::Sax;

int main(int, char** arguments) {
    try {
        SaxEngineReader reader;
        RemoveNamespaceFilter plain(&reader, makeString("urn:example:editor"));
        XmlFilterFormat indented(&plain, XmlFilterFormat::AlignIndent, XmlFilterFormat::TabSpaces, 2);
        XmlWriter writer(std::cout);
        indented.setFeature(SC_Features_NamespacePrefixes(), true);
        indented.setContentHandler(&writer);
        indented.parse(makeString(arguments[1]));
        return std::cout.flush() && libzutarnex_version[0] == '1' ? 0 : 3;
    } catch (const SaxException&) {
        std::cerr << "SaxException\n";
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << '\n';
    }
    return 1;
}
