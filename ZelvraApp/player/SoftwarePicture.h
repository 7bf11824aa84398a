// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/PlayerPicture.h"

#include <QImage>
#include <memory>

namespace zelvra {

/// The player's pictures drawn into memory by a thread of its own: for windows without a graphics processor,
/// for tests, and for any view that can show a QImage.
class SoftwarePicture : public PlayerPicture {
    Q_OBJECT
public:
    /// `cores` must be initialised and outlive this object. Throws MediaError.
    explicit SoftwarePicture(const PictureCores& cores, QObject* parent = nullptr);
    ~SoftwarePicture() override;

    void setNaturalSize(QSize size) override;
    void setGreatestSize(QSize size) override;
    void showFilm() override;
    void showStills() override;

    /// The newest picture (Format_RGB32); null if there is none. Copies share their pixels, which do not
    /// change. Keep none for longer than it is shown, so that its memory can be used again. Any thread.
    QImage image() const;
    /// Whether a newer one is being drawn. Any thread.
    bool isDrawing() const;

private:
    class Worker;
    std::unique_ptr<Worker> worker_;
};

} // namespace zelvra
