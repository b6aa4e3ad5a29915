#include "DeclarationTracker.h"

#include "ExpatCallbacks.h"
#include "xml/Utf16LiteralInternal.h"

namespace Quillon::SaxEngine {

namespace {

constexpr Xml::Utf16Literal kDoctype(u"<!DOCTYPE");
constexpr Xml::Utf16Literal kElement(u"<!ELEMENT");
constexpr Xml::Utf16Literal kAttlist(u"<!ATTLIST");
constexpr Xml::Utf16Literal kEntity(u"<!ENTITY");
constexpr Xml::Utf16Literal kNotation(u"<!NOTATION");

bool isLiteral(UnitSpan token) {
    return token.data[0] == u'"' || token.data[0] == u'\'';
}

/// Neither white space nor punctuation: a name, a keyword or a reference's name.
bool isWord(UnitSpan token) {
    const XML_Char first = token.data[0];
    return first > u' ' && first != u'%' && first != u'>' && first != u'[' && !isLiteral(token);
}

} // namespace

void DeclarationTracker::disarm() {
    reportElementDeclarations(parser_, false);
    reportAttributeDeclarations(parser_, false);
    reportEntityDeclarations(parser_, false);
    reportNotationDeclarations(parser_, false);
}

void DeclarationTracker::begin(UnitSpan token, Location place) {
    disarm();
    start_ = place;
    state_ = State::Other;
    if (token == UnitSpan(kEntity.units)) {
        state_ = State::EntityBegun;
    } else if (token == UnitSpan(kAttlist.units)) {
        state_ = State::ListBegun;
    } else if (token == UnitSpan(kElement.units)) {
        reportElementDeclarations(parser_, true);
    } else if (token == UnitSpan(kNotation.units)) {
        reportNotationDeclarations(parser_, true);
    } else {
        state_ = State::None;
        if (token == UnitSpan(kDoctype.units))
            reportDoctype(parser_);
    }
}

void DeclarationTracker::follow(UnitSpan token) {
    if (token.data[0] == u'>') {
        disarm();
        state_ = State::None;
    } else if (state_ == State::EntityBegun && isWord(token)) {
        reportEntityDeclarations(parser_, true);
        state_ = State::EntityNamed;
    } else if (state_ == State::EntityNamed && isLiteral(token)) {
        reportEntityDeclarations(parser_, false); // a second declaration of the entity: it does not count
        state_ = State::Other;
    } else if (state_ == State::ListBegun && isWord(token)) {
        state_ = State::ListBody;
    } else if (state_ == State::ListBody && isWord(token)) {
        reportAttributeDeclarations(parser_, true);
    }
}

void DeclarationTracker::reported() {
    disarm();
    if (state_ != State::ListBody)
        state_ = State::Other;
}

void DeclarationTracker::reportedAtEnd() {
    disarm();
    state_ = State::None;
}

} // namespace Quillon::SaxEngine
