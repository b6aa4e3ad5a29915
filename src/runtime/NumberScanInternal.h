#ifndef ZUTARNEX_RUNTIME_NUMBERSCANINTERNAL_H
#define ZUTARNEX_RUNTIME_NUMBERSCANINTERNAL_H

namespace Quillon::Runtime {

/// What the C library's sscanf makes of the start of a text.
enum class NumberScan {
    Number,   ///< a number, which is stored; what follows it is not looked at
    NoNumber, ///< something else
    Nothing   ///< the text is empty or white space
};

/// Scan as "%d", "%u", "%ld", "%lu", "%lld", "%llu" and "%lg" do; a number outside the type's range becomes what the
/// platform makes of it. `value` is changed only by a number.
NumberScan scanNumber(const char* text, int& value) noexcept;
NumberScan scanNumber(const char* text, unsigned int& value) noexcept;
NumberScan scanNumber(const char* text, long& value) noexcept;
NumberScan scanNumber(const char* text, unsigned long& value) noexcept;
NumberScan scanNumber(const char* text, long long& value) noexcept;
NumberScan scanNumber(const char* text, unsigned long long& value) noexcept;
NumberScan scanNumber(const char* text, double& value) noexcept;

} // namespace Quillon::Runtime

#endif
