#include "platform/host/screen/font_catalog.h"

#include <fontconfig/fontconfig.h>
#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kSampleCharacters = 6;
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

/// True when the predicate holds for a font of the machine; the fonts behind that one are not visited. Several times
/// faster than having fontconfig build a list.
template <typename Predicate>
bool anyFont(Predicate holds) {
    for (const FcSetName set : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* fonts = FcConfigGetFonts(nullptr, set);
        for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i)
            if (holds(fonts->fonts[i])) return true;
    }
    return false;
}

/// Family name number `index` of the font; empty beyond the last.
std::string familyName(const FcPattern* font, int index) {
    FcChar8* name = nullptr;
    if (FcPatternGetString(font, FC_FAMILY, index, &name) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(name);
}

/// The family of the font that fontconfig chooses for a list of families.
std::string bestFamily(const char* families) {
    using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
    const Pattern wanted(FcNameParse(fontconfigText(families)), FcPatternDestroy);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern found(FcFontMatch(nullptr, wanted.get(), &result), FcPatternDestroy);
    return found == nullptr ? "Sans" : familyName(found.get(), 0);
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

FontCatalog::FontCatalog() {
    // Once for the process, since loading takes some milliseconds. As the current one, which null stands for elsewhere,
    // it also keeps Pango from loading its own.
    [[maybe_unused]] static const FcBool loaded = FcConfigSetCurrent(outlinesOnly());
    // DejaVu and Noto first, so that most machines show the same default text.
    defaults_ = {bestFamily("DejaVu Sans,Noto Sans,sans\\-serif"), bestFamily("DejaVu Serif,Noto Serif,serif"),
                 bestFamily("DejaVu Sans Mono,Noto Sans Mono,monospace")};
    empty_ = !anyFont([](const FcPattern*) { return true; });
    if (empty_) std::fputs("colour: fontconfig finds no outline font; text will not be shown\n", stderr);
}

std::vector<std::string> FontCatalog::familiesFor(const std::string& language) const {
    std::map<std::string, bool> writing;
    anyFont([&](const FcPattern* font) {
        const std::string name = familyName(font, 0);
        if (name.empty() || name.find(',') != std::string::npos) return false;
        bool& known = writing[name];
        known = known || writes(font, language);
        return false;
    });
    std::vector<std::string> ordered;
    for (const auto& [name, writesLanguage] : writing) ordered.push_back(name);
    std::sort(ordered.begin(), ordered.end(),
              [](const std::string& a, const std::string& b) { return compareLetters(a, b) < 0; });
    std::stable_partition(ordered.begin(), ordered.end(),
                          [&writing](const std::string& name) { return writing[name]; });
    return ordered;
}

std::string FontCatalog::resolve(const std::string& family) const {
    std::string found;
    const bool known = anyFont([&](const FcPattern* font) {
        int index = 0;
        do found = familyName(font, index++);
        while (!found.empty() && compareLetters(found, family) != 0);
        return !found.empty();
    });
    if (known) return found;
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
    const bool showsName = anyFont([&](const FcPattern* font) {
        FcCharSet* characters = nullptr;
        if (familyName(font, 0) != family) return false;
        if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) return false;
        if (hasLetters(characters, family)) return true;
        if (sample.empty()) sample = firstCharacters(characters, isOwnLetter);
        if (sample.empty()) sample = firstCharacters(characters, isSign);
        return false;
    });
    return showsName ? "" : sample;
}

}  // namespace host
