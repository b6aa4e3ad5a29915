// The k-th request for memory fails, for every k: an exception, nothing left over, and a reader that works again.
#include "saxengine/ReadingFixture.h"

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

const char kDocument[] =
    "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE a [<!ELEMENT a (b,(c|d)*)*><!ATTLIST a e NMTOKENS 'f g' "
    "h (i|j) 'i'>"
    "<!ENTITY k 'l<b/>'><!ENTITY % m '<!NOTATION n PUBLIC \"o\">'>%m;<!ENTITY p SYSTEM 'q' NDATA n>"
    "<!ENTITY r SYSTEM '/dev/null'><!ENTITY % s SYSTEM '/dev/null'>%s;]>"
    "<a xmlns:t='u' t:v='w'>x&k;&r;<t:y z='&k2;'/><?target data?><!--comment--><![CDATA[text]]></a>";

/// Asks for everything, so that everything is allocated, and does nothing with it.
class Asker : public DefaultHandler2 {
public:
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        for (unsigned int i = 0; i < attributes.getLength(); ++i)
            attributes.getValue(i);
    }
};

class AllocationFailureTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        reader().setContentHandler(&asker_);
        reader().setDTDHandler(&asker_);
        reader().setErrorHandler(&asker_);
        reader().setEntityResolver(static_cast<EntityResolver2*>(&asker_));
        reader().setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&asker_));
        reader().setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&asker_));
        readExternalEntities();
    }
    void parse() {
        MemoryByteChannel channel(kDocument, sizeof kDocument - 1);
        InputSource source(&channel);
        reader().parse(source);
    }
    void worksAgain() { EXPECT_NO_THROW(parse()); }

private:
    Asker asker_;
};

TEST_F(AllocationFailureTest, ParseEndsInAnExceptionWhenTheHostsMemoryFails) {
    everyAllocationFails([&] { parse(); }, [&] { worksAgain(); });
}

TEST_F(AllocationFailureTest, ParseEndsInAnExceptionWhenOperatorNewFails) {
    everyNewFails([&] { parse(); }, [&] { worksAgain(); });
}

TEST_F(AllocationFailureTest, ReaderIsMadeOrAnExceptionThrown) {
    everyAllocationFails([] { SaxEngineReader another; });
    everyRequestFails<std::exception>(
        newMemory(), [] { SaxEngineReader another; }, [] {});
}

} // namespace
} // namespace Quillon::Xml::Sax
