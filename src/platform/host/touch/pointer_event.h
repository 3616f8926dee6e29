#pragma once

namespace host {

/// The pointer's event types, as modals and the application's handler get them.
inline constexpr int kPointerUp = 29;
inline constexpr int kPointerDown = 30;
inline constexpr int kPointerMove = 31;
/// A move that comes at least 100 ms after the last one of its kind.
inline constexpr int kPointerReport = 35;

}  // namespace host
