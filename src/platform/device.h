#pragma once

/// The device itself: panel, process, and files under device paths ("/mnt/ext1/…").

/// Pixels to the inch.
int get_screen_dpi();
/// The user's scale factor; 1.0 shows everything at its design size.
double get_screen_scale_factor();
/// Not 0 when the panel shows colour.
int device_display_colormask();

/// The hardware platform number. Platform 16 has a slow panel controller: its owner refreshes fast on every
/// second move only.
extern int (*_device_platform)();  // NOLINT(bugprone-reserved-identifier): its name on the device

/// Process id for log lines; 1 in a scripted run, whose trace must not change from run to run.
extern int g_process_pid;

namespace lumora::device {

/// The mode of `access` that asks only whether the file exists.
inline constexpr int kFileExists = 0;

/// 0 when the file at the device path can be reached in that mode, else -1.
int access(const char* path, int mode);
/// Removes the file at the device path. 0 on success, else -1.
int unlink(const char* path);
/// Seconds since the epoch by the toolkit's clock, which stands still in a scripted run.
long time();

}  // namespace lumora::device
