#pragma once

namespace orvane {

// Qt 6.4 ends at its start where a Wayland compositor has no input device (no wl_seat): its text input takes one for
// granted. There another input module is chosen, unless the user has chosen one. Call it before any object of Qt's.
void chooseInputModuleForWayland();

}  // namespace orvane
