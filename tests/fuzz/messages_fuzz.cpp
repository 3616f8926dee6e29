// Any bytes as a message from the browser's page are refused, or name places on the panel, a key or a text.
#include <glib.h>

#include "fuzz/fuzz.h"
#include "platform/host/browser/messages.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const host::Rect panel{0, 0, 1404, 1872};
    const auto message = host::readMessage(FuzzInput(bytes, size).rest, panel.size());
    if (!message) return 0;
    if (const auto* pointer = std::get_if<host::PointerMessage>(&*message)) {
        assert(!pointer->path.empty() && pointer->kind <= host::PointerMessage::Kind::Pen);
        for (const host::Point at : pointer->path) assert(panel.contains(at));
        return 0;
    }
    const auto& [kind, at, key, text] = std::get<host::Input>(*message);
    assert(kind == host::Input::Kind::Key ? key <= host::Key::End : kind == host::Input::Kind::Text);
    assert(g_utf8_validate_len(text.data(), text.size(), nullptr) != 0);
    return 0;
}
