#pragma once
#include "device/ConfiguredRecords.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>
#include <vector>

/// One field of an option-byte register.
struct obField {
    std::string name;
    std::uint8_t offset = 0;  ///< lowest bit
    std::uint8_t width = 0;   ///< bits
    std::string description;
    std::vector<bitValue> values;
    std::uint32_t defaultVal = 0;
    std::uint8_t access = 0;  ///< 0: the field can't be edited
};

/// A field before the fields of a register are grouped.
struct obRegField {
    std::string regName;
    std::uint32_t regAddress = 0;
    std::string name;
    std::uint8_t offset = 0;
    std::uint8_t width = 0;
    std::string description;
    std::vector<bitValue> values;
    std::uint32_t defaultVal = 0;
    std::uint8_t access = 0;
};

/// One option-byte register.
struct obReg {
    /// Name and address of the register, then its first field; the value is left 0.
    obReg(std::string regName, unsigned int regAddress, std::string fieldName, unsigned char offset,
          unsigned char width, std::string description, std::vector<bitValue> values,
          unsigned int defaultVal, int access);

    std::string name;
    std::uint32_t address = 0;
    std::vector<obField> fields;
    std::uint32_t value = 0;  ///< working value; the defaults until something is generated
};

namespace device
{

/// What the database says about a field beyond `obField`.
struct FieldNotes {
    std::uint32_t multiplier = 1;  ///< the address that a value stands for is value * multiplier
    std::uint32_t addend = 0;      ///< + addend
    std::vector<std::uint32_t> irreversible;  ///< values that can't be taken back
};

struct RegisterNotes {
    std::string category;
    std::vector<FieldNotes> fields;  ///< in the order of `obReg::fields`
};

/// The registers of a device, and notes on them in the same order.
struct OptionBytes {
    std::vector<obReg> registers;
    std::vector<RegisterNotes> notes;
};

/// Groups the bits of the last "Option Bytes" peripheral by register, in the order of the database;
/// a field that its register has already, by name and offset, is left out.
/// @param configuration  the one that `configured` was made for
/// @return nothing when the device has no option bytes
OptionBytes optionBytesOf(const DeviceConfiguration &configured,
                          const std::vector<IrreversibleValue> &irreversible,
                          std::uint8_t configuration);

/// What edits a field.
enum class FieldKind {
    None,      ///< nothing: no width, bits beyond bit 31, or bits that an earlier field has
    Button,    ///< one bit
    TextBox,   ///< several bits, any number that fits
    ComboBox,  ///< several bits with a list of values
};

/// @return the kind of each field of a register, in its order
std::vector<FieldKind> fieldKinds(const obReg &reg);

/// 2 to the power `width`, less 1; all ones from 64 bits on.
std::uint64_t widthMask(unsigned int width);
/// Bits `offset` to `offset + width - 1` of a register, 0 beyond bit 31.
std::uint32_t fieldMask(const obField &field);
/// The field's bits of a register value, shifted down to bit 0.
std::uint32_t fieldBits(std::uint32_t registerValue, const obField &field);
/// @return the register value with the field's bits replaced by the low bits of `bits`
std::uint32_t withFieldBits(std::uint32_t registerValue, const obField &field, std::uint32_t bits);

/// "0x1f": how fields show their values.
QString hexText(std::uint32_t value);
/// "0x0000001f": how registers show theirs.
QString wordText(std::uint32_t value);
/// The label of a value, or an empty text.
QString labelOf(const obField &field, std::uint32_t value);
/// "bits 7 to 0" or "bit 7".
QString bitsText(const obField &field);
/// "0x00100000 × 0x80 = 0x08000000" for a field whose value stands for an address, else empty.
QString equationText(const FieldNotes &notes, std::uint32_t value);
/// Name, description and values of a field, a line each; the address of the value `current` last.
QString fieldToolTip(const obField &field, const FieldNotes &notes, std::uint32_t current);

/// A cell of a register's bit table: bits of one field in one half, or one reserved bit.
struct BitCell {
    bool isUpperHalf = true;  ///< bits 31 to 16
    int column = 0;           ///< 0 is the half's highest bit
    int span = 1;             ///< columns
    int field = -1;           ///< index into `obReg::fields`; -1 for a reserved bit
    bool hasWidget = true;    ///< false for the lower part of a field that crosses bit 16
};

/// Lays out the 32 bits, from bit 31 to bit 0; every bit stands in one cell.
std::vector<BitCell> bitTableLayout(const obReg &reg);

}  // namespace device
