#include "platform/host/browser/admission.h"

#include <arpa/inet.h>
#include <glib.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <utility>

#include "platform/host/browser/addresses.h"

namespace host {

namespace {

using namespace std::chrono_literals;

constexpr auto kWrongAnswer = 1s;
constexpr auto kLongestQueue = 10s;

constexpr std::size_t kTokenDigits = 32;
constexpr std::string_view kHexadecimal = "0123456789abcdef";

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), g_ascii_tolower);
    return result;
}

std::string pass(std::string_view token, std::string_view password) {
    const std::unique_ptr<gchar, decltype(&g_free)> digest(
        g_compute_hmac_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(token.data()), token.size(),
                                reinterpret_cast<const guchar*>(password.data()), password.size()),
        g_free);
    return digest.get();
}

/// In a time that does not depend on where they differ.
bool same(std::string_view one, std::string_view other) {
    if (one.size() != other.size()) return false;
    int difference = 0;
    for (std::size_t i = 0; i < one.size(); ++i) difference |= one[i] ^ other[i];
    return difference == 0;
}

std::string newToken() {
    std::array<unsigned char, kTokenDigits / 2> random{};
    // So few bytes come whole, once the machine has gathered any chance at all.
    if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) std::abort();
    std::string token;
    for (const unsigned char byte : random) token.append({kHexadecimal[byte >> 4], kHexadecimal[byte & 0xF]});
    return token;
}

}  // namespace

Admission::Admission(const std::string& token, const std::string& password, std::vector<std::string> hostNames)
    : byPassword_(!password.empty()), token_(token), pass_(pass(token, password)), names_(std::move(hostNames)) {
    names_.insert(names_.end(), {"localhost", g_get_host_name(), localName()});
    for (std::string& name : names_) name = lower(name);
}

bool Admission::answersTo(std::string_view host) const {
    const bool bracketed = host.starts_with('[');
    const std::string name = lower(bracketed ? host.substr(1, host.find(']') - 1) : host.substr(0, host.find(':')));
    std::array<unsigned char, sizeof(in6_addr)> number{};
    if (inet_pton(bracketed ? AF_INET6 : AF_INET, name.c_str(), number.data()) == 1) return true;
    return !name.empty() && std::find(names_.begin(), names_.end(), name) != names_.end();
}

std::string Admission::cookie(int port) const { return "colour-" + std::to_string(port) + "=" + pass_; }

bool Admission::admits(std::string_view cookies, int port) const {
    const std::string expected = cookie(port);
    while (!cookies.empty()) {
        const std::size_t end = std::min(cookies.find(';'), cookies.size());
        std::string_view one = cookies.substr(0, end);
        one.remove_prefix(std::min(one.find_first_not_of(' '), one.size()));
        if (same(one, expected)) return true;
        cookies.remove_prefix(std::min(end + 1, cookies.size()));
    }
    return false;
}

std::optional<Admission::Verdict> Admission::judge(std::string_view secret, SteadyTime now) {
    const SteadyTime turn = std::max(now, nextTurn_);
    const bool right = same(byPassword_ ? pass(token_, secret) : pass(secret, {}), pass_);
    // A token cannot be guessed, so who has it need not wait for others.
    if (right && !byPassword_) return Verdict{right, now};
    if (turn - now > kLongestQueue) return {};
    nextTurn_ = right ? turn : turn + kWrongAnswer;
    return Verdict{right, nextTurn_};
}

std::string keptToken() {
    const std::string folder = std::string(g_get_user_state_dir()) + "/colour";
    const std::string file = folder + "/token";
    struct stat status {};
    std::string token;
    // One that others could have read is no secret any more.
    if (stat(file.c_str(), &status) == 0 && status.st_uid == geteuid() && (status.st_mode & 077) == 0)
        std::ifstream(file) >> token;
    if (token.size() == kTokenDigits && token.find_first_not_of(kHexadecimal) == std::string::npos) return token;
    token = newToken();
    // Where it cannot be kept it holds for this run.
    g_mkdir_with_parents(folder.c_str(), 0700);
    g_file_set_contents_full(file.c_str(), token.data(), kTokenDigits, G_FILE_SET_CONTENTS_CONSISTENT, 0600, nullptr);
    return token;
}

}  // namespace host
