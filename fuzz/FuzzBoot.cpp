// A hostile boot image: reading and checking it must not crash, what is read lies inside the file,
// and without the private key nothing but what was signed here passes.
#include "FuzzSupport.h"
#include "preparation/boot/BootBuilder.h"
#include "preparation/boot/BootVerifier.h"

#include <algorithm>

namespace
{

using namespace preparation;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kWrapKey[16] = {7};

const crypto::KeyPair &signer()
{
    static const crypto::KeyPair key = *crypto::KeyPair::make("ed25519");
    return key;
}

const crypto::KeyPair &recipient()
{
    static const crypto::KeyPair key = *crypto::KeyPair::make("x25519");
    return key;
}

std::vector<Bytes> makeImages()
{
    std::vector<Bytes> images;
    for (int variant = 0; variant < 16; ++variant) {
        const crypto::PublicKey target = recipient().publicHalf();
        BootRequest request;
        request.padHeader = true;
        request.slot.size = 1024;
        request.slot.maxSectors = 1;
        request.signer = &signer();
        request.confirm = (variant & 1) != 0;
        request.recipient = (variant & 2) != 0 ? &target : nullptr;
        if ((variant & 8) != 0) {
            request.recipient = nullptr;
            request.wrapKey = kWrapKey;
            request.bootRecord = "SPE";
            request.ownValues = {{0xA0, {1, 2, 3}}};
        }
        if ((variant & 4) != 0) {
            request.securityCounter = 9;
            request.dependencies = {{1, {2, 3, 4, 5}}};
        }
        images.push_back(*buildBootImage(request, Bytes(33, 0x5A)));
    }
    return images;
}

/// Made once: what is encrypted has random numbers.
const std::vector<Bytes> &signedImages()
{
    static const std::vector<Bytes> images = makeImages();
    return images;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return signedImages();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const crypto::PublicKey key = signer().publicHalf();
    const ByteView file(data, size);
    const auto image = parseBootImage(file);
    if (!image) {
        require(!image.error().text.empty());
        return 0;
    }
    std::size_t bytes = image->headerBytes.size() + image->body.size() + image->rest.size();
    for (const auto *list : {&image->protectedTlvs, &image->plainTlvs}) {
        for (const BootTlv &entry : *list) {
            bytes += 4 + entry.value.size();
            readDependency(entry.value);
        }
    }
    bytes += image->protectedBlock.empty() ? 4 : 8;
    require(bytes == size);
    // The size of a slot isn't in the file, so less padding makes no other image.
    const ByteView signedPart = file.first(size - image->rest.size());
    const bool isOurs = std::ranges::any_of(signedImages(), [signedPart](const Bytes &each) {
        return each.size() >= signedPart.size() &&
               std::ranges::equal(ByteView(each).first(signedPart.size()), signedPart);
    });
    const auto verdict = verifyBootImage(*image, {&key, &recipient(), kWrapKey});
    require(!verdict || isOurs);
    require(verdict || !isOurs || !image->rest.empty());
    return 0;
}
