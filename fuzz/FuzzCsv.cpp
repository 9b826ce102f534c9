#include "FuzzSupport.h"

#include "files/base/LittleEndian.h"
#include "files/tables/CsvReader.h"

#include <QStringList>

#include <string_view>

namespace
{

struct Plain {
    std::vector<std::uint8_t> values;
    std::size_t badLine = 0;  ///< from 1; 0 when all are good
};

/// The plain version: whole lists of lines and fields, one step after the other.
Plain plainValues(const QByteArray &text, bool isBare)
{
    Plain plain;
    std::size_t number = 0;
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (const QByteArray &line : lines) {
        ++number;
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() < 2 || (!isBare && fields.size() % 2 != 0)) {
            return {{}, number};
        }
        for (int i = isBare ? 0 : 1; i < fields.size(); i += isBare ? 1 : 2) {
            const bool isFirst = number == 1 && i == 0;
            if (!isFirst && fields[i].startsWith("\xEF\xBB\xBF")) {
                return {{}, number};
            }
            bool ok = false;
            const QString field = QString::fromUtf8(fields[i].constData(), fields[i].size());
            const std::uint32_t value = field.simplified().toUInt(&ok, isBare ? 16 : 0);
            if (!ok) {
                return {{}, number};
            }
            files::appendU32le(plain.values, value);
        }
    }
    return plain;
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
            seed(1, "1A, 2B,0xFFFFFFFF\n00000000,deadbeef"), seed(0, "a,\xC2\xA0 4294967296 \n"),
            seed(1, "\xEF\xBB\xBF"
                    "1,2\n\xEF\xBB\xBF"
                    "3,4")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const bool isBare = data[0] % 2 != 0;
    const QByteArray text(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    const auto record =
        files::readValues(std::string_view(text.constData(), static_cast<std::size_t>(text.size())),
                          isBare ? files::ValueTable::BareValues : files::ValueTable::Pairs);
    const Plain plain = plainValues(text, isBare);
    require(record.has_value() == (plain.badLine == 0));
    if (!record) {
        require(record.error().code == files::ErrorCode::BadValue);
        require(record.error().text == "line " + std::to_string(plain.badLine) + " is invalid");
        return 0;
    }
    const SegmentData &segment = (*record)->segments.at(0);
    require((*record)->segmentCount == 1);
    require(std::vector(segment.data, segment.data + segment.size) == plain.values);
    return 0;
}
