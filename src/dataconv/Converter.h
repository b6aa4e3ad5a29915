#ifndef ZUTARNEX_DATACONV_CONVERTER_H
#define ZUTARNEX_DATACONV_CONVERTER_H

#include "dataconv/ConversionFunctor.h"
#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/IllegalConversionException.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

namespace Quillon::DataConv {

/// Converts values to text and back through a node of the registry, by type or by readable name, and binds more
/// conversions:
///
///     Converter converter;                                                   // over the standard conversions
///     const int port = converter.fromText<int>("8080");                      // 8080
///     const std::string text = converter.toText(0.1);                        // "0.1"
///     const unsigned char byte = converter.fromTextByName<unsigned char>("uint8_t", "256"); // 0: no range check
///
///     struct Point { int x, y; };
///     struct PointToCString : ConversionFunctor<Point, char*> { ... };
///     converter.bind<Point>(std::make_unique<PointToCString>());
///     converter.toText(Point{1, 2});                                         // what PointToCString makes of it
///
/// By type, a pair is found under the run-time name of the type; by name, under a readable one, such as those that
/// C99Conversions.h lists, and the type must be the one that the functor bound to that name converts.
///
/// Layout:    one shared pointer.
/// Ownership: one share of the node. What is bound belongs to the node: all converters over it see it. REQUIRES: a
///            name that something is bound to stays alive to the process's exit (that of a type: its module stays
///            loaded).
/// Threads:   any number may convert at once, but none while something is bound.
/// Throws:    NotFoundException for a name that was never used (also for null); NotBoundException for a pair that
///            neither the node nor its parents know; IllegalConversionException when what is bound does not convert
///            between the types asked for; AlreadyBoundException for a pair that is bound in the node. What the
///            functors throw passes through; see StandardConversions.h for those of the library. Binding a null
///            functor, or to a null name: IllegalArgumentException. std::bad_alloc.
class ZUTARNEX_API Converter {
public:
    Converter();                                                  ///< over C99Conversions::instance()
    explicit Converter(boost::shared_ptr<CvsnRegistryNode> node); ///< REQUIRES: not empty

    template <class T>
    std::string toText(const T& value) const {
        return textBy(functorBetween(nameOf<T>(), nameOf<char*>()), value);
    }

    /// `fallback` is the result where the text holds no number and that is no error: see StandardConversions.h.
    template <class T>
    T fromText(const char* text, T fallback = T()) const {
        return valueBy(functorBetween(nameOf<char*>(), nameOf<T>()), text, fallback);
    }

    template <class T>
    std::string toTextByName(const char* typeName, const T& value) const {
        return textBy(functorBetween(known(typeName), nameOf<char*>()), value);
    }

    template <class T>
    T fromTextByName(const char* typeName, const char* text, T fallback = T()) const {
        return valueBy(functorBetween(nameOf<char*>(), known(typeName)), text, fallback);
    }

    /// Binds a conversion between T and text. A pair that only a parent knows is bound anew in this node, over it. A
    /// functor that is not taken is destroyed.
    template <class T>
    void bind(std::unique_ptr<ConversionFunctor<T, char*>> toText) {
        bindBetween(nameOf<T>(), nameOf<char*>(), std::move(toText));
    }
    template <class T>
    void bind(std::unique_ptr<ConversionFunctor<char*, T>> fromText) {
        bindBetween(nameOf<char*>(), nameOf<T>(), std::move(fromText));
    }
    template <class T>
    void bindByName(const char* typeName, std::unique_ptr<ConversionFunctor<T, char*>> toText) {
        bindBetween(typeName, nameOf<char*>(), std::move(toText));
    }
    template <class T>
    void bindByName(const char* typeName, std::unique_ptr<ConversionFunctor<char*, T>> fromText) {
        bindBetween(nameOf<char*>(), typeName, std::move(fromText));
    }

private:
    template <class T>
    static const char* nameOf() noexcept {
        return typeid(T).name();
    }

    template <class From, class To>
    static const ConversionFunctor<From, To>& fitting(const AConversionFunctor& functor) {
        const auto* fit = dynamic_cast<const ConversionFunctor<From, To>*>(&functor);
        if (fit == nullptr)
            IllegalConversionException::doThrow();
        return *fit;
    }

    template <class T>
    static std::string textBy(const AConversionFunctor& functor, const T& value) {
        char* text = nullptr;
        fitting<T, char*>(functor)._convert(value, text);
        return taken(text);
    }

    template <class T>
    static T valueBy(const AConversionFunctor& functor, const char* text, T& value) {
        fitting<char*, T>(functor)._convert(const_cast<char*>(text), value);
        return std::move(value);
    }

    static const char* known(const char* typeName);
    static std::string taken(char* text);
    const AConversionFunctor& functorBetween(const char* from, const char* to) const;
    void bindBetween(const char* from, const char* to, std::unique_ptr<AConversionFunctor> functor);

    boost::shared_ptr<CvsnRegistryNode> node_;
};

} // namespace Quillon::DataConv

#endif
