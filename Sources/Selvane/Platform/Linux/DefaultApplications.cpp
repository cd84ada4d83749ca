#include "Selvane/Platform/Linux/DefaultApplications.h"

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/Text.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <utility>

namespace selvane {

namespace {

constexpr std::size_t largestList = std::size_t{1} << 20;

/// Adds what the file says in its group "Default Applications".
void addDefaults(std::string_view text, std::string_view mimeType, std::vector<std::string>& result) {
    bool isInGroup = false;
    while (!text.empty()) {
        const std::string_view line = Text::trimmed(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), std::min(text.find('\n'), text.size()) + 1));
        if (line.starts_with('['))
            isInGroup = line == "[Default Applications]";
        const std::size_t equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos ||
            Text::trimmed(line.substr(0, equals)) != mimeType)
            continue;
        std::string_view names = line.substr(equals + 1);
        while (!names.empty()) {
            const std::string_view name = Text::trimmed(names.substr(0, names.find(';')));
            names.remove_prefix(std::min(names.size(), std::min(names.find(';'), names.size()) + 1));
            if (!name.empty())
                result.emplace_back(name);
        }
    }
}

} // namespace

DefaultApplications::DefaultApplications(FileSystem& fileSystem, std::function<ApplicationFolders()> folders,
                                         std::function<std::vector<std::string>()> desktops)
    : _fileSystem(&fileSystem), _folders(std::move(folders)), _desktops(std::move(desktops)) {}

std::vector<std::string> DefaultApplications::of(std::string_view mimeType) const {
    const ApplicationFolders folders = _folders();
    std::vector<std::filesystem::path> places = folders.settings;
    for (const auto& folder : folders.data)
        places.push_back(folder / "applications");
    std::vector<std::string> files;
    for (const std::string& desktop : _desktops())
        files.push_back(Text::lowercased(desktop) + "-mimeapps.list");
    files.emplace_back("mimeapps.list");

    std::vector<std::string> result;
    for (const auto& place : places) {
        for (const std::string& file : files) {
            if (const auto contents = FileContents::read(*_fileSystem, place / file, largestList))
                addDefaults(contents->bytes(), mimeType, result);
        }
    }
    return result;
}

} // namespace selvane
