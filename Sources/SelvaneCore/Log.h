#pragma once

#include <string_view>

/// Failures that the user can't act on, each as one plain line that begins "Selvane: ". Nothing here fails,
/// nor waits for anybody but whoever reads standard error.
namespace selvane::Log {

/// Writes the line to standard error. Line breaks and other control characters in `message` become blanks.
/// Any thread.
void line(std::string_view message);

/// From now on lines go to the system's journal, by its native protocol. A line that the journal doesn't take
/// goes to standard error, and where standard error is connected to the journal already, it stays the way to
/// it. A person who looks on at a terminal is shown the line as well.
///
/// Reads the environment, which says where standard error leads, so it is called on the main thread, best
/// before there are others.
///
/// Holds for the copy of this library that it is called in: a plugin has one of its own. `socket`, where the
/// journal listens, lives as long as the process.
void toJournal(const char* socket = "/run/systemd/journal/socket");

/// Takes `toJournal` back.
void toStandardError();

} // namespace selvane::Log
