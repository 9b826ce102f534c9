#pragma once
#include "device/NumberedName.h"

#include <QDomElement>
#include <QDomNode>
#include <QString>

#include <cstdint>

namespace device
{

/// Calls `visit` with each child element, in order. Steps from sibling to sibling: a node list
/// would count from the start for every child.
template <typename Visit>
void forEachElement(const QDomNode &parent, Visit visit)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        visit(child);
    }
}

/// Compares an element's name as the format does: without regard to case.
inline bool isNamed(const QDomNode &element, const char *name)
{
    return element.nodeName().compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

/// A hexadecimal text, cut to the width of `T`. Throws as `hexadecimalNumber` does.
template <typename T>
T hexadecimalAs(const QString &text)
{
    return static_cast<T>(hexadecimalNumber(text));
}

inline QString attribute(const QDomNode &element, const char *name, const char *ifAbsent = "")
{
    return element.toElement().attribute(QLatin1String(name), QLatin1String(ifAbsent));
}

/// Reads a hexadecimal attribute; an absent one leaves the target as it is.
template <typename T>
void readHexadecimal(const QDomNode &element, const char *name, T &out)
{
    if (element.toElement().hasAttribute(QLatin1String(name))) {
        out = hexadecimalAs<T>(attribute(element, name));
    }
}

}  // namespace device
