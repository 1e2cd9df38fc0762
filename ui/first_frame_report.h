#pragma once
// Start-up measurement: with QUARRYDEX_STARTUP_REPORT set in the environment, a window prints
// "first frame after N ms" to standard error once it has drawn its first frame, N counted from
// `start` (the process entry). A window with a boolean "ready" property (the main window's
// menus and sections are made after its first frame) also prints "ready after N ms" once it
// has drawn its first frame with "ready" true. bench/startup.sh compares the program with a
// minimal window.

#include <chrono>

class QQuickWindow;

namespace quarrydex::ui {

// Does nothing unless QUARRYDEX_STARTUP_REPORT is set.
void reportFirstFrame(QQuickWindow* window, std::chrono::steady_clock::time_point start);

} // namespace quarrydex::ui
