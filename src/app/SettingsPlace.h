#pragma once
#include <QString>

namespace app
{

/// Where the settings file of a program in `folder` lies: beside the program, where a file can be
/// written; else in the user's configuration folder by the XDG Base
/// Directory rules (`XDG_CONFIG_HOME`, else `.config` of the home folder), in a folder of its own.
/// @return empty when there is no home either
QString settingsPlace(const QString &folder);

/// Makes the folder of the settings file, entered by its owner only, where it doesn't exist.
void makeSettingsFolder(const QString &path);

}  // namespace app
