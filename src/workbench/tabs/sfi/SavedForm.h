#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace workbench
{

/// What the user told about the files of one list, as the settings file gives it: unsigned numbers
/// of 32 bits, and anything at all in a damaged file.
struct SavedPlaces {
    QList<QVariant> addresses;
    // External firmware only:
    QList<QVariant> modes;
    QList<QVariant> numbers;
    QList<QVariant> keyAddresses;
};

}  // namespace workbench
