#pragma once
#include "obk/ObDataItem.h"

#include <QString>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace workbench
{

class PermissionTable;

/// One row of the form that a template builds: its item and the widgets that show it. What a kind
/// has no use for is null.
struct ObkRow {
    int item = -1;             ///< index in the template
    QWidget *field = nullptr;  ///< all widgets of the input
    QLineEdit *edit = nullptr;
    QCheckBox *check = nullptr;
    QComboBox *combo = nullptr;
    QComboBox *keyType = nullptr;
    QPushButton *open = nullptr;
    QPushButton *regenerate = nullptr;
    QPushButton *clear = nullptr;  ///< empties a path that an image template can do without
    PermissionTable *permissions = nullptr;
    QLabel *note = nullptr;          ///< what is wrong, or where an old key went
    QPushButton *restore = nullptr;  ///< puts an old key back
    QString keptAs;                  ///< where the old key is

    /// What the row holds now, as generation takes it: an entry's value, not what it shows.
    [[nodiscard]] QString text(const ObDataItem &shown) const;
};

/// What goes into a field, in a few words: "4 bytes", "8 to 32 bytes", "P-256 public key"; of an
/// image template's parameter the option that it stands for.
QString unitText(const ObDataItem &item);

/// A name as a part of an object name: letters and digits, each further word with a capital.
QString nameInObjects(const QString &name);

}  // namespace workbench
