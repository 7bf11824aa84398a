// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundPlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/WideInteger.h"

#include <algorithm>
#include <limits>

namespace zelvra::passthrough {

namespace {

std::int64_t ticksOf(const CMTime& time, std::uint32_t timescale) {
    if (timescale > std::uint32_t{std::numeric_limits<std::int32_t>::max()}) {
        throw CannotPassThrough("the sound's ticks are too fine");
    }
    const CMTime ticks = time.converted(static_cast<std::int32_t>(timescale));
    // Far from the end of 64 bits, so that sums of a few times cannot leave them.
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 64;
    if (!ticks.isNumeric() || ticks.value > most || ticks.value < -most) {
        throw CannotPassThrough("a time lies beyond what the sound's ticks can hold");
    }
    return ticks.value;
}

/// A packet's length in ticks, as a fraction: timescales need not be multiples of the sample rate.
class PacketLength {
public:
    explicit PacketLength(const SoundSource& source)
        : ticks_(std::int64_t{source.packetFrames} * source.timescale), per_(source.sampleRate) {}

    /// Ticks that many packets last, to the nearest one.
    std::int64_t ticks(std::int64_t packets) const {
        return static_cast<std::int64_t>((WideInteger{packets} * ticks_ + per_ / 2) / per_);
    }
    /// How many packets come nearest to that time, and how many fit, and how many cover it. `time` >= 0.
    std::int64_t nearest(std::int64_t time) const {
        return static_cast<std::int64_t>((WideInteger{time} * per_ * 2 + ticks_) / (WideInteger{ticks_} * 2));
    }
    std::int64_t within(std::int64_t time) const {
        return static_cast<std::int64_t>(WideInteger{time} * per_ / ticks_);
    }
    std::int64_t covering(std::int64_t time) const {
        return static_cast<std::int64_t>((WideInteger{time} * per_ + ticks_ - 1) / ticks_);
    }

private:
    std::int64_t ticks_;
    std::int64_t per_;
};

/// Source packets before a freeze, or before the end.
struct Section {
    std::uint64_t end = 0;  ///< one past the last packet that may be here
    std::int64_t shift = 0; ///< silent ticks before it
};

/// The pieces in ticks and packets, independent of where the edit will start.
class SoundLayout {
public:
    SoundLayout(const SoundSource& source, std::span<const SoundPiece> pieces)
        : source_(source), packetLength_(source) {
        findRange(pieces);
        findPackets();
        findSections(pieces);
    }

    std::int64_t lead() const {
        if (first_ == end_) {
            return 0;
        }
        const std::int64_t needed = std::max<std::int64_t>(0, -atLead(firstStored(), firstShift()));
        return isLate() ? std::max(needed, packetLength_.ticks(1)) : needed;
    }

    SoundPlan plan(std::int64_t editStart) {
        plan_.editStart = editStart;
        plan_.editDuration = duration_;
        std::uint64_t packet = firstStored();
        for (const Section& section : sections_) {
            const std::uint64_t sectionEnd = heardUntil(section);
            if (packet < sectionEnd && first_ < sectionEnd) {
                const std::int64_t start = editStart + atLead(packet, section.shift);
                fillGap(start);
                append({SoundRun::Kind::source, packet, sectionEnd - packet, start,
                        source_.packets.start(sectionEnd) - source_.packets.start(packet)});
                packet = sectionEnd;
            }
        }
        fillEnd(editStart + duration_);
        plan_.mediaDuration = written();
        return std::move(plan_);
    }

private:
    void findRange(std::span<const SoundPiece> pieces) {
        CMTime position = CMTime::invalid();
        CMTime total = CMTime::zero();
        for (const SoundPiece& piece : pieces) {
            total += piece.duration;
            if (piece.kind == SoundPiece::Kind::silence) {
                continue;
            }
            if (!position.isValid()) {
                rangeStart_ = mediaTime(piece.sourceStart);
            } else if (position != piece.sourceStart) {
                throw CannotPassThrough("its pieces do not follow one another in the source");
            }
            position = piece.sourceStart + piece.duration;
            rangeEnd_ = mediaTime(position);
        }
        if (total > longestSound) {
            throw MediaError(MediaError::Cause::outOfRange,
                             "the movie's sound would be longer than two days");
        }
        duration_ = ticksOf(total, source_.timescale);
    }

    std::int64_t mediaTime(const CMTime& presentationTime) const {
        return ticksOf(presentationTime, source_.timescale) - source_.shown.start + source_.shown.mediaStart;
    }

    void findPackets() {
        const std::int64_t from = std::max(rangeStart_, source_.shown.mediaStart);
        const std::int64_t until =
            std::min({rangeEnd_, source_.shown.mediaEnd(), source_.packets.start(source_.packets.count())});
        if (from < until) {
            first_ = source_.packets.packetAt(from);
            end_ = source_.packets.packetAt(until - 1) + 1;
        }
    }

    void findSections(std::span<const SoundPiece> pieces) {
        CMTime silence = CMTime::zero();
        std::int64_t moment = rangeStart_;
        std::int64_t shift = 0;
        for (const SoundPiece& piece : pieces) {
            if (piece.kind == SoundPiece::Kind::source) {
                moment = mediaTime(piece.sourceStart + piece.duration);
                continue;
            }
            const std::int64_t pictureShift = ticksOf(silence, source_.timescale);
            sections_.push_back({cutAt(moment, pictureShift - shift), shift});
            silence += piece.duration;
            const std::int64_t length = ticksOf(silence, source_.timescale);
            shift = packetLength_.ticks(packetLength_.nearest(std::max<std::int64_t>(length, 0)));
        }
        sections_.push_back({end_, shift});
    }

    /// The packet before which a freeze at this moment is inserted, if the sound plays `early` ticks too
    /// early. A freeze at either end of the range is silent from start to end.
    std::uint64_t cutAt(std::int64_t moment, std::int64_t early) const {
        return moment <= rangeStart_ ? first_
               : moment >= rangeEnd_ ? end_
                                     : source_.packets.boundaryNear(moment + early);
    }

    /// The time of a packet with that much silence before it, relative to the start of the edit.
    std::int64_t atLead(std::uint64_t packet, std::int64_t shift) const {
        return source_.packets.start(packet) - rangeStart_ + shift;
    }

    std::int64_t firstShift() const {
        const auto holdsFirst = [&](const Section& section) { return first_ < section.end; };
        return std::find_if(sections_.begin(), sections_.end() - 1, holdsFirst)->shift;
    }

    /// The source's sound starts later than the range.
    bool isLate() const { return source_.shown.mediaStart > rangeStart_; }

    /// The first packet with the decoder's warm-up before it. A range that begins with a freeze needs none:
    /// silence precedes its first packet.
    std::uint64_t firstStored() const {
        const bool afterFreeze = firstShift() > 0 && !isLate();
        return afterFreeze ? first_ : first_ - std::min<std::uint64_t>(first_, source_.warmUpPackets);
    }

    /// Half a packet of delay may move the last packet beyond the end.
    std::uint64_t heardUntil(const Section& section) const {
        std::uint64_t end = std::min(section.end, end_);
        while (end > first_ && atLead(end - 1, section.shift) >= duration_) {
            --end;
        }
        return end;
    }

    std::int64_t written() const { return plan_.runs.empty() ? 0 : plan_.runs.back().end(); }

    void append(const SoundRun& run) {
        if (run.packets > 0) {
            plan_.runs.push_back(run);
        }
    }

    void fillUntil(std::int64_t time, std::int64_t packets) {
        append(
            {SoundRun::Kind::silence, 0, static_cast<std::uint64_t>(packets), written(), time - written()});
    }

    void fillGap(std::int64_t end) {
        if (plan_.runs.empty()) {
            fillBefore(end);
        } else {
            fillUntil(end, packetLength_.nearest(end - written()));
        }
    }

    /// Silent packets from 0 on. The first packet gets the ticks that are left over; the edit hides it.
    void fillBefore(std::int64_t time) {
        const std::int64_t whole = packetLength_.within(time);
        const std::int64_t leftOver = time - packetLength_.ticks(whole);
        if (leftOver > 0 && (leftOver <= plan_.editStart || whole == 0)) {
            fillUntil(leftOver, 1);
        } else if (leftOver > 0) {
            fillUntil(packetLength_.ticks(1) + leftOver, 1);
        }
        fillUntil(time, packetLength_.nearest(time - written()));
    }

    void fillEnd(std::int64_t time) {
        const std::int64_t missing = std::max<std::int64_t>(0, time - written());
        const std::int64_t packets = packetLength_.covering(missing);
        fillUntil(written() + packetLength_.ticks(packets), packets);
    }

    const SoundSource& source_;
    PacketLength packetLength_;
    std::int64_t rangeStart_ = 0; ///< media times
    std::int64_t rangeEnd_ = 0;
    std::int64_t duration_ = 0;
    std::uint64_t first_ = 0; ///< packets that sound within the range
    std::uint64_t end_ = 0;
    std::vector<Section> sections_;
    SoundPlan plan_;
};

} // namespace

isobmff::ShownPiece shownBetween(std::span<const isobmff::ShownPiece> pieces, std::int64_t from,
                                 std::int64_t to) {
    isobmff::ShownPiece joined;
    for (const isobmff::ShownPiece& piece : pieces) {
        if (piece.end() <= from || piece.start >= to) {
            continue;
        }
        if (joined.duration == 0) {
            joined = piece;
        } else if (joined.end() == piece.start && joined.mediaEnd() == piece.mediaStart) {
            joined.duration += piece.duration;
        } else {
            throw CannotPassThrough("its edit list cuts it into pieces");
        }
    }
    return joined;
}

CMTime soundLead(const SoundSource& source, std::span<const SoundPiece> pieces) {
    return {SoundLayout(source, pieces).lead(), static_cast<std::int32_t>(source.timescale)};
}

SoundPlan planSound(const SoundSource& source, std::span<const SoundPiece> pieces, const CMTime& editStart) {
    SoundLayout layout(source, pieces);
    return layout.plan(std::max(ticksOf(editStart, source.timescale), layout.lead()));
}

} // namespace zelvra::passthrough
