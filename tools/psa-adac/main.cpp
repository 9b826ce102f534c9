// PSA_ADAC: signs debug-authentication certificates, joins them to chains and shows them.
#include "AdacProgram.h"

int main(int argc, char **argv)
{
    // There is one way to fail, for wrong words on the command line, too.
    constexpr int kFailed = 1;
    const int status = console::runProgram(argc, argv, adac::program());
    return status == console::kFine ? status : kFailed;
}
