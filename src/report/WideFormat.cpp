#include "report/WideFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cwchar>
#include <string_view>
#include <sys/types.h>

namespace report
{
namespace
{

// Room for %f of the largest long double; the sum of digits before the point and a precision that
// is capped below.
constexpr std::size_t kNumberRoom = 5600;
constexpr int kMaxFloatPrecision = 500;

enum class Length { None, Char, Short, Long, LongLong, Max, Size, Difference, LongDouble };

struct Directive {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;  // -1 when not given
    Length length = Length::None;
    wchar_t conversion = 0;
};

// A va_list is an array on some systems; in a struct it can be handed on by reference everywhere.
struct Arguments {
    va_list list;
};

class Sink
{
public:
    Sink(wchar_t *out, std::size_t capacity) : m_out(out), m_left(capacity - 1) {}

    void put(wchar_t character)
    {
        if (m_left > 0) {
            *m_out++ = character;
            --m_left;
            ++m_count;
        }
    }
    void fill(wchar_t character, std::size_t count)
    {
        for (count = std::min(count, m_left); count > 0; --count) {
            put(character);
        }
    }
    void narrow(std::string_view text)
    {
        for (const char character : text) {
            put(static_cast<unsigned char>(character));
        }
    }
    std::size_t finish()
    {
        *m_out = L'\0';
        return m_count;
    }

private:
    wchar_t *m_out;
    std::size_t m_left;
    std::size_t m_count = 0;
};

std::size_t padding(const Directive &directive, std::size_t length)
{
    const auto width = static_cast<std::size_t>(directive.width);
    return width > length ? width - length : 0;
}

/// Sign or base prefix, then zeros, then digits, within the directive's width.
void putNumber(Sink &sink, const Directive &directive, std::string_view prefix, std::size_t zeros,
               std::string_view digits, bool mayZeroFill)
{
    const std::size_t blanks = padding(directive, prefix.size() + zeros + digits.size());
    const bool zeroFill = mayZeroFill && directive.zero && !directive.left;
    if (!directive.left && !zeroFill) {
        sink.fill(L' ', blanks);
    }
    sink.narrow(prefix);
    sink.fill(L'0', zeros + (zeroFill ? blanks : 0));
    sink.narrow(digits);
    if (directive.left) {
        sink.fill(L' ', blanks);
    }
}

const char *signPrefix(const Directive &directive, bool negative)
{
    if (negative) {
        return "-";
    }
    return directive.plus ? "+" : directive.space ? " " : "";
}

std::intmax_t signedArgument(Arguments &arguments, Length length)
{
    switch (length) {
    case Length::Char:
        return static_cast<signed char>(va_arg(arguments.list, int));
    case Length::Short:
        return static_cast<short>(va_arg(arguments.list, int));
    case Length::Long:
        return va_arg(arguments.list, long);
    case Length::LongLong:
        return va_arg(arguments.list, long long);
    case Length::Max:
        return va_arg(arguments.list, std::intmax_t);
    case Length::Size:
        return va_arg(arguments.list, ssize_t);
    case Length::Difference:
        return va_arg(arguments.list, std::ptrdiff_t);
    default:
        return va_arg(arguments.list, int);
    }
}

std::uintmax_t unsignedArgument(Arguments &arguments, Length length)
{
    switch (length) {
    case Length::Char:
        return static_cast<unsigned char>(va_arg(arguments.list, unsigned int));
    case Length::Short:
        return static_cast<unsigned short>(va_arg(arguments.list, unsigned int));
    case Length::Long:
        return va_arg(arguments.list, unsigned long);
    case Length::LongLong:
        return va_arg(arguments.list, unsigned long long);
    case Length::Max:
        return va_arg(arguments.list, std::uintmax_t);
    case Length::Size:
        return va_arg(arguments.list, std::size_t);
    case Length::Difference:
        return static_cast<std::uintmax_t>(va_arg(arguments.list, std::ptrdiff_t));
    default:
        return va_arg(arguments.list, unsigned int);
    }
}

void putInteger(Sink &sink, const Directive &directive, std::uintmax_t magnitude, bool negative)
{
    const wchar_t kind = directive.conversion;
    const bool isSigned = kind == L'd' || kind == L'i';
    const int base = kind == L'o' ? 8 : (kind == L'x' || kind == L'X' || kind == L'p') ? 16 : 10;
    char digits[32];
    char *end = std::to_chars(digits, digits + sizeof digits, magnitude, base).ptr;
    if (kind == L'X') {
        std::transform(digits, end, digits,
                       [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    if (magnitude == 0 && directive.precision == 0) {
        end = digits;  // a zero with precision 0 has no digits
    }
    const std::string_view text(digits, static_cast<std::size_t>(end - digits));
    const auto wanted = static_cast<std::size_t>(std::max(directive.precision, 0));
    std::size_t zeros = wanted > text.size() ? wanted - text.size() : 0;
    std::string_view prefix = isSigned ? signPrefix(directive, negative) : "";
    if (kind == L'p' || (directive.alternate && base == 16 && magnitude != 0)) {
        prefix = kind == L'X' ? "0X" : "0x";
    } else if (directive.alternate && base == 8 && zeros == 0 && (text.empty() || text[0] != '0')) {
        zeros = 1;
    }
    putNumber(sink, directive, prefix, zeros, text, directive.precision < 0);
}

std::size_t floatDigits(char (&out)[kNumberRoom], const Directive &directive, long double value)
{
    const wchar_t kind = static_cast<wchar_t>(directive.conversion | 0x20);
    int precision = directive.precision < 0 ? 6 : std::min(directive.precision, kMaxFloatPrecision);
    if (kind == L'g' && precision == 0) {
        precision = 1;
    }
    const std::chars_format shape = kind == L'f'   ? std::chars_format::fixed
                                    : kind == L'e' ? std::chars_format::scientific
                                    : kind == L'a' ? std::chars_format::hex
                                                   : std::chars_format::general;
    // Only a long double argument may be printed as one: %a shows its digits.
    std::to_chars_result result{};
    if (directive.length == Length::LongDouble) {
        result = kind == L'a' && directive.precision < 0
                     ? std::to_chars(out, out + kNumberRoom, value, shape)
                     : std::to_chars(out, out + kNumberRoom, value, shape, precision);
    } else {
        const auto plain = static_cast<double>(value);
        result = kind == L'a' && directive.precision < 0
                     ? std::to_chars(out, out + kNumberRoom, plain, shape)
                     : std::to_chars(out, out + kNumberRoom, plain, shape, precision);
    }
    return static_cast<std::size_t>(result.ptr - out);
}

void putFloat(Sink &sink, const Directive &directive, long double value)
{
    char digits[kNumberRoom];
    const bool upper = directive.conversion < L'a';
    const bool isNumber = std::isfinite(value);
    std::size_t length = 0;
    if (isNumber) {
        length = floatDigits(digits, directive, std::fabs(value));
    } else {
        const std::string_view word = std::isnan(value) ? "nan" : "inf";
        length = word.copy(digits, word.size());
    }
    if (upper) {
        std::transform(digits, digits + length, digits, [](char c) {
            return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        });
    }
    char prefix[4] = {};
    std::size_t prefixLength =
        std::string_view(signPrefix(directive, std::signbit(value))).copy(prefix, 1);
    if (isNumber && (directive.conversion | 0x20) == L'a') {
        prefix[prefixLength++] = '0';
        prefix[prefixLength++] = upper ? 'X' : 'x';
    }
    putNumber(sink, directive, {prefix, prefixLength}, 0, {digits, length}, isNumber);
}

/// Decodes one character of UTF-8 and moves `text` behind it. What isn't UTF-8 is taken as Latin-1,
/// byte by byte. Reads no byte behind a terminator.
wchar_t nextCharacter(const unsigned char *&text)
{
    const unsigned lead = *text++;
    const int more = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
    if (more == 0 || lead >= 0xF5) {
        return static_cast<wchar_t>(lead);
    }
    std::uint32_t code = lead & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
        if ((text[i] & 0xC0u) != 0x80u) {
            return static_cast<wchar_t>(lead);
        }
        code = code << 6 | (text[i] & 0x3Fu);
    }
    const std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    if (code < smallest[more] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) {
        return static_cast<wchar_t>(lead);
    }
    text += more;
    return static_cast<wchar_t>(code);
}

std::size_t wideLength(const wchar_t *text, std::size_t limit)
{
    std::size_t length = 0;
    while (length < limit && text[length] != L'\0') {
        ++length;
    }
    return length;
}

template <typename PutText>
void putPadded(Sink &sink, const Directive &directive, std::size_t length, PutText putText)
{
    if (!directive.left) {
        sink.fill(L' ', padding(directive, length));
    }
    putText();
    if (directive.left) {
        sink.fill(L' ', padding(directive, length));
    }
}

void putString(Sink &sink, const Directive &directive, Arguments &arguments)
{
    const std::size_t limit =
        directive.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(directive.precision);
    if (directive.length == Length::Long || directive.conversion == L'S') {
        const wchar_t *text = va_arg(arguments.list, const wchar_t *);
        text = text == nullptr ? L"(null)" : text;
        const std::size_t length = wideLength(text, limit);
        putPadded(sink, directive, length,
                  [&] { std::for_each(text, text + length, [&sink](wchar_t c) { sink.put(c); }); });
        return;
    }
    const char *given = va_arg(arguments.list, const char *);
    const auto *text = reinterpret_cast<const unsigned char *>(given == nullptr ? "(null)" : given);
    std::size_t length = 0;
    for (const unsigned char *at = text; length < limit && *at != 0; ++length) {
        nextCharacter(at);
    }
    putPadded(sink, directive, length, [&] {
        const unsigned char *at = text;
        for (std::size_t i = 0; i < length; ++i) {
            sink.put(nextCharacter(at));
        }
    });
}

void putCharacter(Sink &sink, const Directive &directive, Arguments &arguments)
{
    const bool wide = directive.length == Length::Long || directive.conversion == L'C';
    const wchar_t character =
        wide ? static_cast<wchar_t>(va_arg(arguments.list, std::wint_t))
             : static_cast<wchar_t>(static_cast<unsigned char>(va_arg(arguments.list, int)));
    putPadded(sink, directive, character == L'\0' ? 0 : 1, [&] {
        // A NUL would end the message for whoever reads it.
        if (character != L'\0') {
            sink.put(character);
        }
    });
}

int parseCount(const wchar_t *&at, Arguments &arguments)
{
    constexpr int kCap = 1'000'000;  // far above every buffer, far below overflow
    if (*at == L'*') {
        ++at;
        return std::clamp(va_arg(arguments.list, int), -kCap, kCap);
    }
    int count = 0;
    for (; *at >= L'0' && *at <= L'9'; ++at) {
        count = std::min(count * 10 + static_cast<int>(*at - L'0'), kCap);
    }
    return count;
}

void parseFlags(const wchar_t *&at, Directive &directive)
{
    for (;; ++at) {
        switch (*at) {
        case L'-':
            directive.left = true;
            break;
        case L'+':
            directive.plus = true;
            break;
        case L' ':
            directive.space = true;
            break;
        case L'#':
            directive.alternate = true;
            break;
        case L'0':
            directive.zero = true;
            break;
        default:
            return;
        }
    }
}

Length parseLength(const wchar_t *&at)
{
    struct Name {
        const wchar_t *text;
        Length length;
    };
    static constexpr Name kNames[] = {{L"hh", Length::Char},      {L"h", Length::Short},
                                      {L"ll", Length::LongLong},  {L"l", Length::Long},
                                      {L"j", Length::Max},        {L"z", Length::Size},
                                      {L"t", Length::Difference}, {L"L", Length::LongDouble}};
    for (const Name &name : kNames) {
        const std::size_t length = std::wcslen(name.text);
        if (std::wcsncmp(at, name.text, length) == 0) {
            at += length;
            return name.length;
        }
    }
    return Length::None;
}

Directive parseDirective(const wchar_t *&at, Arguments &arguments)
{
    Directive directive;
    parseFlags(at, directive);
    directive.width = parseCount(at, arguments);
    if (directive.width < 0) {
        directive.left = true;
        directive.width = -directive.width;
    }
    if (*at == L'.') {
        ++at;
        directive.precision = std::max(parseCount(at, arguments), -1);
    }
    directive.length = parseLength(at);
    directive.conversion = *at;
    return directive;
}

/// @return false for a conversion that doesn't exist
bool putDirective(Sink &sink, const Directive &directive, Arguments &arguments)
{
    switch (directive.conversion) {
    case L'd':
    case L'i': {
        const std::intmax_t value = signedArgument(arguments, directive.length);
        const auto bits = static_cast<std::uintmax_t>(value);
        putInteger(sink, directive, value < 0 ? 0 - bits : bits, value < 0);
        return true;
    }
    case L'u':
    case L'o':
    case L'x':
    case L'X':
        putInteger(sink, directive, unsignedArgument(arguments, directive.length), false);
        return true;
    case L'p':
        putInteger(sink, directive, unsignedArgument(arguments, Length::Size), false);
        return true;
    case L'c':
    case L'C':
        putCharacter(sink, directive, arguments);
        return true;
    case L's':
    case L'S':
        putString(sink, directive, arguments);
        return true;
    case L'f':
    case L'F':
    case L'e':
    case L'E':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
        putFloat(sink, directive,
                 directive.length == Length::LongDouble
                     ? va_arg(arguments.list, long double)
                     : static_cast<long double>(va_arg(arguments.list, double)));
        return true;
    case L'n':
        static_cast<void>(va_arg(arguments.list, void *));
        return true;
    case L'%':
        sink.put(L'%');
        return true;
    default:
        return false;
    }
}

}  // namespace

std::size_t formatWide(wchar_t *out, std::size_t capacity, const wchar_t *format, va_list arguments)
{
    Sink sink(out, capacity);
    Arguments own{};
    va_copy(own.list, arguments);
    for (const wchar_t *at = format; *at != L'\0';) {
        if (*at != L'%') {
            sink.put(*at++);
            continue;
        }
        const wchar_t *start = at++;
        const Directive directive = parseDirective(at, own);
        if (putDirective(sink, directive, own)) {
            ++at;
        } else {
            std::for_each(start, at, [&sink](wchar_t c) { sink.put(c); });
        }
    }
    va_end(own.list);
    return sink.finish();
}

}  // namespace report
