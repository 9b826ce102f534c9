#pragma once
#include "crypto/token/LicenceStock.h"
#include "crypto/token/TokenKeys.h"
#include "support/FaultyModule.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

/// SoftHSM in a folder of its own, reached through p11-kit and the module that can fail on purpose.
class TokenFixture : public ::testing::Test
{
protected:
    TokenFixture();
    ~TokenFixture() override;

    /// Lets p11-kit find the entries of a folder alone: "pkcs11/modules" or "none", where none are.
    void useModulesOf(const QString &name) const;
    /// Makes a token with the PIN 1234.
    void makeToken(const char *label) const;
    /// The modules after `makeToken`; those loaded before don't see new tokens.
    static crypto::TokenModules modules();
    static files::SecretBytes pin(std::string_view text);
    /// The first token, open.
    static crypto::TokenSession open();
    /// Programs "FW-<index>" with 16 bytes of `kKey`.
    static crypto::LicenceStock program(const crypto::TokenSession &session, std::uint8_t index,
                                        std::uint32_t licences);
    /// Fails one call the `at`-th time from now on.
    static void failAt(const std::string &call, int at, unsigned long code);

    static TokenFaults &faults();
    /// Never freed: what a search for freed keys finds is the program's.
    static inline const auto &kKey =
        *new std::vector<std::uint8_t>{0x9d, 0x61, 0xb1, 0x9d, 0xef, 0xfd, 0x5a, 0x60,
                                       0xba, 0x84, 0x4a, 0xf4, 0x92, 0xec, 0x2c, 0xc4};
    static inline const std::vector<std::uint8_t> kNonce = std::vector<std::uint8_t>(12, 0x4E);

    ScratchFolder folder;
};
