// URI::construct.
#include "net/URI.h"

#include "net/URISyntaxException.h"
#include "net/UriFixture.h"
#include "xml/NullPointerException.h"

namespace Quillon::Testing {
namespace {

using Net::URI;
using Net::URISyntaxException;

class UriParserTest : public UriFixture {};

struct ParseCase {
    const char* name;
    const char* text;
    const char* outcome; ///< the components, or the reason and the index of the fault
};

void PrintTo(const ParseCase& parseCase, std::ostream* out) {
    *out << parseCase.text;
}

class UriParseTest : public UriFixture, public ::testing::WithParamInterface<ParseCase> {};

TEST_P(UriParseTest, GivesComponentsOrFault) {
    EXPECT_EQ(GetParam().outcome, outcome(GetParam().text));
    EXPECT_EQ(GetParam().outcome, modelOutcome(GetParam().text)) << "the model";
}

const auto kNameOfCase = [](const auto& info) { return info.param.name; };

const ParseCase kSchemeCases[] = {
    {"SchemeAndRootlessPath", "a:b", "scheme='a' path='b'"},
    {"SchemeAlone", "a:", "scheme='a' path=''"},
    {"SchemeOfEveryKindOfCharacter", "aZ0+-.:b", "scheme='aZ0+-.' path='b'"},
    {"CaseOfTheSchemeIsKept", "HtTp:b", "scheme='HtTp' path='b'"},
    {"EscapeInScheme", "sch%41me:x", "scheme='sch%41me' path='x'"},
    {"SchemeEndsAtTheFirstColon", "a:b:c", "scheme='a' path='b:c'"},
    {"ColonBehindSlashMakesNoScheme", "./a:b", "path='./a:b'"},
    {"ColonBehindQuestionMarkMakesNoScheme", "a?b:c", "path='a' query='b:c'"},
    {"ColonBehindHashMakesNoScheme", "a#b:c", "path='a' fragment='b:c'"},
    {"EmptyScheme", ":x", "Expecting scheme name @0"},
    {"ColonAlone", ":", "Expecting scheme name @0"},
    {"SchemeBeginsWithDigit", "1a:b", "Illegal character in scheme name @0"},
    {"SchemeBeginsWithPlus", "+a:b", "Illegal character in scheme name @0"},
    {"SchemeBeginsWithEscape", "%41a:b", "Illegal character in scheme name @0"},
    {"SchemeBeginsWithBrokenEscape", "%4g:b", "Illegal character in scheme name @0"},
    {"IllegalCharacterInScheme", "ht_tp:b", "Illegal character in scheme name @2"},
    {"MalformedEscapeInScheme", "a%4g:x", "Malformed escape pair @1"},
    {"EscapeCutByTheColon", "a%4:x", "Malformed escape pair @1"},
};
INSTANTIATE_TEST_SUITE_P(Scheme, UriParseTest, ::testing::ValuesIn(kSchemeCases), kNameOfCase);

const ParseCase kPathCases[] = {
    {"Nothing", "", "path=''"},
    {"AuthorityWithoutPath", "x://h", "scheme='x' authority='h' path='' host='h'"},
    {"PathBehindAuthority", "x://h/p//q/", "scheme='x' authority='h' path='/p//q/' host='h'"},
    {"PathBehindAuthorityWithoutScheme", "//h/p", "authority='h' path='/p' host='h'"},
    {"AbsolutePathBehindScheme", "x:/p/q", "scheme='x' path='/p/q'"},
    {"AbsolutePath", "/p/q:r@s", "path='/p/q:r@s'"},
    {"SlashAlone", "/", "path='/'"},
    {"RootlessPathMayBeginWithColon", "x::y", "scheme='x' path=':y'"},
    {"RootlessPathWithSlashes", "x:y/z//", "scheme='x' path='y/z//'"},
    {"RelativePath", "a/b/c", "path='a/b/c'"},
    {"LaterSegmentMayHoldColon", "a@b/b:c", "path='a@b/b:c'"},
    {"MalformedEscapeInSegment", "a%41%fF/%zz", "Malformed escape pair @8"},
    {"EscapesStayAsWritten", "a%41%fF", "path='a%41%fF'"},
    {"DotSegmentsAreKept", "../a/./b", "path='../a/./b'"},
    {"IllegalCharacterInPath", "x://h/a^b", "Illegal character in path @7"},
    {"IllegalCharacterInPathWithoutScheme", "//h/a^b", "Illegal character in path @5"},
    {"IllegalCharacterInAbsolutePath", "/a b", "Illegal character in absolute path @2"},
    {"IllegalCharacterInAbsolutePathBehindScheme", "x:/a b", "Illegal character in absolute path @4"},
    {"IllegalCharacterInRootlessPath", "x:a b", "Illegal character in rootless path @3"},
    {"BracketInRootlessPath", "x:[", "Illegal character in rootless path @2"},
    {"IllegalCharacterInFirstSegment", "a b/c", "Illegal character in segment-nz-nc @1"},
    {"IllegalCharacterInSegment", "a/b c", "Illegal character in segment @3"},
    {"IllegalCharacterInLastSegment", "a/b/c/[", "Illegal character in segment @6"},
    {"MalformedEscapeInFirstSegment", "a%4g", "Malformed escape pair @1"},
    {"EscapeCutByTheEnd", "a%4", "Malformed escape pair @1"},
    {"MalformedEscapeBeforeSlash", "a%4/1", "Malformed escape pair @1"},
    {"PercentAtTheEnd", "a/%", "Malformed escape pair @2"},
    {"EscapeCutByTheQuery", "/%1?1", "Malformed escape pair @1"},
    {"BytesAbove127AreInNoClass", "/\xC2\xAE", "Illegal character in absolute path @1"},
    {"ControlCharactersAreInNoClass", "/\x01", "Illegal character in absolute path @1"},
    {"DeleteIsInNoClass", "/\x7F", "Illegal character in absolute path @1"},
};
INSTANTIATE_TEST_SUITE_P(Path, UriParseTest, ::testing::ValuesIn(kPathCases), kNameOfCase);

const ParseCase kQueryCases[] = {
    {"Query", "a?b", "path='a' query='b'"},
    {"QueryAlone", "?b", "path='' query='b'"},
    {"EmptyQuery", "x://h?", "scheme='x' authority='h' path='' query='' host='h'"},
    {"QueryMayHoldSlashAndQuestionMark", "?/?:@%41", "path='' query='/?:@%41'"},
    {"QueryEndsAtTheHash", "?a#b#", "Illegal character in query @4"},
    {"IllegalCharacterInQuery", "a?b c", "Illegal character in query @3"},
    {"MalformedEscapeInQuery", "?%4g", "Malformed escape pair @1"},
    {"EscapeCutByTheFragment", "?%4#a", "Malformed escape pair @1"},
    {"Fragment", "a#b", "path='a' fragment='b'"},
    {"EmptyFragment", "a#", "path='a' fragment=''"},
    {"EmptyQueryAndFragment", "?#", "path='' query='' fragment=''"},
    {"FragmentMayHoldQuestionMark", "#a?/", "path='' fragment='a?/'"},
    {"FirstCharacterOfFragmentIsNotChecked", "a# b", "path='a' fragment=' b'"},
    {"FragmentOfOneCharacterIsNotChecked", "a#^", "path='a' fragment='^'"},
    {"FragmentMayBeginWithHash", "##", "path='' fragment='#'"},
    {"FragmentMayBeginWithAByteAbove127", "#\xFF", "path='' fragment='\xFF'"},
    {"FragmentMayBeginWithPercent", "#%", "path='' fragment='%'"},
    {"PercentAtTheBeginningOfAFragmentIsNoEscape", "#%zz", "path='' fragment='%zz'"},
    {"SecondHashInFragment", "#a#", "Illegal character in query @2"},
    {"FragmentFaultNamesTheQuery", "a#b c", "Illegal character in query @3"},
    {"SecondCharacterOfFragmentIsChecked", "#a^", "Illegal character in query @2"},
    {"MalformedEscapeInFragment", "#a%4", "Malformed escape pair @2"},
};
INSTANTIATE_TEST_SUITE_P(QueryAndFragment, UriParseTest, ::testing::ValuesIn(kQueryCases), kNameOfCase);

const ParseCase kAuthorityCases[] = {
    {"AllOfIt", "x://u@h:80/p?q#f",
     "scheme='x' authority='u@h:80' path='/p' query='q' fragment='f' userInfo='u' host='h'"},
    {"Empty", "x:///p", "scheme='x' authority='' path='/p'"},
    {"EmptyAlone", "//", "authority='' path=''"},
    {"EmptyUserInfo", "x://@h", "scheme='x' authority='@h' path='' userInfo='' host='h'"},
    {"EmptyHost", "x://u@:80/", "scheme='x' authority='u@:80' path='/' userInfo='u'"},
    {"EmptyPort", "x://h:", "scheme='x' authority='h:' path='' host='h'"},
    {"EmptyPortBeforePath", "x://h:/p", "scheme='x' authority='h:' path='/p' host='h'"},
    {"ColonAlone", "x://:", "scheme='x' authority=':' path=''"},
    {"EverythingEmpty", "x://@:", "scheme='x' authority='@:' path='' userInfo=''"},
    {"UserInfoOfEveryKindOfCharacter", "//a1-._~!$&'()*+,;=:%41@h",
     "authority='a1-._~!$&'()*+,;=:%41@h' path='' userInfo='a1-._~!$&'()*+,;=:%41' host='h'"},
    {"HostOfEveryKindOfCharacter", "//a1-._~!$&'()*+,;=%41",
     "authority='a1-._~!$&'()*+,;=%41' path='' host='a1-._~!$&'()*+,;=%41'"},
    {"UserInfoEndsAtTheFirstAt", "//u@h@i", "Illegal character in reg-name @5"},
    {"AtBehindSlashMakesNoUserInfo", "//h/@", "authority='h' path='/@' host='h'"},
    {"AtBehindQuestionMarkMakesNoUserInfo", "//h?@", "authority='h' path='' query='@' host='h'"},
    {"AtBehindHashMakesNoUserInfo", "//h#@", "authority='h' path='' fragment='@' host='h'"},
    {"AtBehindBracketMakesNoUserInfo", "//h[@", "Illegal character in reg-name @3"},
    {"PasswordIsUserInfo", "//u:p@h:8", "authority='u:p@h:8' path='' userInfo='u:p' host='h'"},
    {"CaseOfTheHostIsKept", "//HoSt", "authority='HoSt' path='' host='HoSt'"},
    {"Ipv4Address", "//127.0.0.1:80", "authority='127.0.0.1:80' path='' host='127.0.0.1'"},
    {"OctetAbove255IsAName", "x://300.1.1.1/", "scheme='x' authority='300.1.1.1' path='/' host='300.1.1.1'"},
    {"ThreeOctetsAreAName", "//1.2.3", "authority='1.2.3' path='' host='1.2.3'"},
    {"FiveOctetsAreAName", "//1.2.3.4.5", "authority='1.2.3.4.5' path='' host='1.2.3.4.5'"},
    {"LettersBehindAnAddressAreAName", "//1.2.3.4x", "authority='1.2.3.4x' path='' host='1.2.3.4x'"},
    {"IllegalCharacterBehindAnAddress", "//1.2.3.4^", "Illegal character in reg-name @9"},
    {"PortOfManyDigits", "//h:99999999999999999999/", "authority='h:99999999999999999999' path='/' host='h'"},
    {"EscapeInPort", "//h:8%41", "authority='h:8%41' path='' host='h'"},
    {"IllegalCharacterInUserInfo", "//u^@h", "Illegal character in userinfo @3"},
    {"MalformedEscapeInUserInfo", "//%4@h", "Malformed escape pair @2"},
    {"IllegalCharacterInHost", "//a b/", "Illegal character in reg-name @3"},
    {"MalformedEscapeInHost", "//%4/", "Malformed escape pair @2"},
    {"IllegalCharacterInPort", "x://h:8a", "Illegal character in port @7"},
    {"SecondColonInPort", "x://h:8:", "Illegal character in port @7"},
    {"MalformedEscapeInPort", "//h:%4", "Malformed escape pair @4"},
    {"TheFirstFaultWins", "//u^@h^:^/^?^#a^", "Illegal character in userinfo @3"},
};
INSTANTIATE_TEST_SUITE_P(Authority, UriParseTest, ::testing::ValuesIn(kAuthorityCases), kNameOfCase);

const ParseCase kLiteralCases[] = {
    {"Loopback", "x://[::1]/", "scheme='x' authority='[::1]' path='/' host='[::1]'"},
    {"AllColons", "//[::]", "authority='[::]' path='' host='[::]'"},
    {"WithUserInfoAndPort", "//u@[::1]:80/", "authority='u@[::1]:80' path='/' userInfo='u' host='[::1]'"},
    {"EightGroups", "//[1:22:333:4444:aAfF:6:7:8]",
     "authority='[1:22:333:4444:aAfF:6:7:8]' path='' host='[1:22:333:4444:aAfF:6:7:8]'"},
    {"GroupsAreNotCounted", "//[1:2:3:4:5:6:7:8:9:10]",
     "authority='[1:2:3:4:5:6:7:8:9:10]' path='' host='[1:2:3:4:5:6:7:8:9:10]'"},
    {"OneGroup", "//[1]", "authority='[1]' path='' host='[1]'"},
    {"GroupsBeforeDoubleColon", "//[1:2::]", "authority='[1:2::]' path='' host='[1:2::]'"},
    {"GroupsAroundDoubleColon", "//[1::2]", "authority='[1::2]' path='' host='[1::2]'"},
    {"Ipv4BehindGroups", "//[1:2:255.0.00.1]",
     "authority='[1:2:255.0.00.1]' path='' host='[1:2:255.0.00.1]'"},
    {"Ipv4BehindDoubleColon", "//[::ffff:1.2.3.4]",
     "authority='[::ffff:1.2.3.4]' path='' host='[::ffff:1.2.3.4]'"},
    {"LeadingZerosOfAnOctet", "//[1:00000255.1.1.1]",
     "authority='[1:00000255.1.1.1]' path='' host='[1:00000255.1.1.1]'"},
    {"PrefixLength", "//[1:2/64]", "authority='[1:2/64]' path='' host='[1:2/64]'"},
    {"LargestPrefixLength", "//[1/128]", "authority='[1/128]' path='' host='[1/128]'"},
    {"LeadingZerosOfThePrefixLength", "//[1/000128]", "authority='[1/000128]' path='' host='[1/000128]'"},
    {"PrefixLengthBehindIpv4", "//[1:1.2.3.4/8]", "authority='[1:1.2.3.4/8]' path='' host='[1:1.2.3.4/8]'"},
    {"PrefixLengthAlone", "//[/8]", "authority='[/8]' path='' host='[/8]'"},
    {"TextBehindTheBracketIsPath", "//[1]p:q", "authority='[1]' path='p:q' host='[1]'"},
    {"SecondBracketBehindTheFirst", "//[1]]", "Illegal character in path @5"},

    // What the steps do not look at is taken as it is.
    {"LiteralIsNotCheckedToItsEnd", "//[1 ^]", "authority='[1 ^]' path='' host='[1 ^]'"},
    {"NoGroupIsLookedAtWithoutOne", "//[g]", "authority='[g]' path='' host='[g]'"},
    {"VersionedLiteralIsTaken", "//[v1.x]", "authority='[v1.x]' path='' host='[v1.x]'"},
    {"Ipv4AtTheBeginningIsNotLookedAt", "//[1.2]", "authority='[1.2]' path='' host='[1.2]'"},
    {"OneColonAtTheBeginningIsNotLookedAt", "//[:1]", "authority='[:1]' path='' host='[:1]'"},
    {"OneColonAloneIsNotLookedAt", "//[:]", "authority='[:]' path='' host='[:]'"},
    {"SecondDoubleColonIsNotLookedAt", "//[1::2::3]", "authority='[1::2::3]' path='' host='[1::2::3]'"},
    {"ThirdColonIsNotLookedAt", "//[:::]", "authority='[:::]' path='' host='[:::]'"},
    {"PrefixLengthBehindDoubleColonIsNotRead", "//[::1/999]",
     "authority='[::1/999]' path='' host='[::1/999]'"},
    {"NoPrefixLengthBehindDoubleColonIsMissed", "//[::/]", "authority='[::/]' path='' host='[::/]'"},
    {"Ipv4BehindDoubleColonIsNotRead", "//[::1:300.x]", "authority='[::1:300.x]' path='' host='[::1:300.x]'"},
    {"ColonBehindDoubleColonGroupsIsNotRead", "//[::1:x]", "authority='[::1:x]' path='' host='[::1:x]'"},
    {"FifthOctetIsNotLookedAt", "//[1:1.2.3.4.5]", "authority='[1:1.2.3.4.5]' path='' host='[1:1.2.3.4.5]'"},
    {"TextBehindThePrefixLengthIsNotLookedAt", "//[1/8x]", "authority='[1/8x]' path='' host='[1/8x]'"},
    {"ZoneIsNotLookedAt", "//[fe80::a%en1]", "authority='[fe80::a%en1]' path='' host='[fe80::a%en1]'"},
    {"BytesAbove127AreNotLookedAt", "//[\xFF]", "authority='[\xFF]' path='' host='[\xFF]'"},
    {"NumberOfManyDigitsBeforeADotIsNoGroup", "//[12345.1]",
     "authority='[12345.1]' path='' host='[12345.1]'"},

    {"NoClosingBracket", "x://[::1/", "Expecting closing bracket for IP Literal address @9"},
    {"NoClosingBracketBeforeQuery", "x://[::1?]", "Expecting closing bracket for IP Literal address @8"},
    {"NoClosingBracketBeforeFragment", "x://[#]", "Expecting closing bracket for IP Literal address @5"},
    {"OpeningBracketAtTheEnd", "//[", "Expecting closing bracket for IP Literal address @3"},
    {"EmptyLiteral", "x://[]/", "Expecting non-empty IPv6 address @5"},
    {"FiveDigits", "//[12345]", "IPv6 hexadecimal digit sequence too long @3"},
    {"FiveDigitsLater", "//[1:2:abcde:3]", "IPv6 hexadecimal digit sequence too long @7"},
    {"FiveDigitsBehindDoubleColon", "//[::12345]", "IPv6 hexadecimal digit sequence too long @5"},
    {"ColonAtTheEnd", "//[1:]", "Expecting digits for an IPv6 address @5"},
    {"ColonAtTheEndBehindDoubleColon", "//[::1:]", "Expecting digits for an IPv6 address @7"},
    {"NoAddressBehindColon", "//[1:g]", "Expecting IPv4 address @5"},
    {"NoAddressBehindColonButSlash", "//[1:/8]", "Expecting IPv4 address @5"},
    {"DotBehindColon", "//[1:.1.1.1]", "Expecting IPv4 address @5"},
    {"LettersBeforeADot", "//[1:a.1.1.1]", "Expecting IPv4 address @5"},
    {"LetterInAnOctet", "//[1:1a.1.1.1]", "Malformed IPv4 address @6"},
    {"OctetTooLarge", "//[1:1.256.1.1]", "Malformed IPv4 address @7"},
    {"FirstOctetTooLarge", "//[1:99999999999.1.1.1]", "Malformed IPv4 address @5"},
    {"LastOctetTooLarge", "//[1:1.2.3.999]", "Malformed IPv4 address @11"},
    {"ThreeOctetsInLiteral", "//[1:1.2.3]", "Malformed IPv4 address @10"},
    {"OctetMissing", "//[1:1.2.]", "Malformed IPv4 address @9"},
    {"OctetMissingBetweenDots", "//[1:1..2.3]", "Malformed IPv4 address @7"},
    {"OtherCharacterForADot", "//[1:1.2/8]", "Malformed IPv4 address @8"},
    {"PrefixLengthMissing", "//[1/]", "Expecting IPv6 prefix length @5"},
    {"PrefixLengthOfLetters", "//[1/x]", "Expecting IPv6 prefix length @5"},
    {"PrefixLengthMissingBehindIpv4", "//[1:1.2.3.4/]", "Expecting IPv6 prefix length @13"},
    {"PrefixLengthTooLarge", "//[1/129]", "IPv6 prefix length is greater than 128 @5"},
    {"PrefixLengthOfManyDigits", "//[1/4294967296]", "IPv6 prefix length is greater than 128 @5"},
    {"NonDigitInPortBehindLiteral", "//[1]:x", "Illegal character in port @6"},
};
INSTANTIATE_TEST_SUITE_P(Literal, UriParseTest, ::testing::ValuesIn(kLiteralCases), kNameOfCase);

const char kAlpha[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
const char kDigits[] = "0123456789";
const char kUnreservedMarks[] = "-._~";
const char kSubDelims[] = "!$&'()*+,;=";

std::string all(std::initializer_list<const char*> parts) {
    std::string characters;
    for (const char* part : parts)
        characters += part;
    return characters;
}

/// Takes `prefix`, one byte and `suffix` for each byte: accepted are the listed ones, the fault of all others is there.
void expectClass(const char* prefix, const char* suffix, const std::string& members, char skipped = 0) {
    for (int c = 1; c < 256; ++c) {
        if (c == skipped)
            continue;
        const std::string text = std::string(prefix) + static_cast<char>(c) + suffix;
        bool accepted = true;
        try {
            parsed(text);
        } catch (const URISyntaxException& fault) {
            accepted = false;
            EXPECT_EQ(std::string(prefix).size(), fault.getIndex()) << text;
        }
        EXPECT_EQ(members.find(static_cast<char>(c)) != std::string::npos, accepted) << "character " << c;
    }
}

// The delimiters that end a component are listed with it where they make another valid text.
TEST_F(UriParserTest, ClassOfTheFirstCharacterOfTheScheme) {
    expectClass("", "a:x", all({kAlpha, "/?#"}));
}

TEST_F(UriParserTest, ClassOfTheScheme) {
    expectClass("a", "a:x", all({kAlpha, kDigits, "+-.", ":/?#"}));
}

TEST_F(UriParserTest, ClassOfUserInfo) {
    expectClass("//a", "a@h", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":", "/?#"}), '@');
    EXPECT_EQ("Illegal character in reg-name @5", outcome("//a@a@h")); // the first one ends it
}

TEST_F(UriParserTest, ClassOfRegName) {
    expectClass("//a", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, "@", ":/?#"}));
}

TEST_F(UriParserTest, ClassOfPort) {
    expectClass("//h:1", "", all({kDigits, "@", "/?#"}));
}

TEST_F(UriParserTest, ClassOfPathBehindAuthority) {
    expectClass("//h/a", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/", "?#"}));
}

TEST_F(UriParserTest, ClassOfAbsolutePath) {
    expectClass("/a", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/", "?#"}));
}

TEST_F(UriParserTest, ClassOfRootlessPath) {
    expectClass("x:", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/", "?#"}));
}

TEST_F(UriParserTest, ClassOfFirstSegment) {
    expectClass("a", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, "@", ":/?#"}));
}

TEST_F(UriParserTest, ClassOfLaterSegments) {
    expectClass("a/", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/?#"}));
}

TEST_F(UriParserTest, ClassOfQuery) {
    expectClass("?", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/?", "#"}));
}

TEST_F(UriParserTest, ClassOfFragmentBehindItsFirstCharacter) {
    expectClass("#^", "", all({kAlpha, kDigits, kUnreservedMarks, kSubDelims, ":@", "/?"}));
}

TEST_F(UriParserTest, FragmentMayBeginWithAnyCharacter) {
    std::string every;
    for (int c = 1; c < 256; ++c)
        every += static_cast<char>(c);
    expectClass("#", "", every);
    expectClass("#", "a", every);
}

TEST_F(UriParserTest, EscapeNeedsTwoHexadecimalDigits) {
    const std::string hexDigits = all({kDigits, "abcdefABCDEF"});
    for (int c = 1; c < 256; ++c) {
        const char character = static_cast<char>(c);
        const bool isHexDigit = hexDigits.find(character) != std::string::npos;
        const std::string first = std::string("/%") + character + "0";
        const std::string second = std::string("/%0") + character;
        EXPECT_EQ(isHexDigit ? "path='" + first + "'" : "Malformed escape pair @1", outcome(first));
        EXPECT_EQ(isHexDigit ? "path='" + second + "'" : "Malformed escape pair @1", outcome(second));
    }
}

TEST_F(UriParserTest, PortIsNotDelivered) {
    const UriPtr uri = parsed("x://h:80/");
    EXPECT_EQ(-1, uri->getPort());
    EXPECT_EQ("h:80", textOf(uri->getAuthority()));
}

TEST_F(UriParserTest, NullTextIsRefused) {
    EXPECT_THROW(URI::construct(nullptr), Xml::NullPointerException);
}

TEST_F(UriParserTest, ResultIsIndependentOfTheText) {
    std::string text = "x://u@h/p?q#f";
    const UriPtr uri = parsed(text);
    text.assign(text.size(), '!');
    EXPECT_EQ("scheme='x' authority='u@h' path='/p' query='q' fragment='f' userInfo='u' host='h'",
              show(*uri));
}

TEST_F(UriParserTest, LongTextIsReadInOneGo) {
    const std::string path(1 << 22, 'a');
    EXPECT_EQ("x://h/" + path, recomposed(*parsed("x://h/" + path)));
    EXPECT_EQ("Illegal character in path @" + std::to_string(path.size() + 6),
              outcome("x://h/" + path + "^"));
}

TEST_F(UriParserTest, EveryFailedAllocationIsTheIntOne) {
    const auto scenario = [] {
        try {
            parsed("x://u@h:80/p?q#f");
        } catch (int code) {
            EXPECT_EQ(1, code);
            throw;
        }
    };
    everyRequestFails<int>(hostMemory(), scenario, [] {});
    everyRequestFails<int>(
        newMemory(), [] { delete URI::construct(reinterpret_cast<const unsigned char*>("a")); }, [] {});
}

TEST_F(UriParserTest, FaultsAllocateNothing) {
    const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
    const unsigned char text[] = "x://u@h:80/p?q#f^";
    EXPECT_THROW(URI::construct(text), URISyntaxException);
    EXPECT_EQ(host, hostMemory().requests());
    EXPECT_EQ(objects, newMemory().requests());
}

TEST_F(UriParserTest, AllocatesOneBlockForEachComponentAndTheObject) {
    const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
    const UriPtr uri(URI::construct(reinterpret_cast<const unsigned char*>("x://u@h:80/p?q#f")));
    EXPECT_EQ(host + 7, hostMemory().requests());
    EXPECT_EQ(objects + 1, newMemory().requests());
}

} // namespace
} // namespace Quillon::Testing
