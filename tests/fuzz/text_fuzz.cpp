// Any bytes as text, in any size and box: it stays in its box, and a cursor's place in it is one.
#include "fuzz/fuzz.h"
#include "platform/host/base/utf8.h"
#include "platform/host/keyboard/keyboard_field.h"
#include "platform/host/keyboard/keyboard_text.h"
#include "support/test_desk.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static TestDesk world({.width = 200, .height = 200, .dpi = 167, .colour = false});
    FuzzInput input(bytes, size);
    font_s font{world.text.defaultFamily(input.number()), 1 + input.number()};
    const host::Rect box{input.number() - 20, input.number() - 20, input.number(), input.number()};
    const auto align = host::Align(input.number() % 3);
    const auto wrap = host::Wrap(input.number() % 2);
    const host::Point touched{input.number(), input.number()};
    const auto cursor = static_cast<std::size_t>(input.number());

    world.screen.fill(world.device.bounds(), host::kWhite);
    world.text.draw(world.screen, box, input.rest, font, {align, wrap});
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) assert(*world.screen.pixels().at(x, y) == 0xFF || box.contains({x, y}));
    static_cast<void>(world.text.fitLine(input.rest, font, box.size(), 8).lines());

    host::KeyboardText text(input.rest, 3 * size);
    text.moveTo(cursor);
    host::KeyboardField field(world.desk, box);
    field.set(text.text(), text.cursor(), wrap == host::Wrap::None);
    field.paint();
    for (const std::size_t place : {field.offsetAt(touched), field.beside(true), field.beside(false),
                                    field.lineBeside(true), field.lineBeside(false)})
        assert(place <= text.text().size());
    return 0;
}
