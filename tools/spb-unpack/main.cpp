// spb-unpack: shows, checks and unpacks protected images.
#include "AreaExtract.h"
#include "AreaTable.h"
#include "UnpackOptions.h"
#include "files/base/FileReader.h"
#include "files/base/KeyFile.h"
#include "tools/console/Program.h"

namespace
{

using files::Result;
using preparation::OpenedImage;

using console::complain;

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
    return written ? static_cast<int>(console::kFine)
                   : complain(console::kOutputFailed, *options.out + ": " + written.error().text);
}

int show(const OpenedImage &image, const std::string &name, const unpack::Options &options)
{
    if (!console::print(options.json ? unpack::areaJson(image) : unpack::areaTable(image))) {
        return complain(console::kOutputFailed, "standard output can't be written");
    }
    bool damaged = false;
    for (const auto verdict : image.verdicts) {
        damaged = damaged || verdict == preparation::Verdict::Damaged;
    }
    if (damaged || (options.key && !image.authentic)) {
        return complain(console::kNotAuthentic,
                        name + (damaged ? " is damaged" : " is not authentic"));
    }
    return options.out ? unpackTo(image, options) : static_cast<int>(console::kFine);
}

int run(const unpack::Options &options, const std::string &name)
{
    files::SecretBytes key;
    if (options.key) {
        auto read = files::readKeyFile(QFile::decodeName(options.key->c_str()), 16);
        if (!read) {
            return complain(console::kUsage, *options.key + ": " + read.error().text);
        }
        key = std::move(*read);
    }
    const auto bytes = readImage(name);
    if (!bytes) {
        return complain(console::kNotReadable, name + ": " + bytes.error().text);
    }
    const auto image = preparation::openImage(bytes->span(), options.key ? std::optional(key.span())
                                                                         : std::nullopt);
    if (!image) {
        return complain(console::kNotReadable, name + " is not an image: " + image.error().text);
    }
    return show(*image, name, options);
}

}  // namespace

int main(int argc, char **argv)
{
    unpack::Options options;
    return console::runProgram(
        argc, argv,
        {.name = "spb-unpack",
         .help = unpack::helpText(),
         .options = unpack::optionTable(options),
         .check =
             [&options](const console::Arguments &images) {
                 return unpack::checkTogether(options, images);
             },
         .run = [&options](
                    const console::Arguments &images) { return run(options, images.front()); }});
}
