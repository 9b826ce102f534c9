#pragma once
#include "certif/Chain.h"

#include <string>
#include <vector>

namespace certif
{

/// Whether the key above (of a root: its own) has signed a certificate.
enum class Issuer {
    Unknown,  ///< there is nothing above to check it with
    Matches,
    Differs,
};

/// What a device would make of one certificate of a chain.
struct Step {
    Issuer issuer = Issuer::Unknown;
    Mask remaining{};                 ///< rights that are left after this certificate
    Mask lost{};                      ///< rights that it names in vain
    std::vector<std::string> faults;  ///< sentences; each makes the chain useless, or a right of it
};

/// Walks a chain as a device does, from the root down.
/// @return one step for each certificate
std::vector<Step> examine(const Chain &chain);

/// The step of a certificate below a chain, whose signature isn't there yet.
/// @param above   empty for a root, and when what stands above isn't known
/// @param issuer  whether the key that will sign is the one above
Step examineNext(const Chain &above, const Certificate &next, Issuer issuer);

}  // namespace certif
