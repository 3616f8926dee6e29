// Any text as the --panel option gives a panel within the limits, or the reason why not.
#include "fuzz/fuzz.h"
#include "platform/host/options/panel_option.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string error;
    const auto device = host::parsePanel(FuzzInput(bytes, size).rest, error);
    assert(device.has_value() == error.empty());
    if (!device) return 0;
    for (const int side : {device->width, device->height}) assert(side >= 200 && side <= 10'000);
    assert(device->dpi >= 50 && device->dpi <= 1'200);
    assert(device->scale >= 0.25 && device->scale <= 8 && device->platform >= 0);
    return 0;
}
