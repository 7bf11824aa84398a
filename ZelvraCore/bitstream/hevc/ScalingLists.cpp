// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/ScalingLists.h"

#include <algorithm>

namespace zelvra::hevc {

void skipScalingLists(bitstream::BitReader& reader) {
    for (int size = 0; size < 4; ++size) {
        const int step = size == 3 ? 3 : 1;
        for (int matrix = 0; matrix < 6; matrix += step) {
            if (!reader.flag()) {
                reader.ue(); // scaling_list_pred_matrix_id_delta
                continue;
            }
            if (size > 1) {
                reader.se(); // scaling_list_dc_coef_minus8
            }
            const int coefficients = std::min(64, 1 << (4 + 2 * size));
            for (int i = 0; i < coefficients; ++i) {
                reader.se();
            }
        }
    }
}

} // namespace zelvra::hevc
