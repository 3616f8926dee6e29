#include "platform/host/files/languages.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <iostream>

#include "platform/host/files/ini_file.h"

namespace host {

namespace {

constexpr const char* kEnglish = "en";

/// The language of a locale name: "de" of "de_DE.UTF-8".
std::string languageOf(const std::string& locale) {
    if (locale == "C" || locale == "POSIX" || locale.starts_with("C.")) return kEnglish;
    return locale.substr(0, locale.find_first_of("_.@-"));
}

std::string languageOfEnvironment() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* locale = std::getenv(name);
        if (locale != nullptr && *locale != '\0') return languageOf(locale);
    }
    return kEnglish;
}

/// A code is part of a file's name and must not lead out of the folder.
bool isCode(const std::string& code) {
    return !code.empty() && std::all_of(code.begin(), code.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

std::filesystem::path fileOf(const std::filesystem::path& directory, const std::string& code) {
    return directory / (code + ".ini");
}

IniValues readLanguage(const std::filesystem::path& file) {
    std::optional<IniValues> texts = readIniFile(file);
    if (!texts) std::cerr << "colour: " << file.string() << ": the language file cannot be read\n";
    return std::move(texts).value_or(IniValues{});
}

}  // namespace

Languages::Languages(const std::filesystem::path& directory, const std::string& code)
    : code_(kEnglish), texts_(readLanguage(fileOf(directory, kEnglish))) {
    const std::string wanted = code.empty() ? languageOfEnvironment() : languageOf(code);
    if (wanted == kEnglish) return;
    std::error_code error;
    if (!isCode(wanted) || !std::filesystem::exists(fileOf(directory, wanted), error)) {
        // A machine may well speak a language that has no file here; only a choice made for this program is told.
        if (!code.empty()) std::cerr << "colour: " << code << ": no such language here; English is used\n";
        return;
    }
    code_ = wanted;
    for (auto& [key, text] : readLanguage(fileOf(directory, wanted))) texts_[key] = std::move(text);
}

const std::string& Languages::text(const std::string& key) const {
    const auto known = texts_.find(key);
    if (known != texts_.end()) return known->second;
    return unknown_.emplace(key, key).first->second;
}

std::string Languages::translated(const std::string& textOrKey) const {
    return textOrKey.starts_with('@') ? text(textOrKey) : textOrKey;
}

}  // namespace host
