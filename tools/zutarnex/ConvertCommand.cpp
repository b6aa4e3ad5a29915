#include "Commands.h"
#include "Failure.h"
#include "OutputFile.h"
#include "dataconv/Converter.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/RuntimeException.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace Quillon::Tool {

namespace {

using DataConv::Converter;

/// What `text` becomes, printed back; "(unchanged)" when it holds no number and that is no error.
template <class T>
std::string throughType(const Converter& converter, const char* typeName, const char* text) {
    const T value = converter.fromTextByName<T>(typeName, text, T(0));
    const bool isKept = value == T(0) && converter.fromTextByName<T>(typeName, text, T(1)) == T(1);
    return isKept ? "(unchanged)" : converter.toTextByName<T>(typeName, value);
}

struct ReadableType {
    const char* name;
    std::string (*convert)(const Converter&, const char* typeName, const char* text);
};

constexpr ReadableType kTypes[] = {
    {"uint8_t", throughType<unsigned char>},
    {"uint16_t", throughType<unsigned short>},
    {"uint32_t", throughType<unsigned int>},
    {"uint64_t", throughType<unsigned long long>},
    {"unsigned char", throughType<unsigned char>},
    {"unsigned short", throughType<unsigned short>},
    {"unsigned int", throughType<unsigned int>},
    {"unsigned long", throughType<unsigned long>},
    {"int8_t", throughType<signed char>},
    {"int16_t", throughType<short>},
    {"int32_t", throughType<int>},
    {"int64_t", throughType<long long>},
    {"char", throughType<char>},
    {"short", throughType<short>},
    {"int", throughType<int>},
    {"long", throughType<long>},
    {"float", throughType<float>},
    {"double", throughType<double>},
    {"bool", throughType<bool>},
};

const ReadableType* findType(const std::string& name) {
    const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                     [&](const ReadableType& type) { return type.name == name; });
    return found == std::end(kTypes) ? nullptr : found;
}

std::string checkType(const std::string& name) {
    if (findType(name))
        return "";
    std::string message = "no type: " + name + "; there are";
    for (const ReadableType& type : kTypes)
        message += std::string(&type == kTypes ? " " : ", ") + type.name;
    return message;
}

struct ConvertOptions {
    std::string type;
    std::vector<std::string> texts;
};

std::string converted(const Converter& converter, const ReadableType& type, const std::string& text) {
    const std::string where = text + ":1:1";
    try {
        return type.convert(converter, type.name, text.c_str());
    } catch (const DataConv::RuntimeException&) {
        throw Failure{BadInput, diagnostic(where, "RuntimeException: there is no number at the start")};
    } catch (const DataConv::IllegalArgumentException&) {
        throw Failure{BadInput, diagnostic(where, "IllegalArgumentException: neither 0 nor 1")};
    }
}

ExitStatus convertAll(const ConvertOptions& options) {
    const ReadableType& type = *findType(options.type);
    const Converter converter;
    OutputFile out("-");
    ExitStatus worst = Done;
    for (const std::string& text : options.texts) {
        const ExitStatus status = reportingFailures(text, [&] {
            const std::string result = converted(converter, type, text);
            out.stream() << text << " -> " << result << '\n';
            return Done;
        });
        worst = std::max(worst, status);
    }
    out.commit();
    return worst;
}

} // namespace

void addConvertCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<ConvertOptions>();
    CLI::App* command =
        app.add_subcommand("convert", "Show what texts become as values of a type, printed back");
    command
        ->add_option("TYPE", options->type, "One of the readable names, such as \"unsigned char\" or double")
        ->required()
        ->check(CLI::Validator(checkType, ""));
    command
        ->add_option("TEXT", options->texts, "The texts; -- before the first when one begins with a hyphen")
        ->required();
    command->callback(
        [options, &status] { status = reportingFailures("zutarnex", [&] { return convertAll(*options); }); });
}

} // namespace Quillon::Tool
