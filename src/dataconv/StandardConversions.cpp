#include "dataconv/StandardConversions.h"

#include "dataconv/FunctorBodiesInternal.h"

namespace Quillon::DataConv {

CStringToInt8::~CStringToInt8() = default;
CStringToInt16::~CStringToInt16() = default;
CStringToInt32::~CStringToInt32() = default;
CStringToInt64::~CStringToInt64() = default;
CStringToUInt8::~CStringToUInt8() = default;
CStringToUInt16::~CStringToUInt16() = default;
CStringToUInt32::~CStringToUInt32() = default;
CStringToUInt64::~CStringToUInt64() = default;
CStringToFloat::~CStringToFloat() = default;
CStringToDouble::~CStringToDouble() = default;
CStringToBool::~CStringToBool() = default;

Int8ToCString::~Int8ToCString() = default;
Int16ToCString::~Int16ToCString() = default;
Int32ToCString::~Int32ToCString() = default;
Int64ToCString::~Int64ToCString() = default;
UInt8ToCString::~UInt8ToCString() = default;
UInt16ToCString::~UInt16ToCString() = default;
UInt32ToCString::~UInt32ToCString() = default;
UInt64ToCString::~UInt64ToCString() = default;
FloatToCString::~FloatToCString() = default;
DoubleToCString::~DoubleToCString() = default;
BoolToCString::~BoolToCString() = default;

void CStringToInt8::_convert(char* text, signed char& result) const {
    scanInteger<int>(text, result);
}

void CStringToInt16::_convert(char* text, short& result) const {
    scanInteger<int>(text, result);
}

void CStringToInt32::_convert(char* text, int& result) const {
    scanInteger<int>(text, result);
}

void CStringToInt64::_convert(char* text, long long& result) const {
    scanInteger<long long>(text, result);
}

void CStringToUInt8::_convert(char* text, unsigned char& result) const {
    scanInteger<unsigned int>(text, result);
}

void CStringToUInt16::_convert(char* text, unsigned short& result) const {
    scanInteger<unsigned int>(text, result);
}

void CStringToUInt32::_convert(char* text, unsigned int& result) const {
    scanInteger<unsigned int>(text, result);
}

void CStringToUInt64::_convert(char* text, unsigned long long& result) const {
    scanInteger<unsigned long long>(text, result);
}

void CStringToFloat::_convert(char* text, float& result) const {
    scanFloating(text, result);
}

void CStringToDouble::_convert(char* text, double& result) const {
    scanFloating(text, result);
}

void CStringToBool::_convert(char* text, bool& result) const {
    if (text == nullptr)
        IllegalArgumentException::doThrow();
    int value = -1;
    Runtime::scanNumber(text, value);
    if (value != 0 && value != 1)
        IllegalArgumentException::doThrow();
    result = value == 1;
}

void Int8ToCString::_convert(const signed char& value, char*& result) const {
    result = printed(int{value});
}

void Int16ToCString::_convert(const short& value, char*& result) const {
    result = printed(int{value});
}

void Int32ToCString::_convert(const int& value, char*& result) const {
    result = printed(value);
}

void Int64ToCString::_convert(const long long& value, char*& result) const {
    result = printed(value);
}

void UInt8ToCString::_convert(const unsigned char& value, char*& result) const {
    result = printed(static_cast<unsigned int>(value));
}

void UInt16ToCString::_convert(const unsigned short& value, char*& result) const {
    result = printed(static_cast<unsigned int>(value));
}

void UInt32ToCString::_convert(const unsigned int& value, char*& result) const {
    result = printed(value);
}

void UInt64ToCString::_convert(const unsigned long long& value, char*& result) const {
    result = printed(value);
}

void FloatToCString::_convert(const float& value, char*& result) const {
    result = printed(value);
}

void DoubleToCString::_convert(const double& value, char*& result) const {
    result = printed(value);
}

void BoolToCString::_convert(const bool& value, char*& result) const {
    result = printed(int{value});
}

} // namespace Quillon::DataConv
