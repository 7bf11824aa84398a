// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/media/Asset.h"

/// What the engine reads of an opened movie and a program that uses the engine does not: the file's bytes and
/// its parsed index. All results belong to the asset and are as long-lived as it. Any thread.
namespace zelvra::media {

const files::ByteSource& bytesOf(const Asset& asset);

/// The movie's index, parsed on first use. Throws as isobmff::readMovie.
const isobmff::Movie& movieOf(const Asset& asset);

/// The track that is shown: the first enabled picture track, else the first. Pictures that only illustrate
/// chapters do not count. Null for a movie without pictures. Throws as movieOf.
const isobmff::Track* videoTrackOf(const Asset& asset);

/// The same for whoever reads its pictures. Throws ZVError::noVideoTrack if there is no such track, and
/// MediaError::unsupported if it is encrypted or has no samples.
const isobmff::Track& requiredVideoTrackOf(const Asset& asset);

} // namespace zelvra::media
