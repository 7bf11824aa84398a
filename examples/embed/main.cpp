// SPDX-License-Identifier: GPL-3.0-or-later

// embed MOVIE OUTPUT: freezes a movie at its middle for two seconds, with a circle over the picture.

#include <ZelvraCore/Render.h>
#include <ZelvraCore/SourceProbe.h>
#include <ZelvraCore/Version.h>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: embed MOVIE OUTPUT (engine %s)\n", ZELVRA_VERSION);
        return 2;
    }
    try {
        const zelvra::Asset movie(argv[1]);
        const zelvra::SourceInfo info = zelvra::loadSourceInfo(movie);

        zelvra::HighlightShape circle;
        circle.kind = zelvra::HighlightShapeKind::circle;
        circle.p1 = {0.5, 0.5}; // the centre, as a share of the picture's width and height
        circle.p2 = {0.6, 0.5}; // a point on the circle
        circle.strokeColor = {.red = 1};
        circle.strokeWidthRatio = 0.01; // of the picture's height
        zelvra::Highlight highlight;
        highlight.timestamp = zelvra::CMTime::fromSeconds(info.duration.seconds() / 2, 600);
        highlight.duration = zelvra::CMTime(2, 1);
        highlight.shape = circle;

        zelvra::RenderOptions options;
        options.progress = [](double fraction) { std::fprintf(stderr, "\r%3.0f %%", fraction * 100); };
        zelvra::renderHighlights(movie, {&highlight, 1}, argv[2], options);
        std::fputc('\n', stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
