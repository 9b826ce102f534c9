// Any bytes as a file of the certificate data base: families with the meaning of their mask's bits.
#include "FuzzSupport.h"

#include "certif/PermissionNames.h"

#include <algorithm>
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
    static const auto schema = xml::Schema::load(QStringLiteral(SCHEMA));
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto family = certif::readFamily(text, *schema);
    if (!family) {
        require(!family.error().text.empty());
        return 0;
    }
    // A name comes from the text, in one encoding or another, and never without its bit.
    const auto isNamed = [](const certif::Permission &bit) { return !bit.name.isEmpty(); };
    const auto named = std::ranges::count_if(family->bits, isNamed);
    require(named * 2 <= static_cast<std::ptrdiff_t>(size));
    require(family->socClass.startsWith(QLatin1String("0x")));
    return 0;
}
