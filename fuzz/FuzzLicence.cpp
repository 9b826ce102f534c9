#include "FuzzSupport.h"
#include "FuzzWords.h"

#include "preparation/licence/LicenceVerifier.h"

#include <algorithm>

namespace
{

using files::ErrorCode;

std::vector<std::uint8_t> seed(const std::string &identifier, const std::string &device)
{
    preparation::Licence licence;
    licence.index = 1;
    licence.identifier = identifier;
    licence.device = device;
    // The curve's base point, so that the reader comes to its end.
    const auto numbers = crypto::numbersOf(crypto::Curve::P256).value();
    std::ranges::copy(numbers.x, licence.ephemeralPoint.begin());
    std::ranges::copy(numbers.y, licence.ephemeralPoint.begin() + 32);
    return preparation::encodeLicence(licence);
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {seed("FW", "VDR32H5"), seed("fifteen bytes..", std::string(24, 'd')), seed("x", "")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::vector<std::uint8_t> file(data, data + size);
    const auto opened = preparation::openLicence(file, nullptr);
    if (!opened) {
        requireWords(opened.error(), {{ErrorCode::BadMagic, "It does not begin"},
                                      {ErrorCode::WrongSize, "It has "},
                                      {ErrorCode::BadVersion, "It is of version"},
                                      {ErrorCode::BadValue, ""}});
        return 0;
    }
    // What is read is the whole file: nothing in it goes unseen.
    require(preparation::encodeLicence(opened->licence) == file);
    require(!opened->licence.identifier.empty() && opened->licence.identifier.size() <= 15);
    return 0;
}
