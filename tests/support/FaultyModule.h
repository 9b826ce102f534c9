#pragma once
#include <functional>
#include <string>

/// What a test tells the module that stands between p11-kit and SoftHSM.
struct TokenFaults {
    /// Asked in front of each call that can fail on purpose ("C_CreateObject"); 0 lets it pass, any
    /// other number is the call's result.
    std::function<unsigned long(const std::string &call)> before;
    unsigned long tokenFlags = 0;  ///< added to what the token tells of itself
    bool findsTooMany = false;     ///< tells more objects than there was room for
    bool knowsKdf = false;         ///< derives with X9.63 and SHA-256 inside, as other tokens do
};

extern "C" TokenFaults *tokenFaults();
