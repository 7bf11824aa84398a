// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Sound.h"

#include <array>
#include <numbers>
#include <random>
#include <utility>

namespace zelvra::sample {
namespace {

using std::numbers::pi;

/// A resonance: a two-pole band pass around `frequency`. The sharper it is, the narrower the band.
class Resonance {
public:
    Resonance(double frequency, double sharpness) {
        const double angle = 2 * pi * frequency / soundRate;
        const double alpha = std::sin(angle) / (2 * sharpness);
        gain_ = alpha / (1 + alpha);
        back1_ = 2 * std::cos(angle) / (1 + alpha);
        back2_ = -(1 - alpha) / (1 + alpha);
    }
    double operator()(double in) {
        const double out = gain_ * (in - in2_) + back1_ * out1_ + back2_ * out2_;
        in2_ = std::exchange(in1_, in);
        out2_ = std::exchange(out1_, out);
        return out;
    }

private:
    double gain_ = 0, back1_ = 0, back2_ = 0;
    double in1_ = 0, in2_ = 0, out1_ = 0, out2_ = 0;
};

class Mixer {
public:
    explicit Mixer(const Game& game) : game_(game), left_(size), right_(size) {}

    void crowd() {
        for (std::vector<double>* side : {&left_, &right_}) {
            std::array<Resonance, 4> voices{Resonance(260, 0.8), Resonance(520, 0.9), Resonance(1100, 1.0),
                                            Resonance(2300, 0.8)};
            const std::array<double, 4> weights{1.0, 1.1, 0.7, 0.25};
            for (std::size_t i = 0; i < size; ++i) {
                const double time = static_cast<double>(i) / soundRate;
                const double noise = random_() / 2147483648.0 - 1;
                double murmur = 0;
                for (std::size_t v = 0; v < voices.size(); ++v) {
                    // Each band swells at its own pace.
                    const double breath = 1 + 0.22 * std::sin(time * (1.3 + 0.7 * static_cast<double>(v)) +
                                                              (side == &left_ ? 0 : 2.1));
                    murmur += voices.at(v)(noise) * weights.at(v) * breath;
                }
                (*side)[i] += murmur * 0.16 * loudness(time);
            }
        }
    }

    void events() {
        for (const GameEvent& event : game_.events()) {
            switch (event.kind) {
            case GameEvent::Kind::bounce: bounce(event); break;
            case GameEvent::Kind::catching: burst(event, 900, 1.5, 0.05, 0.20); break;
            case GameEvent::Kind::shot: burst(event, 1500, 2, 0.03, 0.10); break;
            case GameEvent::Kind::basket: burst(event, 4200, 0.7, 0.30, 0.45); break;
            case GameEvent::Kind::whistle: whistle(event); break;
            }
        }
    }

    /// Soles that squeak when a player changes direction.
    void shoes() {
        for (int player = 0; player < playerCount; ++player) {
            for (int seed = 30; seed < static_cast<int>(clipSeconds * 100); seed += 11) {
                const double time = seed / 100.0;
                const Vec before = game_.player(player, time - 0.1).velocity;
                const Vec after = game_.player(player, time + 0.1).velocity;
                const double turn = length(after - before);
                if (turn > 1.3 && chance(player, seed) < 0.35) {
                    squeak(time, game_.player(player, time).place, 1900 + 1500 * chance(player, seed, 1));
                }
            }
        }
    }

    std::vector<std::int16_t> samples() const {
        std::vector<std::int16_t> out;
        out.reserve(size * 2);
        for (std::size_t i = 0; i < size; ++i) {
            const double time = static_cast<double>(i) / soundRate;
            const double fade =
                smoothStep(0, 0.15, time) * (1 - smoothStep(clipSeconds - 0.4, clipSeconds, time));
            for (const double sample : {left_[i], right_[i]}) {
                out.push_back(static_cast<std::int16_t>(std::tanh(sample * fade) * 30000));
            }
        }
        return out;
    }

private:
    static constexpr std::size_t size = static_cast<std::size_t>(clipSeconds * soundRate);

    double loudness(double time) const {
        double level = 0.75 + 0.35 * smoothStep(9.5, 12.2, time) * (1 - smoothStep(12.6, 13, time));
        for (const GameEvent& event : game_.events()) {
            if (event.kind == GameEvent::Kind::basket) {
                level += (event.homeTeam ? 2.4 : 0.7) * smoothStep(event.time, event.time + 0.35, time) *
                         std::exp(-std::max(0.0, time - event.time - 1.2) / 1.4);
            }
        }
        return level;
    }

    /// Adds `wave`, a function of seconds since `start`, at its place in the stereo picture.
    template <class Wave>
    void add(double start, double duration, Vec place, double gain, Wave wave) {
        const double pan = std::clamp((place.x - game_.focus(start)) / 16 + 0.5, 0.15, 0.85);
        const auto first = static_cast<std::size_t>(start * soundRate);
        const auto count = static_cast<std::size_t>(duration * soundRate);
        for (std::size_t i = 0; i < count && first + i < size; ++i) {
            const double sample = wave(static_cast<double>(i) / soundRate) * gain;
            left_[first + i] += sample * (1 - pan) * 2;
            right_[first + i] += sample * pan * 2;
        }
    }

    void bounce(const GameEvent& event) {
        Resonance knock(420, 1.2);
        add(event.time, 0.25, event.place, 0.55, [&](double t) {
            const double thump =
                std::sin(2 * pi * (88 * t + 10 * (1 - std::exp(-t * 60)) / 60)) * std::exp(-t * 24);
            return thump + knock(random_() / 2147483648.0 - 1) * std::exp(-t * 70) * 2.4;
        });
    }

    void burst(const GameEvent& event, double frequency, double sharpness, double duration, double gain) {
        Resonance hiss(frequency, sharpness);
        add(event.time, duration * 3, event.place, gain, [&](double t) {
            return hiss(random_() / 2147483648.0 - 1) * std::min(1.0, t * 200) * std::exp(-t / duration * 2);
        });
    }

    void squeak(double start, Vec place, double frequency) {
        add(start, 0.09, place, 0.05, [&](double t) {
            const double rising = frequency * t + 1800 * t * t;
            return std::sin(2 * pi * rising) * std::sin(pi * t / 0.09) *
                   (1 + 0.5 * std::sin(2 * pi * 2 * rising));
        });
    }

    void whistle(const GameEvent& event) {
        add(event.time, 0.6, event.place, 0.16, [](double t) {
            const double trill = 1 + 0.35 * std::sin(2 * pi * 32 * t);
            const double tone = std::sin(2 * pi * 2750 * t) + 0.6 * std::sin(2 * pi * 2910 * t);
            return tone * trill * smoothStep(0, 0.02, t) * (1 - smoothStep(0.5, 0.6, t));
        });
    }

    const Game& game_;
    std::vector<double> left_, right_;
    std::mt19937 random_{11};
};

} // namespace

std::vector<std::int16_t> makeSound(const Game& game) {
    Mixer mixer(game);
    mixer.crowd();
    mixer.events();
    mixer.shoes();
    return mixer.samples();
}

} // namespace zelvra::sample
