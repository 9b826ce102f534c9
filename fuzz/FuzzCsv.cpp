#include "FuzzFile.h"
#include "FuzzSupport.h"

#include "files/FileManager.h"
#include "files/base/LittleEndian.h"

#include <QStringList>

#include <optional>
#include <string_view>

namespace
{

/// The plain version: whole lists of lines and fields, one step after the other.
std::optional<std::vector<std::uint8_t>> plainValues(const QByteArray &text, bool isBare)
{
    std::vector<std::uint8_t> values;
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() < 2 || (!isBare && fields.size() % 2 != 0)) {
            return std::nullopt;
        }
        for (int i = isBare ? 0 : 1; i < fields.size(); i += isBare ? 1 : 2) {
            bool ok = false;
            const QString field = QString::fromUtf8(fields[i].constData(), fields[i].size());
            const std::uint32_t value = field.simplified().toUInt(&ok, isBare ? 16 : 0);
            if (!ok) {
                return std::nullopt;
            }
            files::appendU32le(values, value);
        }
    }
    return values;
}

std::vector<std::uint8_t> seed(std::uint8_t kind, std::string_view text)
{
    std::vector<std::uint8_t> bytes = {kind};
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {seed(0, "OPTR, 0x1FEFF8AA\nSECBOOTADD,0x0C000\r\nWRP, 010,X,255\n"),
            seed(1, "1A, 2B,0xFFFFFFFF\n00000000,deadbeef"), seed(0, "a,\xC2\xA0 4294967296 \n")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const bool isBare = data[0] % 2 != 0;
    const QByteArray text(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    FuzzFile file(isBare ? "a.kcsv" : "a.csv", {data + 1, size - 1});
    FuzzReports reports;
    FileManager manager;
    const files::RecordOwner<FileData> record(new FileData);
    const bool accepted = manager.extract_csv_config(&file, record.get());
    const auto expected = plainValues(text, isBare);
    require(accepted == expected.has_value());
    require(reports.levels() == (accepted ? std::vector<int>{} : std::vector<int>{5}));
    if (accepted) {
        const SegmentData &segment = record->segments.at(0);
        require(record->segmentCount == 1);
        require(std::vector(segment.data, segment.data + segment.size) == *expected);
    }
    return 0;
}
