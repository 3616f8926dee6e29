#pragma once

#include <memory>
#include <string>

namespace lumora::common_image_explorer {

/// What the explorer asks of the application. Both calls come on the toolkit's thread while Run is running,
/// and the application answers them by installing its own event handler.
class ICallback {
public:
    /// Edit the existing picture at this device path.
    virtual void open(const std::string& path) = 0;
    /// Start a new picture.
    virtual void create() = 0;

protected:
    ~ICallback() = default;
};

/// The platform's full-screen program frame.
class MainFrame {
public:
    MainFrame() = default;
    MainFrame(const MainFrame&) = delete;
    MainFrame& operator=(const MainFrame&) = delete;
    virtual ~MainFrame() = default;
};

/// The image explorer: shows the user's pictures, newest first, and hands the screen to the application.
class Controller : public MainFrame {
public:
    /// Reads the command line and opens panel, storage and display. An impossible option is one line on
    /// standard error and ends the process with status 2.
    Controller(int argc, char** argv);
    ~Controller() override;

    /// Runs the event loop until the user leaves. `mode` is 0. `callback` is borrowed and outlives the call. A session
    /// script that is wrong ends the process with status 2.
    void Run(int mode, ICallback* callback);
};

}  // namespace lumora::common_image_explorer
