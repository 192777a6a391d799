// Wide printf. Numbers are formatted by the C library, specification by specification.
#include "platform/base/text.h"

#include "strsafe.h"
#include "winerror.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

namespace platform
{
namespace
{

/// So that it can be handed on: a va_list is an array here and a pointer there.
struct Arguments
{
    va_list list;
};

/// What stands between '%' and the conversion's letter.
struct Specification
{
    std::string flags;
    int width = 0;
    int precision = -1;
    std::string size; ///< h, l, ll, ...
    char16_t conversion = 0;
};

bool IsOneOf(char16_t unit, std::u16string_view set)
{
    return set.find(unit) != set.npos;
}

int ReadNumber(LPCWSTR& at, Arguments& arguments)
{
    if (*at == u'*')
    {
        ++at;
        return va_arg(arguments.list, int);
    }
    constexpr int kMost = 1 << 20; // wider than any buffer
    int number = 0;
    for (; *at >= u'0' && *at <= u'9'; ++at)
        number = std::min(number * 10 + (*at - u'0'), kMost);
    return number;
}

Specification ReadSpecification(LPCWSTR& at, Arguments& arguments)
{
    Specification read;
    for (; IsOneOf(*at, u"-+ #0") && *at != 0; ++at)
        read.flags += static_cast<char>(*at);
    read.width = ReadNumber(at, arguments);
    if (read.width < 0)
    {
        read.flags += '-';
        read.width = -read.width;
    }
    if (*at == u'.')
        read.precision = ReadNumber(++at, arguments);
    for (; IsOneOf(*at, u"hlwzjt") && *at != 0; ++at)
        read.size += static_cast<char>(*at);
    read.conversion = *at;
    if (*at != 0)
        ++at;
    return read;
}

std::u16string Padded(std::u16string text, const Specification& wanted)
{
    const auto width = static_cast<std::size_t>(wanted.width);
    if (text.size() < width)
        text.insert(wanted.flags.find('-') != std::string::npos ? text.size() : 0, width - text.size(), u' ');
    return text;
}

template <typename T>
std::u16string Number(const Specification& wanted, const char* size, T value)
{
    const std::string format = '%' + wanted.flags + "*.*" + size + static_cast<char>(wanted.conversion);
    const int length = std::snprintf(nullptr, 0, format.c_str(), wanted.width, wanted.precision, value);
    std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, 0);
    std::snprintf(text.data(), text.size(), format.c_str(), wanted.width, wanted.precision, value);
    text.pop_back();
    return Utf16FromUtf8(text);
}

std::u16string Integer(const Specification& wanted, Arguments& arguments)
{
    if (wanted.size == "ll" || wanted.size == "z" || wanted.size == "j" || wanted.size == "t")
        return Number(wanted, "ll", va_arg(arguments.list, long long));
    // Windows' long has 32 bits, as int has.
    const int value = va_arg(arguments.list, int);
    if (wanted.size == "h")
        return Number(wanted, "h", static_cast<short>(value));
    return Number(wanted, wanted.size == "hh" ? "hh" : "", value);
}

std::u16string String(const Specification& wanted, Arguments& arguments)
{
    const void* const argument = va_arg(arguments.list, const void*);
    const auto most = static_cast<std::size_t>(wanted.precision < 0 ? SIZE_MAX : wanted.precision);
    std::u16string text = u"(null)";
    if (argument != nullptr && wanted.size == "h")
        text = Utf16FromUtf8(static_cast<const char*>(argument));
    else if (argument != nullptr)
        text = static_cast<LPCWSTR>(argument);
    return Padded(text.substr(0, most), wanted);
}

std::u16string Convert(const Specification& wanted, Arguments& arguments)
{
    switch (wanted.conversion)
    {
    case u'd':
    case u'i':
    case u'u':
    case u'o':
    case u'x':
    case u'X':
        return Integer(wanted, arguments);
    case u'e':
    case u'E':
    case u'f':
    case u'F':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
        return Number(wanted, "", va_arg(arguments.list, double));
    case u'p':
        return Number(wanted, "", va_arg(arguments.list, void*));
    case u'c':
        return Padded(std::u16string(1, static_cast<char16_t>(va_arg(arguments.list, int))), wanted);
    case u's':
        return String(wanted, arguments);
    case 0:
        return {};
    default:
        return std::u16string(1, wanted.conversion); // "%%", and what is no conversion
    }
}

} // namespace
} // namespace platform

HRESULT StringCchVPrintfW(LPWSTR text, SIZE_T capacity, LPCWSTR format, va_list list)
{
    using namespace platform;
    if (text == nullptr || format == nullptr || capacity == 0)
        return STRSAFE_E_INVALID_PARAMETER;
    Arguments arguments;
    va_copy(arguments.list, list);
    std::u16string made;
    for (LPCWSTR at = format; *at != 0 && made.size() < capacity;)
        if (*at == u'%')
            made += Convert(ReadSpecification(++at, arguments), arguments);
        else
            made += *at++;
    va_end(arguments.list);
    const std::size_t length = std::min<std::size_t>(made.size(), capacity - 1);
    *std::copy_n(made.begin(), length, text) = 0;
    return length == made.size() ? S_OK : STRSAFE_E_INSUFFICIENT_BUFFER;
}
