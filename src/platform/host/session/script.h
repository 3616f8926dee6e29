#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/host/desk/loop.h"
#include "platform/host/desk/modals.h"
#include "platform/host/panel/panel.h"
#include "platform/host/screen/screen.h"

namespace host {

/// What a script acts on; everything is borrowed from the Toolkit.
struct Stage {
    Loop& loop;
    Modals& modals;
    const Screen& screen;
    const Panel& panel;
    std::function<void()> create;                       ///< the explorer asks for a new picture
    std::function<void(const std::string& path)> open;  ///< the explorer opens a picture
};

/// Plays the lines of a session script (docs/session-format.md). A wrong line is told on standard error as
/// FILE:LINE and stops the loop with status 2; the end of the script stops it with 0.
class Script final : public Player {
public:
    /// Null, with the reason in `error`, when the file cannot be read.
    [[nodiscard]] static std::unique_ptr<Script> load(const std::string& path, Stage stage, std::string& error);

    [[nodiscard]] Instant resumeAt() const override { return resumeAt_; }
    void play() override;

private:
    Script(std::string path, std::istringstream lines, Stage stage);
    /// Both return what is wrong; empty when nothing is.
    std::string playLine(std::string_view line);
    std::string wait(int milliseconds);

    std::string path_;
    std::istringstream lines_;
    Stage stage_;
    int lineNumber_ = 0;
    Instant resumeAt_{0};
    bool waiting_ = false;
};

}  // namespace host
