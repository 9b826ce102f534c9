#include "app/LaunchCheck.h"

#include <gtest/gtest.h>

#include <map>

namespace
{

struct Surroundings {
    const char *name;
    QByteArrayList arguments;
    std::map<QByteArray, QByteArray> variables;
    bool expected;
};

class Display : public ::testing::TestWithParam<Surroundings>
{
};

TEST_P(Display, IsFoundOrNotNeeded)
{
    const auto variable = [](const char *name) {
        const auto found = GetParam().variables.find(name);
        return found == GetParam().variables.end() ? QByteArray() : found->second;
    };
    EXPECT_EQ(app::canOpenWindow(QByteArrayList{"p"} + GetParam().arguments, variable),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Display,
    ::testing::Values(
        Surroundings{"Nothing", {}, {}, false}, Surroundings{"X11", {}, {{"DISPLAY", ":0"}}, true},
        Surroundings{"EmptyDisplay", {}, {{"DISPLAY", ""}}, false},
        Surroundings{"Wayland", {}, {{"WAYLAND_DISPLAY", "wayland-0"}}, true},
        Surroundings{"OffscreenByVariable", {}, {{"QT_QPA_PLATFORM", "offscreen"}}, true},
        Surroundings{"OffscreenBySwitch", {"-platform", "offscreen"}, {}, true},
        Surroundings{"OffscreenByLongSwitch", {"--platform", "minimal:x"}, {}, true},
        Surroundings{"SwitchWinsOverVariable",
                     {"-platform", "xcb"},
                     {{"QT_QPA_PLATFORM", "offscreen"}},
                     false},
        Surroundings{"XcbAlone", {}, {{"QT_QPA_PLATFORM", "wayland;xcb:opt"}}, false},
        Surroundings{"FallsBackToOffscreen", {}, {{"QT_QPA_PLATFORM", "xcb;offscreen"}}, true},
        Surroundings{"DisplaySwitch", {"-display", ":1"}, {}, true},
        Surroundings{"SwitchWithoutValue", {"-platform"}, {}, false}),
    [](const auto &row) { return row.param.name; });

}  // namespace
