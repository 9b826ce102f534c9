#pragma once

namespace crypto
{

/// Makes OpenSSL wipe each block that it gives back: its decoders of key files drop private numbers
/// without a word. Works only before its first allocation, so it runs before main(), in each
/// program that includes Handles.h.
/// @return whether OpenSSL took it
bool wipeFreedBlocks();

inline const bool kWipesFreedBlocks = wipeFreedBlocks();

}  // namespace crypto
