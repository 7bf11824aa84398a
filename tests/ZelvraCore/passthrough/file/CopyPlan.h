// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"

namespace zelvra::test {

/// The plan that stores a movie's pictures and sound as they are, from Store::source, under its first edit.
passthrough::OutputMovie copyPlan(const isobmff::Movie& movie, MovieContainer container);

} // namespace zelvra::test
