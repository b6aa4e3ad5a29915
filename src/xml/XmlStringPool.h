#ifndef ZUTARNEX_XML_XMLSTRINGPOOL_H
#define ZUTARNEX_XML_XMLSTRINGPOOL_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::Xml {

/// Distinct strings under small ids: 1, 2, 3 and so on in the order of insertion; 0 means "not in the pool".
///
/// Layout:    one pointer.
/// Ownership: the pool shares the blocks of the strings it is given; a borrowed string must not outlive its buffer
///            inside the pool either.
/// Threads:   no lock; a pool shared by several threads is guarded by its users.
/// Throws:    std::bad_alloc, and System::OutOfMemoryException from string copies, the pool being unchanged.
/// Cost:      lookups by id are constant; by string, too, as a rule (26 ns among 10,000 names, bench_pool), but logarithmic
///            in a pool that was given a borrowed string and for names that were chosen to have the same hash; no lookup
///            allocates. An insertion is logarithmic.
class ZUTARNEX_API XmlStringPool {
public:
    XmlStringPool();
    ~XmlStringPool();
    XmlStringPool(const XmlStringPool&) = delete;
    XmlStringPool& operator=(const XmlStringPool&) = delete;

    static boost::shared_ptr<XmlStringPool> createXmlStringPool();

    /// Gives `s` a new id and returns it.
    ///
    /// Deliberate: a string that is there already gets another id: find(s) then returns the newer one, while the older
    /// still works with find(id). The older entry is not freed with the pool (tests/xml/XmlStringPoolTest.cpp,
    /// SecondInsertionOfAStringGetsANewId, SupersededEntriesOutliveThePool). Ask find(s) first, as makePooledString does.
    unsigned int insert(const XmlString& s);

    /// The string with that id, sharing the pool's block. Throws: System::OutOfRangeException for an id not given out.
    XmlString find(unsigned int id) const;
    /// The id of an equal string, or 0.
    unsigned int find(const XmlString& s) const;

    bool contains(unsigned int id) const noexcept;
    bool contains(const XmlString& s) const noexcept;

    /// How many insertions were made.
    unsigned int size() const noexcept;

private:
    struct [[gnu::visibility("hidden")]] Impl;

    Impl* impl_;
};

/// The pooled copy of a text, which is inserted first if need be: equal texts share one immutable block. Null text
/// gives an immutable null string. REQUIRES: `pool` is not empty.
ZUTARNEX_API XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool, const unsigned short* s);
ZUTARNEX_API XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool,
                                        const char* native); ///< text in the local code page
ZUTARNEX_API XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool, const unsigned char* utf8);

} // namespace Quillon::Xml

#endif
