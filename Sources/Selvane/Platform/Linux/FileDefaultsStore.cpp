#include "Selvane/Platform/Linux/FileDefaultsStore.h"

#include "SelvaneCore/Log.h"

#include <string>
#include <utility>
#include <variant>

namespace selvane {

namespace {

using Store = JSONStore<SettingValues>;

} // namespace

FileDefaultsStore::FileDefaultsStore(std::filesystem::path path, StoreEnvironment environment,
                                     Scheduler& scheduler)
    : _file(std::move(path), std::move(environment)), _scheduler(scheduler) {
    load();
}

FileDefaultsStore::~FileDefaultsStore() {
    write();
}

void FileDefaultsStore::load() {
    Store::LoadResult result = _file.read();
    if (auto* const loaded = std::get_if<Store::Loaded>(&result)) {
        _values = std::move(loaded->value);
    } else if (const auto* const unreadable = std::get_if<Store::Unreadable>(&result)) {
        _wasDamaged = true;
        if (!unreadable->movedTo) {
            _writing = Writing::forbidden;
            Log::line("settings won't be kept, so that " + _file.url().string() + " isn't saved over");
        }
    }
}

std::optional<SettingValue> FileDefaultsStore::value(std::string_view key) const {
    const auto found = _values.find(key);
    return found == _values.end() ? std::nullopt : std::optional(found->second);
}

void FileDefaultsStore::set(std::string_view key, std::optional<SettingValue> value) {
    const auto found = _values.find(key);
    if (value) {
        if (found != _values.end() && found->second == *value)
            return;
        _values.insert_or_assign(std::string(key), std::move(*value));
    } else {
        if (found == _values.end())
            return;
        _values.erase(found);
    }
    _hasChanges = true;
    scheduleWrite();
}

void FileDefaultsStore::scheduleWrite() {
    if (std::exchange(_isScheduled, true))
        return;
    _scheduler.post(_lifetime.guard([this] {
        _isScheduled = false;
        write();
    }));
}

void FileDefaultsStore::write() {
    if (!_hasChanges || _writing == Writing::forbidden)
        return;
    const auto saved = _file.save(writableValues());
    if (!saved && !_hasFailed)
        Log::line("couldn't save the settings: " + saved.error().description());
    _hasFailed = !saved;
    _hasChanges = !saved;
}

SettingValues FileDefaultsStore::writableValues() const {
    SettingValues result;
    for (const auto& entry : _values) {
        if (hasForm(entry.first, entry.second))
            result.insert(result.end(), entry);
    }
    return result;
}

std::optional<SettingValues> FileDefaultsStore::read(FileSystem& fileSystem,
                                                     const std::filesystem::path& path) {
    const auto contents = FileContents::read(fileSystem, path);
    if (!contents)
        return std::nullopt;
    const auto document = JSONDocument::parse(*contents);
    SettingValues values;
    if (!document || !decode(document->root(), values))
        return std::nullopt;
    return values;
}

} // namespace selvane
