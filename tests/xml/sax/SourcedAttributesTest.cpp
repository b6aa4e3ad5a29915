#include "xml/sax/AttributeSourceInternal.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/UserException.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/sax/Attributes2Impl.h"
#include "xml/sax/writer/StrictWriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

/// The attributes p:id="7" and kind="a<b". It counts the strings that are asked for.
class TwoAttributes final : public AttributeSource {
public:
    unsigned int length() const noexcept override { return 2; }
    void read(unsigned int index, Entry& entry) const noexcept override {
        const XmlString* const fields = fields_[index];
        entry.uri = unitsOf(fields[0]);
        entry.localName = unitsOf(fields[1]);
        entry.qName = unitsOf(fields[2]);
        entry.value = unitsOf(fields[4]);
    }
    Units type(unsigned int index) const noexcept override { return unitsOf(fields_[index][3]); }
    const XmlString* string(unsigned int index, Field field) const override {
        ++strings;
        return index < 2 ? &fields_[index][static_cast<unsigned int>(field)] : nullptr;
    }
    bool isDeclared(unsigned int index) const override { return index == 1; }
    bool isSpecified(unsigned int index) const override { return index == 0; }

    mutable int strings = 0;

private:
    const XmlString fields_[2][5] = {{text(u"urn:p"), text(u"id"), text(u"p:id"), text(u"ID"), text(u"7")},
                                     {text(u""), text(u"kind"), text(u"kind"), text(u"CDATA"), text(u"a<b")}};
};

class SourcedAttributesTest : public Testing::HostFixture {
protected:
    /// The same as a list that anybody can make, whose answers are the right ones.
    static Attributes2Impl model() {
        Attributes2Impl list;
        list.addAttribute(text(u"urn:p"), text(u"id"), text(u"p:id"), text(u"ID"), text(u"7"));
        list.addAttribute(text(u""), text(u"kind"), text(u"kind"), text(u"CDATA"), text(u"a<b"));
        list.setDeclared(0, false);
        list.setDeclared(1, true);
        list.setSpecified(1, false);
        return list;
    }

    static std::string answerOf(const std::function<std::string()>& question) {
        try {
            return question();
        } catch (const ArrayIndexOutOfBoundsException& e) {
            return "no index: " + dynamic_cast<const System::UserException&>(e).getMessage();
        } catch (const IllegalArgumentException& e) {
            return "no argument: " + dynamic_cast<const System::UserException&>(e).getMessage();
        }
    }
};

TEST_F(SourcedAttributesTest, AnswersAsTheImplementationDoes) {
    using Question = std::function<std::string(const Attributes2&)>;
    std::vector<Question> questions = {[](const Attributes2& a) { return std::to_string(a.getLength()); }};
    for (const unsigned int i : {0u, 1u, 2u, 0xFFFFFFFFu}) {
        questions.push_back([i](const Attributes2& a) { return show(a.getURI(i)); });
        questions.push_back([i](const Attributes2& a) { return show(a.getLocalName(i)); });
        questions.push_back([i](const Attributes2& a) { return show(a.getQName(i)); });
        questions.push_back([i](const Attributes2& a) { return show(a.getType(i)); });
        questions.push_back([i](const Attributes2& a) { return show(a.getValue(i)); });
        questions.push_back([i](const Attributes2& a) { return std::to_string(a.isDeclared(i)); });
        questions.push_back([i](const Attributes2& a) { return std::to_string(a.isSpecified(i)); });
    }
    for (const char16_t* name : {u"p:id", u"kind", u"id", u""}) {
        const XmlString qName = text(name);
        questions.push_back([=](const Attributes2& a) { return std::to_string(a.getIndex(qName)); });
        questions.push_back([=](const Attributes2& a) { return show(a.getType(qName)); });
        questions.push_back([=](const Attributes2& a) { return show(a.getValue(qName)); });
        questions.push_back([=](const Attributes2& a) { return std::to_string(a.isDeclared(qName)); });
        questions.push_back([=](const Attributes2& a) { return std::to_string(a.isSpecified(qName)); });
        for (const char16_t* space : {u"urn:p", u""}) {
            const XmlString uri = text(space);
            questions.push_back([=](const Attributes2& a) { return std::to_string(a.getIndex(uri, qName)); });
            questions.push_back([=](const Attributes2& a) { return show(a.getType(uri, qName)); });
            questions.push_back([=](const Attributes2& a) { return show(a.getValue(uri, qName)); });
            questions.push_back(
                [=](const Attributes2& a) { return std::to_string(a.isDeclared(uri, qName)); });
            questions.push_back(
                [=](const Attributes2& a) { return std::to_string(a.isSpecified(uri, qName)); });
        }
    }
    const TwoAttributes source;
    const std::unique_ptr<Attributes2> list = attributesFrom(source);
    const Attributes2Impl expected = model();
    for (std::size_t i = 0; i < questions.size(); ++i)
        EXPECT_EQ(answerOf([&] { return questions[i](expected); }),
                  answerOf([&] { return questions[i](*list); }))
            << "question " << i;
}

/// The writers look at the units; only who asks for a string has one made.
TEST_F(SourcedAttributesTest, WritersAskForNoString) {
    const TwoAttributes source;
    const std::unique_ptr<Attributes2> list = attributesFrom(source);
    std::ostringstream plainText, strictText;
    XmlWriter plain(plainText);
    plain.writeStartTag(text(u"e"), *list);
    EXPECT_EQ("<e p:id=\"7\" kind=\"a&lt;b\">", plainText.str());
    StrictWriter strict(strictText);
    strict.setEncoding("US-ASCII"); // has no declaration
    strict.setCanonical(true);      // looks at no type
    strict.startDocument();
    strict.startPrefixMapping(text(u"p"), text(u"urn:p"));
    strict.startElement(text(u""), text(u"e"), text(u"e"), *list);
    EXPECT_EQ("<e xmlns:p=\"urn:p\" p:id=\"7\" kind=\"a&lt;b\">", strictText.str());
    EXPECT_EQ(0, source.strings);
    EXPECT_EQ("7", show(list->getValue(0)));
    EXPECT_EQ(1, source.strings);
}

} // namespace
} // namespace Quillon::Xml::Sax
