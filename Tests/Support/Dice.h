#pragma once

#include <concepts>
#include <cstdint>
#include <random>

namespace selvane::test {

/// Random numbers that are the same everywhere.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : _engine(seed) {}

    template <std::integral Number>
    Number below(Number limit) {
        return static_cast<Number>(_engine() % static_cast<std::uint64_t>(limit));
    }
    int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }
    bool oneIn(int number) { return below(number) == 0; }

private:
    std::mt19937_64 _engine;
};

} // namespace selvane::test
