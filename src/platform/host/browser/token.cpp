#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

#include "platform/host/base/file_handle.h"
#include "platform/host/browser/admission.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDigits = 32;
constexpr std::string_view kHexadecimal = "0123456789abcdef";

/// Empty where there is no such folder.
fs::path tokenFile() {
    const auto folder = [](const char* variable) {
        const char* const value = std::getenv(variable);
        const fs::path path = value != nullptr ? value : "";
        return path.is_absolute() ? path : fs::path();
    };
    const fs::path state = folder("XDG_STATE_HOME");
    if (!state.empty()) return state / "colour" / "token";
    const fs::path home = folder("HOME");
    return home.empty() ? home : home / ".local" / "state" / "colour" / "token";
}

/// Empty when there is none that nobody else could have read or written.
std::string readToken(const fs::path& file) {
    const FileHandle handle(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status {};
    if (!handle.isOpen() || fstat(handle.get(), &status) != 0) return {};
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid() || (status.st_mode & 077) != 0) return {};
    std::array<char, kDigits + 2> bytes;
    const ssize_t got = read(handle.get(), bytes.data(), bytes.size());
    const std::string token(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    const bool whole = token.find_first_not_of(kHexadecimal) == kDigits && token.size() == kDigits + 1;
    return whole ? token.substr(0, kDigits) : "";
}

std::string newToken() {
    std::array<unsigned char, kDigits / 2> random{};
    // So few bytes come whole, once the machine has gathered any chance at all.
    if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) std::abort();
    std::string token;
    for (const unsigned char byte : random) token.append({kHexadecimal[byte >> 4], kHexadecimal[byte & 0xF]});
    return token;
}

void writeToken(const fs::path& file, const std::string& token) {
    std::error_code ignored;
    fs::create_directories(file.parent_path(), ignored);
    fs::remove(file, ignored);
    const FileHandle handle(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    const std::string line = token + '\n';
    // A file that is not whole is passed over by the next run.
    if (handle.isOpen()) static_cast<void>(!write(handle.get(), line.data(), line.size()));
}

}  // namespace

std::string keptToken() {
    const fs::path file = tokenFile();
    std::string token = readToken(file);
    if (!token.empty()) return token;
    token = newToken();
    if (!file.empty()) writeToken(file, token);
    return token;
}

}  // namespace host
