#pragma once

#include <fontconfig/fontconfig.h>

#include <memory>

namespace host {

template <typename T, void (*destroy)(T*)>
struct FontconfigDestroy {
    void operator()(T* object) const { destroy(object); }
};

using PatternPtr = std::unique_ptr<FcPattern, FontconfigDestroy<FcPattern, FcPatternDestroy>>;
using FontSetPtr = std::unique_ptr<FcFontSet, FontconfigDestroy<FcFontSet, FcFontSetDestroy>>;
using ObjectSetPtr = std::unique_ptr<FcObjectSet, FontconfigDestroy<FcObjectSet, FcObjectSetDestroy>>;

/// The text as fontconfig takes it; borrowed.
inline const FcChar8* fontconfigText(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

}  // namespace host
