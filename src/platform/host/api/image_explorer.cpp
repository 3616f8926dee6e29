#include "platform/image_explorer.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/device.h"
#include "platform/host/explorer/explorer.h"
#include "platform/host/record/json.h"
#include "platform/host/session/script.h"
#include "platform/host/toolkit.h"

namespace lumora::common_image_explorer {

namespace {

/// The explorer while Run is running; the toolkit's handlers carry no context.
host::Explorer* shownExplorer = nullptr;

int explorerHandler(int type, int par1, int par2) { return shownExplorer->handle(type, par1, par2); }

/// How a picture named on the command line is known to the application. One that cannot be opened is refused.
std::string pictureFromCommandLine(host::Toolkit& kit) {
    const std::string path = kit.storage.devicePath(kit.options.picture);
    std::string error;
    const std::optional<host::Notice> against = kit.keeper.prepare(path, error);
    if (against && against->button.empty()) host::refuse(error);
    if (against) std::fprintf(stderr, "colour: %s\n", error.c_str());
    return path;
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
    const auto create = [&kit, callback] { kit.loop.enter({"create", [callback] { callback->create(); }}); };
    const auto open = [&kit, callback](const std::string& path) {
        kit.loop.enter({"open " + host::jsonQuoted(path), [callback, path] { callback->open(path); }});
    };
    const auto leave = [&kit] { kit.loop.stop(0); };
    kit.keeper.recover();
    host::Explorer explorer(kit.desk, kit.storage, kit.keeper, {create, open, leave});
    const auto script = loadScript({kit.loop, kit.modals, kit.screen, kit.panel, create, open}, kit.options.script);

    shownExplorer = &explorer;
    kit.loop.setHome(explorerHandler);
    if (kit.options.newPicture) {
        create();
    } else if (!kit.options.picture.empty()) {
        open(pictureFromCommandLine(kit));
    }
    int status = kit.loop.run(script.get());
    shownExplorer = nullptr;
    // A script may end in the middle of a picture; a person's way out leads through the explorer.
    if (script != nullptr && !kit.loop.interrupted()) kit.keeper.abandon();
    if (!kit.keeper.finish() && status == 0) status = 1;
    if (status != 0) std::exit(status);
}

}  // namespace lumora::common_image_explorer
