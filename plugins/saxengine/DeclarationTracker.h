#ifndef ZUTARNEX_SAXENGINE_DECLARATIONTRACKER_H
#define ZUTARNEX_SAXENGINE_DECLARATIONTRACKER_H

#include "Location.h"
#include "UnitSpan.h"

namespace Quillon::SaxEngine {

/// Knows where the declaration that is being read began.
///
/// Expat reports a declaration near its end. What it does not report, though, it shows token by token to the default
/// handler; so the handlers for declarations are set only once the first tokens have been seen there:
///
///     <!ENTITY    shown: the start is noted      <!ATTLIST   shown: the start is noted
///     name        shown: handler on              element     shown
///     "value"     reported: handler off          name        shown: handler on
///     >           shown                          default     reported: handler off, back to `name`
///
/// and for elements, notations and the DOCTYPE the handler goes on at the first token. Expat cuts a token that is longer
/// than its buffer (1,024 units) in pieces; they leave a handler on too early at worst, so that the next declaration of
/// that kind begins, as far as is known, where this one does. No declaration is ever missed.
class DeclarationTracker {
public:
    explicit DeclarationTracker(XML_Parser parser) : parser_(parser) {}

    /// What Expat shows to the default handler, at this place.
    template <class Place>
    void shown(UnitSpan token, Place place) {
        if (token.size == 0)
            return;
        if (token.data[0] == u'<')
            begin(token, place());
        else
            follow(token);
    }

    /// A declaration was reported; every attribute of a list is one.
    void reported();
    /// A declaration that its last character ended was reported.
    void reportedAtEnd();

    bool isInside() const { return state_ != State::None; }
    Location start() const { return start_; }

private:
    enum class State {
        None,
        EntityBegun, ///< its name comes next
        EntityNamed,
        ListBegun, ///< the element's name comes next
        ListBody,  ///< the name of an attribute comes next, or the end
        Other
    };

    void begin(UnitSpan token, Location place);
    void follow(UnitSpan token);
    void disarm();

    XML_Parser parser_;
    State state_ = State::None;
    Location start_;
};

} // namespace Quillon::SaxEngine

#endif
