#pragma once

#include <fontconfig/fontconfig.h>

#include <array>
#include <set>
#include <string>
#include <vector>

namespace host {

/// The families of the machine's fonts, by fontconfig. Reads names only; no font is opened. Bitmap and colour
/// fonts are left out: they have no outlines to draw in any size and colour.
class FontCatalog {
public:
    FontCatalog();

    /// The fonts and rules in use; borrowed, never null.
    [[nodiscard]] FcConfig* config() const { return config_; }

    /// False, told once on standard error, when the machine has no font at all.
    [[nodiscard]] bool empty() const { return families_.empty(); }

    /// First those that can write the language, a code such as "de", then the others; both sorted without regard to
    /// case. A font counts under its first name only. Names with a comma, which cannot stand in a "Name,Size" string,
    /// are left out.
    [[nodiscard]] std::vector<std::string> familiesFor(const std::string& language) const;

    /// The family to use for a name that was asked for: the name itself where a font has it among its names (in
    /// any case), the default one of its kind for "Sans", "Serif" and "Monospace", else default number 0.
    [[nodiscard]] const std::string& resolve(const std::string& family) const;

    /// 0 sans, 1 serif, 2 monospaced; any other is 0.
    [[nodiscard]] const std::string& defaultFamily(int index) const;

private:
    struct CaseBlind {
        bool operator()(const std::string& a, const std::string& b) const;
    };

    void listFamilies();
    [[nodiscard]] std::string chooseDefault(const char* generic, const std::vector<std::string>& preferred) const;

    FcConfig* config_;
    std::set<std::string, CaseBlind> names_;
    std::vector<std::string> families_;
    std::array<std::string, 3> defaults_;
};

}  // namespace host
