#include "platform/host/files/languages.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

#include "platform/host/files/ini_file.h"
#include "support/temporary_folder.h"

namespace {

using namespace testing;
using host::Languages;
using internal::CaptureStderr;
using internal::GetCapturedStderr;

const std::filesystem::path kLanguages = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme/languages";

std::set<std::string> keysOf(const std::string& code) {
    std::set<std::string> keys;
    const host::IniValues texts = host::readIniFile(kLanguages / (code + ".ini")).value();
    for (const auto& [key, text] : texts)
        if (!text.empty()) keys.insert(key);
    return keys;
}

TEST(Languages, SpeakEveryTextInEveryLanguage) {
    const std::set<std::string> english = keysOf("en");
    EXPECT_THAT(english,
                IsSupersetOf({"@Delete", "@AreYouSureYouWantToDeleteThisFile", "@Cancel", "@Font", "@TextDirection"}));
    for (const char* code : {"de", "fr", "es", "ru", "ar"}) EXPECT_EQ(keysOf(code), english) << code;
}

TEST(Languages, FallBackToEnglishAndThenToTheKey) {
    const TemporaryFolder folder;
    folder.write("en.ini", "@Delete = Delete\n@Cancel = Cancel\n");
    folder.write("de.ini", "@Delete = Löschen\n");
    const Languages german(folder.path(), "de");
    EXPECT_EQ(german.translated("@Delete"), "Löschen");
    EXPECT_EQ(german.translated("@Cancel"), "Cancel");
    for (const char* text : {"@Unknown", "Delete"}) EXPECT_EQ(german.translated(text), text);
}

TEST(Languages, FollowTheOptionThenTheEnvironment) {
    using Row = std::array<const char*, 4>;
    for (const auto& [all, messages, lang, code] :
         {Row{"", "", "de_DE.UTF-8", "de"}, Row{"", "fr", "de_DE", "fr"}, Row{"es@x", "fr", "de_DE", "es"},
          Row{"C", "", "de_DE", "en"}, Row{"POSIX", "", "ru", "en"}, Row{"C.UTF-8", "", "", "en"},
          Row{"", "", "", "en"}, Row{"xx_YY", "", "de", "en"}}) {
        setenv("LC_ALL", all, 1);
        setenv("LC_MESSAGES", messages, 1);
        setenv("LANG", lang, 1);
        EXPECT_EQ(Languages(kLanguages, "").code(), code) << all << "|" << messages << "|" << lang;
        EXPECT_EQ(Languages(kLanguages, "ar").code(), "ar");
    }
    CaptureStderr();
    EXPECT_EQ(Languages(kLanguages, "../de").code(), "en");
    EXPECT_EQ(GetCapturedStderr(), "colour: ../de: no such language here; English is used\n");
}

TEST(IniFile, ReadsValuesAndTellsBrokenLines) {
    const TemporaryFolder folder;
    folder.write("a.ini",
                 "\xEF\xBB\xBF"
                 "first = 1\r\n# note = 0\n; note = 0\n\n  spaced\t=  a = b  \nempty =\nno value\n= no key\n"
                 "[section]\nkey = x\nkey = y\n[broken\n[]\nlast=\x01\nlast=end");
    CaptureStderr();
    const auto values = host::readIniFile(folder.path() / "a.ini");
    const std::string said = GetCapturedStderr();
    EXPECT_THAT(values.value(), UnorderedElementsAre(Pair("first", "1"), Pair("spaced", "a = b"), Pair("empty", ""),
                                                     Pair("section.key", "y"), Pair("last", "end")));
    for (const char* place : {"a.ini:7:", "a.ini:8:", "a.ini:12:", "a.ini:14:"}) EXPECT_THAT(said, HasSubstr(place));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
    EXPECT_FALSE(host::readIniFile("/nowhere/a.ini"));
    EXPECT_FALSE(host::readIniFile(kLanguages));
}

}  // namespace
