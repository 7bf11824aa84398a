// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls

// A line of a menu: check mark or icon, text, a detail and a sign, and its shortcut or the arrow of a submenu.
T.MenuItem {
    id: item

    property string iconName
    property string detail
    property string sign
    readonly property bool chosen: item.highlighted && item.enabled
    readonly property color ink: item.chosen ? Theme.accentInk : Theme.primary
    readonly property color paleInk: item.chosen ? Theme.accentInk : Theme.tertiary
    readonly property string keys: (item.action?.shortcut ?? "").replace("Ctrl+", qsTr("Ctrl+")).replace("Shift+", qsTr("Shift+"))

    implicitWidth: Math.min(row.implicitWidth + leftPadding + rightPadding, Theme.menuItemWidest)
    implicitHeight: 27
    leftPadding: 9
    rightPadding: 9
    opacity: enabled ? 1 : 0.42
    objectName: item.action?.objectName ?? item.subMenu?.objectName ?? ""
    Accessible.role: item.checkable ? Accessible.CheckBox : Accessible.MenuItem
    Accessible.name: item.text

    contentItem: RowLayout {
        id: row

        spacing: 8

        Icon {
            visible: item.checkable || item.iconName !== ""
            name: item.checkable ? "check" : item.iconName
            opacity: item.checkable && !item.checked ? 0 : 1
            size: 16
            color: item.iconName !== "" && !item.highlighted ? Theme.secondary : item.ink
        }
        Body {
            Layout.fillWidth: true
            text: item.text
            color: item.ink
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Caption {
            Layout.leftMargin: 24
            visible: text !== ""
            text: item.detail || item.keys
            color: item.paleInk
            Accessible.ignored: true
        }
        Icon {
            visible: item.sign !== ""
            name: item.sign
            size: 14
            color: item.paleInk
        }
        Icon {
            visible: item.subMenu !== null
            name: "chevron_right"
            size: 16
            color: item.paleInk
        }
    }
    background: Rectangle {
        radius: Theme.itemRadius
        color: Theme.accentFill
        visible: item.chosen
    }
}
