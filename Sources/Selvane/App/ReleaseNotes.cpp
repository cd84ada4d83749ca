#include "Selvane/App/ReleaseNotes.h"

#include "SelvaneCore/FileContents.h"

namespace selvane {

const std::vector<ChangelogEntry>& ReleaseNotes::all() {
    if (!_all) {
        _all.emplace();
        if (const auto contents = FileContents::read(_fileSystem, _file)) {
            if (auto entries = Changelog::decode(contents->bytes()))
                _all = std::move(*entries);
        }
    }
    return *_all;
}

} // namespace selvane
