// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Shell

// A window that is created when it is first opened, and then kept.
Loader {
    id: loader

    default property alias windowComponent: loader.sourceComponent

    active: false

    function present() {
        active = true;
        item.present();
    }
}
