// Any bytes as a file of option-byte values that is uploaded into a form of two registers.
#include "FuzzSupport.h"

#include "device/ObEditor.h"

#include <algorithm>
#include <string_view>

namespace
{

using device::FieldId;
using device::FieldKind;

/// A button, a list, a field that can't be edited, a text box; and a register of one field.
device::OptionBytes twoRegisters()
{
    device::OptionBytes bytes;
    bytes.registers.emplace_back("ACC", 0x50000000, "ON", 0, 1, "", std::vector<bitValue>(), 1, 1);
    std::vector<bitValue> levels(2);
    levels[0].value = 0xA;
    levels[1].value = 0xC;
    bytes.registers.back().fields.push_back({"LEVEL", 4, 4, "", levels, 0xA, 1});
    bytes.registers.back().fields.push_back({"FIX", 8, 2, "", {}, 2, 0});
    bytes.registers.back().fields.push_back({"TIME", 12, 6, "", {}, 0x15, 1});
    bytes.registers.emplace_back("LOCK", 0x50000004, "ALL", 0, 32, "", std::vector<bitValue>(),
                                 0xFFFF0000, 1);
    bytes.registers[0].value = 0x152A1;  // all defaults together
    bytes.registers[1].value = 0xFFFF0000;
    for (const obReg &reg : bytes.registers) {
        bytes.notes.push_back({"Access", std::vector<device::FieldNotes>(reg.fields.size())});
    }
    return bytes;
}

/// The values as they would be read by hand; fewer than registers for a file that isn't one.
std::vector<std::uint32_t> valuesIn(std::string_view text, const device::ObEditor &editor)
{
    std::vector<std::uint32_t> values;
    for (const obReg &reg : editor.registers()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        std::vector<std::string> parts(1);
        for (const char c : line) {
            if (c == ',') {
                parts.emplace_back();
            } else if (c != '\r' || parts.size() == 1) {
                parts.back() += c;
            }
        }
        if (parts.size() < 2 || parts[0] != reg.name) {
            return values;
        }
        const std::string digits = parts[1].starts_with("0x") ? parts[1].substr(2) : parts[1];
        if (digits.empty() || digits.size() > 8 ||
            digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return values;
        }
        values.push_back(static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16)));
    }
    return values;
}

bool isIn(const std::vector<FieldId> &ids, FieldId id)
{
    return std::ranges::find(ids, id) != ids.end();
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {"ACC,0x000152a1\nLOCK,0xffff0000\n", "ACC,152C0\r\nLOCK,1,2\r\n",
          "ACC,0xFFFFFFFF\nLOCK,0", "LOCK,0\nACC,0\n"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const QByteArray content(text.data(), static_cast<int>(size));
    device::ObEditor editor(twoRegisters());
    const auto plan = editor.planUpload(content);
    const std::vector<std::uint32_t> values = valuesIn(text, editor);
    require(plan.has_value() == (values.size() == editor.registers().size()));
    if (!plan) {
        require(!plan.error().text.empty());
        return 0;
    }
    const std::vector<std::uint32_t> before = {editor.shown(0), editor.shown(1)};
    editor.apply(*plan);
    for (std::size_t r = 0; r < values.size(); ++r) {
        for (std::size_t f = 0; f < editor.reg(r).fields.size(); ++f) {
            const FieldId id = {r, f};
            const obField &field = editor.field(id);
            const std::uint32_t wanted = device::fieldBits(values[r], field);
            const std::uint32_t old = device::fieldBits(before[r], field);
            const bool isKept = !editor.state(id).isEditable || isIn(plan->unlisted, id);
            require(editor.bits(id) == (isKept ? old : wanted));
            require(isIn(plan->readOnly, id) == (!editor.state(id).isEditable && wanted != old));
        }
    }
    const auto again = editor.planUpload(content);
    require(again && again->edits.empty() && again->unlisted == plan->unlisted);
    return 0;
}
