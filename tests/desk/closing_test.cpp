#include <gmock/gmock.h>

#include "support/app.h"

namespace {

struct ClosingAPicture : testing::Test {
    /// As a closed window does.
    void close() {
        App::kit().loop.input({.kind = host::Input::Kind::Close});
        EXPECT_EQ(App::kit().loop.run(nullptr), 0);
        EXPECT_TRUE(App::kit().loop.atHome());
    }
    [[nodiscard]] std::string saved() const {
        return contentOf(app.file("/mnt/ext1/My pictures/picture_1700000000.bmp"));
    }

    static constexpr std::size_t kPixels = 54;  ///< where they begin in the file
    App app;
};

TEST_F(ClosingAPicture, KeepsTheTextThatIsBeingTyped) {
    app.create();
    app.tap(738, 50);
    app.down(440, 640);
    app.up(1000, 790);
    App::kit().loop.input({.kind = host::Input::Kind::Text, .text = "half a sent"});
    close();
    EXPECT_THAT(app.calls(), testing::Contains("> keyboard \"half a sent\""));
    EXPECT_NE(saved().find_first_not_of('\xFF', kPixels), std::string::npos) << "its ink is in the picture";
}

TEST_F(ClosingAPicture, DeletesNothingWhenItOnlyAsksWhetherTo) {
    app.create();
    app.tap(500, 500);
    app.tap(1341, 50);
    ASSERT_NE(App::kit().modals.top(), nullptr);
    close();
    EXPECT_NE(saved(), "");
}

}  // namespace
