#pragma once
#include "files/base/Result.h"

#include <QByteArray>
#include <QString>

class QWidget;

namespace workbench
{

/// Reads a key-like file whole.
/// @param expectedSize  in bytes; 0 accepts any size
/// @return the bytes, for the caller to wipe; or a refusal whose text is the sentence for the user
files::Result<QByteArray> readKeyInput(const QString &path, unsigned char expectedSize);

/// The same for a form: a refusal is shown in a box.
/// @param out  the bytes, for the caller to wipe; empty after a refusal
/// @return false after a refusal
bool openFile(QWidget *parent, const QString &path, QByteArray &out, unsigned char expectedSize);

}  // namespace workbench
