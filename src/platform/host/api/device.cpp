#include "platform/device.h"

#include "platform/host/toolkit.h"

namespace {

int platformNumber() { return host::toolkit().options.device.platform; }

}  // namespace

int (*_device_platform)() = platformNumber;
int g_process_pid = 0;

int get_screen_dpi() { return host::toolkit().options.device.dpi; }

double get_screen_scale_factor() { return host::toolkit().options.device.scale; }

int device_display_colormask() {
    host::Toolkit& kit = host::toolkit();
    const int mask = kit.options.device.colour ? 1 : 0;
    kit.trace.question("device_display_colormask", mask);
    return mask;
}

namespace lumora::device {

int access(const char* path, int mode) {
    host::Toolkit& kit = host::toolkit();
    const int result = kit.storage.access(path, mode);
    kit.trace.question("access", result, path);
    return result;
}

int unlink(const char* path) {
    host::Toolkit& kit = host::toolkit();
    kit.trace.call("unlink", path);
    return kit.keeper.remove(path, host::Removal::BlankPage);
}

long time() {
    const host::Toolkit& kit = host::toolkit();
    const long seconds = kit.clock.epochSeconds();
    // Pictures are named by it. A clock that was set back must not lead a new one to a name that exists.
    return kit.clock.isVirtual() ? seconds : kit.storage.freeNumber(seconds);
}

}  // namespace lumora::device
