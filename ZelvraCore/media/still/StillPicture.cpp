// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillPicture.h"

#include "ZelvraCore/media/VideoFormat.h"
#include "ZelvraCore/media/pixels/PixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>

namespace zelvra::media {

namespace {

using Plane = DecodedPicture::Plane;

std::size_t sampleBytes(int bitDepth) {
    return bitDepth > 8 ? 2 : 1;
}

void setSample(Plane& plane, int bitDepth, int x, int y, int value) {
    std::uint8_t* const row = plane.bytes.data() + static_cast<std::size_t>(y) * plane.stride;
    if (bitDepth > 8) {
        const auto word = static_cast<std::uint16_t>(value);
        std::memcpy(row + static_cast<std::size_t>(x) * 2, &word, sizeof word);
    } else {
        row[x] = static_cast<std::uint8_t>(value);
    }
}

Plane makePlane(int width, int height, int bitDepth, int value) {
    Plane plane{width, height, static_cast<std::size_t>(width) * sampleBytes(bitDepth), {}};
    plane.bytes.resize(plane.stride * static_cast<std::size_t>(height));
    if (bitDepth > 8) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                setSample(plane, bitDepth, x, y, value);
            }
        }
    } else {
        std::ranges::fill(plane.bytes, static_cast<std::uint8_t>(value));
    }
    return plane;
}

int divideRoundingUp(int a, int b) {
    return (a + b - 1) / b;
}

int planeCount(ChromaFormat chroma) {
    return chroma == ChromaFormat::monochrome ? 1 : 3;
}

/// R'G'B' from 0 to 1.
struct Rgb {
    double red = 0;
    double green = 0;
    double blue = 0;
};

/// R'G'B' to the samples of a picture, by ITU-T H.273 clause 8.3.
class ColorConversion {
public:
    ColorConversion(int matrix, bool fullRange, int bitDepth)
        : depth_(bitDepth), fullRange_(fullRange), rows_(rowsOf(matrix)) {}

    int sample(std::size_t plane, const Rgb& rgb) const {
        const Row& row = rows_.at(plane);
        const double value = row.red * rgb.red + row.green * rgb.green + row.blue * rgb.blue;
        const double unit = 1 << (depth_ - 8);
        const double greatest = (1 << depth_) - 1;
        double code = 0;
        if (row.signedValue) {
            code = 128 * unit + value * (fullRange_ ? greatest : 224 * unit);
        } else {
            code = fullRange_ ? value * greatest : (16 + 219 * value) * unit;
        }
        return static_cast<int>(std::lround(std::clamp(code, 0.0, greatest)));
    }

private:
    struct Row {
        double red, green, blue;
        bool signedValue; ///< from -1/2 to 1/2
    };

    static std::array<Row, 3> rowsOf(int matrix) {
        switch (matrix) {
        case 0: return {{{0, 1, 0, false}, {0, 0, 1, false}, {1, 0, 0, false}}}; // planes are G, B, R
        case 1: return rowsOf(0.2126, 0.0722);
        case 4: return rowsOf(0.30, 0.11);
        case 7: return rowsOf(0.212, 0.087);
        case 8: return {{{.25, .5, .25, false}, {-.25, .5, -.25, true}, {.5, 0, -.5, true}}}; // Y, Cg, Co
        case 9:
        case 10: return rowsOf(0.2627, 0.0593);
        default: return rowsOf(0.299, 0.114);
        }
    }
    static std::array<Row, 3> rowsOf(double kr, double kb) {
        const double kg = 1 - kr - kb;
        const double cb = 2 * (1 - kb);
        const double cr = 2 * (1 - kr);
        return {{{kr, kg, kb, false},
                 {-kr / cb, -kg / cb, (1 - kb) / cb, true},
                 {(1 - kr) / cr, -kg / cr, -kb / cr, true}}};
    }

    int depth_;
    bool fullRange_;
    std::array<Row, 3> rows_;
};

/// Luma samples that a chroma sample is the average of, along one axis, from the first of those it is shared
/// by; how they weigh.
struct Taps {
    int first = 0;
    std::array<double, 3> weights{1, 0, 0};
};
constexpr Taps alone{};
constexpr Taps between{0, {0.5, 0.5, 0}};
constexpr Taps onTheFirst{-1, {0.25, 0.5, 0.25}};
constexpr Taps onTheSecond{0, {0.25, 0.5, 0.25}};

/// By chroma_sample_loc_type + 1 (ITU-T H.264 figure E-1); pictures that do not state it have type 0.
Taps tapsAcross(int subsampling, int location) {
    const bool halfway = location == 2 || location == 4 || location == 6;
    return subsampling == 1 ? alone : halfway ? between : onTheFirst;
}
Taps tapsDown(int subsampling, int location) {
    if (subsampling == 1) {
        return alone;
    }
    const bool top = location == 3 || location == 4;
    const bool bottom = location == 5 || location == 6;
    return top ? onTheFirst : bottom ? onTheSecond : between;
}

/// Writes a raster into the planes of a picture of the same size.
class RasterToPlanes {
public:
    RasterToPlanes(const PixelBuffer& raster, int matrix, DecodedPicture& picture)
        : raster_(raster),
          picture_(picture),
          conversion_(matrix, picture.color.fullRange, picture.bitDepth),
          subsampling_(subsamplingOf(picture.chroma)),
          across_(tapsAcross(subsampling_.across, picture.color.chromaLocation)),
          down_(tapsDown(subsampling_.down, picture.color.chromaLocation)) {}

    void convertLuma(int x, int y) { set(0, x, y, rgbAt(x, y)); }

    /// The chroma samples at their place in the chroma planes.
    void convertChroma(int x, int y) {
        Rgb mean;
        for (int j = 0; j < 3; ++j) {
            for (int i = 0; i < 3; ++i) {
                const double weight = across_.weights.at(static_cast<std::size_t>(i)) *
                                      down_.weights.at(static_cast<std::size_t>(j));
                if (weight > 0) {
                    const Rgb rgb = rgbAt(x * subsampling_.across + across_.first + i,
                                          y * subsampling_.down + down_.first + j);
                    mean.red += weight * rgb.red;
                    mean.green += weight * rgb.green;
                    mean.blue += weight * rgb.blue;
                }
            }
        }
        set(1, x, y, mean);
        set(2, x, y, mean);
    }

private:
    Rgb rgbAt(int x, int y) const {
        const auto column = static_cast<std::size_t>(std::clamp(x, 0, raster_.width() - 1));
        const auto row = static_cast<std::size_t>(std::clamp(y, 0, raster_.height() - 1));
        const std::uint8_t* const pixel =
            raster_.bytes() + row * raster_.bytesPerRow() + column * PixelBuffer::bytesPerPixel;
        return {pixel[2] / 255.0, pixel[1] / 255.0, pixel[0] / 255.0};
    }
    void set(std::size_t plane, int x, int y, const Rgb& rgb) {
        setSample(picture_.planes.at(plane), picture_.bitDepth, x, y, conversion_.sample(plane, rgb));
    }

    const PixelBuffer& raster_;
    DecodedPicture& picture_;
    ColorConversion conversion_;
    ChromaSubsampling subsampling_;
    Taps across_;
    Taps down_;
};

/// The pixels of a raster, along one axis, that shine through to a sample of a picture of another size.
struct Footprint {
    int begin = 0;
    int end = 0;
};

std::vector<Footprint> footprints(int samples, int pixels) {
    const int spill = samples == pixels ? 0 : 1; // the scaler looks beyond its pixel
    std::vector<Footprint> result;
    result.reserve(static_cast<std::size_t>(samples));
    for (std::int64_t i = 0; i < samples; ++i) {
        const auto begin = static_cast<int>(i * pixels / samples) - spill;
        const auto end = static_cast<int>(((i + 1) * pixels + samples - 1) / samples) + spill;
        result.push_back({std::max(begin, 0), std::min(end, pixels)});
    }
    return result;
}

/// Marks the samples of a picture of `width` by `height` that the image's coverage reaches.
std::vector<std::uint8_t> drawnSamples(const Image& image, int width, int height) {
    const Image::Coverage& coverage = *image.coverage();
    const std::vector<Footprint> columns = footprints(width, image.width());
    const std::vector<Footprint> rows = footprints(height, image.height());
    std::vector<std::uint8_t> drawn;
    drawn.reserve(columns.size() * rows.size());
    std::vector<std::uint8_t> strongest(static_cast<std::size_t>(image.width()));
    for (const Footprint& down : rows) {
        std::ranges::fill(strongest, std::uint8_t{0});
        for (int y = down.begin; y < down.end; ++y) {
            const std::uint8_t* const row = coverage.data() + static_cast<std::size_t>(y) * strongest.size();
            std::ranges::transform(strongest, std::span(row, strongest.size()), strongest.begin(),
                                   [](std::uint8_t a, std::uint8_t b) { return std::max(a, b); });
        }
        for (const Footprint& across : columns) {
            drawn.push_back(
                *std::max_element(strongest.begin() + across.begin, strongest.begin() + across.end));
        }
    }
    return drawn;
}

/// Whether any luma sample that shares the chroma sample (x, y) was drawn on.
bool isDrawn(const std::vector<std::uint8_t>& drawn, const DecodedPicture& picture, int x, int y) {
    const ChromaSubsampling shared = subsamplingOf(picture.chroma);
    for (int row = y * shared.down; row < std::min((y + 1) * shared.down, picture.height); ++row) {
        for (int column = x * shared.across; column < std::min((x + 1) * shared.across, picture.width);
             ++column) {
            if (drawn[static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                      static_cast<std::size_t>(column)] != 0) {
                return true;
            }
        }
    }
    return false;
}

/// Brings what was drawn on the raster into the planes.
void convertDrawn(const Image& image, const std::vector<std::uint8_t>& drawn, DecodedPicture& picture) {
    const PixelBuffer raster = makePixelBuffer(image, picture.width, picture.height);
    constexpr int unspecified = 2; // by the planes; the raster was read by some matrix all the same
    const int stated = picture.color.matrix == unspecified ? image.color().matrix : picture.color.matrix;
    const int matrix = matrixOrGuess(stated, picture.width, picture.height);
    RasterToPlanes converter(raster, matrix, picture);
    std::size_t sample = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x, ++sample) {
            if (drawn[sample] != 0) {
                converter.convertLuma(x, y);
            }
        }
    }
    for (int y = 0; y < picture.planes[1].height; ++y) {
        for (int x = 0; x < picture.planes[1].width; ++x) {
            if (isDrawn(drawn, picture, x, y)) {
                converter.convertChroma(x, y);
            }
        }
    }
}

DecodedPicture blankPicture(const Image& image) {
    DecodedPicture picture;
    picture.width = image.width();
    picture.height = image.height();
    picture.color = image.color();
    if (picture.color.matrix == 0) { // R'G'B' as it is, which 4:2:0 cannot hold
        picture.color.matrix = 1;
    }
    const int chromaWidth = divideRoundingUp(image.width(), 2);
    const int chromaHeight = divideRoundingUp(image.height(), 2);
    picture.planes = {makePlane(image.width(), image.height(), 8, 0),
                      makePlane(chromaWidth, chromaHeight, 8, 0), makePlane(chromaWidth, chromaHeight, 8, 0)};
    return picture;
}

/// Along one axis: which sample of a plane is at each place of a coded plane.
std::vector<int> sourcePositions(int codedLuma, int codedShared, int margin, int shared, int samples) {
    std::vector<int> positions(static_cast<std::size_t>(divideRoundingUp(codedLuma, codedShared)));
    for (int i = 0; i < static_cast<int>(positions.size()); ++i) {
        const int luma = std::max(i * codedShared - margin, 0);
        positions[static_cast<std::size_t>(i)] = std::min(luma / shared, samples - 1);
    }
    return positions;
}

int shiftedSample(int value, int fromDepth, int toDepth) {
    if (toDepth >= fromDepth) {
        return value << (toDepth - fromDepth);
    }
    const int shift = fromDepth - toDepth;
    return std::min((value + (1 << (shift - 1))) >> shift, (1 << toDepth) - 1);
}

Plane fittedPlane(const Plane& plane, int depth, int codedDepth, const std::vector<int>& columns,
                  const std::vector<int>& rows) {
    Plane coded = makePlane(static_cast<int>(columns.size()), static_cast<int>(rows.size()), codedDepth, 0);
    for (int y = 0; y < coded.height; ++y) {
        const int sourceRow = rows[static_cast<std::size_t>(y)];
        for (int x = 0; x < coded.width; ++x) {
            const int value = sampleAt(plane, depth, columns[static_cast<std::size_t>(x)], sourceRow);
            setSample(coded, codedDepth, x, y, shiftedSample(value, depth, codedDepth));
        }
    }
    return coded;
}

} // namespace

ChromaSubsampling subsamplingOf(ChromaFormat chroma) {
    switch (chroma) {
    case ChromaFormat::yuv420: return {2, 2};
    case ChromaFormat::yuv422: return {2, 1};
    default: return {1, 1};
    }
}

int sampleAt(const Plane& plane, int bitDepth, int x, int y) {
    const std::uint8_t* const row = plane.bytes.data() + static_cast<std::size_t>(y) * plane.stride;
    if (bitDepth <= 8) {
        return row[x];
    }
    std::uint16_t word = 0;
    std::memcpy(&word, row + static_cast<std::size_t>(x) * 2, sizeof word);
    return word;
}

StillPicture stillPicture(const Image& image) {
    if (image.decoded() == nullptr) {
        DecodedPicture picture = blankPicture(image);
        convertDrawn(image, std::vector<std::uint8_t>(image.raster().rgba.size() / 4, 1), picture);
        return {std::make_shared<DecodedPicture>(std::move(picture)), {}};
    }
    if (image.coverage() == nullptr) {
        return {image.sharedDecoded(), {}};
    }
    auto picture = std::make_shared<DecodedPicture>(*image.decoded());
    std::vector<std::uint8_t> drawn = drawnSamples(image, picture->width, picture->height);
    convertDrawn(image, drawn, *picture);
    return {std::move(picture), std::move(drawn)};
}

DecodedPicture fitted(const DecodedPicture& picture, const CodedPictureFormat& format) {
    DecodedPicture coded;
    coded.width = format.frame.width;
    coded.height = format.frame.height;
    coded.chroma = format.chroma;
    coded.bitDepth = format.bitDepth;
    coded.color = picture.color;
    coded.pixelAspect = picture.pixelAspect;
    const auto plane = [&](std::size_t index, ChromaSubsampling codedShared, ChromaSubsampling shared) {
        const Plane& source = picture.planes.at(index);
        return fittedPlane(source, picture.bitDepth, format.bitDepth,
                           sourcePositions(coded.width, codedShared.across, format.frame.cropLeft,
                                           shared.across, source.width),
                           sourcePositions(coded.height, codedShared.down, format.frame.cropTop, shared.down,
                                           source.height));
    };
    coded.planes[0] = plane(0, {}, {});
    const ChromaSubsampling shared = subsamplingOf(coded.chroma);
    for (int i = 1; i < planeCount(coded.chroma); ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (planeCount(picture.chroma) == 1) {
            coded.planes.at(index) = makePlane(divideRoundingUp(coded.width, shared.across),
                                               divideRoundingUp(coded.height, shared.down), coded.bitDepth,
                                               1 << (coded.bitDepth - 1));
        } else {
            coded.planes.at(index) = plane(index, shared, subsamplingOf(picture.chroma));
        }
    }
    return coded;
}

} // namespace zelvra::media
