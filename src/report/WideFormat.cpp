#include "report/WideFormat.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <locale.h>
#include <optional>
#include <sys/types.h>

namespace report
{
namespace
{

constexpr std::size_t kTextRoom = 30'720;  // characters of one argument, terminator included

/// The locale of all messages: numbers with a point, narrow text in UTF-8. It is part of the C
/// library, so it is there on every machine; without it only ASCII would be read as UTF-8.
locale_t messageLocale()
{
    static const locale_t made = [] {
        const locale_t utf8 = ::newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
        return utf8 != nullptr ? utf8 : ::newlocale(LC_ALL_MASK, "C", nullptr);
    }();
    return made;
}

/// Puts this thread under the locale of messages.
class LocaleScope
{
public:
    LocaleScope() : m_before(::uselocale(messageLocale())) {}
    ~LocaleScope() { ::uselocale(m_before); }
    LocaleScope(const LocaleScope &) = delete;
    LocaleScope &operator=(const LocaleScope &) = delete;

private:
    locale_t m_before;
};

// A va_list is an array on some systems; in a struct it can be handed on by reference everywhere.
struct Arguments {
    va_list list;
};

/// One "%..." of the format, with its stars replaced by their numbers.
struct Directive {
    wchar_t flags[48] = L"%";  ///< up to the precision, "%-08.3"
    std::size_t count = 1;     ///< characters in `flags`
    std::optional<int> precision;
    wchar_t length[3] = {};
    wchar_t conversion = 0;

    /// `flags` has room for the few flags and two numbers that make sense.
    bool append(wchar_t character)
    {
        if (count + 1 >= std::size(flags)) {
            return false;
        }
        flags[count++] = character;
        return true;
    }
    bool appendNumber(int number)
    {
        wchar_t digits[16];
        std::swprintf(digits, std::size(digits), L"%d", number);
        return std::all_of(digits, digits + std::wcslen(digits),
                           [this](wchar_t digit) { return append(digit); });
    }
};

bool isOneOf(wchar_t character, const wchar_t *set)
{
    return character != L'\0' && std::wcschr(set, character) != nullptr;
}

/// A number in the format, or the argument that a star stands for.
std::optional<int> readCount(const wchar_t *&at, Arguments &arguments)
{
    constexpr int kCap = 1'000'000;  // far above every buffer, far below overflow
    if (*at == L'*') {
        ++at;
        return std::clamp(va_arg(arguments.list, int), -kCap, kCap);
    }
    std::optional<int> count;
    for (; isOneOf(*at, L"0123456789"); ++at) {
        count = std::min(count.value_or(0) * 10 + static_cast<int>(*at - L'0'), kCap);
    }
    return count;
}

/// @param at  behind the percent sign; moves to the conversion's letter
/// @return false for more flags than there are
bool parseDirective(const wchar_t *&at, Arguments &arguments, Directive &directive)
{
    bool fits = true;
    for (; isOneOf(*at, L"-+ #0"); ++at) {
        fits = fits && directive.append(*at);
    }
    // A negative width is a flag '-' and a width.
    if (const auto width = readCount(at, arguments)) {
        fits = fits && directive.appendNumber(*width);
    }
    if (*at == L'.') {
        ++at;
        // A negative precision counts as none, an empty one as 0.
        directive.precision = readCount(at, arguments).value_or(0);
        if (*directive.precision < 0) {
            directive.precision.reset();
        } else {
            fits = fits && directive.append(L'.') && directive.appendNumber(*directive.precision);
        }
    }
    for (std::size_t i = 0; i < 2 && isOneOf(*at, L"hljztLq"); ++at, ++i) {
        directive.length[i] = *at;
    }
    directive.conversion = *at;
    return fits;
}

class Message
{
public:
    Message(wchar_t *out, std::size_t capacity) : m_out(out), m_room(capacity) { *out = L'\0'; }

    [[nodiscard]] std::size_t count() const { return m_count; }

    void putPlain(const wchar_t *from, const wchar_t *end)
    {
        for (; from != end && m_count + 1 < m_room; ++from) {
            m_out[m_count++] = *from;
        }
        m_out[m_count] = L'\0';
    }

    /// Lets the C library format one value. What doesn't fit is cut.
    template <typename Value>
    void put(const Directive &directive, const wchar_t *length, wchar_t conversion, Value value)
    {
        wchar_t format[64];
        std::swprintf(format, std::size(format), L"%ls%ls%lc", directive.flags, length,
                      static_cast<std::wint_t>(conversion));
        std::swprintf(m_out + m_count, m_room - m_count, format, value);
        m_out[m_room - 1] = L'\0';  // the library cuts without an end
        m_count += std::wcslen(m_out + m_count);
    }

    bool putDirective(const Directive &directive, Arguments &arguments);

private:
    void putInteger(const Directive &directive, Arguments &arguments);
    void putString(const Directive &directive, Arguments &arguments);
    void putNarrow(const Directive &directive, const char *text);

    wchar_t *m_out;
    std::size_t m_room;
    std::size_t m_count = 0;
};

void Message::putInteger(const Directive &directive, Arguments &arguments)
{
    const wchar_t *length = directive.length;
    switch (length[0] == L'l' && length[1] == L'l' ? L'q' : length[0]) {
    case L'l':
        return put(directive, length, directive.conversion, va_arg(arguments.list, long));
    case L'q':
        return put(directive, length, directive.conversion, va_arg(arguments.list, long long));
    case L'j':
        return put(directive, length, directive.conversion, va_arg(arguments.list, std::intmax_t));
    case L'z':
        return put(directive, length, directive.conversion, va_arg(arguments.list, std::size_t));
    case L't':
        return put(directive, length, directive.conversion, va_arg(arguments.list, std::ptrdiff_t));
    default:
        return put(directive, length, directive.conversion, va_arg(arguments.list, int));
    }
}

/// The C library would end the message at the first byte that isn't UTF-8; here that byte is taken
/// as Latin-1.
void Message::putNarrow(const Directive &directive, const char *text)
{
    wchar_t wide[kTextRoom];
    std::size_t count = 0;
    const std::size_t limit = std::min<std::size_t>(
        static_cast<std::size_t>(directive.precision.value_or(INT32_MAX)), kTextRoom - 1);
    while (count < limit && *text != '\0') {
        std::mbstate_t state = {};
        constexpr std::size_t kLongestCharacter = 4;
        const std::size_t bytes =
            std::mbrtowc(&wide[count], text, ::strnlen(text, kLongestCharacter), &state);
        const bool isRead = bytes >= 1 && bytes <= kLongestCharacter;
        if (!isRead) {
            wide[count] = static_cast<wchar_t>(static_cast<unsigned char>(*text));
        }
        ++count;
        text += isRead ? bytes : 1;
    }
    wide[count] = L'\0';
    put(directive, L"l", L's', wide);
}

void Message::putString(const Directive &directive, Arguments &arguments)
{
    if (directive.length[0] == L'l' || directive.conversion == L'S') {
        const wchar_t *text = va_arg(arguments.list, const wchar_t *);
        return put(directive, L"l", L's', text == nullptr ? L"(null)" : text);
    }
    const char *text = va_arg(arguments.list, const char *);
    putNarrow(directive, text == nullptr ? "(null)" : text);
}

/// @return false for a conversion that doesn't exist
bool Message::putDirective(const Directive &directive, Arguments &arguments)
{
    const wchar_t kind = directive.conversion;
    if (isOneOf(kind, L"diouxX")) {
        putInteger(directive, arguments);
    } else if (isOneOf(kind, L"fFeEgGaA")) {
        if (directive.length[0] == L'L') {
            put(directive, L"L", kind, va_arg(arguments.list, long double));
        } else {
            put(directive, L"", kind, va_arg(arguments.list, double));
        }
    } else if (isOneOf(kind, L"sS")) {
        putString(directive, arguments);
    } else if (isOneOf(kind, L"cC")) {
        // A byte counts as Latin-1. As a string of one, so that a zero doesn't end the message.
        const bool isWide = directive.length[0] == L'l' || kind == L'C';
        const wchar_t text[] = {
            isWide ? static_cast<wchar_t>(va_arg(arguments.list, std::wint_t))
                   : static_cast<wchar_t>(static_cast<unsigned char>(va_arg(arguments.list, int))),
            L'\0'};
        put(directive, L"l", L's', static_cast<const wchar_t *>(text));
    } else if (kind == L'p') {
        put(directive, L"", kind, va_arg(arguments.list, void *));
    } else if (kind == L'n') {
        static_cast<void>(va_arg(arguments.list, void *));  // nothing is stored
    } else if (kind == L'%') {
        putPlain(&kind, &kind + 1);
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::size_t formatWide(wchar_t *out, std::size_t capacity, const wchar_t *format, va_list arguments)
{
    const LocaleScope locale;
    Message message(out, capacity);
    Arguments own{};
    va_copy(own.list, arguments);
    while (*format != L'\0') {
        const wchar_t *percent = std::wcschr(format, L'%');
        const wchar_t *at = percent != nullptr ? percent : format + std::wcslen(format);
        message.putPlain(format, at);
        if (percent == nullptr) {
            break;
        }
        Directive directive;
        ++at;
        if (parseDirective(at, own, directive) && message.putDirective(directive, own)) {
            ++at;
        } else {
            message.putPlain(percent, at);
        }
        format = at;
    }
    va_end(own.list);
    return message.count();
}

}  // namespace report
