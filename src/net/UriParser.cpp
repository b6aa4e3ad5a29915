#include "net/UriParserInternal.h"

#include "net/URISyntaxException.h"
#include "net/UriCharactersInternal.h"

#include <limits>

namespace Quillon::Net {

namespace {

/// A kind of component: what it is made of, what may follow it, and what is said of anything else.
struct Component {
    CharacterTable members;
    CharacterSet ends; // shares nothing with the members: the first character that is no member decides
    const char* illegal;
};

constexpr CharacterSet kPathEnds = CharacterSet("?#") | kTerminator;
constexpr CharacterSet kSegmentEnds = CharacterSet("/?#") | kTerminator;
constexpr CharacterSet kHostEnds = CharacterSet(":/?#") | kTerminator;
constexpr CharacterSet kUserInfoStops = CharacterSet("@[/?#") | kTerminator;
constexpr CharacterSet kLiteralStops = CharacterSet("]?#") | kTerminator;

constexpr Component kScheme{CharacterTable(kSchemeCharacters), CharacterSet(":"),
                            "Illegal character in scheme name"};
constexpr Component kUserInfo{CharacterTable(kUserInfoCharacters), CharacterSet("@"),
                              "Illegal character in userinfo"};
constexpr Component kRegName{CharacterTable(kRegNameCharacters), kHostEnds, "Illegal character in reg-name"};
constexpr Component kPort{CharacterTable(kDigits), kSegmentEnds, "Illegal character in port"};
constexpr Component kPathAbempty{CharacterTable(kPathCharacters), kPathEnds, "Illegal character in path"};
constexpr Component kAbsolutePath{CharacterTable(kPathCharacters), kPathEnds,
                                  "Illegal character in absolute path"};
constexpr Component kRootlessPath{CharacterTable(kPathCharacters), kPathEnds,
                                  "Illegal character in rootless path"};
constexpr Component kFirstSegment{CharacterTable(kSegmentNzNcCharacters), kSegmentEnds,
                                  "Illegal character in segment-nz-nc"};
constexpr Component kSegment{CharacterTable(kSegmentCharacters), kSegmentEnds,
                             "Illegal character in segment"};
constexpr Component kQuery{CharacterTable(kQueryCharacters), CharacterSet("#") | kTerminator,
                           "Illegal character in query"};
// Deliberate: a fault in the fragment names the query (tests/net/UriParserTest.cpp, FragmentFaultNamesTheQuery).
constexpr Component kFragment{CharacterTable(kQueryCharacters), kTerminator, "Illegal character in query"};

constexpr char kMalformedEscape[] = "Malformed escape pair";
constexpr char kNoScheme[] = "Expecting scheme name";
constexpr char kNoClosingBracket[] = "Expecting closing bracket for IP Literal address";
constexpr char kEmptyLiteral[] = "Expecting non-empty IPv6 address";
constexpr char kLongGroup[] = "IPv6 hexadecimal digit sequence too long";
constexpr char kNoGroup[] = "Expecting digits for an IPv6 address";
constexpr char kNoIpv4[] = "Expecting IPv4 address";
constexpr char kMalformedIpv4[] = "Malformed IPv4 address";
constexpr char kNoPrefixLength[] = "Expecting IPv6 prefix length";
constexpr char kLargePrefixLength[] = "IPv6 prefix length is greater than 128";

using Position = const unsigned char*;

Position skip(CharacterSet members, Position at) noexcept {
    while (members.contains(*at))
        ++at;
    return at;
}

Position findFirst(CharacterSet stops, Position at) noexcept {
    while (!stops.contains(*at))
        ++at;
    return at;
}

/// Skips the component's members and whole escapes.
Position skipComponent(const Component& component, Position at) noexcept {
    for (;;) {
        while (component.members.contains(*at))
            ++at;
        if (*at != '%' || !kHexDigits.contains(at[1]) || !kHexDigits.contains(at[2]))
            return at;
        at += 3;
    }
}

/// The value of the digits at `at`, clamped to what an int holds.
int decimalAt(Position at) noexcept {
    constexpr int kMaximum = std::numeric_limits<int>::max();
    std::int64_t value = 0;
    for (; kDigits.contains(*at) && value < kMaximum; ++at)
        value = value * 10 + (*at - '0');
    return static_cast<int>(value < kMaximum ? value : kMaximum);
}

/// Reads from the front to the back, and what is in order once. The text's terminator is in no class, so that it ends every part and nothing has
/// to be told where the text ends.
class Parser {
public:
    explicit Parser(Position text) noexcept : text_(text), at_(text) {}

    UriParts parse();

private:
    [[noreturn]] void fail(const char* reason, Position where) const;
    bool isTooLong(Position end) const noexcept;
    TextRange take(const Component& component);

    bool parseScheme();
    void refuseScheme();
    void parseAuthorityAndPath();
    void parseAuthority();
    void parseUserInfo();
    void parseHost();
    void parsePort();
    void parseRelativePath();
    void parseQuery();
    void parseFragment();

    void parseIpLiteral();
    void checkIpv6(Position at, Position close) const;
    Position skipGroups(Position at, Position close) const;
    Position skipIpv4(Position at) const;
    Position skipOctet(Position at) const;
    void checkPrefixLength(Position at) const;

    const Position text_;
    Position at_;
    Position nameEnd_ = nullptr; ///< what begins the text and could be a scheme ends here
    UriParts parts_;
};

UriParts Parser::parse() {
    const bool hasScheme = parseScheme();
    if (at_[0] == '/' && at_[1] == '/')
        parseAuthorityAndPath();
    else if (*at_ == '/')
        parts_.path = take(kAbsolutePath);
    else if (hasScheme)
        parts_.path = take(kRootlessPath);
    else
        parseRelativePath();
    parseQuery();
    parseFragment();
    if (isTooLong(at_))
        throwOutOfMemory();
    return parts_;
}

/// Whether the text, up to its end, is longer than an index can say.
bool Parser::isTooLong(Position end) const noexcept {
    return static_cast<std::size_t>(end - text_) >= std::numeric_limits<std::uint32_t>::max();
}

void Parser::fail(const char* reason, Position where) const {
    if (isTooLong(text_ + lengthOf(text_)))
        throwOutOfMemory();
    throw URISyntaxException(text_, reason, static_cast<unsigned int>(where - text_));
}

/// Checks a component and steps behind it.
TextRange Parser::take(const Component& component) {
    const Position begin = at_;
    at_ = skipComponent(component, begin);
    if (!component.ends.contains(*at_))
        fail(*at_ == '%' ? kMalformedEscape : component.illegal, at_);
    return {begin, at_};
}

/// False when there is none.
bool Parser::parseScheme() {
    nameEnd_ = skipComponent(kScheme, at_);
    if (*nameEnd_ == ':' && kAlpha.contains(*at_)) {
        parts_.scheme = {at_, nameEnd_};
        at_ = nameEnd_ + 1;
        return true;
    }
    if (*findFirst(kHostEnds, nameEnd_) == ':')
        refuseScheme();
    return false;
}

void Parser::refuseScheme() {
    if (*at_ == ':')
        fail(kNoScheme, at_);
    if (!kAlpha.contains(*at_))
        fail(kScheme.illegal, at_);
    take(kScheme);
}

void Parser::parseAuthorityAndPath() {
    at_ += 2;
    const Position begin = at_;
    parseAuthority();
    parts_.authority = {begin, at_};
    parts_.path = take(kPathAbempty);
}

/// What stands before an "@" or, without one, a host may be: a host's characters are those of user information but for
/// the colon. Where that is not all, there is a fault or an IP literal.
void Parser::parseAuthority() {
    const Position begin = at_;
    const Position nameEnd = skipComponent(kRegName, begin);
    const Position end = *nameEnd == ':' ? skipComponent(kUserInfo, nameEnd) : nameEnd;
    if (kSegmentEnds.contains(*end)) {
        if (nameEnd != begin)
            parts_.host = {begin, nameEnd};
        at_ = nameEnd;
    } else {
        if (*end == '@') {
            parts_.userInfo = {begin, end};
            at_ = end + 1;
        } else {
            parseUserInfo();
        }
        parseHost();
    }
    parsePort();
}

void Parser::parseUserInfo() {
    if (*findFirst(kUserInfoStops, at_) != '@')
        return;
    parts_.userInfo = take(kUserInfo);
    ++at_;
}

void Parser::parseHost() {
    if (*at_ == '[') {
        parseIpLiteral();
        return;
    }
    // A dotted IPv4 address is a registered name, too, so that nothing depends on telling them apart.
    const TextRange name = take(kRegName);
    if (!name.isEmpty())
        parts_.host = name;
}

void Parser::parsePort() {
    if (*at_ != ':')
        return;
    ++at_;
    const TextRange digits = take(kPort);
    if (!digits.isEmpty())
        parts_.port = decimalAt(digits.begin);
}

void Parser::parseRelativePath() {
    const Position begin = at_;
    at_ = nameEnd_; // a scheme's characters are a first segment's, too
    take(kFirstSegment);
    while (*at_ == '/') {
        ++at_;
        take(kSegment);
    }
    parts_.path = {begin, at_};
}

void Parser::parseQuery() {
    if (*at_ != '?')
        return;
    ++at_;
    parts_.query = take(kQuery);
}

void Parser::parseFragment() {
    if (*at_ != '#')
        return;
    const Position begin = ++at_;
    // Deliberate: whatever the first character is (tests/net/UriParserTest.cpp, FirstCharacterOfFragmentIsNotChecked).
    if (*at_) {
        ++at_;
        take(kFragment);
    }
    parts_.fragment = {begin, at_};
}

void Parser::parseIpLiteral() {
    const Position open = at_;
    const Position close = findFirst(kLiteralStops, open);
    if (*close != ']')
        fail(kNoClosingBracket, close);
    if (close == open + 1)
        fail(kEmptyLiteral, close);
    checkIpv6(open + 1, close);
    at_ = close + 1;
    parts_.host = {open, at_};
}

/// Deliberate: what stands behind the part that is looked at is not checked (tests/net/UriParserTest.cpp,
/// LiteralIsNotCheckedToItsEnd). The bracket at `close` is in no class, so that it ends every part.
void Parser::checkIpv6(Position begin, Position close) const {
    Position at = skipGroups(begin, close);
    if (at[0] == ':' && at[1] == ':') {
        skipGroups(at + 2, close);
        return;
    }
    if (at != begin && *at == ':')
        at = skipIpv4(at + 1);
    if (*at == '/')
        checkPrefixLength(at + 1);
}

/// Skips groups of up to four hexadecimal digits with single colons between them, but not the first number of an
/// IPv4 address. Returns the end of the last group, before any double colon; `at` when there is none.
Position Parser::skipGroups(Position at, Position close) const {
    for (Position group = at;; group = at + 1) {
        const Position end = skip(kHexDigits, group);
        if (end == group || *end == '.')
            return at;
        if (end - group > 4)
            fail(kLongGroup, group);
        at = end;
        if (*at != ':')
            return at;
        if (at + 1 == close)
            fail(kNoGroup, close);
    }
}

Position Parser::skipIpv4(Position at) const {
    if (!kDigits.contains(*at))
        fail(kNoIpv4, at);
    at = skipOctet(at);
    for (int octets = 1; octets < 4; ++octets) {
        if (*at != '.')
            fail(kMalformedIpv4, at);
        at = skipOctet(at + 1);
    }
    return at;
}

Position Parser::skipOctet(Position at) const {
    const Position end = skip(kDigits, at);
    if (end == at || decimalAt(at) > 255)
        fail(kMalformedIpv4, at);
    return end;
}

void Parser::checkPrefixLength(Position at) const {
    if (!kDigits.contains(*at))
        fail(kNoPrefixLength, at);
    if (decimalAt(at) > 128)
        fail(kLargePrefixLength, at);
}

} // namespace

void throwOutOfMemory() {
    throw 1;
}

UriParts parseUri(const unsigned char* text) {
    return Parser(text).parse();
}

} // namespace Quillon::Net
