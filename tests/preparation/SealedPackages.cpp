#include "preparation/SealedPackages.h"

#include "crypto/primitives/DeterministicSigner.h"
#include "preparation/PackageInputs.h"
#include "preparation/licence/LicenceFormat.h"
#include "preparation/sfu/SfuSealer.h"
#include "preparation/sign/SignTrailer.h"
#include "preparation/smi/SmiSealer.h"
#include "preparation/ssp/SspSealer.h"

#include <algorithm>

namespace
{

using namespace preparation;

const Bytes kNonce = ramp(1, 3, 12);
const Bytes kLongNonce = ramp(2, 3, 16);

crypto::EcKey signerOn(bool brainpool)
{
    const std::string pem = privatePem(ramp(1, 5, 32), brainpool);
    return crypto::EcKey::readPrivate(
               {reinterpret_cast<const std::uint8_t *>(pem.data()), pem.size()}, nullptr)
        .value();
}

SealedPackage image(int variant)
{
    const bool hash = (variant & 1) != 0;
    SfiRequestBuilder request;
    request.key = QByteArray(reinterpret_cast<const char *>(packageKey().data()), 16);
    request.hash = hash;
    request.profile = (variant & 2) != 0 ? kProfileH5 : kProfileUsual;
    request.firmware(0x08000000, ramp(0, 7, 200));
    if ((variant & 4) != 0) {
        request.combined = true;
        request.ssfiArea(ramp(0, 1, 46), {1});
        request.module(0x08100000, {1, 2, 3}, {}, "ID").smi(smiFile(0x08200000, 5));
        request.obk(0x0FFD0000, 1, {1}).external(0x90000000, {1});
        request.regions.append(ExtBinInfo());
        request.ramSize = 600;
        request.token = 0x20000000;
    }
    return {"SFI " + std::to_string(variant), bytesOf(request.build())};
}

SealedPackage signedImage(bool brainpool, std::uint32_t unsignedBytes)
{
    const crypto::EcKey &key = packageSigner(brainpool);
    Bytes file = ramp(9, 7, 77);
    SignTrailer trailer;
    trailer.imageVersion = 3;
    trailer.fileSize = static_cast<std::uint32_t>(file.size());
    trailer.signedSize = trailer.fileSize - unsignedBytes;
    trailer.curve = static_cast<std::uint8_t>(key.curve());
    trailer.keyIdentifier = key.identifier().value();
    const auto head = encodeSignTrailer(trailer);
    const auto digest = signDigest(ByteView(file).first(trailer.signedSize), head).value();
    trailer.signature = crypto::signDeterministic(key, digest).value();
    const auto end = encodeSignTrailer(trailer);
    file.insert(file.end(), end.begin(), end.end());
    return {brainpool ? "signed on brainpoolP256t1" : "signed on P-256", std::move(file)};
}

SealedPackage licence(const std::string &identifier, const std::string &device)
{
    const crypto::EcKey &key = packageSigner();
    Licence made;
    made.index = 1;
    made.identifier = identifier;
    made.device = device;
    made.left = 41;
    std::ranges::copy(kNonce, made.nonce.begin());
    made.chipIdentifier = key.identifier().value();
    std::ranges::copy(key.publicPoint(), made.ephemeralPoint.begin());
    made.keyIdentifier = key.identifier().value();
    const auto digest = crypto::sha256(ByteView(encodeLicence(made)).first(kLicenceSigned)).value();
    made.signature = crypto::signDeterministic(key, digest).value();
    return {"licence for " + identifier, encodeLicence(made)};
}

}  // namespace

const Bytes &packageKey()
{
    static const Bytes key(16, 7);
    return key;
}

const crypto::EcKey &packageSigner(bool brainpool)
{
    static const crypto::EcKey p256 = signerOn(false);
    static const crypto::EcKey other = signerOn(true);
    return brainpool ? other : p256;
}

std::vector<SealedPackage> sealedPackages()
{
    std::vector<SealedPackage> packages;
    for (int variant = 0; variant < 8; ++variant) {
        packages.push_back(image(variant));
    }
    for (const bool hash : {false, true}) {
        packages.push_back(
            {hash ? "SMI with check block" : "SMI",
             bytesOf(buildSmi({ramp(9, 5, 40), 0x08004020, hash, packageKey(), kNonce, kLongNonce})
                         .value())});
    }
    for (const std::size_t size : {5U, 5000U}) {
        const Bytes sfu =
            bytesOf(buildSfu({ramp(0, 3, size), 0x08000000, 3, packageKey(), kNonce}).value());
        const auto half = sfu.begin() + 64;
        packages.push_back(
            {"SFU of " + std::to_string(size), {sfu.begin(), half}, {half, sfu.end()}});
    }
    for (const std::uint16_t kind : {kOemPublicKey, kOemTableHash}) {
        packages.push_back(
            {"SSP of kind " + std::to_string(kind),
             bytesOf(buildSsp({ramp(1, 1, 152), packageKey(), kLongNonce, {kind, {}}}).value())});
    }
    packages.push_back(signedImage(false, 0));
    packages.push_back(signedImage(true, 9));
    packages.push_back(licence("FW", "VDR32H5"));
    packages.push_back(licence("fifteen bytes..", std::string(24, 'd')));
    return packages;
}
