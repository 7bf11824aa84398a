// SPDX-License-Identifier: GPL-3.0-or-later

// Draws the sample clip: half a minute of an invented basketball game, as H.264 and AAC at 1080p30.
//
//     zelvra-sample-clip OUTPUT.mp4        the movie (encoded by the ffmpeg command)
//     zelvra-sample-clip OUTPUT.png TIME   one frame of it

#include "tools/sample-clip/Scene.h"
#include "tools/sample-clip/Sound.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace zelvra::sample {
namespace {

constexpr int framesPerSecond = 30;
constexpr int frameCount = static_cast<int>(clipSeconds) * framesPerSecond;

struct PipeClose {
    void operator()(std::FILE* pipe) const { ::pclose(pipe); }
};

std::string quoted(const std::filesystem::path& path) {
    std::string text = "'";
    for (const char character : path.string()) {
        text += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return text + "'";
}

void writeStill(const Scene& scene, double time, const std::filesystem::path& output) {
    Scene::Pixels pixels;
    scene.draw(time, pixels);
    const Surface surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                                              CAIRO_FORMAT_RGB24, Scene::width, Scene::height,
                                                              Scene::width * 4));
    if (cairo_surface_write_to_png(surface.get(), output.c_str()) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error("cannot write " + output.string());
    }
}

void writeMovie(const Game& game, const Scene& scene, const std::filesystem::path& output) {
    const std::filesystem::path sound = output.string() + ".pcm";
    const std::vector<std::int16_t> samples = makeSound(game);
    std::ofstream(sound, std::ios::binary)
        .write(reinterpret_cast<const char*>(samples.data()),
               static_cast<std::streamsize>(samples.size() * sizeof(std::int16_t)));

    // The movie gets its name only when it is complete.
    const std::filesystem::path unfinished =
        output.parent_path() / ("unfinished-" + output.filename().string());
    const std::string command =
        "ffmpeg -v error -y -f rawvideo -pix_fmt bgr0 -s 1920x1080 -r 30 -i - -f s16le -ar 48000 -ac 2 -i " +
        quoted(sound) +
        " -vf scale=out_color_matrix=bt709:out_range=tv,format=yuv420p,"
        "setparams=colorspace=bt709:color_primaries=bt709:color_trc=bt709:range=tv"
        " -c:v libx264 -preset veryfast -crf 21 -g 60 -bf 3 -c:a aac -b:a 160k -movflags +faststart " +
        quoted(unfinished);
    std::unique_ptr<std::FILE, PipeClose> encoder(::popen(command.c_str(), "w"));
    if (!encoder) {
        throw std::runtime_error("cannot start ffmpeg");
    }
    // Each thread draws into a picture of its own and reuses it.
    std::vector<Scene::Pixels> pictures(std::max(1U, std::thread::hardware_concurrency()));
    const int atOnce = static_cast<int>(pictures.size());
    for (int first = 0; first < frameCount; first += atOnce) {
        std::vector<std::future<void>> drawn;
        for (int i = first; i < std::min(first + atOnce, frameCount); ++i) {
            Scene::Pixels& picture = pictures[static_cast<std::size_t>(i - first)];
            drawn.push_back(std::async(std::launch::async, [&scene, &picture, i] {
                scene.draw(static_cast<double>(i) / framesPerSecond, picture);
            }));
        }
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            drawn[i].get();
            const Scene::Pixels& picture = pictures[i];
            if (std::fwrite(picture.data(), sizeof(picture[0]), picture.size(), encoder.get()) !=
                picture.size()) {
                throw std::runtime_error("ffmpeg stopped reading");
            }
        }
    }
    const int status = ::pclose(encoder.release());
    std::filesystem::remove(sound);
    if (status != 0) {
        throw std::runtime_error("ffmpeg could not encode the clip");
    }
    std::filesystem::rename(unfinished, output);
}

} // namespace
} // namespace zelvra::sample

int main(int argc, char** argv) {
    using namespace zelvra::sample;
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: zelvra-sample-clip OUTPUT.mp4 | OUTPUT.png TIME\n";
        return 2;
    }
    try {
        const Game game;
        const Scene scene(game);
        if (argc == 3) {
            writeStill(scene, std::strtod(argv[2], nullptr), argv[1]);
        } else {
            writeMovie(game, scene, std::filesystem::absolute(argv[1]));
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
