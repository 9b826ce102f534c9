// Runs one writer of the program by name, once, so that a script can take the system away under it:
//     write_driver WRITER FOLDER
// What is written goes to FOLDER/out. Exit statuses: 0 when the program would tell its user of a
// success, 1 of a failure, 2 for a fault of the call. Without arguments: the names.
#include "machine/Writers.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto writer = argc == 3 ? writers().find(argv[1]) : writers().end();
    if (writer == writers().end()) {
        for (const auto &[name, unused] : writers()) {
            std::puts(name.c_str());
        }
        return argc == 1 ? 0 : 2;
    }
    return writer->second(QFile::decodeName(argv[2])) ? 0 : 1;
}
