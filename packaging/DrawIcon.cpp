// SPDX-License-Identifier: GPL-3.0-or-later

// zelvra-draw-icon IN.svg SIZE OUT.png: draws the icon as a square picture. Runs during the build.

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv) {
    const int size = argc == 4 ? QByteArray(argv[2]).toInt() : 0;
    if (size <= 0) {
        std::fputs("usage: zelvra-draw-icon IN.svg SIZE OUT.png\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    const QString output = QString::fromLocal8Bit(argv[3]);
    QDir().mkpath(QFileInfo(output).path());
    return drawing.isValid() && picture.save(output) ? 0 : 1;
}
