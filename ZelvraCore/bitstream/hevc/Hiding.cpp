// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/Hiding.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"

namespace zelvra::hevc {

using bitstream::BitstreamError;
using bitstream::Bytes;
using bitstream::ByteView;

namespace {

constexpr int ppsIdLimit = 64;

/// A CRA picture at the head of a run becomes a broken link, because the pictures that its leading pictures
/// refer to are missing.
bool breaksLink(NalType type) {
    return type == NalType::cra || isBla(type);
}

int twinIdOf(const TwinIds& ids, int ppsId) {
    const auto twin = ids.find(ppsId);
    if (twin == ids.end()) {
        throw BitstreamError::unsupported("a picture parameter set of the video was not planned for");
    }
    return twin->second;
}

enum class Visibility { shown, hidden };

Bytes rewritten(ByteView nal, const ParameterSets& sets, const TwinIds& ids, Visibility visibility,
                bool headOfRun) {
    const SliceHeader header = parseSliceHeader(nal, sets);
    SliceEdits edits;
    edits.keepPriorPictures = true;
    if (headOfRun && breaksLink(header.nalType)) {
        edits.nalType = NalType::blaNLp;
    }
    if (visibility == Visibility::hidden) {
        edits.ppsId = twinIdOf(ids, header.ppsId);
        edits.picOutput = false;
    }
    return rewriteSlice(nal, header, edits);
}

std::size_t lastParameterSet(const std::vector<ByteView>& nals) {
    std::size_t last = nals.size();
    for (std::size_t i = 0; i < nals.size(); ++i) {
        if (isParameterSet(nalType(nals[i]))) {
            last = i;
        }
    }
    return last;
}

/// The NAL units of a sample. Those shorter than a header are left out.
std::vector<ByteView> split(ByteView sample, int nalLengthSize) {
    auto nals = bitstream::splitNalUnits(sample, nalLengthSize);
    std::erase_if(nals, [](ByteView nal) { return nal.size() < nalHeaderSize; });
    return nals;
}

Bytes processSample(const std::vector<ByteView>& nals, int nalLengthSize, ParameterSets& sets,
                    const TwinIds& ids, Visibility visibility, bool headOfRun) {
    const std::size_t lastSet = lastParameterSet(nals);
    const bool rewrites = visibility == Visibility::hidden || headOfRun;
    Bytes sample;
    for (std::size_t i = 0; i < nals.size(); ++i) {
        sets.add(nals[i]);
        if (rewrites && isSlice(nalType(nals[i]))) {
            bitstream::appendNalUnit(sample, rewritten(nals[i], sets, ids, visibility, headOfRun),
                                     nalLengthSize);
        } else {
            bitstream::appendNalUnit(sample, nals[i], nalLengthSize);
        }
        if (i == lastSet) {
            for (const Bytes& twin : twinsOf(sets, ids)) {
                bitstream::appendNalUnit(sample, twin, nalLengthSize);
            }
        }
    }
    return sample;
}

} // namespace

TwinIds chooseTwinIds(const std::set<int>& used, const std::set<int>& reserved) {
    std::set<int> taken = used;
    taken.insert(reserved.begin(), reserved.end());
    TwinIds ids;
    for (const int id : used) {
        const int twin = bitstream::lowestFreeId(taken, ppsIdLimit);
        taken.insert(twin);
        ids.emplace(id, twin);
    }
    return ids;
}

Bytes twinOf(const Pps& pps, int twinId) {
    const ByteView nal = pps.nal;
    bitstream::BitReader reader(nal.subspan(nalHeaderSize));
    bitstream::BitWriter writer;
    writer.ue(static_cast<std::uint32_t>(twinId));
    reader.ue();
    writer.copy(reader, pps.outputFlag - reader.position());
    writer.flag(true);
    reader.skip(1);
    writer.copy(reader, reader.bitsBeforeStop());
    writer.trailingBits();
    return bitstream::withEmulationPrevention(nal.first(nalHeaderSize), writer.payload());
}

std::vector<Bytes> twinsOf(const ParameterSets& sets, const TwinIds& ids) {
    std::vector<Bytes> twins;
    for (const auto& [id, pps] : sets.allPps()) {
        if (const auto twin = ids.find(id); twin != ids.end()) {
            twins.push_back(twinOf(pps, twin->second));
        }
    }
    return twins;
}

Bytes hideSample(ByteView sample, int nalLengthSize, ParameterSets& sets, const TwinIds& ids,
                 bool headOfRun) {
    return processSample(split(sample, nalLengthSize), nalLengthSize, sets, ids, Visibility::hidden,
                         headOfRun);
}

std::optional<Bytes> completeSample(ByteView sample, int nalLengthSize, ParameterSets& sets,
                                    const TwinIds& ids, bool headOfRun) {
    const auto nals = split(sample, nalLengthSize);
    if (!headOfRun && lastParameterSet(nals) == nals.size()) {
        return std::nullopt;
    }
    return processSample(nals, nalLengthSize, sets, ids, Visibility::shown, headOfRun);
}

} // namespace zelvra::hevc
