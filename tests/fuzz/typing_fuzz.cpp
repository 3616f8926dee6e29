// Whatever is typed and erased, the text keeps to its limit, stays UTF-8, and the cursor stands between characters.
#include <glib.h>

#include "fuzz/fuzz.h"
#include "platform/host/keyboard/keyboard_text.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const auto limit = static_cast<std::size_t>(input.number());
    host::KeyboardText text(input.text(input.number()), limit);
    while (!input.rest.empty()) {
        const int act = input.number() % 8;
        if (act == 0) text.set(input.text(input.number()));
        if (act == 1 || act == 2) text.insert(input.text(input.number()));
        if (act == 3) text.eraseBefore();
        if (act == 4) text.eraseAfter();
        if (act == 5) text.moveToLineStart();
        if (act == 6) text.moveToLineEnd();
        if (act == 7) text.moveTo(static_cast<std::size_t>(input.number()));

        assert(text.text().size() <= limit &&
               g_utf8_validate_len(text.text().data(), text.text().size(), nullptr) != 0);
        const std::size_t cursor = text.cursor();
        text.moveTo(cursor);
        assert(text.cursor() == cursor);
    }
    return 0;
}
