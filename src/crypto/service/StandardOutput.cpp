#include "crypto/service/StandardOutput.h"

#include <cstdio>
#include <cwchar>

namespace crypto
{

void printText(const char *text)
{
    if (std::fwide(stdout, 0) < 0) {
        std::fputs(text, stdout);
    } else {
        std::fwprintf(stdout, L"%s", text);
    }
}

}  // namespace crypto
