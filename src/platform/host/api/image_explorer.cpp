#include "platform/image_explorer.h"

#include <unistd.h>

#include <cstdlib>

#include "platform/device.h"
#include "platform/host/explorer/explorer.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/record/json.h"
#include "platform/host/session/script.h"
#include "platform/host/toolkit.h"

namespace lumora::common_image_explorer {

namespace {

/// The explorer while Run is running; the toolkit's handlers carry no context.
host::Explorer* shownExplorer = nullptr;

int explorerHandler(int type, int par1, int par2) { return shownExplorer->handle(type, par1, par2); }

/// How a picture named on the command line is known to the application. A damaged one is refused, since leaving its
/// white page would delete the file.
std::string pictureFromCommandLine(const host::Toolkit& kit) {
    const std::string& named = kit.options.picture;
    std::string error;
    if (host::loadPicture(kit.storage.resolve(named), error) == nullptr) host::refuse(error);
    return kit.storage.devicePath(named);
}

std::unique_ptr<host::Script> loadScript(const host::Stage& stage, const std::string& path) {
    if (path.empty()) return nullptr;
    std::string error;
    auto script = host::Script::load(path, stage, error);
    if (script == nullptr) host::refuse(error);
    return script;
}

}  // namespace

Controller::Controller(int argc, char** argv) {
    host::makeToolkit(host::readOptions(argc, argv));
    const host::Options& options = host::toolkit().options;
    const bool repeatable = options.display == host::DisplayKind::Headless || !options.script.empty();
    g_process_pid = repeatable ? 1 : static_cast<int>(getpid());
}

Controller::~Controller() = default;

void Controller::Run(int /*mode*/, ICallback* callback) {
    host::Toolkit& kit = host::toolkit();
    const auto create = [&kit, callback] {
        kit.saveFailed = false;
        kit.loop.enter({"create", [callback] { callback->create(); }});
    };
    const auto open = [&kit, callback](const std::string& path) {
        kit.saveFailed = false;
        kit.loop.enter({"open " + host::jsonQuoted(path), [callback, path] { callback->open(path); }});
    };
    const auto leave = [&kit] { kit.loop.stop(0); };
    host::Explorer explorer(kit.desk, kit.storage, {create, open, leave, [&kit] { return kit.saveFailed; }});
    const auto script = loadScript({kit.loop, kit.modals, kit.screen, kit.panel, create, open}, kit.options.script);

    shownExplorer = &explorer;
    kit.loop.setHome(explorerHandler);
    if (kit.options.newPicture) {
        create();
    } else if (!kit.options.picture.empty()) {
        open(pictureFromCommandLine(kit));
    }
    const int status = kit.loop.run(script.get());
    shownExplorer = nullptr;
    if (status != 0) std::exit(status);
}

}  // namespace lumora::common_image_explorer
