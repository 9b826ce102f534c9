// imgtool: makes keys and boot images.
#include "Commands.h"

int main(int argc, char **argv)
{
    return imgtool::runImgtool(argc, argv);
}
