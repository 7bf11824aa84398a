#include "ZelvraCore/bitstream/AspectRatio.h"

#include <array>

namespace zelvra::bitstream {

AspectRatio parseAspectRatio(BitReader& reader) {
    constexpr std::uint32_t extended = 255;
    constexpr std::array ratios{
        AspectRatio{0, 0},   AspectRatio{1, 1},    AspectRatio{12, 11}, AspectRatio{10, 11},
        AspectRatio{16, 11}, AspectRatio{40, 33},  AspectRatio{24, 11}, AspectRatio{20, 11},
        AspectRatio{32, 11}, AspectRatio{80, 33},  AspectRatio{18, 11}, AspectRatio{15, 11},
        AspectRatio{64, 33}, AspectRatio{160, 99}, AspectRatio{4, 3},   AspectRatio{3, 2},
        AspectRatio{2, 1},
    };
    const std::uint32_t idc = reader.bits(8);
    if (idc == extended) {
        const auto width = static_cast<int>(reader.bits(16));
        return {width, static_cast<int>(reader.bits(16))};
    }
    return idc < ratios.size() ? ratios[idc] : AspectRatio{};
}

} // namespace zelvra::bitstream
