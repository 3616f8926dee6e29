#include <gtest/gtest.h>

#include "platform/host/screen/text.h"
#include "support/temporary_folder.h"

namespace {

using namespace host;

namespace fs = std::filesystem;

/// A machine with few fonts, which are taken away and replaced while they are in use.
struct LostFont : testing::Test {
    LostFont() {
        fonts("truetype/dejavu/DejaVuSans.ttf", "sans.ttf");
        fonts("truetype/dejavu/DejaVuSerif.ttf", "serif.ttf");
        folder.write("fonts.conf", "<fontconfig><dir>" + (folder / "fonts").string() + "</dir><cachedir>" +
                                       (folder / "cache").string() + "</cachedir></fontconfig>");
        setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
    }

    /// A new file, put into its place as package managers do.
    void fonts(const std::string& from, const std::string& to) {
        fs::create_directories(folder / "fonts");
        fs::copy_file("/usr/share/fonts/" + from, folder / "new");
        fs::rename(folder / "new", folder / "fonts" / to);
    }

    Framebuffer drawn(const std::string& words, int size, const char* family = nullptr) {
        Screen screen({600, 100}, PixelFormat::Grey8);
        text.draw(screen, {0, 0, 600, 100}, words, *text.open(family, size), {});
        return screen.pixels();
    }

    TemporaryFolder folder;
    Device device{600, 400, 167, 1.0, false, 0};
    Text text{device};
};

TEST_F(LostFont, TheDefaultOneWritesOnInAnySize) {
    const Framebuffer sans = drawn("Text", 30);
    const Framebuffer serif = drawn("Text", 30, "DejaVu Serif");
    ASSERT_FALSE(sans == serif);
    const std::string name = text.defaultFamily(0);
    const char* const kept = text.defaultFamily(0);
    fs::remove_all(folder / "fonts");
    for (int size = 20; size < 40; ++size) EXPECT_FALSE(drawn("Text", size, "DejaVu Serif") == drawn("", size)) << size;
    EXPECT_TRUE(drawn("Text", 30) == sans);
    EXPECT_EQ(kept, name) << "the application still holds it";
}

TEST_F(LostFont, TheOthersComeBackWithTheirFiles) {
    const Framebuffer sans = drawn("Text", 30);
    const Framebuffer missing = drawn("नमस्ते", 30);
    fs::remove(folder / "fonts/serif.ttf");
    EXPECT_TRUE(drawn("Text", 30, "DejaVu Serif") == sans);
    fonts("truetype/noto/NotoSansDevanagari-Regular.ttf", "serif.ttf");
    EXPECT_FALSE(drawn("नमस्ते", 30) == missing);
    EXPECT_EQ(text.families("hi").front(), "Noto Sans Devanagari");
}

TEST_F(LostFont, ADamagedOneIsLeftOut) {
    drawn("Text", 30);
    // Written over in its place, behind the back of whoever has read the folder.
    std::ofstream(folder / "fonts/serif.ttf", std::ios::in) << "no font at all";
    drawn("Text", 31, "DejaVu Serif");
    std::ofstream(folder / "fonts/sans.ttf", std::ios::in) << "no font at all";
    drawn("Text", 32);
}

}  // namespace
