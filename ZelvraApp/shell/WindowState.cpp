// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/WindowState.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace zelvra {

namespace {

constexpr int leastSize = 1;
constexpr int greatestSize = 16384; // no screen is larger; a damaged file may contain any number

template <class Number>
Number sizeIn(const QJsonObject& state, QLatin1String name, Number standard) {
    const double value = state.value(name).toDouble(static_cast<double>(standard));
    return static_cast<Number>(std::clamp<double>(value, leastSize, greatestSize));
}

} // namespace

WindowState::WindowState(std::filesystem::path file, QObject* parent)
    : QObject(parent), file_(std::move(file)) {
    QFile stored(textOf(file_));
    if (!stored.open(QIODevice::ReadOnly)) {
        return;
    }
    const QJsonObject state = QJsonDocument::fromJson(stored.readAll()).object();
    width_ = sizeIn(state, QLatin1String("width"), width_);
    height_ = sizeIn(state, QLatin1String("height"), height_);
    maximized_ = state.value(QLatin1String("maximized")).toBool(maximized_);
    sidebarWidth_ = sizeIn(state, QLatin1String("sidebarWidth"), sidebarWidth_);
}

WindowState::~WindowState() {
    const QString fileName = textOf(file_);
    QDir().mkpath(QFileInfo(fileName).path());
    QSaveFile stored(fileName);
    if (stored.open(QIODevice::WriteOnly)) {
        stored.write(QJsonDocument(QJsonObject{{QStringLiteral("width"), width_},
                                               {QStringLiteral("height"), height_},
                                               {QStringLiteral("maximized"), maximized_},
                                               {QStringLiteral("sidebarWidth"), sidebarWidth_}})
                         .toJson());
        stored.commit();
    }
}

} // namespace zelvra
