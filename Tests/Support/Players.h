#pragma once

#include "Selvane/Platform/ExternalPlayers.h"

namespace selvane::test {

/// Short names of the players, for tests about both.
inline constexpr auto music = ExternalPlayer::appleMusic;
inline constexpr auto spotify = ExternalPlayer::spotify;

} // namespace selvane::test
