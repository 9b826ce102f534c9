#include "corruption/Harness.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sys/mman.h>
#include <unistd.h>

namespace corruption
{

namespace
{

/// One change of a seed, by its number.
struct Change {
    Bytes bytes;
    std::string what;
    unsigned accepted = kRefused;
};

constexpr std::size_t kLies = 12;
constexpr std::size_t kByteChanges = 10;

const Field *fieldAt(const Seed &seed, std::size_t at)
{
    const auto found = std::ranges::find_if(seed.fields, [at](const Field &field) {
        return at >= field.at && at - field.at < field.size;
    });
    return found == seed.fields.end() ? nullptr : &*found;
}

std::uint64_t numberIn(const Seed &seed, const Field &field)
{
    const auto *from = seed.bytes.data() + field.at;
    std::uint64_t value = 0;
    if (field.form == Form::Hex || field.form == Form::Decimal) {
        const std::string text(from, from + field.size);
        return std::stoull(text, nullptr, field.form == Form::Hex ? 16 : 0);
    }
    for (std::size_t i = 0; i < field.size; ++i) {
        value = value << 8 | from[field.form == Form::Big ? i : field.size - 1 - i];
    }
    return value;
}

/// The numbers that break readers; some are the same, and some don't fit the field.
std::array<std::uint64_t, kLies> liesAbout(std::uint64_t value, std::uint64_t rest)
{
    return {0,          1,           value - 1,   value + 1, 0x8000, 0xFFFF,
            0x7FFFFFFF, 0x80000000U, 0xFFFFFFFFU, rest - 1,  rest,   rest + 1};
}

/// The number in the form of its field; empty when it doesn't fit there.
Bytes encoded(const Field &field, std::uint64_t value)
{
    if (field.form == Form::Decimal) {
        const std::string text = std::to_string(value);
        return {text.begin(), text.end()};
    }
    const std::size_t bits = field.form == Form::Hex ? 4 : 8;
    Bytes digits;
    for (std::size_t i = 0; i < field.size; ++i, value >>= bits) {
        const auto digit = static_cast<std::uint8_t>(value & ((1U << bits) - 1));
        digits.push_back(
            field.form == Form::Hex ? static_cast<std::uint8_t>("0123456789ABCDEF"[digit]) : digit);
    }
    if (field.form != Form::Little) {
        std::ranges::reverse(digits);
    }
    return value == 0 ? digits : Bytes();
}

Change prefixOf(const Seed &seed, std::size_t size)
{
    return {{seed.bytes.begin(), seed.bytes.begin() + static_cast<std::ptrdiff_t>(size)},
            "cut to " + std::to_string(size),
            seed.prefix ? seed.prefix(size) : static_cast<unsigned>(kRefused)};
}

/// A byte that is another one. Letters of hexadecimal digits may be small or large.
Change byteOf(const Seed &seed, std::size_t at, std::uint8_t byte, const std::string &what)
{
    const Field *field = fieldAt(seed, at);
    Change change{seed.bytes,
                  std::string(field == nullptr ? "no field" : field->meaning) + " at " +
                      std::to_string(at) + ", " + what,
                  field == nullptr ? static_cast<unsigned>(kRefused) : field->accepted};
    change.bytes[at] = byte;
    if (field != nullptr && field->form == Form::Hex && (byte ^ seed.bytes[at]) == 0x20 &&
        std::isalpha(byte) != 0) {
        change.accepted = kSame;
    }
    return change;
}

/// Each of the eight bits, and all of them clear and set.
std::optional<Change> byteChangeOf(const Seed &seed, std::size_t number)
{
    const std::size_t at = number / kByteChanges;
    const std::size_t kind = number % kByteChanges;
    const std::uint8_t truth = seed.bytes[at];
    if (kind < 8) {
        return byteOf(seed, at, static_cast<std::uint8_t>(truth ^ 1U << kind),
                      "bit " + std::to_string(kind));
    }
    const std::uint8_t lie = kind == 8 ? 0x00 : 0xFF;
    return truth == lie ? std::nullopt
                        : std::optional(byteOf(seed, at, lie, kind == 8 ? "clear" : "set"));
}

/// Nothing where the lie is the truth, or doesn't fit.
std::optional<Change> lieOf(const Seed &seed, std::size_t number)
{
    const Field &field = seed.fields[number / kLies];
    constexpr std::size_t kMostDigits = 8;
    if (field.form == Form::Raw || (field.form == Form::Hex && field.size > kMostDigits)) {
        return std::nullopt;
    }
    const std::uint64_t truth = numberIn(seed, field);
    const std::uint64_t lie =
        liesAbout(truth, seed.bytes.size() - field.at - field.size).at(number % kLies);
    const Bytes text = encoded(field, lie);
    if (lie == truth || text.empty()) {
        return std::nullopt;
    }
    Change change{seed.bytes, std::string(field.meaning) + " = " + std::to_string(lie),
                  field.lies != 0 ? field.lies : field.accepted};
    const auto at = change.bytes.begin() + static_cast<std::ptrdiff_t>(field.at);
    change.bytes.insert(change.bytes.erase(at, at + static_cast<std::ptrdiff_t>(field.size)),
                        text.begin(), text.end());
    return change;
}

std::optional<Change> changeOf(const Seed &seed, std::size_t number)
{
    const std::size_t size = seed.bytes.size();
    if (number < size) {
        return prefixOf(seed, number);
    }
    number -= size;
    return number < size * kByteChanges ? byteChangeOf(seed, number)
                                        : lieOf(seed, number - size * kByteChanges);
}

const char *nameOf(Verdict verdict)
{
    return verdict == kRefused ? "refused" : verdict == kSame ? "read as it was" : "read otherwise";
}

}  // namespace

Content &Content::add(std::uint64_t number)
{
    m_text += std::to_string(number) + ' ';
    return *this;
}

Content &Content::add(std::span<const std::uint8_t> bytes)
{
    add(bytes.size());
    m_text.append(bytes.begin(), bytes.end());
    return *this;
}

Content &Content::add(const std::string &text)
{
    add(text.size());
    m_text += text;
    return *this;
}

QString storedFile(std::span<const std::uint8_t> bytes)
{
    static const int handle = ::memfd_create("input", MFD_CLOEXEC);
    if (::ftruncate(handle, 0) != 0 ||
        ::pwrite(handle, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        qFatal("the test can't write its file");
    }
    return QStringLiteral("/proc/self/fd/%1").arg(handle);
}

std::string Tally::faultText() const
{
    std::string text;
    for (const auto &[fault, count] : faults) {
        text += fault + " (" + std::to_string(count) + " times)\n";
    }
    return text;
}

void tryAll(const Seed &seed, std::size_t most, Tally &tally)
{
    const auto good = seed.read(seed.bytes);
    ++tally.seeds;
    if (!good) {
        ++tally.faults[seed.name + ": the good file is refused"];
        return;
    }
    const std::size_t all = seed.bytes.size() * (1 + kByteChanges) + seed.fields.size() * kLies;
    // Neither even nor a multiple of five, so that all changes of a byte have their turn.
    std::size_t step = most == 0 || all <= most ? 1 : all / most | 1;
    step += step % 5 == 0 ? 2 : 0;
    for (std::size_t number = 0; number < all; number += step) {
        const auto change = changeOf(seed, number);
        if (!change) {
            continue;
        }
        const auto content = seed.read(change->bytes);
        const Verdict verdict = !content ? kRefused : *content == *good ? kSame : kOther;
        ++tally.cases;
        ++tally.verdicts[verdict];
        if ((change->accepted & verdict) == 0) {
            ++tally.faults[seed.name + ": " + change->what + ": " + nameOf(verdict)];
        }
    }
}

}  // namespace corruption
