// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/MovieReader.h"

#include "ZelvraCore/isobmff/FileBoxes.h"
#include "ZelvraCore/isobmff/FragmentReader.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/isobmff/TrackReader.h"
#include "ZelvraCore/records/MediaError.h"

#include <set>

namespace zelvra::isobmff {

namespace {

constexpr FourCharCode movieType = fourCharCode("moov");
constexpr FourCharCode fragmentType = fourCharCode("moof");

/// A larger index is not read into memory. 4 hours of picture and sound take 20 MB.
constexpr std::uint64_t maxIndexBytes = std::uint64_t{1} << 29;

[[noreturn]] void fail(MediaError::Cause cause, const std::string& line) {
    throw MediaError(cause, line);
}

/// Types that the first box of a movie file may have.
bool startsMovieFile(FourCharCode type) {
    static const std::set<FourCharCode> types{
        fourCharCode("ftyp"), fourCharCode("moov"), fourCharCode("mdat"), fourCharCode("wide"),
        fourCharCode("free"), fourCharCode("skip"), fourCharCode("pnot"), fourCharCode("styp"),
        fourCharCode("uuid"), fourCharCode("sidx"), fourCharCode("meta")};
    return types.contains(type);
}

std::vector<std::uint8_t> readPayload(const files::ByteSource& source, const FileBox& box) {
    if (box.size > source.size() - box.offset) {
        fail(MediaError::Cause::corrupt, "the file ends within its movie index");
    }
    if (box.payloadSize() > maxIndexBytes) {
        fail(MediaError::Cause::unsupported, "the movie index is larger than 512 MiB");
    }
    return source.readBytes(box.offset + box.headerSize, box.payloadSize());
}

void readMovieHeader(const MovieHeaderBox& header, Movie& movie) {
    movie.timescale = header.timescale;
    movie.duration = header.duration;
    movie.creationTime = header.creationTime;
    if (movie.timescale == 0) {
        fail(MediaError::Cause::corrupt, "the movie has no timescale");
    }
}

/// Reads the top-level boxes of a file in order, with one method for each kind.
class MovieFile {
public:
    explicit MovieFile(const files::ByteSource& source) : source_(source) {}

    Movie read() {
        std::uint64_t offset = 0;
        while (const std::optional<FileBox> box = fileBoxAt(source_, offset)) {
            if (offset == 0 && !startsMovieFile(box->type)) {
                break;
            }
            known_ = true;
            readBoxOfFile(*box);
            if (box->size >= source_.size() - offset) {
                break; // the last box; truncated media is found when its samples are checked
            }
            offset += box->size;
        }
        if (!known_) {
            fail(MediaError::Cause::unsupported, "is not an MP4 or QuickTime movie");
        }
        if (!hasIndex_) {
            fail(MediaError::Cause::corrupt, "has no movie index; the recording may have been cut short");
        }
        return std::move(movie_);
    }

private:
    void readBoxOfFile(const FileBox& box) {
        switch (box.type) {
        case FileTypeBox::type: readFileType(readPayload(source_, box)); break;
        case movieType:
            if (!hasIndex_) {
                readIndex(readPayload(source_, box));
            }
            break;
        case fragmentType:
            if (hasIndex_) {
                fragments_.readFragment(readPayload(source_, box), box.offset);
                movie_.fragmented = true;
            }
            break;
        default: break;
        }
    }

    void readFileType(const std::vector<std::uint8_t>& payload) {
        const auto fileType = readBox<FileTypeBox>(payload);
        movie_.majorBrand = fileType.majorBrand;
        movie_.compatibleBrands = fileType.compatibleBrands;
    }

    void readIndex(const std::vector<std::uint8_t>& payload) {
        hasIndex_ = true;
        const std::vector<RawBox> boxes = rawBoxes(payload);
        if (findBox(boxes, fourCharCode("cmov")) != nullptr) {
            fail(MediaError::Cause::unsupported, "its movie index is compressed");
        }
        const RawBox* header = findBox(boxes, MovieHeaderBox::type);
        if (header == nullptr) {
            fail(MediaError::Cause::corrupt, "its movie index has no header");
        }
        readMovieHeader(readBox<MovieHeaderBox>(header->payload), movie_);
        for (const RawBox& box : boxes) {
            if (box.type == fourCharCode("trak")) {
                movie_.tracks.push_back(readTrack(box.payload, movie_.tracks.size() + 1, bounds_));
            } else if (box.type == fourCharCode("udta") || box.type == fourCharCode("meta")) {
                movie_.userData.insert(movie_.userData.end(), box.whole.begin(), box.whole.end());
            }
        }
        if (const RawBox* extends = findBox(boxes, fourCharCode("mvex"))) {
            fragments_.readDefaults(extends->payload);
        }
    }

    const files::ByteSource& source_;
    Movie movie_;
    SampleBounds bounds_{source_.size()};
    FragmentReader fragments_{movie_.tracks, bounds_};
    bool known_ = false;
    bool hasIndex_ = false;
};

} // namespace

Movie readMovie(const files::ByteSource& source) {
    try {
        return MovieFile(source).read();
    } catch (const MediaError& error) {
        if (error.cause() == MediaError::Cause::unreadable) {
            throw; // already names the file
        }
        throw MediaError::cannot(error.cause(), "read", source.name(), error.what());
    }
}

} // namespace zelvra::isobmff
