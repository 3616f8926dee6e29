#include "platform/host/screen/font_catalog.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <utility>

#include "platform/host/screen/font_set.h"

// Present in sanitized builds only.
extern "C" [[gnu::weak]] void __lsan_disable();  // NOLINT(bugprone-reserved-identifier)
extern "C" [[gnu::weak]] void __lsan_enable();   // NOLINT(bugprone-reserved-identifier)

namespace host {
namespace {

constexpr const char* kOutlinesOnly = R"(<fontconfig><selectfont><rejectfont>
    <pattern><patelt name="color"><bool>true</bool></patelt></pattern>
    <pattern><patelt name="outline"><bool>false</bool></patelt></pattern>
</rejectfont></selectfont></fontconfig>)";

/// Family name number `index` of the font; empty beyond the last.
std::string familyName(const FcPattern* font, int index) {
    FcChar8* name = nullptr;
    if (FcPatternGetString(font, FC_FAMILY, index, &name) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(name);
}

/// Hides leaks from the leak checker: fontconfig's parser loses the pattern of every <rejectfont>, also of those
/// in the system's own files.
class LeaksUnchecked {
public:
    LeaksUnchecked() {
        if (__lsan_disable != nullptr) __lsan_disable();
    }
    LeaksUnchecked(const LeaksUnchecked&) = delete;
    LeaksUnchecked& operator=(const LeaksUnchecked&) = delete;
    ~LeaksUnchecked() {
        if (__lsan_enable != nullptr) __lsan_enable();
    }
};

FcConfig* loadConfig() {
    const LeaksUnchecked whileParsing;
    FcConfig* config = FcInitLoadConfig();
    if (config == nullptr) config = FcConfigCreate();
    FcConfigParseAndLoadFromMemory(config, fontconfigText(kOutlinesOnly), FcTrue);
    FcConfigBuildFonts(config);
    FcConfigSetCurrent(config);
    return config;
}

/// One for the process, since loading it takes some milliseconds; as the current one, it also keeps Pango from
/// loading its own.
FcConfig* sharedConfig() {
    static FcConfig* const config = loadConfig();
    return config;
}

}  // namespace

FontCatalog::FontCatalog() : config_(sharedConfig()) {
    listFamilies();
    // DejaVu and Noto first, so that most machines show the same default text.
    defaults_ = {chooseDefault("sans-serif", {"DejaVu Sans", "Noto Sans"}),
                 chooseDefault("serif", {"DejaVu Serif", "Noto Serif"}),
                 chooseDefault("monospace", {"DejaVu Sans Mono", "Noto Sans Mono"})};
    if (empty()) std::fputs("colour: fontconfig finds no outline font; text will not be shown\n", stderr);
}

std::vector<std::string> FontCatalog::familiesFor(const std::string& language) const {
    std::set<std::string> writing;
    forEachFont(config_, [&](const FcPattern* font) {
        FcLangSet* languages = nullptr;
        if (FcPatternGetLangSet(font, FC_LANG, 0, &languages) != FcResultMatch) return;
        if (FcLangSetHasLang(languages, fontconfigText(language.c_str())) == FcLangDifferentLang) return;
        writing.insert(familyName(font, 0));
    });
    std::vector<std::string> ordered = families_;
    std::stable_partition(ordered.begin(), ordered.end(),
                          [&writing](const std::string& family) { return writing.contains(family); });
    return ordered;
}

const std::string& FontCatalog::resolve(const std::string& family) const {
    if (const auto name = names_.find(family); name != names_.end()) return *name;
    constexpr std::pair<const char*, int> kGeneric[] = {{"Serif", 1}, {"Monospace", 2}, {"Mono", 2}};
    for (const auto& [name, index] : kGeneric) {
        if (FcStrCmpIgnoreCase(fontconfigText(family.c_str()), fontconfigText(name)) == 0) return defaultFamily(index);
    }
    return defaultFamily(0);
}

const std::string& FontCatalog::defaultFamily(int index) const {
    return defaults_[index == 1 || index == 2 ? static_cast<std::size_t>(index) : 0];
}

bool FontCatalog::CaseBlind::operator()(const std::string& a, const std::string& b) const {
    return FcStrCmpIgnoreCase(fontconfigText(a.c_str()), fontconfigText(b.c_str())) < 0;
}

void FontCatalog::listFamilies() {
    // Most fonts share their family with others, and comparing bytes is quicker than comparing letters.
    std::set<std::string> firstNames;
    std::set<std::string> names;
    forEachFont(config_, [&](const FcPattern* font) {
        std::string name = familyName(font, 0);
        if (name.find(',') == std::string::npos) firstNames.insert(name);
        for (int n = 1; !name.empty(); name = familyName(font, n++)) names.insert(std::move(name));
    });
    firstNames.erase("");
    families_.assign(firstNames.begin(), firstNames.end());
    std::sort(families_.begin(), families_.end(), CaseBlind{});
    names_.insert(names.begin(), names.end());
}

std::string FontCatalog::chooseDefault(const char* generic, const std::vector<std::string>& preferred) const {
    for (const std::string& family : preferred) {
        if (names_.contains(family)) return family;
    }
    const PatternPtr wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, fontconfigText(generic));
    FcConfigSubstitute(config(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const PatternPtr found(FcFontMatch(config(), wanted.get(), &result));
    return found == nullptr ? generic : familyName(found.get(), 0);
}

}  // namespace host
