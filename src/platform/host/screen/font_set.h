#pragma once

#include <fontconfig/fontconfig.h>

#include <memory>

namespace host {

struct DestroyPattern {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using PatternPtr = std::unique_ptr<FcPattern, DestroyPattern>;

/// The text as fontconfig takes it; borrowed.
inline const FcChar8* fontconfigText(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

/// True when the predicate holds for a font of the machine; the fonts behind that one are not visited. Several times
/// faster than having fontconfig build a list.
template <typename Predicate>
bool anyFont(FcConfig* config, Predicate holds) {
    for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* fonts = FcConfigGetFonts(config, name);
        for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i)
            if (holds(fonts->fonts[i])) return true;
    }
    return false;
}

template <typename Visit>
void forEachFont(FcConfig* config, Visit visit) {
    anyFont(config, [&visit](const FcPattern* font) { return visit(font), false; });
}

}  // namespace host
