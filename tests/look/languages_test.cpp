#include "platform/host/files/languages.h"

#include <gmock/gmock.h>

#include <set>

#include "look/write_file.h"
#include "platform/host/files/ini_file.h"
#include "support/temporary_folder.h"

namespace {

using host::Languages;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StrEq;
using ::testing::UnorderedElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

const std::filesystem::path kLanguages = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme/languages";

std::set<std::string> keysOf(const std::string& code) {
    std::set<std::string> keys;
    const host::IniValues texts = host::readIniFile(kLanguages / (code + ".ini")).value();
    for (const auto& [key, text] : texts) {
        EXPECT_FALSE(text.empty()) << code << " " << key;
        keys.insert(key);
    }
    return keys;
}

TEST(Languages, SpeakEveryTextInEveryLanguage) {
    const std::set<std::string> english = keysOf("en");
    for (const char* key : {"@Delete", "@AreYouSureYouWantToDeleteThisFile", "@Cancel", "@Font", "@TextDirection"})
        EXPECT_TRUE(english.contains(key)) << key;
    for (const char* code : {"de", "fr", "es", "ru", "ar"}) EXPECT_EQ(keysOf(code), english) << code;
}

TEST(Languages, FallBackToEnglishAndThenToTheKey) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "en.ini", "@Delete = Delete\n@Cancel = Cancel\n");
    writeFile(folder.path() / "de.ini", "@Delete = Löschen\n");
    const Languages german(folder.path(), "de");
    EXPECT_EQ(german.code(), "de");
    EXPECT_EQ(german.text("@Delete"), "Löschen");
    EXPECT_EQ(german.text("@Cancel"), "Cancel");
    EXPECT_EQ(german.text("@Unknown"), "@Unknown");
    EXPECT_EQ(german.translated("Delete"), "Delete");
    EXPECT_EQ(german.translated("@Delete"), "Löschen");
}

struct Environment {
    const char *all, *messages, *lang, *code;
};

TEST(Languages, FollowTheEnvironment) {
    for (const Environment& at : {Environment{"", "", "de_DE.UTF-8", "de"}, Environment{"", "fr", "de_DE", "fr"},
                                  Environment{"es@x", "fr", "de_DE", "es"}, Environment{"C", "", "de_DE", "en"},
                                  Environment{"POSIX", "", "ru", "en"}, Environment{"C.UTF-8", "", "", "en"},
                                  Environment{"", "", "", "en"}, Environment{"xx_YY", "", "de", "en"}}) {
        setenv("LC_ALL", at.all, 1);
        setenv("LC_MESSAGES", at.messages, 1);
        setenv("LANG", at.lang, 1);
        EXPECT_EQ(Languages(kLanguages, "").code(), at.code) << at.all << "|" << at.messages << "|" << at.lang;
        EXPECT_EQ(Languages(kLanguages, "ar").code(), "ar");
    }
}

TEST(Languages, NeverLeaveTheirFolder) {
    CaptureStderr();
    EXPECT_EQ(Languages(kLanguages, "../de").code(), "en");
    EXPECT_THAT(GetCapturedStderr(), StrEq("colour: ../de: no such language here; English is used\n"));
}

TEST(IniFile, ReadsValuesAndTellsBrokenLines) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "a.ini",
              "\xEF\xBB\xBF"
              "first = 1\r\n# note = 0\n; note = 0\n\n  spaced\t=  a = b  \nempty =\nno value\n= no key\n"
              "[section]\nkey = x\nkey = y\n[broken\n[]\nlast=\x01\nlast=end");
    CaptureStderr();
    const auto values = host::readIniFile(folder.path() / "a.ini");
    const std::string said = GetCapturedStderr();
    ASSERT_TRUE(values);
    EXPECT_THAT(*values, UnorderedElementsAre(Pair("first", "1"), Pair("spaced", "a = b"), Pair("empty", ""),
                                              Pair("section.key", "y"), Pair("last", "end")));
    for (const char* place : {"a.ini:7:", "a.ini:8:", "a.ini:12:", "a.ini:14:"}) EXPECT_THAT(said, HasSubstr(place));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
}

TEST(IniFile, NeedsAFile) {
    EXPECT_FALSE(host::readIniFile("/nowhere/a.ini"));
    EXPECT_FALSE(host::readIniFile(kLanguages));
}

}  // namespace
