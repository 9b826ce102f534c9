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

/// What is kept of the SFI or SFIx tab from one run to the next.
struct SavedForm {
    QStringList firmware;  ///< the internal list of SFIx
    SavedPlaces firmwarePlaces;
    QStringList external;  ///< SFIx only
    SavedPlaces externalPlaces;
    QStringList smi;  ///< SFI only
    QString key;
    QString nonce;
    QString optionBytes;
    QString keyArea;  ///< SFIx only
    QString ram;
    QString token;
    QString output;
    int imageVersion = 0;
};

}  // namespace workbench
