#include "obk/Template.h"

#include <algorithm>

namespace obk
{

namespace
{

bool namesAll(const QStringList &names, std::initializer_list<const char *> wanted)
{
    return std::all_of(wanted.begin(), wanted.end(),
                       [&names](const char *tag) { return names.contains(QLatin1String(tag)); });
}

}  // namespace

QString tagOf(ItemKind kind)
{
    static const char *const tags[] = {"Text", "Data", "Permission", "Bool",
                                       "List", "File", "Output"};
    return QLatin1String(tags[static_cast<int>(kind)]);
}

bool flashExist(const QStringList &names)
{
    return namesAll(names, {"FlashStart", "FlashSize", "FlashSectorSize"});
}

bool obkExist(const QStringList &names)
{
    return namesAll(names, {"OBKStart", "OBKSize", "OBKSectorSize"});
}

bool authObkExist(const QStringList &names)
{
    return namesAll(names, {"AuthOBKStart", "AuthOBKSize"});
}

bool Template::hasFlashArea() const
{
    return flashExist(flashNames);
}

bool Template::hasObkArea() const
{
    return obkExist(obkNames);
}

bool Template::hasAuthObkArea() const
{
    return authObkExist(authObkNames);
}

}  // namespace obk
