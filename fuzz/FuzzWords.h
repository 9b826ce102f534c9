#pragma once
#include "FuzzSupport.h"
#include "files/base/Result.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

/// A code that a reader may refuse with, and how the words begin that go with it.
struct Words {
    files::ErrorCode code = files::ErrorCode::Refused;
    std::string_view begin;
};

/// A refusal must be one of those that the reader promises.
inline void requireWords(const files::Error &error, std::initializer_list<Words> promised)
{
    require(std::any_of(promised.begin(), promised.end(), [&error](const Words &words) {
        return error.code == words.code && error.text.starts_with(words.begin);
    }));
}
