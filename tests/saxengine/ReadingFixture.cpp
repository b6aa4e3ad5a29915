#include "saxengine/ReadingFixture.h"

#include <memory>

namespace Quillon::Testing {

using namespace Xml::Sax;

void ReadingFixture::warmUp() {
    static const bool done = [] {
        SaxEngineReader reader;
        reader.setFeature(SC_Features_Namespaces(), true);
        for (auto feature :
             {SC_Features_NamespacePrefixes, SC_Features_XmlNsUris, SC_Features_ExternalGeneralEntities,
              SC_Features_ExternalParameterEntities, SC_Features_LexicalHandler_ParameterEntities,
              SC_Features_ResolveDtdUris, SC_Features_UseEntityResolver2, SC_Features_UseAttributes2,
              SC_Features_UseLocator2, SC_Features_StringInterning, SC_Features_Validation,
              SC_Features_UnicodeNormalizationChecking, SC_Features_Xml1_1, SC_Features_IsStandalone,
              SC_Properties_LexicalHandler, SC_Properties_DeclarationHandler,
              SC_Properties_DocumentXmlVersion, SC_Properties_DomNode, SC_Properties_XmlString})
            feature();
        return true;
    }();
    static_cast<void>(done);
}

void ReadingFixture::SetUp() {
    HostFixture::SetUp();
    reader_.emplace();
    handler_.emplace();
    listen(*reader_, *handler_);
}

void ReadingFixture::TearDown() {
    reader_.reset();
    handler_.reset();
    std::vector<std::unique_ptr<Xml::MemoryByteChannel>>().swap(
        channels_); // what has room left is not balanced
    std::vector<std::string>().swap(asked);
    resources.clear();
    HostFixture::TearDown();
}

void ReadingFixture::listen(XmlReader& reader, RecordingHandler& handler) {
    reader.setContentHandler(&handler);
    reader.setDTDHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.setEntityResolver(&handler);
    reader.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&handler));
    reader.setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&handler));
}

void ReadingFixture::readExternalEntities() {
    set(SC_Features_ExternalGeneralEntities, true);
    set(SC_Features_ExternalParameterEntities, true);
}

Outcome ReadingFixture::read(std::string_view bytes, const char16_t* systemId, const char16_t* encoding) {
    handler_->clear();
    Xml::MemoryByteChannel channel(bytes.data(), bytes.size());
    InputSource source(&channel);
    if (systemId)
        source.setSystemId(text(systemId));
    if (encoding)
        source.setEncoding(text(encoding));
    return outcomeOf([&] { reader_->parse(source); });
}

std::vector<std::string> ReadingFixture::events(std::string_view bytes) {
    const Outcome outcome = read(bytes);
    EXPECT_FALSE(outcome.threw) << outcome.message << " at " << outcome.line << ":" << outcome.column;
    return handler_->lines();
}

std::vector<std::string> ReadingFixture::events(std::string_view bytes, const char* name) {
    events(bytes);
    return handler_->linesOf(name);
}

Outcome ReadingFixture::refused(std::string_view bytes) {
    const Outcome outcome = read(bytes);
    EXPECT_TRUE(outcome.threw) << bytes;
    EXPECT_TRUE(outcome.isParseException) << outcome.message;
    return outcome;
}

void ReadingFixture::serveResources() {
    reader_->setEntityResolver(&server_);
}

InputSource* ReadingFixture::Server::resolveEntity(const Xml::XmlString&, const Xml::XmlString& systemId) {
    fixture_.asked.push_back(show(systemId));
    const auto found = fixture_.resources.find(fixture_.asked.back());
    if (found == fixture_.resources.end())
        return nullptr;
    const std::string& resource = found->second;
    fixture_.channels_.push_back(std::make_unique<Xml::MemoryByteChannel>(resource.data(), resource.size()));
    return new InputSource(fixture_.channels_.back().get());
}

std::string utf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

} // namespace Quillon::Testing
