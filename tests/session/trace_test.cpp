#include "platform/host/record/trace.h"

#include <gtest/gtest.h>

#include "platform/host/record/json.h"

namespace host {
namespace {

TEST(TraceStrings, EscapeOnlyWhatJsonAsksForAndAreReadBack) {
    EXPECT_EQ(jsonQuoted("/\"\\\b\f\n\r\t"), R"("/\"\\\b\f\n\r\t")");
    EXPECT_EQ(jsonQuoted(std::string("\x01\x1f\0\x7f", 4)), "\"\\u0001\\u001f\\u0000\x7f\"");
    EXPECT_EQ(jsonQuoted("\xE2\x82z\xF0\x9F\x98\""), "\"\uFFFDz\uFFFD\\\"\"") << "broken UTF-8";

    std::string text = "\u0080\u07FF\u0800\uFFFD\U00010000\U0010FFFF";
    for (int byte = 1; byte < 0x80; ++byte) text += static_cast<char>(byte);
    const std::string quoted = jsonQuoted(text) + " rest";
    std::string_view input = quoted;
    std::string back, error;
    ASSERT_TRUE(readJsonString(input, back, error)) << error;
    EXPECT_EQ(back, text);
    EXPECT_EQ(input, " rest");
}

TEST(TraceFile, ThatCannotBeWrittenIsToldOnce) {
    Trace trace;
    std::string error;
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
