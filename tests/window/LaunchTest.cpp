#include "tests/window/AppWindow.h"

namespace zelvra::test {

TEST_F(AppWindow, OpensOnTheLandingScreen) {
    EXPECT_EQ(window().title(), "Zelvra");
    EXPECT_FALSE(state().videoFile().has_value());
}

} // namespace zelvra::test
