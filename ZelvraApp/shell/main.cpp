#include "ZelvraApp/shell/Application.h"
#include "ZelvraCore/records/ZVError.h"

#include <QGuiApplication>

#include <cstdio>
#include <malloc.h>

int main(int argc, char** argv) {
    // A long export's tables grow by large steps; given back at once, memory stays what is used.
    constexpr int largeBlock = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, largeBlock);

    zelvra::Application::prepare();
    const QGuiApplication program(argc, argv);
    try {
        zelvra::Application application({});
        return QGuiApplication::exec();
    } catch (const zelvra::MediaError& error) {
        std::fprintf(stderr, "zelvra: %s\n", error.what());
        return 1;
    }
}
