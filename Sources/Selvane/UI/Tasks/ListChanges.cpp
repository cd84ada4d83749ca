#include "Selvane/UI/Tasks/ListChanges.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace selvane::ListChanges {

namespace {

using Indices = std::vector<std::size_t>;

/// The indices of the ids in the order of the ids; those of equal ids ascend.
Indices sorted(std::span<const UUID> ids) {
    Indices indices(ids.size());
    std::iota(indices.begin(), indices.end(), std::size_t{0});
    std::ranges::stable_sort(indices, {}, [ids](std::size_t index) { return ids[index]; });
    return indices;
}

/// Where each item of `after` stands in `before`, if it does.
std::vector<std::optional<std::size_t>> origins(std::span<const UUID> before, std::span<const UUID> after) {
    std::vector<std::optional<std::size_t>> origins(after.size());
    const Indices old = sorted(before);
    auto next = old.begin();
    for (const std::size_t index : sorted(after)) {
        while (next != old.end() && before[*next] < after[index])
            ++next;
        if (next != old.end() && before[*next] == after[index])
            origins[index] = *next++;
    }
    return origins;
}

/// Calls `run(first, count)` for every run of indices below `size` that satisfy `matches`, in ascending
/// order.
template <typename Predicate, typename Function>
void forEachRun(std::size_t size, Predicate matches, Function run) {
    for (std::size_t index = 0; index < size; ++index) {
        const std::size_t first = index;
        while (index < size && matches(index))
            ++index;
        if (index > first)
            run(first, index - first);
    }
}

/// Which of these distinct values belong to a longest ascending subsequence: patience sorting.
std::vector<bool> longestAscent(const Indices& values) {
    constexpr auto none = static_cast<std::size_t>(-1);
    // The index of the smallest value that ends an ascent of each length, and before each value the one that
    // precedes it in its ascent.
    Indices ends;
    Indices previous(values.size(), none);
    for (std::size_t index = 0; index < values.size(); ++index) {
        const auto place =
            std::ranges::lower_bound(ends, values[index], {}, [&](std::size_t end) { return values[end]; });
        if (place != ends.begin())
            previous[index] = *std::prev(place);
        if (place == ends.end())
            ends.push_back(index);
        else
            *place = index;
    }
    std::vector<bool> belongs(values.size(), false);
    for (std::size_t index = ends.empty() ? none : ends.back(); index != none; index = previous[index])
        belongs[index] = true;
    return belongs;
}

/// Places in a row, taken or free, that are counted in logarithmic time: a Fenwick tree.
class Places {
public:
    explicit Places(std::size_t size) : _sums(size + 1, 0) {}

    void take(std::size_t place) { add(place, 1); }
    void free(std::size_t place) { add(place, static_cast<std::size_t>(-1)); }

    [[nodiscard]] std::size_t takenBefore(std::size_t place) const {
        std::size_t sum = 0;
        for (; place > 0; place &= place - 1)
            sum += _sums[place];
        return sum;
    }

private:
    /// Sums wrap around, so that one may be taken away.
    void add(std::size_t place, std::size_t amount) {
        for (++place; place < _sums.size(); place += place & (~place + 1))
            _sums[place] += amount;
    }

    std::vector<std::size_t> _sums;
};

/// The moves that sort `ranks`, which are the numbers from 0 up in some order.
///
/// The items of a longest ascent stay and part the list into gaps. Every item has a place in a row of places
/// that is as long as all need: one for an item that stays, an old and a new one for an item that moves. The
/// new places of a gap come before the old ones. An item's index is the number of taken places before its
/// own.
class Sorting {
public:
    explicit Sorting(const Indices& ranks)
        : _stays(ranks.size()), _oldPlace(ranks.size()), _newPlace(ranks.size()), _places(2 * ranks.size()) {
        const std::vector<bool> staysAt = longestAscent(ranks);
        for (std::size_t index = 0; index < ranks.size(); ++index)
            _stays[ranks[index]] = staysAt[index];

        std::size_t rank = 0;
        std::size_t place = 0;
        const auto placeNewOnes = [&] {
            for (; rank < ranks.size() && !_stays[rank]; ++rank)
                _newPlace[rank] = place++;
        };
        placeNewOnes();
        for (std::size_t index = 0; index < ranks.size(); ++index) {
            _places.take(place);
            _oldPlace[ranks[index]] = place++;
            if (staysAt[index]) {
                ++rank;
                placeNewOnes();
            }
        }
    }

    [[nodiscard]] std::vector<Move> moves() {
        std::vector<Move> moves;
        for (std::size_t rank = 0; rank < _stays.size();) {
            if (_stays[rank])
                ++rank;
            else
                rank += moves.emplace_back(moveRun(rank)).count;
        }
        return moves;
    }

private:
    /// Moves the item of that rank, and with it those that follow it both now and in the end.
    Move moveRun(std::size_t rank) {
        const std::size_t first = _places.takenBefore(_oldPlace[rank]);
        std::size_t end = rank + 1;
        while (end < _stays.size() && !_stays[end] &&
               _places.takenBefore(_oldPlace[end]) == first + (end - rank))
            ++end;
        for (std::size_t moved = rank; moved < end; ++moved)
            _places.free(_oldPlace[moved]);
        const std::size_t destination = _places.takenBefore(_newPlace[rank]);
        for (std::size_t moved = rank; moved < end; ++moved)
            _places.take(_newPlace[moved]);
        return {first, end - rank, destination};
    }

    // All by rank.
    std::vector<bool> _stays;
    Indices _oldPlace;
    Indices _newPlace;
    Places _places;
};

} // namespace

Steps between(std::span<const UUID> before, std::span<const UUID> after) {
    const auto origin = origins(before, after);
    Steps steps;

    // 1. Remove what isn't kept, the last ones first, so that the indices of the others stay right.
    std::vector<bool> isKept(before.size(), false);
    for (const auto& index : origin) {
        if (index)
            isKept[*index] = true;
    }
    forEachRun(
        before.size(), [&](std::size_t index) { return !isKept[index]; },
        [&](std::size_t first, std::size_t count) {
            steps.removals.push_back({first, count});
        });
    std::ranges::reverse(steps.removals);

    // 2. Put what is kept in its new order.
    Indices rankOf(before.size(), 0);
    std::size_t rank = 0;
    for (const auto& index : origin) {
        if (index)
            rankOf[*index] = rank++;
    }
    Indices ranks;
    for (std::size_t index = 0; index < before.size(); ++index) {
        if (isKept[index])
            ranks.push_back(rankOf[index]);
    }
    steps.moves = Sorting(ranks).moves();

    // 3. Insert what is new, the first ones first, so that each index is the final one.
    forEachRun(
        after.size(), [&](std::size_t index) { return !origin[index]; },
        [&](std::size_t first, std::size_t count) {
            steps.insertions.push_back({first, count});
        });
    return steps;
}

} // namespace selvane::ListChanges
