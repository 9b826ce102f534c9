#pragma once
#include "files/base/Wipe.h"
#include "tools/console/Table.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>
#include <span>
#include <string>

namespace unpack
{

using ByteView = std::span<const std::uint8_t>;

/// Lower-case hexadecimal digits.
std::string hexOf(ByteView bytes);

/// "0x" and at least `digits` upper-case digits.
std::string hexNumber(std::uint32_t value, int digits);

/// What is told about a package of any kind but SFI, which has tables of its own.
class PackageReport
{
public:
    /// @param kind  "SMI"; also the title of the table
    explicit PackageReport(std::string kind);

    void add(const char *name, const char *title, std::uint32_t number);
    void addHex(const char *name, const char *title, std::uint32_t number);  ///< 0x and 8 digits
    void add(const char *name, const char *title, ByteView bytes);
    void add(const char *name, const char *title, const std::string &text);

    /// A list: an array of objects in JSON, a table of its own for people, its first row the
    /// titles.
    void addList(const char *name, const std::string &heading, const QJsonArray &objects,
                 std::vector<console::Row> rows);

    /// @param authentic  whether all is well under the key that was given
    void conclude(const std::string &verdict, bool authentic, bool damaged);

    [[nodiscard]] std::string table() const;
    [[nodiscard]] std::string json() const;
    [[nodiscard]] bool isAuthentic() const { return m_authentic; }
    [[nodiscard]] bool isDamaged() const { return m_damaged; }

    /// What `--out` writes; none when the kind has nothing to write, or it isn't authentic.
    std::optional<files::SecretBytes> plain;
    bool isSecret = false;  ///< the output is for its owner alone

private:
    std::string m_kind;
    QJsonObject m_object;
    std::vector<console::Row> m_rows;
    std::string m_lists;
    bool m_authentic = false;
    bool m_damaged = false;
};

}  // namespace unpack
