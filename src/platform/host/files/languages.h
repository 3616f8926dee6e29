#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace host {

/// The texts of one language, over those of English.
class Languages {
public:
    /// `directory` holds CODE.ini files. `code` empty: from LC_ALL, LC_MESSAGES or LANG. A code without a file
    /// gives English.
    Languages(const std::filesystem::path& directory, const std::string& code);

    /// The language in use, for example "de".
    [[nodiscard]] const std::string& code() const { return code_; }

    /// The text for a key such as "@Delete"; the key itself when no language has it. Lives as long as the languages.
    [[nodiscard]] const std::string& text(const std::string& key) const;

    /// The text of a key, or the text itself when it does not begin with '@'.
    [[nodiscard]] std::string translated(const std::string& textOrKey) const;

private:
    std::string code_;
    std::map<std::string, std::string> texts_;
    mutable std::map<std::string, std::string> unknown_;
};

}  // namespace host
