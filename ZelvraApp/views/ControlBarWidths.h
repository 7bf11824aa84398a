// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMetaType>
#include <QObject>
#include <qqml.h>

namespace zelvra {

/// The widths of what the row of the control bar holds, and what has room in it. Logical pixels; a plain
/// value.
///
/// When the row is too narrow, it leaves out texts in this order: the time on "Add Highlight", the text on
/// Export, on Mark Clip, the file's name, the text on "Add Highlight", the range in the trim's badge. Only
/// then the gaps become smaller.
struct ControlBarWidths {
    Q_GADGET
    QML_VALUE_TYPE(controlBarWidths)
    Q_PROPERTY(double available MEMBER available)
    Q_PROPERTY(double opening MEMBER opening)
    Q_PROPERTY(double queueButton MEMBER queueButton)
    Q_PROPERTY(double queueText MEMBER queueText)
    Q_PROPERTY(double fileName MEMBER fileName)
    Q_PROPERTY(double time MEMBER time)
    Q_PROPERTY(double trimBadge MEMBER trimBadge)
    Q_PROPERTY(double trimRange MEMBER trimRange)
    Q_PROPERTY(double markingKey MEMBER markingKey)
    Q_PROPERTY(double addButton MEMBER addButton)
    Q_PROPERTY(double addTime MEMBER addTime)
    Q_PROPERTY(double markButton MEMBER markButton)
    Q_PROPERTY(double exportButton MEMBER exportButton)
    Q_PROPERTY(double signButton MEMBER signButton)

public:
    double available = 0;    ///< of the whole bar
    double opening = 0;      ///< the buttons that open and close
    double queueButton = 0;  ///< one of the queue's two arrows; 0 if there is no queue
    double queueText = 0;    ///< the place in the queue
    double fileName = 0;     ///< the whole name
    double time = 0;         ///< the playhead's time
    double trimBadge = 0;    ///< with its range; 0 if nothing is trimmed
    double trimRange = 0;    ///< the part of the badge that is its range
    double markingKey = 0;   ///< I or O
    double addButton = 0;    ///< with its text, but without the time
    double addTime = 0;      ///< the time in that text
    double markButton = 0;   ///< with its text
    double exportButton = 0; ///< with its text
    double signButton = 0;   ///< any of these three buttons without its text

    /// What the row would take with all texts.
    double full() const;
    /// How many of the texts are left out.
    int leftOut() const;

    bool hasAddTime() const { return leftOut() < 1; }
    bool hasExportText() const { return leftOut() < 2; }
    bool hasMarkText() const { return leftOut() < 3; }
    bool hasAddText() const { return leftOut() < 5; }
    bool hasTrimRange() const { return leftOut() < 6; }
    bool isTight() const { return full() > available && !hasTrimRange(); }

    bool operator==(const ControlBarWidths&) const = default;

private:
    double queue() const;
    double titleRow() const;
    double title() const;
};

} // namespace zelvra
