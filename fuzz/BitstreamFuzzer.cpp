// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/h264/Still.h"
#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"
#include "ZelvraCore/bitstream/hevc/Hiding.h"
#include "ZelvraCore/bitstream/hevc/Identity.h"
#include "ZelvraCore/bitstream/hevc/PictureScanner.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

/// Passes arbitrary bytes to all parsers of coded video. The input is a byte that chooses the codec, the
/// length of a configuration record in two bytes, the record, then a sample. Malformed input must end in a
/// BitstreamError.

using zelvra::bitstream::ByteView;
namespace bitstream = zelvra::bitstream;
namespace h264 = zelvra::h264;
namespace hevc = zelvra::hevc;

namespace {

template <class Operation>
void attempt(Operation operation) {
    try {
        operation();
    } catch (const bitstream::BitstreamError&) {
        return; // the expected result of malformed input
    }
}

template <class Record>
Record parseBothWays(ByteView content) {
    Record record = Record::parse(content);
    const auto written = record.serialise();
    if (!std::equal(written.begin(), written.end(), content.begin(), content.end())) {
        std::abort();
    }
    return record;
}

void readH264(ByteView content, ByteView sample) {
    const auto record = parseBothWays<h264::AvcConfiguration>(content);
    const h264::ParameterSets sets(record);
    for (const auto& entry : sets.allPps()) {
        const h264::Pps& pps = entry.second;
        attempt([&] { h264::parsePps(h264::rewritePps(pps.nal, 255, 31, zelvra::ChromaFormat::yuv444)); });
        attempt([&] { h264::freezeEncodingFor(sets.sps(pps.spsId), pps); });
    }
    attempt([&] {
        h264::PictureScanner scanner(sets, record.nalLengthSize);
        scanner.scan(sample);
        scanner.scan(sample);
    });
    for (const ByteView nal : bitstream::splitNalUnits(sample, record.nalLengthSize)) {
        attempt([&] {
            const auto slice = parseSliceHeader(nal, sets);
            rewriteSlice(nal, sets, sets.sps(slice.spsId), {.ppsId = 9, .frameNum = 1});
        });
    }
}

void readHevc(ByteView content, ByteView sample) {
    const auto record = parseBothWays<hevc::HevcConfiguration>(content);
    const hevc::ParameterSets sets(record);
    attempt([&] {
        hevc::PictureScanner scanner(sets, record.nalLengthSize());
        scanner.scan(sample);
        scanner.scan(sample);
        hevc::ParameterSets known = sets;
        const auto twins = hevc::chooseTwinIds(scanner.ppsIdsSeen(), {});
        hideSample(sample, record.nalLengthSize(), known, twins, true);
    });
    attempt([&] { hevc::withMetadata(sample, 4, hevc::carriedMetadata(sample, 4)); });
    attempt([&] {
        const hevc::Identity identity{.vpsId = 1, .spsId = 15, .ppsId = 63};
        for (const auto& [id, sps] : sets.allSps()) {
            hevc::ParameterSets(reidentify(record, identity, sps));
        }
        reidentifySample(sample, record.nalLengthSize(), sets, identity);
    });
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name is libFuzzer's
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t headSize = 3;
    if (size < headSize) {
        return 0;
    }
    const ByteView rest = ByteView(data, size).subspan(headSize);
    const std::size_t length = std::min<std::size_t>(rest.size(), std::size_t{data[1]} << 8 | data[2]);
    const ByteView content = rest.first(length);
    const ByteView sample = rest.subspan(length);
    switch (data[0] % 3) {
    case 0: attempt([&] { readH264(content, sample); }); break;
    case 1: attempt([&] { readHevc(content, sample); }); break;
    default: attempt([&] { bitstream::replaceChildBox(sample, "avcC", content); }); break;
    }
    return 0;
}
