#ifndef ZUTARNEX_NET_URI_H
#define ZUTARNEX_NET_URI_H

#include "zutarnex/export.h"

namespace Quillon::Net {

/// One URI reference as separately stored components, after the generic syntax of RFC 3986.
///
///      foo://user@example.com:8042/over/there?name=ferret#nose
///      \_/   \__/ \_________/ \__/\_________/ \_________/ \__/
///       |     |        |       |       |           |       |
///    scheme userInfo  host    port    path       query  fragment
///            \___________________/
///                 authority
///
///     std::unique_ptr<URI> base(URI::construct(text("http://a/b/c")));
///     std::unique_ptr<URI> target(reference->resolve(*base, true));
///
/// A component that is absent is null, which is not the same as an empty one: "mailto:x" has no authority,
/// "x://h?" has an empty query. Nothing is decoded: escapes and case stay as written. The authority is stored whole
/// and, independently, taken apart; the setters do not keep the two consistent.
///
/// Layout:    scheme, authority, path, query, fragment, userInfo, host, port, in this order, no virtual table;
///            32 bytes on i386, 64 on x86-64 (tests/abi/).
/// Units:     bytes; the text is ASCII.
/// Ownership: every component is a NUL-terminated block from the host's allocator that the object owns. A URI that
///            is returned belongs to the caller (delete).
/// Threads:   one object is used by one thread at a time; different objects share nothing.
/// Throws:    System::OutOfMemoryException when the host's allocator fails or a text does not fit into 32 bits,
///            std::bad_alloc when there is no room for a URI itself, with nothing leaked and no operand changed;
///            construct() has an exception of its own for both.
/// Cost:      every operation is linear in its operands.
class ZUTARNEX_API URI {
public:
    /// All components absent, port -1.
    URI() noexcept;
    /// Copies of the given components, null for absent; neither is anything checked, nor is the authority taken
    /// apart: userInfo and host are absent, the port is -1.
    URI(const unsigned char* scheme, const unsigned char* authority, const unsigned char* path,
        const unsigned char* query, const unsigned char* fragment);
    /// Copies of `other`'s components.
    ///
    /// Deliberate: the port is not copied, it is -1 (tests/net/UriTest.cpp, CopyHasNoPort).
    URI(const URI& other);
    ~URI();

    /// Replaces every component by a copy of `other`'s; assigning to itself changes nothing.
    ///
    /// Deliberate: the port keeps its value (tests/net/UriTest.cpp, AssignmentKeepsPort).
    URI& operator=(const URI& other);
    /// Replaces the components that `other` has by copies.
    ///
    /// Deliberate: those that `other` lacks, and the port, keep their values (tests/net/UriTest.cpp,
    /// CopyKeepsWhatTheOtherLacks).
    void copy(const URI& other);
    /// Frees every component and makes it absent.
    ///
    /// Deliberate: the port keeps its value (tests/net/UriTest.cpp, CleanupKeepsPort).
    void cleanup() noexcept;

    /// Parses `text` into a URI that the caller owns.
    ///
    /// Deliberate, each with its test in tests/net/UriParserTest.cpp:
    /// - the port is checked, but the result's port is -1; it can be read in the authority only (PortIsNotDelivered);
    /// - an escape is taken in every component, scheme and port included (EscapeInScheme, EscapeInPort);
    /// - the first character of a fragment is not checked (FirstCharacterOfFragmentIsNotChecked);
    /// - an illegal character of the fragment is reported as one of the query (FragmentFaultNamesTheQuery);
    /// - an IP literal is not checked beyond its first groups, so that it may hold what is no address: the number of
    ///   groups, whatever follows "::", the part after an address (LiteralIsNotCheckedToItsEnd). "v1.x" is not
    ///   understood, yet taken for the same reason.
    ///
    /// Throws: URISyntaxException, which refers to `text`; Xml::NullPointerException for a null `text`; an int of
    ///         the value 1 for any allocation that fails, and for a text of 4 GiB - 1 or more.
    static URI* construct(const unsigned char* text);

    // The stored components, not copies; null when absent.
    unsigned char* getScheme() const noexcept;
    unsigned char* getAuthority() const noexcept; ///< with userInfo, host and port, as written
    unsigned char* getPath() const noexcept;
    unsigned char* getQuery() const noexcept;    ///< without "?"
    unsigned char* getFragment() const noexcept; ///< without "#"
    unsigned char* getUserInfo() const noexcept; ///< without "@"
    unsigned char* getHost() const noexcept;     ///< an IP literal with its brackets
    int getPort() const noexcept;                ///< -1 when absent

    // Ownership: taken; null or a block from the host's allocator. The former text is freed, unless it is the very
    // same.
    void setScheme(unsigned char* scheme) noexcept;
    void setAuthority(unsigned char* authority) noexcept;
    void setPath(unsigned char* path) noexcept;
    void setQuery(unsigned char* query) noexcept;
    void setFragment(unsigned char* fragment) noexcept;
    void setUserInfo(unsigned char* userInfo) noexcept;
    void setHost(unsigned char* host) noexcept;
    void setPort(int port) noexcept;

    /// The text of this reference; userInfo, host and port take no part, the authority stands for them.
    ///
    /// Ownership: the caller's, to be freed with Runtime::release.
    unsigned char* recompose() const;

    /// This reference, seen from `base`: RFC 3986, section 5.2.2. When `strict` is false, a scheme that is the base's
    /// (case matters, an absent one counts as empty) is treated as if it were not there. A null path counts as an
    /// empty one, here and below.
    ///
    /// Deliberate: userInfo and host of the result are absent, its port is -1, whatever the operands held; parse
    /// recompose()'s text where they are needed (tests/net/UriResolveTest.cpp, ResultHasNoPartsOfTheAuthority).
    URI* resolve(const URI& base, bool strict) const;

    /// A reference that leads from `base` to this URI: relative where their paths have a folder in common, else with
    /// this URI's whole path.
    ///
    /// Deliberate, each with its test in tests/net/UriRelativizeTest.cpp: schemes, authorities, queries and whole
    /// paths count as the same without regard to case, so that the way from "x:/A" to "x:/a" is empty
    /// (PathsAreComparedWithoutCase); between equal paths a query is kept only when both have one and they differ
    /// (QueryIsDroppedWhenTheBaseHasNone); an authority that only the base has is not heeded
    /// (MissingAuthorityIsNotHeeded).
    URI* relativize(const URI& base) const;

    /// A copy with the scheme and the host in lower case and the path without dot-segments; its port is -1.
    ///
    /// Deliberate: the authority, userInfo, query, fragment and all escapes stay as they are
    /// (tests/net/UriNormalizeTest.cpp, AuthorityKeepsItsCase).
    URI* normalize() const;

    /// Whether scheme, fragment, path, query and authority are the same, an absent one being different from an
    /// empty one.
    ///
    /// Deliberate: the case of ASCII letters does not count in any of the five; userInfo, host and port take no
    /// part; escapes are compared as text (tests/net/UriCompareTest.cpp, CaseIsIgnoredInEveryComponent,
    /// PartsOfTheAuthorityTakeNoPart, EscapesAreText).
    bool operator==(const URI& other) const noexcept;

private:
    unsigned char* scheme_ = nullptr;
    unsigned char* authority_ = nullptr;
    unsigned char* path_ = nullptr;
    unsigned char* query_ = nullptr;
    unsigned char* fragment_ = nullptr;
    unsigned char* userInfo_ = nullptr;
    unsigned char* host_ = nullptr;
    int port_ = -1;
};

} // namespace Quillon::Net

#endif
