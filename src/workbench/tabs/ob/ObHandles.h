#pragma once
#include "device/ObEditor.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

class QComboBox;
class QLineEdit;
class QPushButton;

/// A one-bit field and its button. Reserved bits have one named "Reserved." that is never enabled.
struct sfiObBitBtn_t : obRegField {
    QPushButton *button = nullptr;
    device::FieldId id;
};

/// A field with a list of values and its box.
struct sfiObFieldComboBox_t : obRegField {
    QComboBox *box = nullptr;
    bool enabled = false;
    device::FieldId id;
};

/// A field that takes any number and its text box.
struct sfiObFieldTextBox_t : obRegField {
    QLineEdit *edit = nullptr;
    device::FieldId id;
};

/// The widgets of one register; its table owns them.
struct obRegHandle {
    std::string name;
    std::uint32_t address = 0;
    std::vector<sfiObBitBtn_t> buttons;
    std::vector<sfiObFieldComboBox_t> comboBoxes;
    std::vector<sfiObFieldTextBox_t> textBoxes;
};
