// The files that the image tool takes besides packages; the first byte chooses one: a pass phrase,
// Base64, an AES key, firmware in each of its formats.
#include "FuzzFile.h"

#include "support/PlainHexText.h"
#include "tools/imgtool/Firmware.h"
#include "tools/imgtool/KeyOption.h"

#include <QByteArray>

#include <algorithm>
#include <string_view>

#include <unistd.h>

namespace
{

using Bytes = std::span<const std::uint8_t>;
using files::ErrorCode;

std::string_view textOf(Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

Bytes bytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

/// A file that every family may use.
const FuzzPath &plainFile()
{
    static const FuzzPath file(QStringLiteral("input"));
    return file;
}

/// @param option  0 "pass-file", 1 "pass-fd"
/// @param line    what must come back; empty: a refusal
void checkPhraseFrom(std::size_t option, const std::string &value, std::string_view line)
{
    const auto phrase = std::make_shared<imgtool::PassPhrase>();
    require(imgtool::PassPhrase::options(phrase).at(option).take(value.c_str()).has_value());
    const auto given = phrase->of("a key");
    require(given.has_value() == !line.empty());
    if (!given) {
        require(given.error().code == ErrorCode::BadValue && !given.error().text.empty());
        return;
    }
    require(textOf(*given) == line);
    const auto again = phrase->ofNew("another key");  // read once only
    require(again && again->data() == given->data());
}

void checkPhrase(Bytes bytes)
{
    constexpr std::size_t kLongest = 1024;
    const std::string_view text = textOf(bytes);
    std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    if (line.size() > kLongest) {
        line = {};
    }
    const FuzzPath &file = plainFile();
    file.fill(bytes);
    checkPhraseFrom(0, file.text(), line);
    require(::lseek(file.handle(), 0, SEEK_SET) == 0);
    checkPhraseFrom(1, std::to_string(file.handle()), line);
}

/// Without the padding at the end.
std::string lettersOf(std::string_view text)
{
    std::string letters(text);
    std::erase_if(letters, [](char c) { return c == '\n' || c == '\r' || c == ' '; });
    letters.erase(letters.find_last_not_of('=') + 1);
    return letters;
}

void checkBase64(Bytes bytes)
{
    const FuzzPath &file = plainFile();
    file.fill(bytes);
    if (const auto read = imgtool::readBase64(file.text())) {
        // Written again the letters are the same, but for bits of the last that no byte takes.
        const QByteArray same(reinterpret_cast<const char *>(read->data()),
                              static_cast<int>(read->size()));
        const std::string letters = lettersOf(textOf(bytes));
        const std::string again = lettersOf(same.toBase64().toStdString());
        require(again.size() == letters.size() && !letters.empty());
        require(std::equal(again.begin(), again.end() - 1, letters.begin()));
    }
    QByteArray written =
        QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()))
            .toBase64();
    for (int at = 64; at < written.size(); at += 65) {
        written.insert(at, '\n');
    }
    file.fill(bytesOf({written.constData(), static_cast<std::size_t>(written.size())}));
    const auto back = imgtool::readBase64(file.text());
    require(back.has_value() == !bytes.empty());
    require(!back || std::ranges::equal(back->span(), bytes));
}

/// A key in PEM asks for the phrase that stands in a file, so that no terminal is looked for.
void checkKey(Bytes bytes)
{
    static const FuzzPath phraseFile(QStringLiteral("phrase"));
    phraseFile.fill(bytesOf("phrase\n"));
    const auto phrase = std::make_shared<imgtool::PassPhrase>();
    require(imgtool::PassPhrase::options(phrase).at(0).take(phraseFile.text().c_str()).has_value());
    const FuzzPath &file = plainFile();
    file.fill(bytes);
    const auto closing = imgtool::readEncryptionKey(file.text(), *phrase);
    const auto opening = imgtool::readDecryptionKey(file.text(), *phrase);
    if (textOf(bytes).find("-----BEGIN") != std::string_view::npos) {
        require(!closing || (closing->key && closing->aes.size() == 0));
        require(!opening || (opening->key && opening->aes.size() == 0));
        return;
    }
    const auto raw = imgtool::readBase64(file.text());
    require(closing.has_value() == (raw && (raw->size() == 16 || raw->size() == 32)));
    require(opening.has_value() == closing.has_value());
    require(!closing || (!closing->key && std::ranges::equal(closing->aes.span(), raw->span())));
    require(!opening || (!opening->key && std::ranges::equal(opening->aes.span(), raw->span())));
}

/// What a text with addresses holds, joined as the tool promises; none when it must be refused.
std::optional<imgtool::Firmware> plainFirmware(Bytes text, std::uint8_t filler, std::uint32_t limit)
{
    PlainHexResult read = plainHexText({text.begin(), text.end()});
    std::erase_if(read.segments, [](const Piece &piece) { return piece.bytes.empty(); });
    if (!read.fault.empty() || read.segments.empty()) {
        return std::nullopt;
    }
    std::ranges::stable_sort(read.segments, {}, &Piece::address);
    imgtool::Firmware firmware;
    firmware.address = read.segments.front().address;
    for (const auto &[address, bytes] : read.segments) {
        const std::uint64_t at = address - firmware.address;
        if (at < firmware.bytes.size() || at + bytes.size() > limit) {
            return std::nullopt;
        }
        firmware.bytes.resize(at, filler);
        firmware.bytes.insert(firmware.bytes.end(), bytes.begin(), bytes.end());
    }
    return firmware;
}

bool isSame(const imgtool::Firmware &one, const imgtool::Firmware &other)
{
    return one.address == other.address && one.bytes == other.bytes;
}

/// Written and read again it is the same, at its address where the format has one.
void checkWritten(const imgtool::Firmware &firmware)
{
    constexpr std::size_t kMost = 4096;
    if (firmware.bytes.size() > kMost) {
        return;
    }
    for (const char *name : {"out.hex", "out.srec"}) {
        const std::string path = fuzzPath(QLatin1String(name)).toStdString();
        require(imgtool::writeFirmware(path, firmware.address, firmware.bytes).has_value());
        const auto back = imgtool::readFirmware(path, 0, kMost);
        require(back && isSame(*back, firmware));
    }
}

/// In front: which ending, the filler, the power of two that is the limit.
void checkFirmware(Bytes bytes)
{
    static const FuzzPath files[] = {
        FuzzPath(QStringLiteral("a.bin")), FuzzPath(QStringLiteral("a.hex")),
        FuzzPath(QStringLiteral("a.MOT")), FuzzPath(QStringLiteral("a.axf"))};
    constexpr std::size_t kHead = 3;
    if (bytes.size() < kHead) {
        return;
    }
    const std::size_t form = bytes[0] % std::size(files);
    const std::uint8_t filler = bytes[1];
    const std::uint32_t limit = std::uint32_t{1} << bytes[2] % 20;
    const Bytes text = bytes.subspan(kHead);
    files[form].fill(text);
    const auto read = imgtool::readFirmware(files[form].text(), filler, limit);
    require(read || !read.error().text.empty());
    require(!read || (!read->bytes.empty() && read->bytes.size() <= limit));
    if (form == 0) {
        require(read.has_value() == (!text.empty() && text.size() <= limit));
        require(!read || (read->address == 0 && std::ranges::equal(read->bytes, text)));
    } else if (form != 3) {
        const auto plain = plainFirmware(text, filler, limit);
        require(plain.has_value() == read.has_value() && (!plain || isSame(*plain, *read)));
    }
    if (read) {
        checkWritten(*read);
    }
}

constexpr void (*kFamilies[])(Bytes) = {&checkPhrase, &checkBase64, &checkKey, &checkFirmware};

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    using namespace std::string_view_literals;
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {"\0a phrase\nand the rest"sv, "\0phrase\r\n"sv, "\1QUJD\nREVG\n"sv, "\1 QQ==\r\n"sv,
          "\2AAECAwQFBgcICQoLDA0ODw==\n"sv, "\2AAECAwQFBgcICQoLDA0ODwABAgMEBQYHCAkKCwwNDg8="sv,
          "\3\0\xFF\x10raw bytes"sv,
          "\3\1\xFF\x10:020000040800F2\n:0400000001020304F2\n:0400100005060708D2\n:00000001FF\n"sv,
          "\3\2\0\x10S107000041424344EE\nS9030000FC\n"sv}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    const auto key = crypto::KeyPair::make("x25519").value();
    for (const auto &pem : {key.privatePem(), key.privatePem(bytesOf("phrase"))}) {
        seeds.push_back({2});
        seeds.back().insert(seeds.back().end(), pem->span().begin(), pem->span().end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size > 0) {
        kFamilies[data[0] % std::size(kFamilies)]({data + 1, size - 1});
    }
    return 0;
}
