// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/NumberedSound.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

namespace zelvra::test {
namespace {

/// A one-pole low-pass filter at `cutoff` Hz.
class LowPass {
public:
    LowPass(double cutoff, int rate) : share_(1 - std::exp(-2 * std::numbers::pi * cutoff / rate)) {}
    double operator()(double sample) { return state_ += share_ * (sample - state_); }

private:
    double share_;
    double state_ = 0;
};

} // namespace

std::vector<float> numberedSound(std::int64_t count, int rate) {
    std::mt19937 random(3);
    LowPass first(5000, rate), second(5000, rate), bass(200, rate);
    double phase = 0;
    std::vector<float> sound(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        const double noise = second(first(static_cast<double>(random()) / 2147483648.0 - 1));
        const std::int64_t step = i * 10 / rate % 60;
        phase += 2 * std::numbers::pi * (500.0 + 50.0 * static_cast<double>(step)) / rate;
        sound[static_cast<std::size_t>(i)] =
            static_cast<float>(0.8 * (noise - bass(noise)) + 0.15 * std::sin(phase));
    }
    return sound;
}

std::string numberedSoundBytes(std::int64_t count, int rate, int channels) {
    std::string bytes;
    for (const float sample : numberedSound(count, rate)) {
        for (int channel = 0; channel < channels; ++channel) {
            const auto value = static_cast<std::int16_t>(
                std::lround(std::clamp(sample, -1.0F, 1.0F) * (1 - 0.1 * channel) * 32000));
            bytes.push_back(static_cast<char>(value & 0xFF));
            bytes.push_back(static_cast<char>(value >> 8 & 0xFF));
        }
    }
    return bytes;
}

std::optional<SoundLocation> locateSound(std::span<const float> piece, std::span<const float> reference,
                                         std::int64_t expected, std::int64_t reach) {
    const auto size = static_cast<std::int64_t>(piece.size());
    const auto energy = [](std::span<const float> part) {
        return std::inner_product(part.begin(), part.end(), part.begin(), 0.0);
    };
    const double pieceEnergy = energy(piece);
    const std::int64_t first = std::max<std::int64_t>(0, expected - reach);
    const std::int64_t last = std::min(expected + reach, static_cast<std::int64_t>(reference.size()) - size);
    SoundLocation best;
    for (std::int64_t start = first; pieceEnergy > 0 && start <= last; ++start) {
        const auto part = reference.subspan(static_cast<std::size_t>(start), piece.size());
        const double scale = std::sqrt(pieceEnergy * energy(part));
        const double product = std::inner_product(piece.begin(), piece.end(), part.begin(), 0.0);
        if (scale > 0 && product / scale > best.correlation) {
            best = {start, product / scale};
        }
    }
    return best.correlation >= 0.5 ? std::optional(best) : std::nullopt;
}

float peak(std::span<const float> sound) {
    return std::accumulate(sound.begin(), sound.end(), 0.0F,
                           [](float most, float sample) { return std::max(most, std::abs(sample)); });
}

} // namespace zelvra::test
