#include "preparation/listing/PackageReport.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

namespace preparation
{

namespace
{

/// A hostile package must not steer the terminal that its table is printed on.
QString printable(const std::string &text)
{
    QString shown = QString::fromStdString(text);
    std::replace_if(
        shown.begin(), shown.end(), [](QChar each) { return !each.isPrint(); }, QLatin1Char('?'));
    return shown;
}

}  // namespace

std::string hexOf(ByteView bytes)
{
    const QByteArray raw(reinterpret_cast<const char *>(bytes.data()),
                         static_cast<int>(bytes.size()));
    return raw.toHex().toStdString();
}

std::string hexNumber(std::uint32_t value, int digits)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*X", digits, value);
    return text;
}

PackageReport::PackageReport(std::string kind) : m_kind(std::move(kind))
{
    m_object.insert("kind", QString::fromStdString(m_kind));
}

void PackageReport::add(const char *name, const char *title, std::uint32_t number)
{
    m_object.insert(name, static_cast<qint64>(number));
    m_rows.push_back({title, std::to_string(number)});
}

void PackageReport::addHex(const char *name, const char *title, std::uint32_t number)
{
    m_object.insert(name, static_cast<qint64>(number));
    m_rows.push_back({title, hexNumber(number, 8)});
}

void PackageReport::add(const char *name, const char *title, ByteView bytes)
{
    add(name, title, hexOf(bytes));
}

void PackageReport::add(const char *name, const char *title, const std::string &text)
{
    const QString shown = printable(text);
    m_object.insert(name, shown);
    m_rows.push_back({title, shown.toStdString()});
}

void PackageReport::addList(const char *name, const std::string &heading, const QJsonArray &objects,
                            std::vector<TextRow> rows)
{
    m_object.insert(name, objects);
    if (rows.size() > 1) {
        m_lists.push_back({heading, std::move(rows)});
    }
}

void PackageReport::conclude(const std::string &verdict, bool authentic, bool damaged)
{
    m_authentic = authentic;
    m_damaged = damaged;
    add("verdict", "Verdict", verdict);
    m_object.insert("authentic", authentic);
}

std::string PackageReport::json() const
{
    return QJsonDocument(m_object).toJson().toStdString();
}

}  // namespace preparation
