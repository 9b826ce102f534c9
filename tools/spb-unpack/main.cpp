// spb-unpack: shows, checks and unpacks protected images.
#include "AreaExtract.h"
#include "AreaTable.h"
#include "UnpackOptions.h"
#include "files/base/FileReader.h"
#include "files/base/KeyFile.h"

#include <clocale>
#include <cstdio>
#include <exception>

namespace
{

using files::Result;
using preparation::OpenedImage;

enum Status { kFine = 0, kNotAnImage = 1, kNotAuthentic = 2, kUsage = 3, kOutputFailed = 4 };

int complain(Status status, const std::string &text)
{
    std::fprintf(stderr, "spb-unpack: %s\n", text.c_str());
    return status;
}

/// @return false when standard output couldn't take it all
bool print(const std::string &text)
{
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
           std::fflush(stdout) == 0;
}

Result<files::ByteBuffer> readImage(const std::string &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, QFile::decodeName(path.c_str())); !opened) {
        return tl::unexpected(opened.error());
    }
    return files::readAll(file);
}

int unpackTo(const OpenedImage &image, const unpack::Options &options)
{
    const auto written = options.area ? unpack::writeArea(image, *options.area, *options.out)
                                      : unpack::writeFirmware(image, *options.out);
    return written ? kFine : complain(kOutputFailed, *options.out + ": " + written.error().text);
}

int show(const OpenedImage &image, const unpack::Options &options)
{
    if (!print(options.json ? unpack::areaJson(image) : unpack::areaTable(image))) {
        return complain(kOutputFailed, "standard output can't be written");
    }
    bool damaged = false;
    for (const auto verdict : image.verdicts) {
        damaged = damaged || verdict == preparation::Verdict::Damaged;
    }
    if (damaged || (options.key && !image.authentic)) {
        return complain(kNotAuthentic,
                        options.image + (damaged ? " is damaged" : " is not authentic"));
    }
    return options.out ? unpackTo(image, options) : static_cast<int>(kFine);
}

int run(const unpack::Options &options)
{
    if (options.help || options.version) {
        const bool printed = print(options.help ? unpack::helpText() : unpack::versionText());
        return printed ? kFine : kOutputFailed;
    }
    if (options.out && !options.area && !unpack::isFirmwareName(*options.out)) {
        return complain(kUsage, "the name after --out must end in .bin, .hex, .srec or .s19");
    }
    files::SecretBytes key;
    if (options.key) {
        auto read = files::readKeyFile(QFile::decodeName(options.key->c_str()), 16);
        if (!read) {
            return complain(kUsage, *options.key + ": " + read.error().text);
        }
        key = std::move(*read);
    }
    const auto bytes = readImage(options.image);
    if (!bytes) {
        return complain(kNotAnImage, options.image + ": " + bytes.error().text);
    }
    const auto image = preparation::openImage(bytes->span(), options.key ? std::optional(key.span())
                                                                         : std::nullopt);
    if (!image) {
        return complain(kNotAnImage, options.image + " is not an image: " + image.error().text);
    }
    return show(*image, options);
}

}  // namespace

int main(int argc, char **argv)
{
    // File names are in the user's encoding.
    std::setlocale(LC_CTYPE, "");
    try {
        const auto options = unpack::parseOptions(argc, argv);
        if (!options) {
            return complain(kUsage, options.error().text + " (see --help)");
        }
        return run(*options);
    } catch (const std::exception &) {
        return complain(kOutputFailed, "Unable to allocate memory");
    }
}
