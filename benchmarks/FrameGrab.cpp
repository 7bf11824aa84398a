// SPDX-License-Identifier: GPL-3.0-or-later

// Grabs one frame of a movie, as a script would:
//     frame-grab MOVIE SECONDS-INTO-IT
// It writes no picture, so that only the grab is timed and not the compression of a PNG.

#include "ZelvraCore/FrameGrab.h"

#include <exception>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    using namespace zelvra;
    if (argc != 3) {
        std::cerr << "usage: frame-grab MOVIE SECONDS-INTO-IT\n";
        return 2;
    }
    try {
        const Image frame = extractFrame(argv[1], CMTime::fromSeconds(std::stod(argv[2]), 90000));
        std::cout << frame.width() << 'x' << frame.height() << '\n';
        return 0;
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
}
