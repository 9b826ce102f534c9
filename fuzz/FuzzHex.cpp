#include "FuzzWords.h"

#include "files/firmware/HexText.h"
#include "support/HexLines.h"
#include "support/PlainHexText.h"

#include <QString>

#include <algorithm>

namespace
{

/// Feeds the text in two pieces; the break is chosen by the input's own bytes.
void compare(const std::vector<std::uint8_t> &text, std::size_t cut)
{
    const PlainHexResult plain = plainHexText(text);
    const std::string fault = QString::fromLatin1(plain.fault.c_str()).toStdString();
    files::HexText parser;
    const std::span<const std::uint8_t> all(text);
    auto taken = parser.consume(all.first(cut), false);
    if (taken) {
        taken = parser.consume(all.subspan(*taken), true);
    }
    require(parser.lineNumber() == plain.line);
    if (!taken) {
        require(taken.error().text == fault);
        using files::ErrorCode;
        requireWords(taken.error(), {{ErrorCode::BadDigit, "parsing "},
                                     {ErrorCode::BadDigit, "expecting digit (0-9), found: '"},
                                     {ErrorCode::BadChecksum, "found checksum 0x"},
                                     {ErrorCode::BadValue, "Unrecognized "},
                                     {ErrorCode::BadValue, "doesn't start with an 'S'"}});
        return;
    }
    require(fault.empty());
    const auto segments = parser.finish();
    require(segments->size() == plain.segments.size());
    for (std::size_t i = 0; i < segments->size(); ++i) {
        const auto &found = (*segments)[i];
        const auto &expected = plain.segments[i];
        require(found.address == expected.address && found.size == expected.bytes.size());
        require(std::equal(expected.bytes.begin(), expected.bytes.end(), found.data.get()));
    }
}

std::vector<std::uint8_t> bytesOf(const std::string &text)
{
    return {text.begin(), text.end()};
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::string intel = intelLine(4, 0, {8, 0}) + intelLine(2, 0, {0x10, 0});
    std::string motorola = srecordLine('0', 0, {'a'});
    for (unsigned i = 0; i < 24; ++i) {
        intel += intelLine(0, i * 32, patternBytes(32, i));
        motorola += srecordLine('3', 0x8000000 + i * 32, patternBytes(32, i));
    }
    intel += intelLine(0, 0xFFF8, patternBytes(16)) + intelLine(3, 0, {0, 0, 0, 0}) +
             intelLine(5, 0, {8, 0, 0, 1}) + intelLine(1, 0, {});
    motorola += srecordLine('1', 0, patternBytes(180)) + srecordLine('2', 0x10000, {1}) +
                srecordLine('5', 3, {}) + srecordLine('7', 0, {});
    return {bytesOf(intel), bytesOf(motorola),
            bytesOf("note\r\n" + intelLine(0, 0, {1, 2}) + "; comment\r\n:00000001FF\r\n"),
            bytesOf(intelLine(0, 0, patternBytes(190)) + intelLine(0, 190, patternBytes(194)) +
                    std::string(450, ' ') + "\n" + intelLine(0, 400, {5}))};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::vector<std::uint8_t> text(data, data + size);
    compare(text, size == 0 ? 0 : (std::size_t{data[size / 2]} * 7 + data[size - 1]) % size);
    return 0;
}
