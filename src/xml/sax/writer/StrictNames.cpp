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

StrictNames::Known& StrictNames::nextOf(Pair& pair) noexcept {
    const bool isSecond = std::exchange(pair.isSecondNext, !pair.isSecondNext);
    return isSecond ? pair.second : pair.first;
}

StrictNames::Known& StrictNames::keep(Units name) noexcept {
    const bool isTooLong = name.size() > tooLong_.units_.size();
    Known& known = isTooLong ? tooLong_ : nextOf(pairOf(name));
    hasForgotten_ = hasForgotten_ || isTooLong || known.tag_ == tag_;
    known.tag_ = 0;
    const auto colon = static_cast<std::size_t>(std::find(name.begin(), name.end(), ':') - name.begin());
    known.colon_ = static_cast<std::uint32_t>(colon);
    known.qualifies_ = colon == name.size() || doesColonQualify(name, colon);
    if (isTooLong)
        return known;
    known.length_ = static_cast<unsigned short>(name.size());
    std::copy(name.begin(), name.end(), known.units_.begin());
    return known;
}

} // namespace Quillon::Xml::Sax
