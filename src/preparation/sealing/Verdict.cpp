#include "preparation/sealing/Verdict.h"

namespace preparation
{

const char *verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::NotChecked:
        return "not checked";
    case Verdict::Authentic:
        return "authentic";
    case Verdict::Damaged:
        return "damaged";
    case Verdict::WrongKeyOrDamaged:
        return "wrong key or damaged";
    }
    return "";
}

}  // namespace preparation
