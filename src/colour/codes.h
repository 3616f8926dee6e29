#pragma once

/// The small integers that pass between toolkit, controller, toolbars, canvas and text editor.
///
/// Every receiver has the shape Handler(type, par1, par2) → int. Toolbars answer 0 for an event not taken, 1 for
/// one taken without a choice, and otherwise the chosen command.

/// Event types of the toolkit. For pointer events par1 is x and par2 is y, in screen pixels.
enum EventType : int {
    Claim = 21,
    Redraw = 23,
    PointerUp = 29,
    PointerDown = 30,
    PointerMove = 31,
    Routed34 = 34,
    /// A sample of the pointer's position during a press, about ten a second.
    PointerReport = 35,
    Routed39 = 39,
    RedrawAlt = 43,
    Routed44 = 44,
    Routed45 = 45,
    Routed46 = 46,
};

/// Commands of buttons. The pens, the eraser and the text tool are the tool codes as well.
enum Command : int {
    Back = 2,
    Pen1 = 11,
    Pen2 = 12,
    Pen3 = 13,
    Pen4 = 14,
    Pen5 = 15,
    Eraser = 100,
    Text = 101,
    Font = 102,
    Undo = 200,
    Redo = 201,
    Delete = 1000,
    Palette = 10000,
};

/// A pen's code is this plus its thickness, 1 to 5.
inline constexpr int kPenCommandBase = 10;

/// Marks a palette result, so that black is never 0.
inline constexpr int kPaletteColorFlag = 0x01000000;
inline constexpr int kColorMask = 0x00FFFFFF;

inline constexpr int kBlack = 0x000000;
inline constexpr int kWhite = 0xFFFFFF;
inline constexpr int kRed = 0xFF0000;

constexpr bool isPen(int code) { return code >= Command::Pen1 && code <= Command::Pen5; }
constexpr bool isTool(int code) { return isPen(code) || code == Command::Eraser || code == Command::Text; }
