#include "AreaTable.h"

#include "AreaDetails.h"
#include "preparation/listing/PackageReport.h"
#include "tools/console/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

namespace unpack
{

namespace
{

using namespace preparation;

using console::alignedTable;
using console::Row;

QString hexBytes(ByteView bytes)
{
    const QByteArray raw(reinterpret_cast<const char *>(bytes.data()),
                         static_cast<int>(bytes.size()));
    return QString::fromLatin1(raw.toHex());
}

/// The letter, or its code where a terminal couldn't show it.
std::string letterText(std::uint8_t letter)
{
    return letter > 0x20 && letter < 0x7F ? std::string(1, static_cast<char>(letter))
                                          : hexNumber(letter, 2);
}

std::string fieldText(const Field &field)
{
    if (field.text) {
        return *field.text;
    }
    return field.hexadecimal ? hexNumber(field.number, 8) : std::to_string(field.number);
}

/// One table for each heading, in the order of first appearance.
std::string detailTables(const OpenedImage &image)
{
    std::vector<std::pair<std::string, std::vector<Row>>> tables;
    for (std::size_t i = 0; i < image.plain.size(); ++i) {
        const AreaPrefix &prefix = image.parsed.areas[i].prefix;
        const Details details = detailsOf(prefix.letter, image.plain[i]);
        if (details.fields.empty()) {
            continue;
        }
        auto table = std::find_if(tables.begin(), tables.end(), [&details](const auto &entry) {
            return entry.first == details.heading;
        });
        Row titles = {"Index", "Type"};
        Row row = {std::to_string(prefix.index), letterText(prefix.letter)};
        for (const Field &field : details.fields) {
            titles.push_back(field.title);
            row.push_back(fieldText(field));
        }
        if (table == tables.end()) {
            tables.push_back({details.heading, {titles}});
            table = tables.end() - 1;
        }
        table->second.push_back(row);
    }
    std::string text;
    for (const auto &[heading, rows] : tables) {
        text += "\n" + heading + "\n" + alignedTable(rows);
    }
    return text;
}

QJsonObject areaObject(const OpenedImage &image, std::size_t i)
{
    const ParsedArea &area = image.parsed.areas[i];
    QJsonObject object{
        {"index", area.prefix.index},
        {"type", QString(QLatin1Char(static_cast<char>(area.prefix.letter)))},
        {"label", areaLabel(area.prefix.letter)},
        {"imageVersion", area.prefix.imageVersion},
        {"address", static_cast<qint64>(area.prefix.address)},
        {"size", static_cast<qint64>(area.prefix.dataSize)},
        {"tag", hexBytes(area.tag)},
        {"hash", hexBytes(area.check)},
        {"verdict", verdictText(image.verdicts[i])},
    };
    if (image.authentic) {
        for (const Field &field : detailsOf(area.prefix.letter, image.plain[i]).fields) {
            object.insert(QString::fromStdString(field.name),
                          field.text ? QJsonValue(QString::fromStdString(*field.text))
                                     : QJsonValue(static_cast<qint64>(field.number)));
        }
    }
    return object;
}

}  // namespace

std::string areaTable(const OpenedImage &image)
{
    std::vector<Row> rows = {{"Index", "Type", "Label", "Version", "Address", "Size", "Verdict"}};
    for (std::size_t i = 0; i < image.parsed.areas.size(); ++i) {
        const AreaPrefix &prefix = image.parsed.areas[i].prefix;
        rows.push_back({std::to_string(prefix.index), letterText(prefix.letter),
                        areaLabel(prefix.letter), std::to_string(prefix.imageVersion),
                        hexNumber(prefix.address, 8), std::to_string(prefix.dataSize),
                        verdictText(image.verdicts[i])});
    }
    std::string text = "Format version " + std::to_string(image.parsed.version) + ", " +
                       std::to_string(image.parsed.areas.size()) + " areas, nonce " +
                       hexBytes(image.parsed.nonce).toStdString();
    if (image.profile) {
        text += ", profile " + hexNumber(*image.profile, 0);
    }
    return text + "\n" + alignedTable(rows) + detailTables(image);
}

std::string areaJson(const OpenedImage &image)
{
    QJsonArray areas;
    for (std::size_t i = 0; i < image.parsed.areas.size(); ++i) {
        areas.append(areaObject(image, i));
    }
    const QJsonObject object{
        {"kind", "SFI"},
        {"version", image.parsed.version},
        {"count", static_cast<qint64>(image.parsed.areas.size())},
        {"nonce", hexBytes(image.parsed.nonce)},
        {"profile", image.profile ? QJsonValue(static_cast<qint64>(*image.profile))
                                  : QJsonValue(QJsonValue::Null)},
        {"authentic", image.authentic},
        {"areas", areas},
    };
    return QJsonDocument(object).toJson().toStdString();
}

}  // namespace unpack
