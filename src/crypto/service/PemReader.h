#pragma once
#include "crypto/primitives/Handles.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <openssl/pem.h>

namespace crypto
{

/// Stands in for OpenSSL's own password callback, which would ask on the terminal.
int refusePassword(char *buffer, int size, int isWriting, void *userData);

/// The callback that goes with a password (NUL at its end) handed over as user data: OpenSSL's own
/// takes it from there; null, no password, is refused.
pem_password_cb *callbackFor(const unsigned char *password);

/// Reads a key file (8-bit path) of at most 16 MiB into memory that is wiped. Empties OpenSSL's
/// error queue first, so that an earlier failure can't make a good key look bad.
files::Result<files::SecretBytes> readPemFile(const unsigned char *path);

/// The first private key in PEM text; null when there is none, the password doesn't open it or
/// would be worked on for too long (see `checkPhraseCost`).
EvpKey readPrivate(const files::SecretBytes &pem, unsigned char *password);

/// The first public key in PEM text; null when there is none.
EvpKey readPublic(const files::SecretBytes &pem);

}  // namespace crypto
