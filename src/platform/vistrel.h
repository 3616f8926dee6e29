#pragma once

#include "platform/bitmap.h"
#include "platform/callbacks.h"
#include "platform/frame_codes.h"

/// The device toolkit: events, drawing into the screen buffer, panel refresh, picture files, timers,
/// dialogs, fonts, theme and languages.
///
/// Everything runs on one thread. Strings and records that are passed in are borrowed for the call, but for the
/// buffer of OpenKeyboard. Coordinates and sizes are screen pixels with the origin at the top
/// left; every drawing call clips to the screen and takes any value. Colours are 0x00RRGGBB. Drawing
/// changes the screen buffer only: nothing reaches the panel before one of the refresh calls.

/// A rectangle that covers the columns x .. x + w - 1 and the rows y .. y + h - 1. `flags` belongs to
/// whoever reads the rectangle; only DrawTextRect2 does.
struct irect_s {
    int x;
    int y;
    int w;
    int h;
    int flags;
};

/// Font handle, owned by the toolkit between OpenFont and CloseFont.
struct font_s;

/// First call of the process. `reserved` is null. The screen exists once the image explorer has been constructed;
/// until then no other call of this header may be made, but for iRect.
void InitVistrel(const char* reserved);

/// Installs the function that receives all events from now on and returns the one before it. The new
/// handler gets event 23 (repaint) as soon as the call in progress has returned to the toolkit. With a null handler
/// events are dropped.
event_handler_t SetEventHandler(event_handler_t handler);

/// 0 gives the application the whole screen, without a status bar.
void SetPanelType(int type);

int ScreenWidth();
int ScreenHeight();

/// Pixels for a length in design units: n × dpi × scale / 300, rounded, at least 1. 71 units are 6 mm.
int design_to_pixel(int units);

irect_s iRect(int x, int y, int w, int h, int flags);

// Drawing into the screen buffer.

/// Makes the whole screen buffer white.
void ClearScreen();

void FillArea(int x, int y, int w, int h, int colour);
void FillAreaRect(const irect_s* rect, int colour);

/// One pixel wide; both end points belong to the line.
void DrawLine(int x1, int y1, int x2, int y2, int colour);
void DrawPixel(int x, int y, int colour);

/// Draws the bitmap with its top-left corner at (x, y); 32-bit bitmaps are blended. A null bitmap draws
/// nothing.
void DrawBitmap(int x, int y, const bitmap_s* bitmap);

/// Draws an antialiased frame with rounded corners inside the box. `thickness` counts inwards from the
/// box's edge, in pixels or as kThinLine or kThickLine. `sides` and `corners` are sums of the codes in
/// frame_codes.h: what is drawn, which corners are round, and with kFilled an inside in the line's colour.
/// `radius` is that of the outer corners in pixels, or kStandardCorner. A frame as thick as half its
/// box is a filled shape: a disc where the radius is half the side, a bar with round ends where the
/// radius is half the height.
/// `background` is the colour outside the rounded corners for panels that cannot blend; it is not used here.
void DrawFrameCertifiedEx(int x, int y, int w, int h, int thickness, int sides, int corners, int radius, int colour,
                          int background);
void DrawFrameRectCertifiedEx(irect_s rect, int thickness, int sides, int corners, int radius, int colour,
                              int background);

/// Pixels of a standard frame line, kThinLine or kThickLine. A value that is no code comes back as it is, at
/// least 0.
int GetDefaultFrameCertifiedThickness(int code);

/// Opens a font by its family name; `size` is in device-independent units (160 to the inch). `style` is
/// 0. An unknown name gives the default font; null when the size is not positive. Release with CloseFont.
font_s* OpenFont(const char* name, int size, int style);

/// Ends the handle. Where it is the one of the last SetFont, later text is in the default font, in the same
/// colour. A null font is none.
void CloseFont(font_s* font);

/// Sets font and colour of later text. The font is borrowed until CloseFont; null stands for the default font
/// in size 28.
void SetFont(font_s* font, int colour);

/// Family name of the toolkit's default font number `index` (0 sans, 1 serif, 2 monospaced; any other is 0).
/// The string lives as long as the process.
const char* vistrel_get_default_font(int index);

/// Draws UTF-8 text inside the rectangle with the font and colour of the last SetFont: wrapped at words,
/// then anywhere; line ends are kept; starts at the top, on the side at which its script begins; never
/// paints outside the rectangle. Broken UTF-8 shows as replacement characters.
void DrawTextRect2(const irect_s* rect, const char* text);

// Refresh of the panel from the screen buffer. Regions are clipped to the screen.

/// The whole panel, with a flash that removes all ghosts.
void FullUpdate();
/// A region in full quality.
void PartialUpdate(int x, int y, int w, int h);
/// The whole panel in full quality, without a flash.
void SoftUpdateHQ();
/// A region in one-bit black and white: fast enough to follow a pen.
void DynamicUpdateBW(int x, int y, int w, int h);
/// Returns when every refresh in progress has finished.
void WaitForUpdateComplete();

// Pictures. LoadBitmap and BitmapFromScreen return one allocation that the caller releases with `free`.

/// Reads a picture file (any BMP, PNG): depth 8 for a grey picture, else 24, transparent parts on white. Null when
/// it is missing, damaged or too large for a record; but for a missing one, the reason is on standard error.
bitmap_s* LoadBitmap(const char* path);

/// Writes the bitmap in the format that the name's ending says (.bmp, .png), into folders that it makes where
/// they are missing. Not 0 on success; 0, with the reason on standard error, else. Whatever happens, the path
/// holds the old or the new picture, whole.
int SaveBitmap(const char* path, const bitmap_s* bitmap);

/// Copy of a region of the screen buffer, of the region's size and the panel's depth (8 where it is grey, 24 where
/// it shows colour), rows packed; what lies outside the screen is white. Null when the region is empty or too
/// large for a record.
bitmap_s* BitmapFromScreen(int x, int y, int w, int h);

// One-shot timers. Setting a pending timer again replaces it; a negative time is 0. The callback comes from the event
// loop, also while a modal is open; what it draws then lies below the modal.

/// Known by its name. A null callback cancels the pending timer of that name.
void SetHardTimer(const char* name, timer_callback_t callback, int milliseconds);
/// Known by callback and context; the context is borrowed until the timer has fired or been cancelled. A null
/// callback cancels the pending timer of that name and context.
void SetHardTimerEx(const char* name, timer_context_callback_t callback, void* context, int milliseconds);
/// Cancels a pending timer with that callback and context, if there is one.
void ClearTimerEx(timer_context_callback_t callback, void* context);

// Modals. Each call returns at once; the callback comes from the event loop after the modal has closed
// and what lay under it has been put back and refreshed. A modal may be opened over another. With a null callback
// it closes without an answer.

/// A question with two buttons; the callback gets the number of the pressed one (1, 2), and 1 for a cancel. `kind`
/// is 0x8002, the number of such a question; this device has no other dialog and does not look at it. Texts that
/// begin with '@' are language keys.
void Dialog(int kind, const char* title, const char* text, const char* button1, const char* button2,
            dialog_callback_t callback);

/// The on-screen keyboard. Edits the text in `buffer` (NUL-terminated UTF-8, room for `max_bytes` + 1) and calls
/// back with it when it closes. The buffer is borrowed until that callback and written just before it; a cancel
/// leaves it as it was, and calls back too. Flag 0x400 puts the keyboard at the top. A title that begins with '@'
/// is a language key.
void OpenKeyboard(const char* title, char* buffer, int max_bytes, int flags, keyboard_callback_t callback);

/// Lets the user choose a font. `font` is "Name,Size", and so is the first string of the callback; the
/// other three are name, size and style alone. All four live during the callback only. `with_size` not 0 offers
/// sizes too. A cancel does not call back.
void OpenFontSelector(const char* title, const char* font, int with_size, font_callback_t callback);

// Theme and languages. Returned strings live as long as the process.

/// A value of the theme, "section.key" for a key in a section; where there is none, `fallback` itself.
const char* GetThemeString(const char* name, const char* fallback);
/// The value as a whole number; `fallback` where there is none and, told on standard error, where it is no whole
/// number.
int GetThemeInt(const char* name, int fallback);
/// Text for a language key, in the current language, then in English, then the key itself.
const char* GetLangText(const char* key);

/// Removes a file by its device path. 0 on success, else -1.
int vistrel_unlink(const char* path);
