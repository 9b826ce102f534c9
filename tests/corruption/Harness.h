#pragma once
#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// @file
/// Files that lie, made from good ones by rule: every prefix, every bit, and every number of the
/// field map set to what breaks readers. What a reader makes of each is compared with an accept
/// list.

namespace corruption
{

using Bytes = std::vector<std::uint8_t>;

/// What a reader made of a changed file. A sum of them is an accept list.
enum Verdict : unsigned {
    kRefused = 1,
    kSame = 2,   ///< read, with the content of the good file: the place means nothing
    kOther = 4,  ///< read, with other content: the place is content, and each bit of it counts
};
inline constexpr unsigned kTaken = kSame | kOther;
inline constexpr unsigned kAny = kRefused | kTaken;

/// How a number stands in its field.
enum class Form {
    Raw,     ///< no number
    Little,  ///< up to 4 bytes, lowest first
    Big,
    Hex,      ///< hexadecimal digits, as many as the field has
    Decimal,  ///< text of any length, which the lie replaces
};

/// A part of the file. What no field covers has to be refused when it changes.
struct Field {
    std::size_t at = 0;
    std::size_t size = 0;
    const char *meaning = "";
    unsigned accepted = kRefused;  ///< accept list of single bits
    Form form = Form::Raw;
    unsigned lies = 0;  ///< accept list of numbers that lie, where it isn't that of the bits
};

/// A good file of a format.
struct Seed {
    std::string name;
    Bytes bytes;
    /// All that a file says, as text to be compared; nothing when it is refused.
    std::function<std::optional<std::string>(std::span<const std::uint8_t> file)> read;
    std::vector<Field> fields = {};
    /// Accept list of the first `size` bytes alone; none: all of them are refused.
    std::function<unsigned(std::size_t size)> prefix = {};
};

/// The content of a file as text that differs when the content does.
class Content
{
public:
    Content &add(std::uint64_t number);
    Content &add(std::span<const std::uint8_t> bytes);
    Content &add(const std::string &text);
    [[nodiscard]] std::string done() const { return m_text; }

private:
    std::string m_text;
};

/// What a run over some seeds came to.
struct Tally {
    std::size_t seeds = 0;
    std::size_t cases = 0;
    std::map<Verdict, std::size_t> verdicts;
    /// Place, change and verdict, with how often: what the accept lists don't allow.
    std::map<std::string, std::size_t> faults;

    [[nodiscard]] std::string faultText() const;
};

/// Tries changes of a seed.
/// @param most  cases, spread evenly over all of them; 0: every one
void tryAll(const Seed &seed, std::size_t most, Tally &tally);

/// A file without a disk behind it, for readers that want a path; the next call replaces it.
QString storedFile(std::span<const std::uint8_t> bytes);

/// Adds fields one behind the other.
class FieldMap
{
public:
    explicit FieldMap(std::vector<Field> &fields, std::size_t at = 0) : m_fields(fields), m_at(at)
    {
    }

    FieldMap &bytes(std::size_t size, const char *meaning, unsigned accepted = kRefused)
    {
        return field(size, meaning, accepted, Form::Raw);
    }
    /// A number, lowest byte first.
    FieldMap &number(std::size_t size, const char *meaning, unsigned accepted = kRefused)
    {
        return field(size, meaning, accepted, Form::Little);
    }
    FieldMap &field(std::size_t size, const char *meaning, unsigned accepted, Form form)
    {
        m_fields.push_back({m_at, size, meaning, accepted, form});
        m_at += size;
        return *this;
    }

private:
    std::vector<Field> &m_fields;
    std::size_t m_at;
};

/// The seeds of each room, by format.
std::vector<Seed> firmwareSeeds();
std::vector<Seed> containerSeeds();
std::vector<Seed> packageSeeds();
std::vector<Seed> certificateSeeds();
std::vector<Seed> tableSeeds();
std::vector<Seed> documentSeeds();

}  // namespace corruption
