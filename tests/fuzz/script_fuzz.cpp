// Any bytes as a session script, played to an application that opens the modals; and any bytes as a JSON string.
#include <glib.h>

#include "fuzz/fuzz.h"
#include "platform/host/base/utf8.h"
#include "platform/host/dialogs/font_selector.h"
#include "platform/host/dialogs/message_dialog.h"
#include "platform/host/keyboard/keyboard.h"
#include "platform/host/record/json.h"
#include "platform/host/session/script.h"
#include "support/temporary_folder.h"
#include "support/test_desk.h"

using namespace host;

namespace {

TestDesk desk({.width = 200, .height = 200, .dpi = 50, .colour = false});
std::optional<Modals> modals;

int application(int type, int, int) {
    static char typed[8];
    if (type == 1) modals->open(makeKeyboard(desk.desk, {"title", typed, sizeof typed - 1, 0, [](char*) {}}));
    if (type == 2) modals->open(makeMessageDialog(desk.desk, {"title", "text", "1", "2"}, [](int) {}));
    if (type == 3) modals->open(makeFontSelector(desk.desk, {"title", "Sans,20", true, nullptr}));
    return 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    const std::string quoted = jsonQuoted(text);
    std::string_view input = quoted;
    std::string back, error;
    const bool read = readJsonString(input, back, error);
    assert(read ? input.empty() && back == repairedUtf8(text) : text.find('\0') != std::string::npos);

    // Two commands write files wherever they are told to; a key held for weeks repeats millions of times.
    static GRegex* const unwanted = g_regex_new("screenshot|panel|wait\\s+\\d{4}", G_REGEX_RAW, {}, nullptr);
    if (g_regex_match_full(unwanted, text.data(), std::ssize(text), 0, {}, nullptr, nullptr) != FALSE) return 0;
    static const TemporaryFolder folder;
    Clock clock{1'700'000'000};
    Trace trace;
    desk.display.areas.clear();
    modals.emplace(desk.screen, desk.panel, desk.display);
    Loop loop({200, 200}, {1, 1}, clock, desk.display, desk.panel, *modals, trace);
    loop.setHome([](int, int, int) { return 0; });
    const auto open = [&] { loop.enter({"open", [&] { loop.setHandler(application); }}); };
    const Stage stage{loop, *modals, desk.screen, desk.panel, open, [&](const std::string&) { open(); }};
    const auto script = Script::load(folder.write("any.session", text), stage, error);
    const int status = loop.run(script.get());
    assert(status == 0 || status == 2);
    return 0;
}
