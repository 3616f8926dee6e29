#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/panel/drawing.h"

namespace host {

/// Who may come in: whoever knows the token of the printed address, or the password where there is one. A browser
/// that has shown it gets a cookie, which holds as long as token and password stay the same.
class Admission {
public:
    /// An empty password: the token admits.
    Admission(const std::string& token, const std::string& password, std::vector<std::string> hostNames);

    [[nodiscard]] bool asksForPassword() const { return byPassword_; }

    /// False for a request that names another machine. A page of someone else's whose name has been pointed at this
    /// machine (DNS rebinding) still asks for that name. `host` is the header: a name or number, maybe with a port.
    [[nodiscard]] bool answersTo(std::string_view host) const;

    /// A program may serve on each port of a machine, but cookies do not know ports: the cookie is named after it.
    [[nodiscard]] std::string cookie(int port) const;
    [[nodiscard]] bool admits(std::string_view cookies, int port) const;

    struct Verdict {
        bool right;
        SteadyTime at;  ///< when to answer
    };
    /// Judges a token or password that somebody tries. A wrong one is answered a second later, and no other password
    /// before, so that trying many at once finds none sooner. Nothing when too many wait already.
    [[nodiscard]] std::optional<Verdict> judge(std::string_view secret, SteadyTime now);

private:
    bool byPassword_;
    std::string token_;
    std::string pass_;  ///< the cookie's value
    std::vector<std::string> names_;
    SteadyTime nextTurn_{};
};

/// The token of the last run, from $XDG_STATE_HOME/colour/token (~/.local/state/colour/token), or a new one: 128 random
/// bits in hexadecimal digits. A new one is kept there, where that is possible.
[[nodiscard]] std::string keptToken();

}  // namespace host
