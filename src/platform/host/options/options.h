#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host/base/device.h"

namespace host {

enum class DisplayKind { Automatic, Window, Browser, Headless };

/// The command line, read and checked.
struct Options {
    Device device;
    DisplayKind display = DisplayKind::Automatic;
    std::string picture;                 ///< open this at once; empty: none
    bool newPicture = false;             ///< begin with a new picture
    int port = 0;                        ///< browser display: the page's port; 0: the default
    std::string listen;                  ///< browser display: the address to listen on; empty: loopback
    std::string passwordFile;            ///< browser display
    std::vector<std::string> hostNames;  ///< browser display: other names of this machine
    std::string storage;                 ///< empty: the default place
    std::string theme;                   ///< empty: the installed theme
    std::string language;                ///< empty: from the environment
    std::string script;
    std::string trace;
    long clock = 1700000000;  ///< seconds since the epoch at which a virtual clock starts
    bool waveforms = false;
    int logLevel = 0;
};

/// Reads the command line. A wrong option is one line on standard error and ends the process with status 2;
/// --help and --version print and end it with status 0.
[[nodiscard]] Options readOptions(int argc, const char* const* argv);

}  // namespace host
