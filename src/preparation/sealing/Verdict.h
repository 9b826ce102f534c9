#pragma once

namespace preparation
{

/// What is known about one sealed area, or about a package of one area.
enum class Verdict {
    NotChecked,         ///< no key was given; its check block, if it has one, fits
    Authentic,          ///< its tag fits under the key
    Damaged,            ///< its check block doesn't fit, or zeros aren't
    WrongKeyOrDamaged,  ///< its tag doesn't fit under the key
};

/// "not checked", "authentic", "damaged", "wrong key or damaged".
const char *verdictText(Verdict verdict);

}  // namespace preparation
