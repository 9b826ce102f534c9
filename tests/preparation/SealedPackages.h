#pragma once
#include "crypto/primitives/EcKey.h"
#include "preparation/SfiRequestBuilder.h"

#include <string>
#include <vector>

/// A good package of any kind, the same bytes in each run.
struct SealedPackage {
    std::string name;
    Bytes file;
    Bytes body = {};  ///< of an SFU package, whose header `file` is
};

/// What opens the sealed ones, 16 bytes.
const Bytes &packageKey();

/// What signed images and licences are signed with: the private half.
/// @param brainpool  the other curve
const crypto::EcKey &packageSigner(bool brainpool = false);

/// Images of both versions and profiles with areas of every kind, modules, firmware updates,
/// provisioning images, signed images, licences.
std::vector<SealedPackage> sealedPackages();
