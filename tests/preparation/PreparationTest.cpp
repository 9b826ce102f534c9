#include "preparation/Preparation.h"

#include "preparation/ImageOpener.h"
#include "preparation/KnownAnswers.h"
#include "preparation/SfiRequestBuilder.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

SfiRequestBuilder knownAnswerRequest()
{
    SfiRequestBuilder request;
    request.nonce.clear();
    for (const std::uint8_t byte : ramp(0xA0, 3, 12)) {
        request.nonce.append(static_cast<char>(byte));
    }
    request.imageVersion = 7;
    request.profile = 0x484;
    request.ramSize = 128;
    request.obk(0x0FFD0100, 1, ramp(0x33, 7, 20));
    request.keyArea.segments = {request.segment(0, ramp(5, 11, 24))};
    request.keyArea.segmentCount = 1;
    request.firmware(0x08000210, ramp(1, 13, 150)).firmware(0x08000004, ramp(9, 5, 21));
    request.optionBytes.segments = {request.segment(0, ramp(0xF0, 1, 8))};
    return request;
}

TEST(KnownAnswer, Version1)
{
    EXPECT_EQ(knownAnswerRequest().build().toHex().toStdString(), kKnownVersion1);
}

TEST(KnownAnswer, Version2)
{
    SfiRequestBuilder request = knownAnswerRequest();
    request.hash = true;
    EXPECT_EQ(request.build().toHex().toStdString(), kKnownVersion2);
    EXPECT_TRUE(request.messages.empty());
}

}  // namespace
