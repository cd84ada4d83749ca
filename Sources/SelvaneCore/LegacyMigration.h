#pragma once

#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/FileSystem.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

/// The careful steps that bring the data of an earlier product over. What is in the new place already always
/// wins: nothing there is ever overwritten.
namespace selvane::LegacyMigration {

/// Moves the folder `from`, with all that is in it, to `to`, whose parent folders are made, with
/// mode 700, if they are missing. Tells whether it was moved. It isn't if there is no such folder, or if
/// anything is at `to`: two folders are never put together. A failure is logged, and leaves the folder where
/// it was.
bool moveDataDirectory(FileSystem& fileSystem, const std::filesystem::path& from,
                       const std::filesystem::path& to);

/// Copies the values under `keys` that `from` has and `to` hasn't, with their types, in this order. `from`
/// keeps them. The number of values that were copied.
std::size_t copyDefaults(std::span<const std::string_view> keys, const DefaultsStore& from,
                         DefaultsStore& to);

} // namespace selvane::LegacyMigration
