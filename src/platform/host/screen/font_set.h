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

/// Visits every font of the machine; several times faster than having fontconfig build a list.
template <typename Visit>
void forEachFont(FcConfig* config, Visit visit) {
    for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* fonts = FcConfigGetFonts(config, name);
        for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) visit(fonts->fonts[i]);
    }
}

}  // namespace host
