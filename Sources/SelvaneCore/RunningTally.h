#pragma once

#include "SelvaneCore/Models.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace selvane {

/// The tallies of one kind for the last few questions, each kept with how many sessions it has counted.
template <typename Tally, std::size_t remembered = 1>
class RunningTally {
public:
    using Question = typename Tally::Question;

    /// The tally for `question` after all of `sessions`, which must begin with the sessions of every earlier
    /// call. Valid until the next call.
    Tally& over(std::span<const FocusSession> sessions, const Question& question) {
        auto entry = std::ranges::find(_entries, question, &Entry::question);
        if (entry == _entries.end()) {
            if (_entries.size() == remembered)
                _entries.pop_back();
            entry = _entries.insert(_entries.end(), Entry(question));
        }
        // The one asked for last stands first.
        std::rotate(_entries.begin(), entry, entry + 1);
        Entry& latest = _entries.front();
        for (const FocusSession& session : sessions.subspan(latest.counted))
            latest.tally.add(session);
        latest.counted = sessions.size();
        return latest.tally;
    }

private:
    struct Entry {
        explicit Entry(const Question& asked) : question(asked), tally(asked) {}

        Question question;
        Tally tally;
        std::size_t counted = 0;
    };

    std::vector<Entry> _entries;
};

} // namespace selvane
