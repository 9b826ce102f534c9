#pragma once

namespace crypto
{

/// Prints ASCII text on standard output in the stream's own orientation: a stream that has printed
/// bytes drops wide text and the other way round. A fresh stream becomes a wide one.
void printText(const char *text);

}  // namespace crypto
