#pragma once
#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace certif
{

/// A role as the form's box names it, with the words that label the two key fields.
struct RoleWords {
    const char *role;
    unsigned number;
    const char *issuerLabel;  ///< blanks keep the two labels of a role equally wide
    const char *subjectLabel;
};

inline constexpr std::array<RoleWords, 3> kRoles{{
    {"ROOT", 1, "Root Private Key", "Root Public Key  "},
    {"INTERMEDIATE", 2, "Issuer Private Key          ", "Intermediate Public Key"},
    {"LEAF", 3, "Issuer Private Key", "Leaf Public Key      "},
}};

struct LifecycleWords {
    const char *text;
    std::uint16_t number;
};

inline constexpr std::array<LifecycleWords, 7> kLifecycles{{
    {"UNKNOWN", 0x00},
    {"ASSEMBLY AND TEST", 0x10},
    {"PSA ROT PROVISIONING", 0x20},
    {"SECURED", 0x30},
    {"NON PSA ROT DEBUG", 0x40},
    {"RECOVERABLE PSA ROT DEBUG", 0x50},
    {"DECOMMISSIONED", 0x60},
}};

/// Usages of the form's box; any text but the first counts as the second.
inline constexpr std::array<const char *, 2> kUsages{{"STANDARD", "RMA"}};

}  // namespace certif
