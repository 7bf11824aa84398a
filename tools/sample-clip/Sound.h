// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Game.h"

#include <cstdint>
#include <vector>

namespace zelvra::sample {

constexpr int soundRate = 48000;

/// The sound of the hall: crowd, ball, shoes, net and whistle, made from noise and sines. Stereo,
/// interleaved.
std::vector<std::int16_t> makeSound(const Game& game);

} // namespace zelvra::sample
