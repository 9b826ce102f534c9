// Any bytes as a file of the certificate data base: families with the meaning of their mask's bits.
#include "FuzzSupport.h"

#include "certif/PermissionNames.h"
#include "support/ScratchFolder.h"

#include <string_view>

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {"<Root><CertifFormat><Family>A</Family><SocClass>0x59</SocClass><Permission><Bit>0</Bit>"
          "<Name>n</Name><Tooltip>t</Tooltip></Permission></CertifFormat></Root>",
          "<Root><CertifFormat><Family>B</Family><SocClass>0x1</SocClass><Permission><Bit>127</Bit>"
          "<Name>n</Name></Permission><Permission><Bit>64</Bit><Name>m</Name></Permission>"
          "</CertifFormat></Root>"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

// Qt's own: its schema classes lose a few objects of each document that they refuse.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libQt5XmlPatterns";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScratchFolder folder;
    folder.file(QStringLiteral("a.xml"),
                std::string_view(reinterpret_cast<const char *>(data), size));
    QStringList problems;
    const auto families =
        certif::readFamilies(folder.path(QString()), QStringLiteral(SCHEMA), problems);
    // One or the other: a file that is left out is told.
    require(families.size() + static_cast<std::size_t>(problems.size()) == 1);
    return 0;
}
