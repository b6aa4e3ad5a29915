#ifndef ZUTARNEX_DATACONV_STANDARDCONVERSIONS_H
#define ZUTARNEX_DATACONV_STANDARDCONVERSIONS_H

#include "dataconv/ConversionFunctor.h"
#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// Conversions between C strings and the C99 scalar types, one class for each type and direction.
///
/// From text: leading white space is skipped, then a number is read as far as it goes; the rest is ignored. Text that
/// is empty or white space leaves the target unchanged, and so does text without a number for `float` and `double`,
/// which take what the C library's `%lg` takes.
///
/// To text: integers and `bool` (0 or 1) in decimal, `float` with 8 and `double` with 16 significant digits, so that
/// most values read back as they were.
///
/// The decimal point is that of the LC_NUMERIC locale.
///
/// Deliberate: there is no range check. A number is read as `int`, `unsigned int` or the 64-bit type of the same sign
/// and cut to the target's width, "70000" as `short` to 4464, "-1" as `unsigned char` to 255
/// (tests/dataconv/StandardConversionsTest.cpp, NumbersAreCutToTheWidthOfTheTarget). A number that the type it is read
/// as cannot hold becomes what the platform's sscanf makes of it.
///
/// Ownership: text is new; the caller frees it by Runtime::release().
/// Threads:   any number at once.
/// Throws:    IllegalArgumentException for a null text; RuntimeException for integer text that does not start with a
///            number; System::OutOfMemoryException when there is no memory for the text. The target stays as it was.

class ZUTARNEX_API CStringToInt8 : public ConversionFunctor<char*, signed char> {
public:
    ~CStringToInt8() override;
    void _convert(char* text, signed char& result) const override;
};

class ZUTARNEX_API CStringToInt16 : public ConversionFunctor<char*, short> {
public:
    ~CStringToInt16() override;
    void _convert(char* text, short& result) const override;
};

class ZUTARNEX_API CStringToInt32 : public ConversionFunctor<char*, int> {
public:
    ~CStringToInt32() override;
    void _convert(char* text, int& result) const override;
};

class ZUTARNEX_API CStringToInt64 : public ConversionFunctor<char*, long long> {
public:
    ~CStringToInt64() override;
    void _convert(char* text, long long& result) const override;
};

class ZUTARNEX_API CStringToUInt8 : public ConversionFunctor<char*, unsigned char> {
public:
    ~CStringToUInt8() override;
    void _convert(char* text, unsigned char& result) const override;
};

class ZUTARNEX_API CStringToUInt16 : public ConversionFunctor<char*, unsigned short> {
public:
    ~CStringToUInt16() override;
    void _convert(char* text, unsigned short& result) const override;
};

class ZUTARNEX_API CStringToUInt32 : public ConversionFunctor<char*, unsigned int> {
public:
    ~CStringToUInt32() override;
    void _convert(char* text, unsigned int& result) const override;
};

class ZUTARNEX_API CStringToUInt64 : public ConversionFunctor<char*, unsigned long long> {
public:
    ~CStringToUInt64() override;
    void _convert(char* text, unsigned long long& result) const override;
};

class ZUTARNEX_API CStringToFloat : public ConversionFunctor<char*, float> {
public:
    ~CStringToFloat() override;
    void _convert(char* text, float& result) const override;
};

class ZUTARNEX_API CStringToDouble : public ConversionFunctor<char*, double> {
public:
    ~CStringToDouble() override;
    void _convert(char* text, double& result) const override;
};

/// Deliberate: only numbers are understood, and of them 0 and 1: any other text, "true" and "" included, raises
/// IllegalArgumentException (tests/dataconv/StandardConversionsTest.cpp, BoolTakesZeroAndOneOnly).
class ZUTARNEX_API CStringToBool : public ConversionFunctor<char*, bool> {
public:
    ~CStringToBool() override;
    void _convert(char* text, bool& result) const override;
};

class ZUTARNEX_API Int8ToCString : public ConversionFunctor<signed char, char*> {
public:
    ~Int8ToCString() override;
    void _convert(const signed char& value, char*& result) const override;
};

class ZUTARNEX_API Int16ToCString : public ConversionFunctor<short, char*> {
public:
    ~Int16ToCString() override;
    void _convert(const short& value, char*& result) const override;
};

class ZUTARNEX_API Int32ToCString : public ConversionFunctor<int, char*> {
public:
    ~Int32ToCString() override;
    void _convert(const int& value, char*& result) const override;
};

class ZUTARNEX_API Int64ToCString : public ConversionFunctor<long long, char*> {
public:
    ~Int64ToCString() override;
    void _convert(const long long& value, char*& result) const override;
};

class ZUTARNEX_API UInt8ToCString : public ConversionFunctor<unsigned char, char*> {
public:
    ~UInt8ToCString() override;
    void _convert(const unsigned char& value, char*& result) const override;
};

class ZUTARNEX_API UInt16ToCString : public ConversionFunctor<unsigned short, char*> {
public:
    ~UInt16ToCString() override;
    void _convert(const unsigned short& value, char*& result) const override;
};

class ZUTARNEX_API UInt32ToCString : public ConversionFunctor<unsigned int, char*> {
public:
    ~UInt32ToCString() override;
    void _convert(const unsigned int& value, char*& result) const override;
};

class ZUTARNEX_API UInt64ToCString : public ConversionFunctor<unsigned long long, char*> {
public:
    ~UInt64ToCString() override;
    void _convert(const unsigned long long& value, char*& result) const override;
};

class ZUTARNEX_API FloatToCString : public ConversionFunctor<float, char*> {
public:
    ~FloatToCString() override;
    void _convert(const float& value, char*& result) const override;
};

class ZUTARNEX_API DoubleToCString : public ConversionFunctor<double, char*> {
public:
    ~DoubleToCString() override;
    void _convert(const double& value, char*& result) const override;
};

class ZUTARNEX_API BoolToCString : public ConversionFunctor<bool, char*> {
public:
    ~BoolToCString() override;
    void _convert(const bool& value, char*& result) const override;
};

} // namespace Quillon::DataConv

#endif
