#ifndef ZUTARNEX_DATACONV_CONVERSIONFUNCTOR_H
#define ZUTARNEX_DATACONV_CONVERSIONFUNCTOR_H

#include "dataconv/AConversionFunctor.h"

namespace Quillon::DataConv {

/// Converts a value of one type to one of another. In this form `To` is, as a rule, `char*`: C strings.
///
/// Layout:    no data; slots: destructor, _convert (tests/abi/).
/// Ownership: a C string that _convert stores in `result` is new; the caller frees it by Runtime::release().
/// Threads:   functors hold no state: one instance serves every caller and thread.
/// Throws:    System::OutOfMemoryException when there is no memory for a C string; `result` stays as it was.
template <class From, class To>
class ZUTARNEX_API ConversionFunctor : public AConversionFunctor {
public:
    virtual void _convert(const From& value, To& result) const = 0;
};

/// The direction from a C string. Whatever goes wrong, `result` stays as it was.
template <class To>
class ZUTARNEX_API ConversionFunctor<char*, To> : public AConversionFunctor {
public:
    virtual void _convert(char* text, To& result) const = 0;
};

} // namespace Quillon::DataConv

#endif
