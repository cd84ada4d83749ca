#pragma once

#include "SelvaneCore/Date.h"

#include <optional>

namespace selvane {

/// Whether a focus session that is about to start ends before the next event. A value, compared by its kind
/// and, where it has one, its length.
class SessionFit {
public:
    enum class Kind {
        /// The session should run for `length` instead.
        shorten,
        /// The duration stands.
        fits,
        /// Too little time is left to be worth shortening to.
        noRoom,
    };

    /// The shortest length that a session is cut down to.
    static constexpr Seconds minimumSession{600.0};

    [[nodiscard]] static constexpr SessionFit shorten(Seconds to) { return {Kind::shorten, to}; }
    [[nodiscard]] static constexpr SessionFit fits() { return {Kind::fits, std::nullopt}; }
    [[nodiscard]] static constexpr SessionFit noRoom() { return {Kind::noRoom, std::nullopt}; }

    /// Judges a session of `duration` that starts at `now` and should end `buffer` before the event. No
    /// event, or one that has begun, limits nothing. A shortened length is a whole number of minutes.
    ///
    /// Any float and any instant has an answer: a `duration` that is infinite or not a number is longer
    /// than any room, an infinite `buffer` leaves no room, and one that is negative or not a number counts as
    /// none.
    [[nodiscard]] static SessionFit evaluate(Date now, Seconds duration, std::optional<Date> nextEventStart,
                                             Seconds buffer);

    [[nodiscard]] constexpr Kind kind() const { return _kind; }
    /// How long the session should run instead; present exactly for `shorten`.
    [[nodiscard]] constexpr std::optional<Seconds> length() const { return _length; }

    friend bool operator==(const SessionFit&, const SessionFit&) = default;

private:
    constexpr SessionFit(Kind kind, std::optional<Seconds> length) : _kind(kind), _length(length) {}

    Kind _kind;
    std::optional<Seconds> _length;
};

} // namespace selvane
