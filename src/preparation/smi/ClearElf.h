#pragma once
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <QByteArray>

#include <string>

namespace preparation
{

/// The section that becomes a module, as an ELF file tells it.
struct ModuleSection {
    std::string name;
    std::uint32_t address = 0;
    ByteView bytes;
};

/// Makes an ELF file without the bytes of one section, for those who link against a module or flash
/// the rest. What else is loaded stays at its addresses; head, tables and what describes the
/// section change. docs/formats.md tells how.
class ClearElf
{
public:
    /// Reads the file and takes the section out.
    /// @param file  the whole ELF file
    /// @return BadValue for a file or section that can't be used, or that isn't the one told;
    /// Refused
    ///         when the result, read again, would load anything else than the input without it
    static files::Result<ClearElf> make(ByteView file, const ModuleSection &module);

    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

    /// Sections for debuggers that stay, and describe the module's inside.
    [[nodiscard]] std::size_t debugSections() const { return m_debugSections; }

private:
    QByteArray m_bytes;
    std::size_t m_debugSections = 0;
};

}  // namespace preparation
