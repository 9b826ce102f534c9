#include "crypto/primitives/PhraseCost.h"

#include "crypto/primitives/Handles.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace crypto
{

namespace
{

/// The parameters of an algorithm as the structure that belongs to it.
template <typename Structure, auto Item, auto Free>
std::unique_ptr<Structure, files::FreeWith<Free>> parametersOf(const X509_ALGOR *algorithm)
{
    return std::unique_ptr<Structure, files::FreeWith<Free>>(
        static_cast<Structure *>(ASN1_TYPE_unpack_sequence(Item(), algorithm->parameter)));
}

/// What isn't a number of 64 bits is more than anyone may ask for; what is missing counts once.
std::uint64_t numberOf(const ASN1_INTEGER *number)
{
    std::uint64_t value = 1;
    return number == nullptr || ASN1_INTEGER_get_uint64(&value, number) == 1 ? value : UINT64_MAX;
}

std::uint64_t product(std::uint64_t a, std::uint64_t b)
{
    return b != 0 && a > UINT64_MAX / b ? UINT64_MAX : a * b;
}

/// Rounds of PBKDF2 or scrypt. One step of scrypt over a block costs about as much as a round.
std::uint64_t derivationRounds(const X509_ALGOR *function)
{
    if (OBJ_obj2nid(function->algorithm) == NID_id_scrypt) {
        const auto scrypt =
            parametersOf<SCRYPT_PARAMS, &SCRYPT_PARAMS_it, &SCRYPT_PARAMS_free>(function);
        return scrypt
                   ? product(product(numberOf(scrypt->costParameter), numberOf(scrypt->blockSize)),
                             numberOf(scrypt->parallelizationParameter))
                   : 0;
    }
    const auto pbkdf2 = parametersOf<PBKDF2PARAM, &PBKDF2PARAM_it, &PBKDF2PARAM_free>(function);
    return pbkdf2 ? numberOf(pbkdf2->iter) : 0;
}

/// 0 for a block that the library won't derive anything for.
std::uint64_t roundsOf(const unsigned char *der, long size)
{
    const std::unique_ptr<X509_SIG, files::FreeWith<&X509_SIG_free>> block(
        d2i_X509_SIG(nullptr, &der, size));
    if (!block) {
        return 0;
    }
    const X509_ALGOR *scheme = nullptr;
    X509_SIG_get0(block.get(), &scheme, nullptr);
    if (OBJ_obj2nid(scheme->algorithm) == NID_pbes2) {
        const auto second = parametersOf<PBE2PARAM, &PBE2PARAM_it, &PBE2PARAM_free>(scheme);
        return second ? derivationRounds(second->keyfunc) : 0;
    }
    const auto first = parametersOf<PBEPARAM, &PBEPARAM_it, &PBEPARAM_free>(scheme);
    return first ? numberOf(first->iter) : 0;
}

/// The rounds of the next locked key; none behind the last block.
std::optional<std::uint64_t> nextRounds(BIO *text)
{
    char *name = nullptr;
    char *header = nullptr;
    unsigned char *der = nullptr;
    long size = 0;
    if (PEM_read_bio(text, &name, &header, &der, &size) != 1) {
        return std::nullopt;
    }
    const Buffer owners[] = {Buffer(reinterpret_cast<unsigned char *>(name)),
                             Buffer(reinterpret_cast<unsigned char *>(header)), Buffer(der)};
    return std::string_view(name) == PEM_STRING_PKCS8 ? roundsOf(der, size) : 0;
}

}  // namespace

files::Result<void> checkPhraseCost(ByteView pem)
{
    const Bio text(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    std::uint64_t most = 0;
    while (text) {
        const auto rounds = nextRounds(text.get());
        if (!rounds) {
            break;
        }
        most = std::max(most, *rounds);
    }
    ERR_clear_error();
    if (most > kMostPhraseRounds) {
        return files::fail(files::ErrorCode::TooLarge,
                           "the key asks for " + std::to_string(most) +
                               " rounds to turn its pass phrase into a key, at most " +
                               std::to_string(kMostPhraseRounds) + " are run");
    }
    return {};
}

}  // namespace crypto
