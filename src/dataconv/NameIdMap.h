#ifndef ZUTARNEX_DATACONV_NAMEIDMAP_H
#define ZUTARNEX_DATACONV_NAMEIDMAP_H

#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>
#include <type_traits>

namespace Quillon::DataConv {

/// Names under small ids, 1, 2, 3 and so on in the order of insertion, and back; 0 means "not there". Ids are never
/// reused or removed.
///
/// Layout:    one pointer.
/// Ownership: the map keeps the pointers that it is given, not copies: a name must stay alive and unchanged as long
///            as the map does (that of the process: to its exit). REQUIRES: no name is null.
/// Threads:   only the creation of the process's map is locked; whoever inserts from several threads takes care.
/// Throws:    std::bad_alloc, the map being unchanged.
/// Cost:      lookups by id are constant; by name, too, unless names were chosen to have the same hash; none allocates. An
///            insertion is logarithmic.
class ZUTARNEX_API NameIdMap {
public:
    /// The map of the process, made by the first call and let go at the process's exit.
    static boost::shared_ptr<NameIdMap> getGlobalNameIdMap();
    /// A map of its own.
    static boost::shared_ptr<NameIdMap> createStringPool();

    NameIdMap();
    ~NameIdMap();
    NameIdMap(const NameIdMap&) = delete;
    NameIdMap& operator=(const NameIdMap&) = delete;

    /// How many ids were issued.
    unsigned int size() const noexcept;

    bool contains(unsigned int id) const noexcept;
    bool contains(const char* name) const noexcept;

    /// The name of an id. Throws: System::OutOfRangeException for an id that was not issued.
    const char* find(unsigned int id) const;
    /// The id of a name, or 0.
    unsigned int find(const char* name) const noexcept;

    /// For the literal 0, which could be an id as well as a null name.
    template <class Id, std::enable_if_t<std::is_same<Id, int>::value, int> = 0>
    bool contains(Id id) const noexcept {
        return contains(static_cast<unsigned int>(id));
    }
    template <class Id, std::enable_if_t<std::is_same<Id, int>::value, int> = 0>
    const char* find(Id id) const {
        return find(static_cast<unsigned int>(id));
    }

    /// Gives `name` a new id and returns it.
    ///
    /// Deliberate: a name that is there already gets another id: find(name) then returns the newer one, and the older
    /// still leads to the name (tests/dataconv/NameIdMapTest.cpp, SecondInsertionOfANameGetsANewId).
    unsigned int insert(const char* name);
    /// The id that `name` has, or a new one.
    unsigned int find_or_insert(const char* name);

private:
    struct [[gnu::visibility("hidden")]] Impl;

    Impl* impl_;
};

} // namespace Quillon::DataConv

#endif
