#include "platform/host/keep/notices.h"

#include <cstdio>
#include <utility>

#include "platform/host/files/picture_file.h"

namespace host {

std::string Notices::worded(const std::string& key, const std::vector<std::string>& words) const {
    std::string text = languages_.text(key);
    for (std::size_t i = words.size(); i > 0; --i) {
        const std::string mark = "%" + std::to_string(i);
        const std::size_t at = text.find(mark);
        if (at != std::string::npos) text.replace(at, mark.size(), words[i - 1]);
    }
    return text;
}

void Notices::tell(const std::string& key, const std::vector<std::string>& words, Notice offer) {
    offer.text = (waiting_.text.empty() ? "" : waiting_.text + " ") + worded(key, words);
    if (!offer.button.empty()) offer.button = worded(offer.button);
    waiting_ = std::move(offer);
}

Notice Notices::take() { return std::exchange(waiting_, {}); }

void say(const std::string& line) { std::fprintf(stderr, "colour: %s\n", line.c_str()); }

std::string nameOf(const std::filesystem::path& file) { return printable(file.filename()); }

}  // namespace host
