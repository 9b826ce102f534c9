#pragma once
#include "preparation/Plan.h"

#include <QByteArray>

namespace preparation
{

/// Encrypts a checked plan into the whole image.
/// @param key        16 bytes
/// @param nonceFile  12 bytes
/// @return the image; an error only when the cryptographic library fails
files::Result<QByteArray> sealImage(const Plan &plan, ByteView key, ByteView nonceFile);

/// Reads an image back as a stranger with the key would, and compares every field and every plain
/// byte with the plan.
/// @return BadValue with the first difference
files::Result<void> compareWithPlan(ByteView image, const Plan &plan, ByteView key);

}  // namespace preparation
