#pragma once
#include <QString>

/// @file
/// Labels of the ELF display; a fixed text for all values that have none.

QString ELFtype(unsigned short type);
QString ELFmachine(unsigned short machine);
QString secType(unsigned int type);
/// Looks at the whole value, not at its bits.
QString secFlag(unsigned long flags);
