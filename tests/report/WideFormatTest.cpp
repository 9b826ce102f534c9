#include "report/WideFormat.h"

#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>

namespace
{

QString formatted(const wchar_t *format, ...)
{
    wchar_t text[600];
    va_list arguments;
    va_start(arguments, format);
    const std::size_t length = report::formatWide(text, std::size(text), format, arguments);
    va_end(arguments);
    EXPECT_EQ(text[length], L'\0');
    return QString::fromWCharArray(text, static_cast<int>(length));
}

// The formats come from the tables below.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

/// The C library's own result; only fit for numbers under the C locale.
template <typename... Values>
void expectAsInC(const char *format, Values... values)
{
    char expected[600];
    std::snprintf(expected, sizeof expected, format, values...);
    EXPECT_EQ(formatted(QString::fromLatin1(format).toStdWString().c_str(), values...),
              QString::fromLatin1(expected))
        << format;
}

/// Sets the first of the locales that this machine has, for one test.
class LocaleGuard
{
public:
    explicit LocaleGuard(std::initializer_list<const char *> names)
    {
        for (const char *name : names) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                found = true;
                break;
            }
        }
    }
    ~LocaleGuard() { std::setlocale(LC_ALL, m_before.c_str()); }

    LocaleGuard(const LocaleGuard &) = delete;
    LocaleGuard &operator=(const LocaleGuard &) = delete;

    bool found = false;

private:
    std::string m_before = std::setlocale(LC_ALL, nullptr);
};

TEST(WideFormat, IntegersAreThoseOfTheCLibrary)
{
    const LocaleGuard locale({"C"});
    for (const char *format :
         {"%d",     "%i",   "%5d|",  "%-5d|", "%05d", "%+d",  "% d", "%.4d", "%8.4d",
          "%08.4d", "%u",   "%x",    "%X",    "%08X", "%02x", "%#x", "%#X",  "%o",
          "%#o",    "%.0d", "%#.0o", "%hhd",  "%hd",  "%hhu", "%hu"}) {
        for (const int value : {0, 1, -1, 10, 0xAB, std::numeric_limits<int>::min(),
                                std::numeric_limits<int>::max()}) {
            expectAsInC(format, value);
        }
    }
    for (const char *format :
         {"%ld", "%lld", "%lu", "%llu", "%zu", "%zd", "%jd", "%td", "%lx", "%016llX"}) {
        for (const long value : {0L, -1L, std::numeric_limits<long>::min(), 0x123456789ABCDEFL}) {
            expectAsInC(format, value);
        }
    }
    expectAsInC("%*d|%-*d|%.*d", 6, 42, 6, 42, 4, 42);
    expectAsInC("%*d|%.*d", -6, 42, -1, 42);
    expectAsInC("100%% %d", 5);
}

TEST(WideFormat, FloatsAreThoseOfTheCLibrary)
{
    const LocaleGuard locale({"C"});
    for (const char *format : {"%g", "%.3g", "%f", "%.0f", "%.2f", "%e", "%E", "%.0g", "%10.3g|",
                               "%-10.3g|", "%+010.2f", "% g", "%G"}) {
        for (const double value : {0.0, -0.0, 1.0, 1.43051, 999.5, 1464.84, 1e-5, 1e300, -2.5, 0.1,
                                   static_cast<double>(INFINITY), -static_cast<double>(INFINITY)}) {
            expectAsInC(format, value);
        }
    }
    expectAsInC("%Lg %.3Lf", 1.5L, 2.25L);
    expectAsInC("%a %A", 1.5, 1.5);
}

TEST(WideFormat, TextComesOutWholeInEveryLocale)
{
    for (const char *name : {"C", "C.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1"}) {
        const LocaleGuard locale({name});
        if (!locale.found) {
            continue;
        }
        const QString expected = QString::fromUtf8("The file é€𝄞.bin of 1.5 KB");
        EXPECT_EQ(formatted(L"The file %ls of %g KB", L"é€\U0001D11E.bin", 1.5), expected) << name;
        EXPECT_EQ(
            formatted(L"The file %s of %g KB", "\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E.bin", 1.5),
            expected)
            << name;
        EXPECT_EQ(formatted(L"%c%c", 0xE9, 0x41), QString::fromUtf8("éA")) << name;
    }
}

TEST(WideFormat, NumbersHaveAPointWhereTheLocaleHasAComma)
{
    // Plain machines have no such locale, so one is compiled from the system's sources.
    const QTemporaryDir folder;
    QProcess::execute(QStringLiteral("localedef"),
                      {"--no-archive", "-c", "-i", "de_DE", "-f", "UTF-8",
                       folder.filePath(QStringLiteral("de_DE.UTF-8"))});
    qputenv("LOCPATH", QFile::encodeName(folder.path()));
    const LocaleGuard locale({"de_DE.UTF-8"});
    qunsetenv("LOCPATH");
    ASSERT_TRUE(locale.found) << "localedef or its sources are missing";
    char comma[8];
    std::snprintf(comma, sizeof comma, "%.1f", 1.5);
    ASSERT_STREQ(comma, "1,5");
    EXPECT_EQ(formatted(L"%g %.2f %ls", 1.5, 2.25, L"é"), QString::fromUtf8("1.5 2.25 é"));
}

TEST(WideFormat, OddTextArguments)
{
    EXPECT_EQ(formatted(L"found '%c'", 0), "found ''");
    EXPECT_EQ(formatted(L"found '%c'", '\n'), "found '\n'");
    EXPECT_EQ(formatted(L"[%5s][%-5s][%.2s]", "ab", "ab", "abc"), "[   ab][ab   ][ab]");
    EXPECT_EQ(formatted(L"[%5ls][%-5ls][%.2ls]", L"ab", L"ab", L"abc"), "[   ab][ab   ][ab]");
    EXPECT_EQ(formatted(L"%ls %s", static_cast<wchar_t *>(nullptr), static_cast<char *>(nullptr)),
              "(null) (null)");
    // Cut, overlong, surrogate and stray bytes print as Latin-1; none is lost, nothing is read on.
    EXPECT_EQ(formatted(L"%s|", "\xC3"), QString::fromUtf8("Ã|"));
    EXPECT_EQ(formatted(L"%s|", "\xC0\x80\xFF"), QString::fromLatin1("\xC0\x80\xFF|"));
    EXPECT_EQ(formatted(L"%s|", "\xED\xA0\x80"), QString::fromLatin1("\xED\xA0\x80|"));
    EXPECT_EQ(formatted(L"%.1s|", "\xC3\xA9\xC3\xA9"), QString::fromUtf8("é|"));
    EXPECT_EQ(formatted(L"%.3ls", std::wstring(L"abcd").data()), "abc");
}

TEST(WideFormat, BrokenFormatsAreHarmless)
{
    EXPECT_EQ(formatted(L"50%"), "50%");
    EXPECT_EQ(formatted(L"%q %y", 1), "%q %y");
    EXPECT_EQ(formatted(L"%-08ll"), "%-08ll");
    int untouched = 7;
    EXPECT_EQ(formatted(L"a%nb", &untouched), "ab");
    EXPECT_EQ(untouched, 7);
    EXPECT_EQ(formatted(L"%99999999999d", 1).size(), 599);
}

TEST(WideFormat, CutsAtTheEndOfTheBuffer)
{
    struct Case {
        std::size_t capacity;
        std::size_t expected;
    };
    for (const Case &c : {Case{1, 0}, Case{5, 4}, Case{8, 7}, Case{9, 7}}) {
        wchar_t text[10];
        std::fill(std::begin(text), std::end(text), L'#');
        va_list none{};
        EXPECT_EQ(report::formatWide(text, c.capacity, L"1234567", none), c.expected);
        EXPECT_EQ(text[c.expected], L'\0');
        EXPECT_EQ(text[c.capacity], L'#') << "written behind the end";
    }
}

}  // namespace
