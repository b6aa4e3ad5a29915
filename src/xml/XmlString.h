#ifndef ZUTARNEX_XML_XMLSTRING_H
#define ZUTARNEX_XML_XMLSTRING_H

#include "zutarnex/export.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace Quillon::Xml {

/// The bits of a string's flags.
enum XmlStringFlags : unsigned char {
    Immutable = 1, ///< copy, operator= and operator+= throw ImmutableObjectWriteError before any change
    Borrowed = 2,  ///< the units belong to somebody else: nothing is counted, nothing freed
    Valid = 4,     ///< the last constructing or modifying operation completed
    Null = 8       ///< there is no value
};

/// UTF-16 text that copies share instead of duplicating.
///
///     owning string                     shared block
///     +----------+                      +---------+------+------+-----+---+---------+
///     | data     |--------------------. | count   | u[0] | u[1] | ... | 0 | 0 fill  |
///     | capacity |                    | | 32 bits |      |      |     |   |         |
///     | size     |                    | +---------+------+------+-----+---+---------+
///     | flags    |                    `-----------^
///     +----------+
///
/// Layout:    data, capacity, size, flags, in this order; 16 bytes on i386, 24 on x86-64 (tests/abi/).
/// Units:     sizes and indexes count 16-bit code units, never bytes or characters.
/// Ownership: an owning string holds one count of a shared block from the host's allocator; a borrowed one must not
///            outlive its buffer.
/// Threads:   strings that share a block may live on different threads; one object is used by one at a time.
/// Throws:    ImmutableObjectWriteError before any change; System::OutOfMemoryException, the old value kept (sizes
///            that a 32-bit count of bytes cannot hold are refused so, too).
/// Cost:      copying is one increment, an atomic one when the process has several threads; appending allocates once
///            and copies both parts; a view on a literal (flags Immutable | Borrowed) allocates nothing.
class ZUTARNEX_API XmlString {
public:
    /// A null string.
    XmlString() noexcept;
    /// The units of `s` before its first zero unit; null gives a null string.
    XmlString(unsigned char flags, const unsigned short* s);
    /// `n` units of `s`: see create().
    XmlString(unsigned char flags, const unsigned short* s, unsigned int n);
    /// Shares what `other` holds, flags included.
    ///
    /// Deliberate: a copy of a string without Valid is null and itself without Valid
    /// (tests/xml/XmlStringTest.cpp, CopyOfInvalidIsNullAndInvalid).
    XmlString(const XmlString& other);
    ~XmlString();

    /// Sets the value: a view on `s` when `flags` has Borrowed, else an owned copy of `n` units. Null `s`: null string.
    ///
    /// Deliberate: a zero unit inside the first `n` ends what is copied, but the size stays `n`, the rest being zero
    /// units; and Immutable is not looked at, neither in `flags` nor in the string (tests/xml/XmlStringTest.cpp,
    /// CreateKeepsLengthOverTerminator, CreateIgnoresImmutable).
    void create(unsigned char flags, const unsigned short* s, unsigned int n);
    /// A string made from `src`'s units before the first zero unit: with Borrowed a view on them, else a copy.
    /// REQUIRES: `src`'s units end with a zero unit, as they do unless it is borrowed.
    static XmlString create(unsigned char flags, XmlString& src);

    /// Takes over `other`'s value and flags, so that a string assigned a literal is immutable from then on; a
    /// borrowed string with enough capacity keeps its buffer and its flags and takes the units instead.
    ///
    /// Deliberate: when `other` lacks Valid, only this string's Valid is cleared (tests/xml/XmlStringTest.cpp,
    /// CopyFromInvalidOnlyClearsValid).
    XmlString& copy(const XmlString& other);
    XmlString& operator=(const XmlString& other);

    /// Appends `other`; a null `other` changes nothing. The result is always owned.
    ///
    /// Deliberate: an empty `other` that is not null leaves Valid clear, and so does appending a string to itself,
    /// both without a change of the value (tests/xml/XmlStringTest.cpp, AppendOfEmptyLeavesValidClear,
    /// AppendToItselfLeavesValidClear).
    XmlString& operator+=(const XmlString& other);

    /// Drops the hold on an owned block and makes the string null and not Valid; borrowed and null strings stay.
    ///
    /// Deliberate: capacity and size keep their values (tests/xml/XmlStringTest.cpp, DissociateKeepsSizes).
    void dissociate();

    const unsigned short* data() const noexcept;   ///< null for a null string
    const unsigned short* getPtr() const noexcept; ///< as stored, whatever the flags say
    unsigned int size() const noexcept;
    unsigned int capacity() const noexcept;
    bool isNull() const noexcept;

    /// Below, equal to or above 0: by code unit, then by length; null sorts first; strings on the same units are
    /// equal whatever their sizes.
    int compare(const XmlString& other) const noexcept;
    /// Of the units before the first zero unit, whatever the size. REQUIRES: the units end with a zero unit.
    unsigned int hash() const noexcept;

    /// Atomic change and reading of the block's count; the changed count is returned. REQUIRES: an owning string.
    unsigned int incRefs() noexcept;
    unsigned int decRefs() noexcept;
    unsigned int getRefs() const noexcept;

    static void* operator new(std::size_t bytes);
    static void* operator new[](std::size_t bytes);
    static void* operator new(std::size_t bytes, void* place) noexcept;
    static void* operator new[](std::size_t bytes, void* place) noexcept;
    static void* operator new(std::size_t bytes, const std::nothrow_t& tag) noexcept;
    static void* operator new[](std::size_t bytes, const std::nothrow_t& tag) noexcept;
    static void operator delete(void* block) noexcept;
    static void operator delete[](void* block) noexcept;
    static void operator delete(void* block, void* place) noexcept;
    static void operator delete[](void* block, void* place) noexcept;
    static void operator delete(void* block, const std::nothrow_t& tag) noexcept;
    static void operator delete[](void* block, const std::nothrow_t& tag) noexcept;

private:
    friend struct XmlStringReading;
    friend struct XmlStringRefill;

    void copyIntoBuffer(const XmlString& other) noexcept;
    void share(const XmlString& other) noexcept;
    void append(const unsigned short* s, std::uint32_t n);

    unsigned short* data_;
    std::uint32_t capacity_;
    std::uint32_t size_;
    std::uint8_t flags_;
};

/// The makeString family. Flags: 0 for an owned copy, Immutable | Borrowed for a view on a constant array.
/// Null text gives a null string. Throws: System::OutOfMemoryException.
ZUTARNEX_API XmlString makeString(const unsigned short* s);
ZUTARNEX_API XmlString makeString(unsigned char flags, const unsigned short* s);
ZUTARNEX_API XmlString makeString(const unsigned char* utf8); ///< UTF-8; ill-formed parts become U+FFFD
ZUTARNEX_API XmlString makeString(const char* native);        ///< text in the local code page
ZUTARNEX_API XmlString makeString(unsigned char flags, XmlString& s); ///< as XmlString::create()
ZUTARNEX_API XmlString makeString(XmlString& s);                      ///< an owned copy, not a share

} // namespace Quillon::Xml

#endif
