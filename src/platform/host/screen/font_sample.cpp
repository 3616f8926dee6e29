#include "platform/host/screen/font_sample.h"

#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/host/screen/font_set.h"

namespace host {
namespace {

constexpr std::size_t kCharacters = 6;

bool belongsTo(const FcPattern* font, const std::string& family) {
    FcChar8* first = nullptr;
    return FcPatternGetString(font, FC_FAMILY, 0, &first) == FcResultMatch &&
           std::strcmp(reinterpret_cast<const char*>(first), family.c_str()) == 0;
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

/// In their order, while `visit` returns true.
template <typename Visit>
void forEachCharacter(const FcCharSet* characters, Visit visit) {
    FcChar32 bits[FC_CHARSET_MAP_SIZE];
    FcChar32 next = 0;
    for (FcChar32 page = FcCharSetFirstPage(characters, bits, &next); page != FC_CHARSET_DONE;
         page = FcCharSetNextPage(characters, bits, &next)) {
        for (FcChar32 i = 0; i < FC_CHARSET_MAP_SIZE * 32; ++i) {
            if ((bits[i / 32] >> (i % 32) & 1U) != 0 && !visit(page + i)) return;
        }
    }
}

/// The first letters of the font's script, or where it has none its first signs.
std::string firstCharacters(const FcCharSet* characters) {
    std::u32string letters;
    std::u32string signs;
    forEachCharacter(characters, [&](FcChar32 character) {
        if (isOwnLetter(character)) letters += static_cast<char32_t>(character);
        if (signs.size() < kCharacters && isSign(character)) signs += static_cast<char32_t>(character);
        return letters.size() < kCharacters;
    });
    std::string sample;
    for (const char32_t character : letters.empty() ? signs : letters) {
        char bytes[6];
        sample.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(character, bytes)));
    }
    return sample;
}

}  // namespace

std::string fontSample(FcConfig* config, const std::string& family) {
    std::string sample;
    const bool showsName = anyFont(config, [&](const FcPattern* font) {
        FcCharSet* characters = nullptr;
        if (!belongsTo(font, family)) return false;
        if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) return false;
        if (hasLetters(characters, family)) return true;
        if (sample.empty()) sample = firstCharacters(characters);
        return false;
    });
    return showsName ? "" : sample;
}

}  // namespace host
