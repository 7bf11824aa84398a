// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundSamples.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

void listSource(const SoundRun& run, const SoundPackets& packets, Store store,
                std::vector<OutputSample>& samples) {
    const std::uint64_t end = run.firstPacket + run.packets;
    for (std::uint64_t packet = run.firstPacket; packet < end;) {
        const SoundPackets::Stretch stretch = packets.stretch(packet, end - packet);
        OutputSample sample;
        sample.bytes = {store, static_cast<std::uint32_t>(stretch.packets * stretch.packetBytes),
                        stretch.offset};
        sample.decodeTime = run.decodeTime + packets.start(packet) - packets.start(run.firstPacket);
        samples.push_back(sample);
        packet += stretch.packets;
    }
}

void listSilence(const SoundRun& run, const StoredSilence& silence, std::vector<OutputSample>& samples) {
    const auto packets = static_cast<std::int64_t>(run.packets);
    const std::int64_t ticks = run.duration / packets;
    const std::int64_t leftOver = run.duration % packets;
    const std::uint32_t packetBytes = silence.bytes.size / silence.packets;
    for (std::int64_t packet = 0; packet < packets; packet += silence.packets) {
        const std::int64_t count = std::min<std::int64_t>(silence.packets, packets - packet);
        OutputSample sample;
        sample.bytes = silence.bytes;
        sample.bytes.size = packetBytes * static_cast<std::uint32_t>(count);
        sample.decodeTime = run.decodeTime + packet * ticks + packet * leftOver / packets;
        samples.push_back(sample);
    }
}

} // namespace

std::vector<OutputSample> soundSamples(const SoundPlan& plan, const SoundPackets& packets, Store sourceStore,
                                       const StoredSilence& silence) {
    std::vector<OutputSample> samples;
    samples.reserve(packets.mostStretches());
    for (const SoundRun& run : plan.runs) {
        if (run.kind == SoundRun::Kind::source) {
            listSource(run, packets, sourceStore, samples);
        } else {
            listSilence(run, silence, samples);
        }
    }
    return samples;
}

} // namespace zelvra::passthrough
