#include "platform/host/session/trace.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/host/session/json.h"
#include "support/program.h"

namespace host {
namespace {

TEST(TraceStrings, EscapeOnlyWhatJsonAsksForAndAreReadBack) {
    EXPECT_EQ(Trace::quoted("/\"\\\b\f\n\r\t"), R"("/\"\\\b\f\n\r\t")");
    EXPECT_EQ(Trace::quoted(std::string("\x01\x1f\0\x7f", 4)), "\"\\u0001\\u001f\\u0000\x7f\"");
    EXPECT_EQ(Trace::quoted("\xE2\x82z\xF0\x9F\x98\""), "\"\uFFFDz\uFFFD\\\"\"") << "broken UTF-8";

    std::string text = "\u0080\u07FF\u0800\uFFFD\U00010000\U0010FFFF";
    for (int byte = 1; byte < 0x80; ++byte) text += static_cast<char>(byte);
    const std::string quoted = Trace::quoted(text) + " rest";
    std::string_view input = quoted;
    std::string back;
    std::string error;
    ASSERT_TRUE(readJsonString(input, back, error)) << error;
    EXPECT_EQ(back, text);
    EXPECT_EQ(input, " rest");
}

struct TraceFile : testing::Test {
    const TemporaryFolder folder;
    const std::string path = folder.path() / "trace";
    Trace trace;
    std::string error;
};

TEST_F(TraceFile, HoldsEveryLineAtOnceAndToTheLetter) {
    const Device grey{.width = 600, .height = 800, .dpi = 167, .scale = 1.5, .colour = false, .platform = 16};
    trace.call("BeforeItIsOpen");
    ASSERT_TRUE(trace.open(path, grey, true, error)) << error;
    EXPECT_EQ(contentOf(path),
              "# device width=600 height=800 dpi=167 scale=1.5 colormask=0 platform=16 fast_sleep=1\n");

    const bitmap_s bitmap{1404, 1764, 24, 4212};
    trace.enter("event", 30, -1, 2);
    trace.call("FillArea", 0, -2, TraceColour{0xAB12}, std::string("a\"b"), "c");
    trace.call("drawXYSpline", TraceRounded{399.5}, TraceRounded{-0.4}, 0.1, 1e6, 1e-5);
    trace.answered("LoadBitmap", &bitmap, "/x");
    trace.answered("LoadFromTheme", static_cast<const bitmap_s*>(nullptr), "");
    trace.question("design_to_pixel", 71, 71);
    trace.leave(-3);
    trace.enter("create");
    trace.leave();
    const std::string all = contentOf(path);
    EXPECT_EQ(all.substr(all.find('\n') + 1),
              "> event 30 -1 2\nFillArea 0 -2 0x00AB12 \"a\\\"b\" \"c\"\ndrawXYSpline 400 0 0.1 1e+06 1e-05\n"
              "LoadBitmap \"/x\" = 1404x1764x24\nLoadFromTheme \"\" = null\n? design_to_pixel 71 = 71\n< -3\n"
              "> create\n<\n");
}

TEST_F(TraceFile, StartsAnewOverAnOldOne) {
    std::ofstream(path) << "something older and rather longer than the line that tells about the device, by some way";
    ASSERT_TRUE(trace.open(path, {}, false, error));
    EXPECT_EQ(contentOf(path), "# device width=1404 height=1872 dpi=300 scale=1 colormask=1 platform=0 fast_sleep=0\n");
}

TEST_F(TraceFile, ThatCannotBeWrittenIsToldOnce) {
    EXPECT_FALSE(trace.open("/nowhere/trace", {}, false, error));
    EXPECT_EQ(error, "cannot write the trace '/nowhere/trace': No such file or directory");

    testing::internal::CaptureStderr();
    EXPECT_TRUE(trace.open("/dev/full", {}, false, error));
    trace.call("ClearScreen");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "colour: the trace '/dev/full' ends here: No space left on device\n");
}

}  // namespace
}  // namespace host
