// What a look at the settings database file found, for start-up to act on.
#pragma once

namespace korvi {

enum class DatabaseState {
    // The file opened and passed SQLite's quick check (a new, empty file passes too).
    kReady,
    // Another connection held the file longer than the busy timeout. Nothing was changed: the
    // content is unknown, not empty, so it must not be taken for a changed or missing database.
    kLocked,
    // The file was not a database or failed the quick check. It was moved aside as
    // "<file>.corrupt" (kept for a bug report) and an empty database opened in its place; the
    // tables must be rebuilt from the factory tuning file, and the user's custom values are lost.
    kMovedAside,
    // No usable database: the file cannot be opened, or a corrupt one could not be moved aside.
    kUnavailable,
};

// "ready", "locked", "moved-aside", "unavailable": for log lines.
const char* databaseStateName(DatabaseState state);

}  // namespace korvi
