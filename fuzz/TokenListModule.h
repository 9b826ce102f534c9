#pragma once
#include <cstdint>
#include <span>

/// What the module answers with, in the order of the calls; then zeros.
struct ListAnswers {
    std::span<const std::uint8_t> input;
    int openSessions = 0;
};

extern "C" ListAnswers *listAnswers();
