#pragma once
#include <QString>

#include <map>
#include <string>

/// One writer of the program. Its inputs are made in memory or stand in the folder ("key.pem"); it
/// writes "out" there. @return whether the program would tell its user of a success
using Writer = bool (*)(const QString &folder);

/// All writers by name.
const std::map<std::string, Writer> &writers();
