#include "dataconv/C99Conversions.h"

#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/CvsnRootNamespace.h"
#include "dataconv/FunctorBodiesInternal.h"
#include "dataconv/NameIdMap.h"
#include "dataconv/OpaqueFunctorInternal.h"
#include "dataconv/StandardConversions.h"

#include <memory>
#include <typeinfo>

namespace Quillon::DataConv {

namespace {

// The classes of the C types' own names; those of the fixed-width names are public.

class CStringToChar final : public ConversionFunctor<char*, char> {
    void _convert(char* text, char& result) const override { scanInteger<int>(text, result); }
};

class CharToCString final : public ConversionFunctor<char, char*> {
    void _convert(const char& value, char*& result) const override { result = printed(int{value}); }
};

class CStringToShort final : public ConversionFunctor<char*, short> {
    void _convert(char* text, short& result) const override { scanInteger<int>(text, result); }
};

class ShortToCString final : public ConversionFunctor<short, char*> {
    void _convert(const short& value, char*& result) const override { result = printed(int{value}); }
};

class CStringToInt final : public ConversionFunctor<char*, int> {
    void _convert(char* text, int& result) const override { scanInteger<int>(text, result); }
};

class IntToCString final : public ConversionFunctor<int, char*> {
    void _convert(const int& value, char*& result) const override { result = printed(value); }
};

class CStringToLong final : public ConversionFunctor<char*, long> {
    void _convert(char* text, long& result) const override { scanInteger<long>(text, result); }
};

class LongToCString final : public ConversionFunctor<long, char*> {
    void _convert(const long& value, char*& result) const override { result = printed(value); }
};

class CStringToUnsignedChar final : public ConversionFunctor<char*, unsigned char> {
    void _convert(char* text, unsigned char& result) const override {
        scanInteger<unsigned int>(text, result);
    }
};

class UnsignedCharToCString final : public ConversionFunctor<unsigned char, char*> {
    void _convert(const unsigned char& value, char*& result) const override {
        result = printed(static_cast<unsigned int>(value));
    }
};

class CStringToUnsignedShort final : public ConversionFunctor<char*, unsigned short> {
    void _convert(char* text, unsigned short& result) const override {
        scanInteger<unsigned int>(text, result);
    }
};

class UnsignedShortToCString final : public ConversionFunctor<unsigned short, char*> {
    void _convert(const unsigned short& value, char*& result) const override {
        result = printed(static_cast<unsigned int>(value));
    }
};

class CStringToUnsignedInt final : public ConversionFunctor<char*, unsigned int> {
    void _convert(char* text, unsigned int& result) const override {
        scanInteger<unsigned int>(text, result);
    }
};

class UnsignedIntToCString final : public ConversionFunctor<unsigned int, char*> {
    void _convert(const unsigned int& value, char*& result) const override { result = printed(value); }
};

class CStringToUnsignedLong final : public ConversionFunctor<char*, unsigned long> {
    void _convert(char* text, unsigned long& result) const override {
        scanInteger<unsigned long>(text, result);
    }
};

class UnsignedLongToCString final : public ConversionFunctor<unsigned long, char*> {
    void _convert(const unsigned long& value, char*& result) const override { result = printed(value); }
};

class Registration {
public:
    explicit Registration(CvsnRegistryNode& node) : node_(node), names_(NameIdMap::getGlobalNameIdMap()) {}

    /// Binds the conversions of T under its run-time name and under `readableName`.
    template <class T, class ToText, class FromText>
    void add(const char* readableName) {
        for (const char* typeName : {typeid(T).name(), readableName}) {
            bindIfMissing<ToText>(typeName, typeid(char*).name());
            bindIfMissing<FromText>(typeid(char*).name(), typeName);
        }
    }

private:
    template <class Functor>
    void bindIfMissing(const char* fromName, const char* toName) {
        const int from = static_cast<int>(names_->find_or_insert(fromName));
        const int to = static_cast<int>(names_->find_or_insert(toName));
        if (node_._lookup(from, to) != nullptr)
            return;
        auto functor = std::make_unique<Functor>();
        node_._bind(from, to, opaque(functor.get()));
        static_cast<void>(functor.release()); // the node owns it now
    }

    CvsnRegistryNode& node_;
    boost::shared_ptr<NameIdMap> names_;
};

void registerStandardConversions(CvsnRegistryNode& node) {
    Registration registration(node);
    registration.add<unsigned char, UInt8ToCString, CStringToUInt8>("uint8_t");
    registration.add<unsigned short, UInt16ToCString, CStringToUInt16>("uint16_t");
    registration.add<unsigned int, UInt32ToCString, CStringToUInt32>("uint32_t");
    registration.add<unsigned long long, UInt64ToCString, CStringToUInt64>("uint64_t");
    registration.add<unsigned char, UnsignedCharToCString, CStringToUnsignedChar>("unsigned char");
    registration.add<unsigned short, UnsignedShortToCString, CStringToUnsignedShort>("unsigned short");
    registration.add<unsigned int, UnsignedIntToCString, CStringToUnsignedInt>("unsigned int");
    registration.add<unsigned long, UnsignedLongToCString, CStringToUnsignedLong>("unsigned long");
    registration.add<signed char, Int8ToCString, CStringToInt8>("int8_t");
    registration.add<short, Int16ToCString, CStringToInt16>("int16_t");
    registration.add<int, Int32ToCString, CStringToInt32>("int32_t");
    registration.add<long long, Int64ToCString, CStringToInt64>("int64_t");
    registration.add<char, CharToCString, CStringToChar>("char");
    registration.add<short, ShortToCString, CStringToShort>("short");
    registration.add<int, IntToCString, CStringToInt>("int");
    registration.add<long, LongToCString, CStringToLong>("long");
    registration.add<float, FloatToCString, CStringToFloat>("float");
    registration.add<double, DoubleToCString, CStringToDouble>("double");
    registration.add<bool, BoolToCString, CStringToBool>("bool");
}

boost::shared_ptr<CvsnRegistryNode> makeStandardNode() {
    boost::shared_ptr<CvsnRegistryNode> node(new CvsnRegistryNode(CvsnRootNamespace::instance()));
    registerStandardConversions(*node);
    return node;
}

} // namespace

boost::shared_ptr<CvsnRegistryNode> C99Conversions::instance() {
    // The first registration is part of making the node, so that threads that come first together bind nothing twice.
    static const boost::shared_ptr<CvsnRegistryNode> node = makeStandardNode();
    registerStandardConversions(*node); // each time: what is missing is bound again
    return node;
}

} // namespace Quillon::DataConv
