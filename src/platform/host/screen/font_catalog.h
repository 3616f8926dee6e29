#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// The families of the machine's fonts, by fontconfig. Reads names only. Bitmap and colour fonts are left out: they
/// have no outlines to draw in any size and colour. The default font's file is kept open, so that there is one to write
/// with when all the others have gone.
class FontCatalog {
public:
    FontCatalog();

    /// False once fonts may have come or gone, such as by a package's upgrade: a new catalog knows them.
    [[nodiscard]] bool upToDate() const;

    /// True, told once on standard error, when the machine has no font at all.
    [[nodiscard]] bool empty() const { return empty_; }

    /// First those that can write the language, a code such as "de", then the others; both sorted without regard to
    /// case. A font counts under its first name only. Names with a comma, which cannot stand in a "Name,Size" string,
    /// are left out.
    [[nodiscard]] std::vector<std::string> familiesFor(const std::string& language) const;

    /// The family to use for a name that was asked for: the name itself where a font has it among its names (in
    /// any case), the default one of its kind for "Sans", "Serif" and "Monospace", else default number 0.
    [[nodiscard]] std::string resolve(const std::string& family) const;

    /// 0 sans, 1 serif, 2 monospaced; any other is 0.
    [[nodiscard]] const std::string& defaultFamily(int index) const;

    /// A few characters that show a family which has no letters for its own name, such as one for another script or
    /// for symbols. Empty for a family that can show its name, and for an unknown one.
    [[nodiscard]] std::string sample(const std::string& family) const;

private:
    /// That fonts have been read from, with the time of the last change then.
    using Folders = std::vector<std::pair<std::filesystem::path, std::filesystem::file_time_type>>;
    [[nodiscard]] static Folders readFonts();

    Folders folders_;
    bool empty_;
    std::array<std::string, 3> defaults_;
};

}  // namespace host
