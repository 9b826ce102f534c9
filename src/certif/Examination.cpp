#include "certif/Examination.h"

#include "crypto/primitives/Digests.h"
#include "crypto/primitives/EcKey.h"

namespace certif
{

namespace
{

/// What a device has learnt from the certificates above.
struct Above {
    const Certificate *certificate = nullptr;  ///< null above the first
    Mask granted{};
    // The last values that weren't 0: each holds for all certificates below, too.
    std::uint32_t socClass = 0;
    Identifier socId{};
    std::uint16_t lifecycle = 0;
    std::uint16_t oemConstraint = 0;
};

constexpr const char *kOtherSigner = "It is not signed by the key of the certificate above";
constexpr const char *kRootOfAnother = "The root certificate is not signed by its own key";

bool isSet(const Mask &bits, std::size_t bit)
{
    return (bits[bit / 8] >> (bit % 8) & 1) != 0;
}

/// "4, 5, 8 to 31"
std::string bitList(const Mask &bits)
{
    std::string out;
    for (std::size_t bit = 0; bit < kMaskBits; ++bit) {
        if (!isSet(bits, bit)) {
            continue;
        }
        std::size_t last = bit;
        while (last + 1 < kMaskBits && isSet(bits, last + 1)) {
            ++last;
        }
        out += (out.empty() ? "" : ", ") + std::to_string(bit);
        if (last > bit) {
            out += (last > bit + 1 ? " to " : ", ") + std::to_string(last);
        }
        bit = last;
    }
    return out;
}

void judgePlace(const Certificate &certificate, const Certificate *above, Step &step)
{
    const bool isRoot = certificate.role == Role::Root;
    if (above == nullptr) {
        if (!isRoot) {
            step.faults.emplace_back("The chain begins with no root certificate");
        }
        return;
    }
    if (isRoot) {
        step.faults.emplace_back("A second root certificate stands below the first");
    }
    if (above->role == Role::Leaf) {
        step.faults.emplace_back("Nothing may stand below a leaf certificate");
    }
}

/// Values that aren't 0 must be the device's own, so no two of them may differ.
void judgeDevice(const Certificate &certificate, const Above &above, Step &step)
{
    const auto differs = [](const auto &mine, const auto &other) {
        using Field = std::decay_t<decltype(mine)>;
        return mine != Field{} && other != Field{} && mine != other;
    };
    if (differs(certificate.socClass, above.socClass)) {
        step.faults.emplace_back("The SoC class differs from the one above");
    }
    if (differs(certificate.socId, above.socId)) {
        step.faults.emplace_back("The SoC identifier differs from the one above");
    }
    if (differs(certificate.lifecycle, above.lifecycle)) {
        step.faults.emplace_back("The lifecycle differs from the one above");
    }
    if (differs(certificate.oemConstraint, above.oemConstraint)) {
        step.faults.emplace_back("The OEM constraint differs from the one above");
    }
}

void judgeRights(const Certificate &certificate, const Mask &granted, Step &step)
{
    for (std::size_t i = 0; i < granted.size(); ++i) {
        step.remaining[i] = granted[i] & certificate.permissions[i];
        step.lost[i] = static_cast<std::uint8_t>(certificate.permissions[i] & ~granted[i]);
    }
    if (step.lost != Mask{}) {
        step.faults.emplace_back("Rights that the chain above doesn't grant, bits " +
                                 bitList(step.lost));
    }
    if (step.remaining == Mask{} && granted != Mask{}) {
        step.faults.emplace_back("No right is left");
    }
}

bool isSignedBy(const PublicPoint &issuer, const Certificate &certificate)
{
    const auto key = crypto::EcKey::fromPoint(crypto::Curve::P256, issuer);
    const auto digest = crypto::sha256(signedBytes(certificate));
    if (!key || !digest) {
        return false;
    }
    const auto verdict = key->verify(*digest, certificate.signature);
    return verdict && *verdict;
}

Issuer issuerOf(const Certificate &certificate, const Certificate *above)
{
    // Who signed a certificate below the root can't be told without the one above.
    if (above == nullptr && certificate.role != Role::Root) {
        return Issuer::Unknown;
    }
    const Certificate &issuer = above != nullptr ? *above : certificate;
    return isSignedBy(issuer.subjectKey, certificate) ? Issuer::Matches : Issuer::Differs;
}

Step judge(const Certificate &certificate, const Above &above, Issuer issuer)
{
    Step step;
    step.issuer = issuer;
    if (issuer == Issuer::Differs) {
        step.faults.emplace_back(above.certificate != nullptr ? kOtherSigner : kRootOfAnother);
    }
    judgeRights(certificate, above.granted, step);
    judgeDevice(certificate, above, step);
    return step;
}

Above nothingAbove()
{
    Above above;
    above.granted.fill(0xFF);
    return above;
}

void stepDown(Above &above, const Certificate &certificate, const Step &step)
{
    const auto take = [](auto &held, const auto &told) {
        if (told != std::decay_t<decltype(told)>{}) {
            held = told;
        }
    };
    above.certificate = &certificate;
    above.granted = step.remaining;
    take(above.socClass, certificate.socClass);
    take(above.socId, certificate.socId);
    take(above.lifecycle, certificate.lifecycle);
    take(above.oemConstraint, certificate.oemConstraint);
}

/// @param end  receives what stands above the certificate that would follow
std::vector<Step> walk(const Chain &chain, Above &end)
{
    std::vector<Step> steps;
    end = nothingAbove();
    for (const Certificate &certificate : chain) {
        Step step = judge(certificate, end, issuerOf(certificate, end.certificate));
        judgePlace(certificate, end.certificate, step);
        stepDown(end, certificate, step);
        steps.push_back(std::move(step));
    }
    return steps;
}

}  // namespace

std::vector<Step> examine(const Chain &chain)
{
    Above end;
    return walk(chain, end);
}

Step examineNext(const Chain &above, const Certificate &next, Issuer issuer)
{
    Above end;
    walk(above, end);
    Step step = judge(next, end, issuer);
    if (end.certificate != nullptr) {
        judgePlace(next, end.certificate, step);
    }
    return step;
}

}  // namespace certif
