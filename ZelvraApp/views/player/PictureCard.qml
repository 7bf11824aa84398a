// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// The surface of controls over the movie's picture.
Rectangle {
    radius: Theme.cardRadius
    color: Theme.pictureCard
    border.color: Theme.pictureHover
}
