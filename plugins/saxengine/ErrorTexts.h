#ifndef ZUTARNEX_SAXENGINE_ERRORTEXTS_H
#define ZUTARNEX_SAXENGINE_ERRORTEXTS_H

#include <string>

namespace Quillon::SaxEngine {

class OpenEntity;

/// What Expat found wrong with the entity, in words: with the name of the limit, and with the encoding where bytes are
/// ill-formed in it.
std::string errorText(const OpenEntity& entity);

// The amplification limits that each parse sets: together, a document may grow to this many times its size once more
// than so many bytes have been seen.
inline constexpr float kMaximumAmplification = 100.0f;
/// The same for a document that is widened: Expat counts what it gets, which is twice as much, and the text of entities
/// in UTF-16 anyway.
inline constexpr float kMaximumAmplificationOfWidened = (1.0f + kMaximumAmplification) / 2;
inline constexpr unsigned long long kAmplificationThreshold = 8ull * 1024 * 1024;

} // namespace Quillon::SaxEngine

#endif
