#pragma once

namespace crypto
{

/// Reports each fault that a key check has left in OpenSSL's queue, oldest first, with two messages
/// at level 5, and takes it off. Stops at the first entry that isn't RSA's own or tells that memory
/// was short; that one and those behind it stay.
void reportKeyErrors();

}  // namespace crypto
