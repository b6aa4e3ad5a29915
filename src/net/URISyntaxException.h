#ifndef ZUTARNEX_NET_URISYNTAXEXCEPTION_H
#define ZUTARNEX_NET_URISYNTAXEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::Net {

/// A text is no URI reference. Derives from no other exception class, std::exception included.
///
/// Layout:    (virtual table), input, reason, index, in this order; 16 bytes on i386, 32 on x86-64 (tests/abi/).
/// Units:     the index counts bytes of the input from 0.
/// Ownership: nothing is copied: the input is the caller's own text and stays its own; the reasons that the parser
///            gives are constants of the library.
class ZUTARNEX_API URISyntaxException {
public:
    URISyntaxException(const unsigned char* input, const char* reason, unsigned int index) noexcept;
    URISyntaxException(const URISyntaxException& other) noexcept;
    URISyntaxException& operator=(const URISyntaxException& other) noexcept;
    virtual ~URISyntaxException();

    const unsigned char* getInput() const noexcept; ///< the very pointer that was to be parsed
    const char* getReason() const noexcept;         ///< such as "Illegal character in query"
    unsigned int getIndex() const noexcept;         ///< where the fault was found

private:
    const unsigned char* input_;
    const char* reason_;
    unsigned int index_;
};

} // namespace Quillon::Net

#endif
