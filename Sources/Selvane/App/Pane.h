#pragma once

namespace selvane {

/// What the main window shows, in the order of its sidebar.
enum class Pane { statistics, general, timer, focus, music, goals, whatsNew };

} // namespace selvane
