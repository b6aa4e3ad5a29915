#include "xml/sax/writer/StrictNamesInternal.h"

#include "xml/NamesInternal.h"

#include <algorithm>

namespace Quillon::Xml::Sax {

namespace {

/// Whether the first colon of a name parts two names.
bool doesColonQualify(Units name, std::size_t colon) noexcept {
    const Units localName = name.subspan(colon + 1);
    return colon != 0 && endOfName(localName.data(), localName.size()) == localName.size()
           && !localName.empty() && std::find(localName.begin(), localName.end(), ':') == localName.end();
}

} // namespace

StrictNames::Known& StrictNames::keep(Known& place, Units name) noexcept {
    const bool isTooLong = name.size() > place.units_.size();
    Known& known = isTooLong ? tooLong_ : place;
    // Of an attribute that gives way to another one nobody will know that it stood in this tag.
    hasRepeated_ |= known.tag_ == tag_;
    known.tag_ = isTooLong ? tag_ : 0;
    known.colon_ = static_cast<std::size_t>(std::find(name.begin(), name.end(), ':') - name.begin());
    known.qualifies_ = known.colon_ == name.size() || doesColonQualify(name, known.colon_);
    if (isTooLong)
        return known;
    known.length_ = name.size();
    std::copy(name.begin(), name.end(), known.units_.begin());
    return known;
}

} // namespace Quillon::Xml::Sax
