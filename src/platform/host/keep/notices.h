#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/host/files/languages.h"

namespace host {

/// Something that the explorer tells a person, in one line.
struct Notice {
    std::string text{};
    /// The label of a button beside it; empty where there is nothing to do.
    std::string button{};
    /// What the button does. Without it, the button goes on with what the notice has held up.
    std::function<void()> act{};
};

/// What a person has not been told yet, in his language. What comes before it is told is told with it.
class Notices {
public:
    explicit Notices(const Languages& languages) : languages_(languages) {}

    /// The text of a key, with these words in the places of %1, %2.
    [[nodiscard]] std::string worded(const std::string& key, const std::vector<std::string>& words = {}) const;
    /// Tells that; `offer` has what can be done about it. Its button's label is a key.
    void tell(const std::string& key, const std::vector<std::string>& words, Notice offer = {});
    /// What there is to tell, once; without text when there is nothing.
    [[nodiscard]] Notice take();

private:
    const Languages& languages_;
    Notice waiting_;
};

/// One line on standard error.
void say(const std::string& line);

/// A file's name, without its folder, in a message.
[[nodiscard]] std::string nameOf(const std::filesystem::path& file);

}  // namespace host
