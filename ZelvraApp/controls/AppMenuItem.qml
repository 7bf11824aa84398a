// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls

// A line of a menu: check mark or sign, text, keys or the arrow of a submenu.
T.MenuItem {
    id: item

    property string iconName
    readonly property color ink: item.highlighted && item.enabled ? "#ffffff" : Theme.primary
    readonly property string keys: item.action?.shortcut ?? ""

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
            visible: item.keys !== ""
            text: item.keys
            color: item.highlighted && item.enabled ? "#ffffff" : Theme.tertiary
            Accessible.ignored: true
        }
        Icon {
            visible: item.subMenu !== null
            name: "chevron_right"
            size: 16
            color: item.highlighted && item.enabled ? "#ffffff" : Theme.tertiary
        }
    }
    background: Rectangle {
        radius: 5
        color: Theme.accentFill
        visible: item.highlighted && item.enabled
    }
}
