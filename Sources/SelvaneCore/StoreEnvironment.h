#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/FileSystem.h"

#include <functional>

namespace selvane {

/// What a store needs of the world. Copied into each store; the file system outlives them all.
struct StoreEnvironment {
    FileSystem* fileSystem;
    std::function<Date()> clock;
    /// For the local time in the names of set-aside copies.
    std::function<Calendar()> calendar;
};

} // namespace selvane
