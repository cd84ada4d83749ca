#include "SelvaneCore/Punycode.h"

#include "SelvaneCore/Text.h"

#include <cstdint>

namespace selvane::Punycode {

namespace {

// The parameters of RFC 3492, section 5.
constexpr std::int64_t base = 36;
constexpr std::int64_t tmin = 1;
constexpr std::int64_t tmax = 26;
constexpr std::int64_t skew = 38;
constexpr std::int64_t damp = 700;
constexpr std::int64_t initialBias = 72;
constexpr std::int64_t initialN = 128;
constexpr char delimiter = '-';

enum class Round { first, later };

/// The letter or digit for a value from 0 to 35.
char digit(std::int64_t value) {
    return static_cast<char>(value < 26 ? value + 'a' : value - 26 + '0');
}

/// The bias after a delta that was written with `points` scalars handled.
std::int64_t adapt(std::int64_t delta, std::int64_t points, Round round) {
    delta /= round == Round::first ? damp : 2;
    delta += delta / points;
    std::int64_t k = 0;
    while (delta > (base - tmin) * tmax / 2) {
        delta /= base - tmin;
        k += base;
    }
    return k + (base - tmin + 1) * delta / (delta + skew);
}

std::int64_t threshold(std::int64_t k, std::int64_t bias) {
    if (k <= bias)
        return tmin;
    return k >= bias + tmax ? tmax : k - bias;
}

/// Writes `delta` as a number of variable length, lowest digit first.
void append(std::int64_t delta, std::int64_t bias, std::string& output) {
    std::int64_t q = delta;
    for (std::int64_t k = base;; k += base) {
        const std::int64_t t = threshold(k, bias);
        if (q < t)
            break;
        output += digit(t + (q - t) % (base - t));
        q = (q - t) / (base - t);
    }
    output += digit(q);
}

/// The smallest scalar that is not below `n`.
std::optional<std::int64_t> smallest(const std::u32string& scalars, std::int64_t n) {
    std::optional<std::int64_t> found;
    for (const std::int64_t scalar : scalars) {
        if (scalar >= n && (!found || scalar < *found))
            found = scalar;
    }
    return found;
}

} // namespace

std::optional<std::string> encode(std::string_view label) {
    if (!Text::isValid(label))
        return std::nullopt;
    const std::u32string scalars = Text::scalars(label);
    const auto count = static_cast<std::int64_t>(scalars.size());

    // 1. The basic scalars in their order.
    std::string output;
    for (const char32_t scalar : scalars) {
        if (scalar < initialN)
            output += static_cast<char>(scalar);
    }
    const auto b = static_cast<std::int64_t>(output.size());
    if (b > 0)
        output += delimiter;
    std::int64_t h = b;

    // 2. and 3.
    std::int64_t n = initialN;
    std::int64_t delta = 0;
    std::int64_t bias = initialBias;

    // 4. The others from the smallest to the greatest, each by the way to it from the one before.
    while (h < count) {
        const std::optional<std::int64_t> m = smallest(scalars, n);
        if (!m)
            return std::nullopt;
        std::int64_t way = 0;
        if (__builtin_mul_overflow(*m - n, h + 1, &way) || __builtin_add_overflow(delta, way, &delta))
            return std::nullopt;
        n = *m;
        for (const std::int64_t scalar : scalars) {
            if (scalar < n)
                ++delta;
            if (scalar == n) {
                append(delta, bias, output);
                bias = adapt(delta, h + 1, h == b ? Round::first : Round::later);
                delta = 0;
                ++h;
            }
        }
        ++delta;
        ++n;
    }

    // 5.
    return output;
}

} // namespace selvane::Punycode
