// imgtool: makes keys and prints them for firmware images.
#include "Commands.h"

int main(int argc, char **argv)
{
    return imgtool::runImgtool(argc, argv);
}
