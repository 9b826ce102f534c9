#include "preparation/AreaPlanner.h"
#include "preparation/ImageOpener.h"
#include "preparation/ImageSealer.h"
#include "preparation/SfiRequestBuilder.h"

#include <benchmark/benchmark.h>

#include <openssl/evp.h>

namespace
{

using preparation::ByteView;

constexpr std::size_t kPayload = std::size_t{64} << 20;

/// One image of 64 MiB: what OpenSSL alone does on it, and the parts of the own work on it.
/// `measure_seal.py` compares them.
struct Payload {
    Payload()
    {
        builder.firmware(0x08000000, ramp(1, 7, kPayload));
        firmware = {builder.firmwareFile.segments[0].data, kPayload};
        request.firmware = &builder.firmwareFile;
        request.optionBytes = &builder.optionBytes;
        key = bytesOf(builder.key);
        nonce = bytesOf(builder.nonce);
        request.key = key;
        request.nonce = nonce;
        request.profile = builder.profile;
        std::vector<std::string> notices;
        plan = *preparation::planAreas(request, notices);
    }

    SfiRequestBuilder builder;
    preparation::SfiRequest request;
    Bytes key;
    Bytes nonce;
    ByteView firmware;
    preparation::Plan plan;
};

const Payload &payload()
{
    static const Payload one;
    return one;
}

void pairedCipher(benchmark::State &state, bool seals)
{
    const Payload &of = payload();
    Bytes out(kPayload);
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    for ([[maybe_unused]] const auto round : state) {
        int count = 0;
        if (EVP_CipherInit(context, EVP_aes_128_gcm(), of.key.data(), of.nonce.data(),
                           seals ? 1 : 0) != 1 ||
            EVP_CipherUpdate(context, out.data(), &count, of.firmware.data(),
                             static_cast<int>(kPayload)) != 1) {
            state.SkipWithError("OpenSSL failed");
        }
        if (seals) {
            EVP_CipherFinal(context, out.data(), &count);
        }
    }
    EVP_CIPHER_CTX_free(context);
}
BENCHMARK_CAPTURE(pairedCipher, seal, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pairedCipher, open, false)->Unit(benchmark::kMillisecond);

/// The pass that makes the image's nonce of all inputs.
void pairedNonce(benchmark::State &state)
{
    const Payload &of = payload();
    for ([[maybe_unused]] const auto round : state) {
        crypto::HmacSha256 mac(of.key);
        mac.update(of.firmware);
        if (!mac.finish()) {
            state.SkipWithError("no digest");
        }
    }
}
BENCHMARK(pairedNonce)->Unit(benchmark::kMillisecond);

/// Version 1 has no check blocks.
void pairedSealing(benchmark::State &state)
{
    const Payload &of = payload();
    for ([[maybe_unused]] const auto round : state) {
        if (!preparation::sealImage(of.plan, of.key, of.nonce)) {
            state.SkipWithError("no image");
        }
    }
}
BENCHMARK(pairedSealing)->Unit(benchmark::kMillisecond);

void pairedOpening(benchmark::State &state)
{
    const Payload &of = payload();
    const Bytes image = bytesOf(*preparation::sealImage(of.plan, of.key, of.nonce));
    for ([[maybe_unused]] const auto round : state) {
        if (!preparation::openImage(image, ByteView(of.key))->authentic) {
            state.SkipWithError("not authentic");
        }
    }
}
BENCHMARK(pairedOpening)->Unit(benchmark::kMillisecond);

/// 64 MiB of firmware: plan, nonce, seal, open again, compare.
void sealFirmware(benchmark::State &state)
{
    SfiRequestBuilder request;
    request.hash = state.range(0) == 2;
    request.ramSize = state.range(1) != 0 ? 0x1E000 : 0;
    request.firmware(0x08000000, ramp(1, 7, kPayload));
    for ([[maybe_unused]] const auto round : state) {
        if (request.build().isEmpty()) {
            state.SkipWithError("no image");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kPayload));
}
BENCHMARK(sealFirmware)
    ->ArgNames({"version", "cut"})
    ->Args({1, 0})
    ->Args({2, 0})
    ->Args({2, 1})
    ->Unit(benchmark::kMillisecond);

/// As many one-byte segments as an image can count, given from the top down.
void planSegments(benchmark::State &state)
{
    SfiRequestBuilder request;
    for (auto i = static_cast<std::uint32_t>(state.range(0)); i > 0; --i) {
        request.firmware(i * 32, {1});
    }
    for ([[maybe_unused]] const auto round : state) {
        if (request.build().isEmpty()) {
            state.SkipWithError("no image");
        }
    }
}
BENCHMARK(planSegments)->Arg(16384)->Arg(32768)->Arg(65534)->Unit(benchmark::kMillisecond);

void openImage(benchmark::State &state)
{
    SfiRequestBuilder request;
    request.hash = true;
    request.profile = static_cast<unsigned int>(state.range(0));
    request.firmware(0x08000000, ramp(1, 7, kPayload));
    const Bytes image = bytesOf(request.build());
    const Bytes key = bytesOf(request.key);
    for ([[maybe_unused]] const auto round : state) {
        if (!preparation::openImage(image, preparation::ByteView(key))->authentic) {
            state.SkipWithError("not authentic");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(image.size()));
}
BENCHMARK(openImage)->ArgName("profile")->Arg(0xFF)->Arg(0x484)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
