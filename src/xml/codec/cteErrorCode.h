#ifndef ZUTARNEX_XML_CODEC_CTEERRORCODE_H
#define ZUTARNEX_XML_CODEC_CTEERRORCODE_H

namespace Quillon::Xml {

/// What a codec reports through its out-parameter. The caller sets the variable to 0 before the call: the codecs only
/// ever store another value.
enum cteErrorCode {
    cteNoError = 0,

    /// A null pointer, an empty or inverted range, a size that yields nothing to encode or more than 32 bits can
    /// count, a one-shot Base64 text whose significant characters are no multiple of four.
    cteInvalidArguments = 1,

    /// No memory for the result of a one-shot call.
    cteNoMemory = 2,

    /// The input of a final call ended inside a unit: a pair of digits, or a group of four characters.
    cteIncompleteInput = 3,

    /// A character outside the alphabet, misplaced or surplus padding, padding bits that are not zero.
    cteInvalidInput = 4,

    /// The output range is full while input or converted output is left: call again with more room.
    cteOutputFull = 5
};

} // namespace Quillon::Xml

#endif
