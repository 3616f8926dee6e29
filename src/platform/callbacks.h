#pragma once

/// The functions of the application's that the device toolkit calls, always on the thread that called the toolkit.

/// Receives every event: 23 to repaint everything, and the pointer's, for which `par1` is x and `par2` is y, on the
/// screen. Of those, 30 is down, 29 up, and a move in between is 35 (a report) when 100 ms have passed since the last
/// 35 or the 30 of this press, else 31; none comes twice. The result tells whether the event was taken (not 0).
using event_handler_t = int (*)(int type, int par1, int par2);

using timer_callback_t = void (*)();
/// Gets the context that the timer was set with.
using timer_context_callback_t = void (*)(void* context);
/// Gets the number of the pressed button: 1 or 2.
using dialog_callback_t = void (*)(int button);
/// Gets the buffer that OpenKeyboard was given.
using keyboard_callback_t = void (*)(char* text);
/// Gets "Name,Size", name, size and style; the strings live during the call.
using font_callback_t = void (*)(char* font, char* font2, char* font3, char* font4);
