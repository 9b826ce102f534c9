#pragma once
#include <QString>

#include <ostream>

/// Lets GoogleTest show Qt's strings (and lists of them) as text instead of bytes.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
