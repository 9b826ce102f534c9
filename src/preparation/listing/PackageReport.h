#pragma once
#include "files/base/Wipe.h"
#include "preparation/sealing/SealCipher.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>
#include <string>
#include <vector>

namespace preparation
{

/// Cells of a table's row, UTF-8.
using TextRow = std::vector<std::string>;

/// Lower-case hexadecimal digits.
std::string hexOf(ByteView bytes);

/// "0x" and at least `digits` upper-case digits.
std::string hexNumber(std::uint32_t value, int digits);

/// What is told about a package, to people and to programs.
class PackageReport
{
public:
    /// A list below the fields; its first row has the titles.
    struct List {
        std::string heading;
        std::vector<TextRow> rows;
    };

    /// @param kind  "SMI"
    explicit PackageReport(std::string kind);

    void add(const char *name, const char *title, std::uint32_t number);
    void addHex(const char *name, const char *title, std::uint32_t number);  ///< 0x and 8 digits
    void add(const char *name, const char *title, ByteView bytes);
    /// @param text  UTF-8 of a package: what can't be printed is shown as a question mark
    void add(const char *name, const char *title, const std::string &text);

    /// A list: an array of objects in JSON; for people one of `lists` when it has rows.
    /// @param rows  the titles first
    void addList(const char *name, const std::string &heading, const QJsonArray &objects,
                 std::vector<TextRow> rows);

    /// @param authentic  whether all is well under the key that was given
    void conclude(const std::string &verdict, bool authentic, bool damaged);

    [[nodiscard]] const std::string &kind() const { return m_kind; }
    [[nodiscard]] const std::vector<TextRow> &fields() const { return m_rows; }  ///< title, value
    [[nodiscard]] const std::vector<List> &lists() const { return m_lists; }
    [[nodiscard]] std::string json() const;
    [[nodiscard]] bool isAuthentic() const { return m_authentic; }
    [[nodiscard]] bool isDamaged() const { return m_damaged; }

    /// What `--out` writes; none when the kind has nothing to write, or it isn't authentic.
    std::optional<files::SecretBytes> plain;
    bool isSecret = false;  ///< the output is for its owner alone

private:
    std::string m_kind;
    QJsonObject m_object;
    std::vector<TextRow> m_rows;
    std::vector<List> m_lists;
    bool m_authentic = false;
    bool m_damaged = false;
};

}  // namespace preparation
