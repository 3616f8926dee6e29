// A picture is changed by drawing on it, by nothing else, and what was drawn or deleted is not lost.
#include "platform/host/keep/keeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include "files/scratch.h"
#include "platform/host/keep/recovery.h"
#include "support/app.h"

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr host::Size kPage{1404, 1764};

std::string path(const std::string& name) { return "/mnt/ext1/My pictures/" + name; }

/// Writes a file.
using Write = std::function<void(const fs::path&)>;

struct KeeperTest : testing::Test {
    explicit KeeperTest(const host::Device& device = {}) : app(device) {}

    /// A picture of that name stays when it is opened, and when it is drawn on.
    void expectStays(const std::string& name, const Write& write);

    /// As a person in the explorer; the notice that speaks against it.
    std::string open(const std::string& name) {
        std::string error;
        const auto against = App::kit().keeper.prepare(path(name), error);
        if (!against || !against->button.empty()) app.open(path(name));
        return against ? against->text : "";
    }
    void draw() { app.tap(700, 900); }
    void back() { app.tap(58, 50); }

    /// A page, or a picture of another size, of some noise.
    host::BitmapPtr save(const std::string& name, host::Size size = kPage, int depth = 24) {
        host::BitmapPtr picture = scratch::noise(size.w, size.h, depth);
        std::string error;
        EXPECT_TRUE(host::savePicture(app.file(path(name)), *picture, error)) << error;
        return picture;
    }
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& picture : App::kit().storage.pictures()) found.push_back(picture.file.filename());
        std::sort(found.begin(), found.end());
        return found;
    }
    std::string content(const std::string& name) { return contentOf(app.file(path(name))); }
    /// What the explorer would tell, and what its button would do.
    std::string told() { return (notice = App::kit().keeper.takeNotice()).text; }

    App app;
    host::Notice notice;
    bool taken = false;
};

struct GreyKeeperTest : KeeperTest {
    GreyKeeperTest() : KeeperTest({.colour = false}) {}
};

TEST_F(KeeperTest, APictureThatIsOnlyLookedAtStaysAsItIs) {
    save("a.bmp");
    save("white.bmp");
    fs::remove(app.file(path("white.bmp")));
    const host::BitmapPtr white = host::makeBitmap(kPage.w, kPage.h, 24);
    std::fill_n(bitmap_pixels(white.get()), host::pixelBytes(*white), std::uint8_t{0xFF});
    std::string error;
    ASSERT_TRUE(host::savePicture(app.file(path("white.bmp")), *white, error));
    for (const char* name : {"a.bmp", "white.bmp"}) {
        const std::string before = content(name);
        const auto time = fs::last_write_time(app.file(path(name)));
        for (const bool undone : {false, true}) {
            EXPECT_EQ(open(name), "");
            if (undone) {
                draw();
                app.tap(1078, 50);
            }
            back();
            EXPECT_EQ(content(name), before);
            EXPECT_EQ(fs::last_write_time(app.file(path(name))), time);
        }
        open(name);
        draw();
        back();
        EXPECT_NE(content(name), before);
    }
}

/// Writes a picture in one of the PNG library's formats, all of whose bytes are 0x80.
void writePng(const fs::path& file, png_uint_32 format, host::Size size = kPage) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(size.w);
    image.height = static_cast<png_uint_32>(size.h);
    image.format = format;
    const std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image), 0x80);
    EXPECT_NE(png_image_write_to_file(&image, file.c_str(), 0, pixels.data(), 0, nullptr), 0) << image.message;
}

/// Noise that is white above, as scans are.
Write bitmap(host::Size size, int depth) {
    return [size, depth](const fs::path& file) {
        const host::BitmapPtr picture = scratch::noise(size.w, size.h, depth);
        std::fill_n(bitmap_pixels(picture.get()), host::pixelBytes(*picture) / 2, std::uint8_t{0xFF});
        std::string error;
        EXPECT_TRUE(host::savePicture(file, *picture, error)) << error;
    };
}

Write png(png_uint_32 format, host::Size size = kPage) {
    return [format, size](const fs::path& file) { writePng(file, format, size); };
}

Write bytes(const std::string& content) {
    return [content](const fs::path& file) { std::ofstream(file, std::ios::binary) << content; };
}

/// Opens it, leaves it, opens it again, draws and leaves it.
void KeeperTest::expectStays(const std::string& name, const Write& write) {
    const fs::path file = app.file(path(name));
    const std::string drawing =
        fs::path(name).stem().string() + " (drawing)" + (name.ends_with(".png") ? ".png" : ".bmp");
    write(file);
    const std::string before = content(name);
    const auto time = fs::last_write_time(file);
    testing::internal::CaptureStderr();
    open(name);
    back();
    EXPECT_THAT(names(), ElementsAre(name));
    open(name);
    draw();
    back();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(drawing)) << name;
    EXPECT_THAT(told(), HasSubstr(drawing));
    EXPECT_THAT(names(), ElementsAre(drawing, name));
    EXPECT_EQ(content(name), before) << name;
    EXPECT_EQ(fs::last_write_time(file), time) << name;
    std::string error;
    const host::BitmapPtr drawn = host::loadPicture(app.file(path(drawing)), error);
    ASSERT_NE(drawn, nullptr) << error;
    EXPECT_EQ((host::Size{drawn->width, drawn->height}), kPage) << name;
    fs::remove(file);
    fs::remove(app.file(path(drawing)));
}

TEST_F(KeeperTest, WhatAPageCannotHoldStaysAndIsDrawnOnBesideIt) {
    const std::pair<const char*, Write> kinds[] = {
        {"small.bmp", bitmap({40, 60}, 24)},
        {"high.bmp", bitmap({kPage.w, kPage.h + 1}, 24)},
        {"wide.png", bitmap({kPage.w + 1, 9}, 8)},
        {"scan.bmp", bitmap({2 * kPage.w, 2 * kPage.h}, 8)},
        {"alpha.bmp", bitmap(kPage, 32)},
        {"alpha.png", png(PNG_FORMAT_RGBA)},
        {"greyalpha.png", png(PNG_FORMAT_GA)},
        {"deep.png", png(PNG_FORMAT_LINEAR_RGB)},
        {"deepgrey.png", png(PNG_FORMAT_LINEAR_Y)},
        {"deepalpha.png", png(PNG_FORMAT_LINEAR_RGB_ALPHA)},
        {"page.jpg", bytes(scratch::sample("quarter.jpg"))},
        {"a.gif", bytes(scratch::sample("small.gif"))},
        {"a.tiff", bytes(scratch::sample("small.tif"))},
        {"a.webp", bytes(scratch::sample("small.webp"))},
        {"named.jpeg",
         [](const fs::path& file) {
             bitmap(kPage, 24)(file.string() + ".bmp");
             fs::rename(file.string() + ".bmp", file);
         }},
    };
    for (const auto& [name, write] : kinds) expectStays(name, write);
}

TEST_F(GreyKeeperTest, AColourPictureStaysInColourOnAGreyPanel) { expectStays("colour.bmp", bitmap(kPage, 24)); }

TEST_F(KeeperTest, AScriptsPictureThatIsNotLoadedWholeIsKeptAside) {
    bitmap({kPage.w + 1, 40}, 24)(app.file(path("wide.bmp")));
    bytes("BM and nothing more")(app.file(path("damaged.bmp")));
    png(PNG_FORMAT_RGBA)(app.file(path("alpha.png")));
    testing::internal::CaptureStderr();
    for (const std::string stem : {"wide", "damaged", "alpha"}) {
        const std::string name = stem + (stem == "alpha" ? ".png" : ".bmp");
        const std::string aside = stem + " (original)" + name.substr(stem.size());
        const std::string before = content(name);
        app.open(path(name));
        back();
        EXPECT_EQ(content(name), before);
        app.open(path(name));
        draw();
        back();
        EXPECT_EQ(content(aside), before) << name;
        EXPECT_NE(content(name), before);
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(KeeperTest, WhatIsDeletedComesBack) {
    save("a.bmp");
    const std::string before = content("a.bmp");
    for (const bool blank : {false, true}) {
        open("a.bmp");
        if (blank) {
            app.tap(568, 50);
            for (int y = 110; y < 1872; y += 55) {
                app.down(0, y);
                for (int x = 25; x < 1404; x += 50) app.move(x, y);
                app.up(1403, y);
            }
            back();
        } else {
            draw();
            app.tap(1341, 50);
            App::kit().loop.command([](host::Modal& dialog) { return dialog.answer(2); });
        }
        EXPECT_THAT(names(), testing::IsEmpty()) << blank;
        EXPECT_THAT(told(), HasSubstr("a.bmp"));
        notice.act();
        EXPECT_EQ(content("a.bmp") == before, blank) << "with what was drawn";
        save("a.bmp");
    }
}

TEST_F(KeeperTest, APictureBehindALinkIsKeptAsideWhereItIs) {
    const fs::path real = app.file("/mnt/ext1/real.bmp");
    bitmap({kPage.w + 1, 40}, 24)(real);
    fs::create_symlink(real, app.file(path("link.bmp")));
    const std::string before = contentOf(real);
    testing::internal::CaptureStderr();
    app.open(path("link.bmp"));
    draw();
    back();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(contentOf(app.file("/mnt/ext1/real (original).bmp")), before);
    EXPECT_NE(contentOf(real), before);
}

TEST_F(KeeperTest, TwoProgramsNeverEditOnePicture) {
    save("a.bmp");
    {
        host::Storage storage(App::kit().storage.root());
        host::Keeper other(storage, App::kit().languages, App::kit().text, App::kit().screen);
        std::string error;
        EXPECT_FALSE(other.prepare(path("a.bmp"), error));
        EXPECT_THAT(open("a.bmp"), HasSubstr("another program"));
        testing::internal::CaptureStderr();
        app.open(path("a.bmp"));
        draw();
        back();
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("another program"));
        EXPECT_THAT(names(), ElementsAre("a (drawing).bmp", "a.bmp"));
    }
    EXPECT_EQ(open("a.bmp"), "");
    EXPECT_FALSE(host::lockFile(app.file("/mnt/ext1/.recovery") / host::recoveryName(app.file(path("a.bmp"))), taken));
    EXPECT_TRUE(taken);
}

TEST_F(KeeperTest, WhatOthersHaveChangedIsKeptBeside) {
    save("a.bmp");
    open("a.bmp");
    draw();
    bitmap(kPage, 8)(app.file(path("a.bmp")));
    const std::string theirs = content("a.bmp");
    testing::internal::CaptureStderr();
    back();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("a (changed meanwhile).bmp"));
    EXPECT_EQ(content("a (changed meanwhile).bmp"), theirs);
    EXPECT_NE(content("a.bmp"), theirs);
}

TEST_F(KeeperTest, APageThatCannotBeCapturedIsSavedAsItWasLast) {
    app.open(path("a.bmp"));
    draw();
    App::kit().keeper.notSaved();
    EXPECT_THAT(told(), HasSubstr("a.bmp"));
    notice.act();
    EXPECT_NE(content("a.bmp"), "");
    EXPECT_TRUE(App::kit().keeper.finish());
}

TEST_F(KeeperTest, APageThatCannotBeSavedIsKept) {
    const TemporaryFolder state;
    setenv("XDG_STATE_HOME", state.path().c_str(), 1);
    const std::string name = "picture_1700000000.bmp";
    app.create();
    draw();
    // In the place of the folder there is a file.
    fs::remove_all(app.file(path("")));
    bytes("")(app.file("/mnt/ext1/My pictures"));
    testing::internal::CaptureStderr();
    back();
    EXPECT_THAT(told(), HasSubstr(name));
    notice.act();
    EXPECT_THAT(told(), HasSubstr("colour/" + name)) << "it is elsewhere now";
    EXPECT_TRUE(fs::exists(state / ("colour/" + name)));
    EXPECT_FALSE(App::kit().keeper.finish()) << "where it does not belong";
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("colour/" + name));
}
}  // namespace
