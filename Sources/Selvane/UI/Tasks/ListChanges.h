#pragma once

#include "SelvaneCore/UUID.h"

#include <cstddef>
#include <span>
#include <vector>

/// How one list becomes another in few steps, for views that show each step. Lists are told by the ids of
/// their items. An id may stand in a list more than once: the k-th of equal ids before is the k-th of them
/// after.
namespace selvane::ListChanges {

/// Takes out `count` items from `first` on.
struct Removal {
    std::size_t first;
    std::size_t count;

    friend bool operator==(const Removal&, const Removal&) = default;
};

/// Takes out `count` items from `first` on and puts them back as one run, whose first item then stands at
/// `destination`. It never stays where it was.
struct Move {
    std::size_t first;
    std::size_t count;
    std::size_t destination;

    friend bool operator==(const Move&, const Move&) = default;
};

/// Puts in `count` items, which then stand where they stand in the list after, from `first` on.
struct Insertion {
    std::size_t first;
    std::size_t count;

    friend bool operator==(const Insertion&, const Insertion&) = default;
};

/// To be applied in this order, first all removals, then all moves, then all insertions. Each counts in the
/// list as the steps before it leave it.
struct Steps {
    std::vector<Removal> removals;
    std::vector<Move> moves;
    std::vector<Insertion> insertions;

    friend bool operator==(const Steps&, const Steps&) = default;
};

/// Removes and inserts no item that both lists have, and moves as few of the others as possible. Takes
/// n log n time.
[[nodiscard]] Steps between(std::span<const UUID> before, std::span<const UUID> after);

} // namespace selvane::ListChanges
