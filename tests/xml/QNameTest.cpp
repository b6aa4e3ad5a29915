#include "xml/QName.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/StringFields.h"
#include "xml/XmlConstants.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace Quillon::Xml {
namespace {

using Testing::show;
using Testing::text;

class QNameTest : public Testing::HostFixture {};

TEST_F(QNameTest, LocalPartAloneHasNoNamespaceAndNoPrefix) {
    const QName name(text(u"a"));
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ(XmlConstants::SC_Null_Ns_Uri().getPtr(), name.getNamespaceURI().getPtr());
    EXPECT_EQ(XmlConstants::SC_Default_Ns_Prefix().getPtr(), name.getPrefix().getPtr());
    EXPECT_EQ("", show(name.getNamespaceURI()));
    EXPECT_EQ("", show(name.getPrefix()));
}

TEST_F(QNameTest, NamespaceAndLocalPartHaveTheDefaultPrefix) {
    const QName name(text(u"urn:x"), text(u"a"));
    EXPECT_EQ("urn:x", show(name.getNamespaceURI()));
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ("", show(name.getPrefix()));
}

TEST_F(QNameTest, AllThreePartsAreKept) {
    const QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    EXPECT_EQ("urn:x", show(name.getNamespaceURI()));
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ("p", show(name.getPrefix()));
}

TEST_F(QNameTest, PartsAreSharedNotCopied) {
    const XmlString uri = text(u"urn:x"), local = text(u"a"), prefix = text(u"p");
    const std::size_t before = Testing::hostMemory().requests();
    const QName name(uri, local, prefix);
    EXPECT_EQ(uri.getPtr(), name.getNamespaceURI().getPtr());
    EXPECT_EQ(2u, local.getRefs());
    EXPECT_EQ(2u, prefix.getRefs());
    EXPECT_EQ(before, Testing::hostMemory().requests());
}

TEST_F(QNameTest, NullNamespaceBecomesTheEmptyString) {
    for (const QName& name : {QName(XmlString(), text(u"a")), QName(XmlString(), text(u"a"), text(u"p"))}) {
        EXPECT_FALSE(name.getNamespaceURI().isNull());
        EXPECT_EQ("", show(name.getNamespaceURI()));
        EXPECT_TRUE(name == QName(text(u"a")));
    }
}

TEST_F(QNameTest, EmptyNamespaceIsKeptAsItIs) {
    const XmlString empty = text(u"");
    EXPECT_EQ(empty.getPtr(), QName(empty, text(u"a")).getNamespaceURI().getPtr());
}

TEST_F(QNameTest, KeepsNullLocalPartAndPrefix) {
    const QName name(text(u"urn:x"), XmlString(), XmlString());
    EXPECT_TRUE(name.getLocalPart().isNull());
    EXPECT_TRUE(name.getPrefix().isNull());
    EXPECT_TRUE(QName(XmlString()).getLocalPart().isNull());
}

TEST_F(QNameTest, PrefixDoesNotCountInComparisons) {
    const XmlString uri = text(u"urn:x");
    const QName one(uri, text(u"a"), text(u"p")), other(text(u"urn:x"), text(u"a"), text(u"q"));
    EXPECT_TRUE(one == other);
    EXPECT_FALSE(one != other);
    EXPECT_TRUE(one == QName(uri, text(u"a"), XmlString()));
}

TEST_F(QNameTest, NamespaceAndLocalPartCount) {
    const QName name(text(u"urn:x"), text(u"a"));
    EXPECT_FALSE(QName(text(u"a")) == name);
    EXPECT_TRUE(QName(text(u"a")) != name);
    EXPECT_TRUE(name != QName(text(u"urn:y"), text(u"a")));
    EXPECT_TRUE(name != QName(text(u"urn:x"), text(u"b")));
    EXPECT_TRUE(QName(text(u"")) != QName(XmlString())) << "an empty local part is not a missing one";
    EXPECT_TRUE(QName(XmlString()) == QName(XmlString()));
}

TEST_F(QNameTest, CopySharesTheThreeParts) {
    const QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    const QName copy(name);
    EXPECT_EQ(name.getNamespaceURI().getPtr(), copy.getNamespaceURI().getPtr());
    EXPECT_EQ(name.getLocalPart().getPtr(), copy.getLocalPart().getPtr());
    EXPECT_EQ(name.getPrefix().getPtr(), copy.getPrefix().getPtr());
}

TEST_F(QNameTest, AssignmentReplacesImmutableParts) {
    QName name(text(u"a")); // namespace and prefix are constants
    const QName other(text(u"urn:x"), text(u"b"), text(u"p"));
    EXPECT_EQ(&name, &(name = other));
    EXPECT_EQ("urn:x", show(name.getNamespaceURI()));
    EXPECT_EQ("b", show(name.getLocalPart()));
    EXPECT_EQ("p", show(name.getPrefix()));
    EXPECT_NO_THROW(name = QName(text(u"c")));
    EXPECT_NO_THROW(name = other);
    EXPECT_TRUE(name == other);
}

TEST_F(QNameTest, AssignmentDoesNotWriteIntoBorrowedBuffers) {
    unsigned short buffer[] = {'l', 'o', 'n', 'g', 0};
    QName name(XmlString(Borrowed, buffer), XmlString(Borrowed, buffer), XmlString(Borrowed, buffer));
    name = QName(text(u"u"), text(u"a"), text(u"p"));
    EXPECT_EQ('l', buffer[0]);
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ(unsigned{Valid}, Testing::flagsOf(name.getLocalPart()));
}

TEST_F(QNameTest, AssignmentTakesOverNullParts) {
    QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    name = QName(text(u"urn:y"), XmlString(), XmlString());
    EXPECT_TRUE(name.getLocalPart().isNull());
    EXPECT_TRUE(name.getPrefix().isNull());
}

TEST_F(QNameTest, AssignmentToItselfChangesNothing) {
    QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    const QName& same = name;
    name = same;
    EXPECT_EQ("urn:x", show(name.getNamespaceURI()));
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ("p", show(name.getPrefix()));
}

TEST_F(QNameTest, AssignmentBetweenNamesThatShareTheirParts) {
    QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    const QName copy(name);
    name = copy;
    EXPECT_EQ("a", show(name.getLocalPart()));
    EXPECT_EQ("p", show(copy.getPrefix()));
}

TEST_F(QNameTest, AllocatesNothing) {
    const QName name(text(u"urn:x"), text(u"a"), text(u"p"));
    const std::size_t before = Testing::hostMemory().requests();
    QName copy(name);
    copy = QName(name.getLocalPart());
    EXPECT_EQ(before, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::Xml
