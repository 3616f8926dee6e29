#include "platform/host/screen/font_catalog.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <glib.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kSampleCharacters = 6;
// DejaVu and Noto first, so that most machines show the same default text.
constexpr const char* kSans = "DejaVu Sans,Noto Sans,sans\\-serif";
constexpr const char* kOutlinesOnly = R"(<fontconfig><selectfont><rejectfont>
    <pattern><patelt name="color"><bool>true</bool></patelt></pattern>
    <pattern><patelt name="outline"><bool>false</bool></patelt></pattern>
</rejectfont></selectfont></fontconfig>)";

/// The text as fontconfig takes it; borrowed.
const FcChar8* fontconfigText(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

int compareLetters(const std::string& a, const std::string& b) {
    return FcStrCmpIgnoreCase(fontconfigText(a.c_str()), fontconfigText(b.c_str()));
}

FcConfig* outlinesOnly() {
    FcConfig* config = FcInitLoadConfig();
    if (config == nullptr) config = FcConfigCreate();
    FcConfigParseAndLoadFromMemory(config, fontconfigText(kOutlinesOnly), FcTrue);
    return config;
}

/// Of the machine. Several times faster than having fontconfig build a list.
std::vector<const FcPattern*> allFonts() {
    std::vector<const FcPattern*> all;
    for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* set = FcConfigGetFonts(nullptr, name);
        if (set != nullptr) all.insert(all.end(), set->fonts, set->fonts + set->nfont);
    }
    return all;
}

/// Family name number `index` of the font; empty beyond the last.
std::string familyName(const FcPattern* font, int index) {
    FcChar8* name = nullptr;
    if (FcPatternGetString(font, FC_FAMILY, index, &name) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(name);
}

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

/// The font that fontconfig chooses for a list of families; null when there is none.
Pattern bestFont(const char* families) {
    const Pattern wanted(FcNameParse(fontconfigText(families)), FcPatternDestroy);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    return {FcFontMatch(nullptr, wanted.get(), &result), FcPatternDestroy};
}

std::string bestFamily(const char* families) {
    const Pattern found = bestFont(families);
    return found == nullptr ? "Sans" : familyName(found.get(), 0);
}

/// A path to the default font that stays good when its file has gone, for as long as the process lives; empty when
/// there was none.
std::string keptFont() {
    const Pattern found = bestFont(kSans);
    FcChar8* file = nullptr;
    if (found == nullptr || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return {};
    const int kept = open(reinterpret_cast<const char*>(file), O_RDONLY | O_CLOEXEC);
    return kept < 0 ? "" : "/proc/self/fd/" + std::to_string(kept);
}

bool writes(const FcPattern* font, const std::string& language) {
    FcLangSet* languages = nullptr;
    return FcPatternGetLangSet(font, FC_LANG, 0, &languages) == FcResultMatch &&
           FcLangSetHasLang(languages, fontconfigText(language.c_str())) != FcLangDifferentLang;
}

bool hasLetters(const FcCharSet* characters, const std::string& name) {
    return std::all_of(name.begin(), name.end(), [characters](char letter) {
        return !g_ascii_isalnum(letter) || FcCharSetHasChar(characters, static_cast<FcChar32>(letter)) != FcFalse;
    });
}

bool isOwnLetter(gunichar character) {
    const GUnicodeScript script = g_unichar_get_script(character);
    return g_unichar_isalpha(character) && script != G_UNICODE_SCRIPT_COMMON && script != G_UNICODE_SCRIPT_INHERITED &&
           script != G_UNICODE_SCRIPT_LATIN;
}

bool isSign(gunichar character) {
    constexpr gunichar kLatin1End = 0xFF;
    return character > kLatin1End && g_unichar_isgraph(character) && !g_unichar_ismark(character);
}

/// The first characters of the set, in their order, for which the predicate holds.
template <typename Predicate>
std::string firstCharacters(const FcCharSet* characters, Predicate holds) {
    std::string found;
    std::size_t count = 0;
    FcChar32 bits[FC_CHARSET_MAP_SIZE];
    FcChar32 next = 0;
    for (FcChar32 page = FcCharSetFirstPage(characters, bits, &next); page != FC_CHARSET_DONE;
         page = FcCharSetNextPage(characters, bits, &next)) {
        for (FcChar32 i = 0; i < FC_CHARSET_MAP_SIZE * 32 && count < kSampleCharacters; ++i) {
            if ((bits[i / 32] >> (i % 32) & 1U) == 0 || !holds(page + i)) continue;
            char bytes[6];
            found.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(page + i, bytes)));
            ++count;
        }
    }
    return found;
}

}  // namespace

FontCatalog::Folders FontCatalog::readFonts() {
    // File systems tell times apart by the kernel's ticks, a hundred a second or more.
    constexpr std::chrono::milliseconds kTick{20};
    const auto begin = std::filesystem::file_time_type::clock::now();
    static std::string kept;
    FcConfig* const config = outlinesOnly();
    if (!kept.empty()) FcConfigAppFontAddFile(config, fontconfigText(kept.c_str()));
    // The current one, which null stands for elsewhere, also keeps Pango from loading its own.
    FcConfigSetCurrent(config);
    if (kept.empty()) kept = keptFont();

    Folders folders;
    FcStrList* const names = FcConfigGetFontDirs(config);
    while (const FcChar8* name = FcStrListNext(names)) {
        std::error_code missing;
        const std::filesystem::path folder = reinterpret_cast<const char*>(name);
        const auto changed = last_write_time(folder, missing);
        // A change so short ago may be followed by another one at the same time; none is ever at `min`.
        const bool mayFollow = changed > begin - kTick && changed <= std::filesystem::file_time_type::clock::now();
        folders.emplace_back(folder, mayFollow ? std::filesystem::file_time_type::min() : changed);
    }
    FcStrListDone(names);
    FcConfigDestroy(config);
    return folders;
}

FontCatalog::FontCatalog() {
    // For the whole process, since reading takes some milliseconds.
    static Folders read = readFonts();
    folders_ = read;
    if (!upToDate()) folders_ = read = readFonts();
    defaults_ = {bestFamily(kSans), bestFamily("DejaVu Serif,Noto Serif,serif"),
                 bestFamily("DejaVu Sans Mono,Noto Sans Mono,monospace")};
    empty_ = allFonts().empty();
    if (empty_) std::fputs("colour: fontconfig finds no outline font; text will not be shown\n", stderr);
}

bool FontCatalog::upToDate() const {
    return std::all_of(folders_.begin(), folders_.end(), [](const auto& folder) {
        std::error_code missing;
        return last_write_time(folder.first, missing) == folder.second;
    });
}

std::vector<std::string> FontCatalog::familiesFor(const std::string& language) const {
    std::map<std::string, bool> writing;
    for (const FcPattern* font : allFonts()) {
        const std::string name = familyName(font, 0);
        if (name.empty() || name.find(',') != std::string::npos) continue;
        bool& known = writing[name];
        known = known || writes(font, language);
    }
    std::vector<std::string> ordered;
    ordered.reserve(writing.size());
    for (const auto& [name, writesLanguage] : writing) ordered.push_back(name);
    std::sort(ordered.begin(), ordered.end(),
              [](const std::string& a, const std::string& b) { return compareLetters(a, b) < 0; });
    std::stable_partition(ordered.begin(), ordered.end(),
                          [&writing](const std::string& name) { return writing[name]; });
    return ordered;
}

std::string FontCatalog::resolve(const std::string& family) const {
    for (const FcPattern* font : allFonts()) {
        std::string name = familyName(font, 0);
        for (int next = 1; !name.empty(); name = familyName(font, next++))
            if (compareLetters(name, family) == 0) return name;
    }
    constexpr std::pair<const char*, int> kGeneric[] = {{"Serif", 1}, {"Monospace", 2}, {"Mono", 2}};
    for (const auto& [name, index] : kGeneric)
        if (compareLetters(family, name) == 0) return defaultFamily(index);
    return defaultFamily(0);
}

const std::string& FontCatalog::defaultFamily(int index) const {
    return defaults_[index == 1 || index == 2 ? static_cast<std::size_t>(index) : 0];
}

std::string FontCatalog::sample(const std::string& family) const {
    std::string sample;
    for (const FcPattern* font : allFonts()) {
        FcCharSet* characters = nullptr;
        if (familyName(font, 0) != family) continue;
        if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) continue;
        if (hasLetters(characters, family)) return {};
        if (sample.empty()) sample = firstCharacters(characters, isOwnLetter);
        if (sample.empty()) sample = firstCharacters(characters, isSign);
    }
    return sample;
}

}  // namespace host
