// SPDX-License-Identifier: GPL-3.0-or-later

// Grabs one frame of a movie, encodes it as freeze clips and prints how long each took, in seconds:
//     freeze-clip MOVIE SECONDS-INTO-IT CLIP.mov LENGTH-IN-SECONDS TIMES
// The grab is not timed, because the peer gets a decoded frame.

#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/FreezeClipEncoder.h"
#include "ZelvraCore/SourceProbe.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    using namespace zelvra;
    if (argc != 6) {
        std::cerr << "usage: freeze-clip MOVIE SECONDS-INTO-IT CLIP.mov LENGTH-IN-SECONDS TIMES\n";
        return 2;
    }
    try {
        const Asset asset(argv[1]);
        const SourceInfo info = loadSourceInfo(asset);
        const Image frame = extractFrame(asset, CMTime::fromSeconds(std::stod(argv[2]), 90000));
        const CMTime length = CMTime::fromSeconds(std::stod(argv[4]), 600);
        for (int i = std::stoi(argv[5]); i > 0; --i) {
            const auto start = std::chrono::steady_clock::now();
            encodeFreezeClip(frame, argv[3], info.frameDuration, length, VideoCodec::h264);
            const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
            std::cout << elapsed.count() << '\n';
        }
        return 0;
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
}
