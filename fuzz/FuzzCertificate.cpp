#include "FuzzSupport.h"

#include "certif/ChainView.h"
#include "certif/Description.h"

#include <string_view>

using namespace certif;

namespace
{

Chain chainOfThree()
{
    Chain chain(3);
    chain[1].role = Role::Intermediate;
    chain[2].role = Role::Leaf;
    for (Certificate &certificate : chain) {
        certificate.permissions.fill(0x0F);
        certificate.socClass = 5;
    }
    return chain;
}

/// What is read once must come back as it was, and a right never comes from nowhere.
void checkChain(const QByteArray &content)
{
    const auto chain = readChain(content);
    if (!chain) {
        return;
    }
    require(!chain->empty() && chain->size() <= kMostCertificates);
    const auto bytes = encodeChain(*chain);
    const QByteArray again(reinterpret_cast<const char *>(bytes.data()),
                           static_cast<int>(bytes.size()));
    const auto back = readChain(again.toBase64());
    require(back && back->size() == chain->size() && encodeChain(*back) == bytes);
    const ChainView view = viewOf(*chain);
    require(view.rows.size() == chain->size());
    Mask granted;
    granted.fill(0xFF);
    for (const ChainRow &row : view.rows) {
        for (std::size_t i = 0; i < granted.size(); ++i) {
            require((row.step.remaining[i] & ~granted[i]) == 0);
            require((row.step.remaining[i] & row.step.lost[i]) == 0);
        }
        granted = row.step.remaining;
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    const auto chain = encodeChain(chainOfThree());
    const auto single = encode(chainOfThree()[0]);
    const QByteArray text =
        QByteArray(reinterpret_cast<const char *>(chain.data()), static_cast<int>(chain.size()))
            .toBase64();
    constexpr std::string_view kDescription =
        "name: a\nissuer-key: k\nsubject-key: k\nrole: 1\nusage: 1\nlifecycle: 0x30\n"
        "oem_constraint: 0\nsoc_class: 0x5\nsoc_id: 0x1\npermissions_mask: 0x0000_0001\n";
    return {chain, single, {text.begin(), text.end()}, {kDescription.begin(), kDescription.end()}};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    checkChain(content);
    if (const auto request = parseDescription(content)) {
        require(!request->name.isEmpty() && !request->issuerKey.isEmpty());
        require(request->certificate.role >= Role::Root && request->certificate.role <= Role::Leaf);
    }
    // A mask that is taken reads as it is written.
    const auto bits = maskBits(QString::fromLatin1(content));
    require(bits.empty() || maskBits(maskText(bits)) == bits);
    return 0;
}
