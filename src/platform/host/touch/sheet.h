#pragma once

#include "platform/host/base/geometry.h"
#include "platform/host/touch/desk.h"

namespace host {

/// Paints the sheet on which a modal stands into the screen buffer: white inside a round frame only, so that the
/// picture below stays visible outside its corners.
void paintSheet(const Desk& desk, Rect area);

}  // namespace host
