// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

/// The kinds of movie files that are written.
enum class MovieContainer { mpeg4, appleM4v, quickTime };

} // namespace zelvra
