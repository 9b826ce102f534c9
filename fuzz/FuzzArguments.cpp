// Command lines of the program and of all companions: the first byte chooses which, the rest are
// the arguments, one a line. Only words are looked at, no file.
#include "FuzzSupport.h"

#include "app/CommandLine.h"
#include "tools/imgtool/Commands.h"
#include "tools/psa-adac/AdacProgram.h"
#include "tools/spb-elf/ElfOptions.h"
#include "tools/spb-unpack/UnpackOptions.h"

#include <QStringList>

#include <algorithm>
#include <string_view>

namespace
{

using console::Arguments;
using Words = std::vector<std::string>;

constexpr std::size_t kMostWords = 300;

Words wordsOf(std::string_view text)
{
    Words words = {"tool"};
    while (words.size() < kMostWords) {
        const std::size_t end = text.find('\n');
        const std::string_view word = text.substr(0, end);
        words.emplace_back(word.substr(0, word.find('\0')));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
    return words;
}

/// Parses and checks; a refusal has a sentence of one line, and no argument comes from nowhere.
bool takes(Words words, const console::Program &program)
{
    const Words given = words;
    std::vector<char *> argv;
    for (std::string &word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const auto arguments =
        console::parseOptions(static_cast<int>(words.size()), argv.data(), program.options);
    if (!arguments) {
        require(!arguments.error().text.empty());
        return false;
    }
    for (const std::string &argument : *arguments) {
        require(std::ranges::find(given, argument) != given.end());
    }
    const auto fits = program.check ? program.check(*arguments) : files::Result<void>();
    require(fits || !fits.error().text.empty());
    return fits.has_value();
}

void checkUnpack(const Words &words)
{
    unpack::Options options;
    if (takes(words, {.options = unpack::optionTable(options),
                      .check = [&options](const Arguments &images) {
                          return unpack::checkTogether(options, images);
                      }})) {
        require(!options.out || options.key);
        require(!options.area || *options.area > 0);
    }
}

void checkElf(const Words &words)
{
    elf_tool::Options options;
    if (takes(words, {.options = elf_tool::optionTable(options),
                      .check = [&options](const Arguments &left) {
                          return elf_tool::checkTogether(options, left);
                      }})) {
        require(options.flashStart || (options.address && options.name) || options.secure);
        require(!options.padding || *options.padding <= UINT8_MAX);
    }
}

void checkWindow(const Words &words)
{
    QStringList arguments;
    for (const std::string &word : words) {
        arguments.append(QString::fromStdString(word));
    }
    const auto steps = app::parseCommandLine(arguments);
    for (const app::Step &step : steps) {
        using Kind = app::Step::Kind;
        const bool isTemplate = step.kind == Kind::ObkTemplate || step.kind == Kind::ImageTemplate;
        const bool endsAll = step.kind == Kind::Complaint || (isTemplate && !step.path);
        require(!endsAll || &step == &steps.back());
        require((step.kind == Kind::Complaint) == (step.complaint != nullptr));
        require((step.kind == Kind::ShowTab) == (step.panel != nullptr));
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {std::string_view("\0--json\n--key\nk\n--out\na.bin\n--area\n1\nx.sfi", 42),
          std::string_view("\1crc\n--flash-start=0x8000000\n--flash-end\n0x8010000\n--slice\n256\n"
                           "a.elf"),
          std::string_view("\1add-segment\n--address\n0\n--data\nd\n--name\nn\na.elf\n--dry-run"),
          std::string_view("\2-tab\nh5\n1\n-ng\n-obk\na\\b.xml\n-pb"),
          std::string_view("\3chain\n-o\nout\na.cert\nb.cert"),
          std::string_view("\3show\n--json\na"), std::string_view("\4-k\nkey.pem\n-t\necdsa-p256"),
          std::string_view("\7--align\n4\n-v\n1.2.3+4\n-H\n0x20\n-S\n4096\n-d\n(1, 2.0.0)\n"
                           "--custom-tlv\n0xa0\n0x0102\n-s\nauto\nin.bin\nout.bin")}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const Words words = wordsOf({reinterpret_cast<const char *>(data + 1), size - 1});
    const auto commands = imgtool::commands();
    switch (const std::size_t tool = data[0] % (4 + commands.size())) {
    case 0:
        checkUnpack(words);
        break;
    case 1:
        checkElf(words);
        break;
    case 2:
        checkWindow(words);
        break;
    case 3:
        takes(words, adac::program());
        break;
    default:
        takes(words, commands[tool - 4].program());
    }
    return 0;
}
