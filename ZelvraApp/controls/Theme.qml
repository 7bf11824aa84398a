// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick
import Zelvra.Controls

// All colours, fonts, radii and durations of the windows. Sizes are logical pixels, durations milliseconds.
QtObject {
    readonly property bool dark: Appearance.dark

    // Surfaces, from back to front
    readonly property color window: dark ? "#1c1c1e" : "#f4f4f6"
    readonly property color bar: dark ? "#28282b" : "#fbfbfc"
    readonly property color card: dark ? "#2e2e32" : "#ffffff"
    readonly property color field: dark ? "#17171a" : "#ffffff"
    readonly property color separator: dark ? "#3d3d42" : "#d9d9de"
    readonly property color shade: dark ? "#99000000" : "#59000000"
    readonly property color faintShadow: "#10000000"
    readonly property color dropShadow: dark ? "#52000000" : "#1f000000"

    // Text and icons; on window, bar and card each has a contrast of at least 4.5
    readonly property color primary: dark ? "#f2f2f4" : "#1b1b1e"
    readonly property color secondary: dark ? "#b4b4bb" : "#56565e"
    readonly property color tertiary: dark ? "#96969f" : "#69696f"
    readonly property color quaternary: dark ? "#414147" : "#e2e2e7"

    // The accent: as a surface with its ink, as an icon or text on the surfaces, and over pictures
    readonly property color accentFill: "#0a6cdb"
    readonly property color accentFillHover: Qt.lighter(accentFill, 1.08)
    readonly property color accentFillPressed: Qt.darker(accentFill, 1.2)
    readonly property color accentInk: "#ffffff"
    readonly property color accent: dark ? "#58a9ff" : "#0a63c9"
    readonly property color vivid: "#0a84ff"
    readonly property color destructive: dark ? "#ff6b62" : "#c4221b"
    readonly property color success: dark ? "#3ecf63" : "#1b7f37"

    // Over pictures, in light and dark alike
    readonly property color picture: "#000000"
    readonly property color pictureInk: "#ffffff"
    readonly property color pictureInkBright: over(pictureInk, 0.85)
    readonly property color pictureInkDim: "#c8ffffff"
    readonly property color pictureInkFaint: over(pictureInk, 0.45)
    readonly property color pictureAccent: "#8ec6ff"
    readonly property color pictureCard: "#d9202024"
    readonly property color pictureBadge: over(picture, 0.45)
    readonly property color pictureTrack: "#59ffffff"
    readonly property color stripTrack: over(pictureInk, 0.14)
    readonly property color stripHandleBorder: over(pictureInk, 0.8)
    readonly property color pictureHover: "#2effffff"
    readonly property color trimHandle: "#ffcc00"
    readonly property color trimHandleInk: "#5a4600"

    // Controls
    readonly property color control: dark ? "#3c3c41" : "#ffffff"
    readonly property color controlHover: dark ? "#47474d" : "#f6f6f8"
    readonly property color controlPressed: dark ? "#55555c" : "#e6e6ea"
    readonly property color controlBorder: dark ? "#515158" : "#c9c9d0"
    readonly property color track: tertiary
    readonly property color knob: dark ? "#d8d8dc" : "#ffffff"
    readonly property color knobPressed: dark ? "#ffffff" : "#e6e6ea"
    readonly property color knobBorder: dark ? "#101012" : "#6f6f78"
    // The colour picker's knobs have a light ring with a dark outline, as they lie on any colour.
    readonly property color pickerKnobRing: "#ffffff"
    readonly property color pickerKnobOutline: "#80000000"
    readonly property color hover: dark ? "#14ffffff" : "#12000000"
    readonly property color focusRing: dark ? "#7cbcff" : "#3d8ae6"

    // Colours that stand out on a pitch
    readonly property var highlightColors: ["#0A84FF", "#32D2FF", "#30D158", "#FFD60A", "#FF9F0A", "#FF453A", "#FF375F", "#BF5AF2", "#FFFFFF", "#000000"]

    readonly property string family: "Inter"
    readonly property string monospaceFamily: "monospace"
    readonly property string iconFamily: "Material Icons"
    readonly property int largeTitle: 26
    readonly property int middleTitle: 19
    readonly property int title: 16
    readonly property int headline: 14
    readonly property int body: 13
    readonly property int caption: 12
    readonly property int smallCaption: 11
    readonly property int tinyCaption: 8

    readonly property int edgeRadius: 2
    readonly property int tagRadius: 4
    readonly property int itemRadius: 5
    readonly property int radius: 6
    readonly property int cardRadius: 10
    readonly property int landingRadius: 18
    readonly property int controlHeight: 26
    readonly property int largeControlHeight: 32
    readonly property int smallControlHeight: 22

    readonly property int menuItemWidest: 420

    readonly property int motion: Appearance.reducedMotion ? 0 : 200
    readonly property int quickMotion: Appearance.reducedMotion ? 0 : 120
    readonly property int tipDelay: 600
    readonly property int spinnerDelay: 150
    readonly property int spinnerTurn: 900
    readonly property int idleDelay: 2500

    function menuWidth(menu: var): int {
        let widest = 180;
        for (let k = 0; k < menu.count; ++k)
            widest = Math.max(widest, menu.itemAt(k).implicitWidth);
        return widest;
    }

    function over(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
}
