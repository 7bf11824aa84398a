// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QObject>
#include <QUrl>
#include <qqml.h>

namespace zelvra {

/// AppState to views: what it publishes can be read as `session.state.…`.
struct AppStateForViews {
    Q_GADGET
    QML_FOREIGN(zelvra::AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_UNCREATABLE("The program has one session.")
};

/// The session as views see it: its times as numbers and texts, and its operations as commands that take
/// what a view has (a row's id, a URL, seconds). It decides nothing and keeps nothing.
///
/// Times are seconds of the source. Ids are the texts of the session's rows; one that is unknown, or no
/// longer there, does nothing. What takes time runs on by itself.
///
/// Main thread. The AppState outlives it.
class Session : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one session.")
    Q_PROPERTY(zelvra::AppState* state READ state CONSTANT)
    Q_PROPERTY(bool hasVideo READ hasVideo NOTIFY videoChanged)
    /// The open clip's name; empty where none is open.
    Q_PROPERTY(QString fileName READ fileName NOTIFY videoChanged)
    /// Of the source; 0 where it is not known.
    Q_PROPERTY(double duration READ duration NOTIFY sourceInfoChanged)
    /// As shown, upright, in square pixels; empty where it is not known.
    Q_PROPERTY(QSizeF displaySize READ displaySize NOTIFY sourceInfoChanged)
    /// Of the playhead, and the same as text.
    Q_PROPERTY(double currentSeconds READ currentSeconds NOTIFY currentTimeChanged)
    Q_PROPERTY(QString timecode READ timecode NOTIFY currentTimeChanged)
    Q_PROPERTY(bool hasTrim READ hasTrim NOTIFY trimChanged)
    /// 0 without a trim.
    Q_PROPERTY(double trimStart READ trimStart NOTIFY trimChanged)
    Q_PROPERTY(double trimEnd READ trimEnd NOTIFY trimChanged)
    /// Id of the marked clip that is edited; empty where none is.
    Q_PROPERTY(QString editingClipID READ editingClipID NOTIFY editingClipIDChanged)
    Q_PROPERTY(bool isEditingClip READ isEditingClip NOTIFY editingClipIDChanged)
    /// Playback has stopped on a highlight, whose figure shows for as long as it will freeze.
    Q_PROPERTY(bool isPreviewing READ isPreviewing NOTIFY isPreviewingChanged)
    Q_PROPERTY(int highlightCount READ highlightCount NOTIFY highlightsChanged)
    Q_PROPERTY(int markedClipCount READ markedClipCount NOTIFY markedClipsChanged)
    /// Of clips in the folder that is worked through; 0 where none is.
    Q_PROPERTY(int queueLength READ queueLength NOTIFY queueChanged)
    Q_PROPERTY(bool hasDraft READ hasDraft NOTIFY hasDraftChanged)

public:
    explicit Session(AppState& state, QObject* parent = nullptr);

    AppState* state() const { return &state_; }
    bool hasVideo() const { return state_.videoFile().has_value(); }
    QString fileName() const;
    double duration() const;
    QSizeF displaySize() const;
    double currentSeconds() const { return state_.currentTime().seconds(); }
    QString timecode() const;
    bool hasTrim() const { return state_.trimRange().has_value(); }
    double trimStart() const;
    double trimEnd() const;
    QString editingClipID() const;
    bool isEditingClip() const { return state_.editingClipID().has_value(); }
    bool isPreviewing() const { return state_.previewHighlight().has_value(); }
    int highlightCount() const { return static_cast<int>(state_.highlights().size()); }
    int markedClipCount() const { return static_cast<int>(state_.markedClips().size()); }
    int queueLength() const { return static_cast<int>(state_.clipQueue().size()); }
    bool hasDraft() const { return state_.draft().has_value(); }

    /// The text of a moment as the whole program shows it.
    Q_INVOKABLE static QString timecodeOf(double seconds);
    /// "00:01.00 – 00:05.00"
    Q_INVOKABLE static QString rangeText(double start, double end);

    // Opening and closing
    Q_INVOKABLE void requestOpenVideo() { state_.setTriggerOpen(true); }
    Q_INVOKABLE void requestOpenFolder() { state_.setTriggerOpenFolder(true); }
    Q_INVOKABLE void presentOpenVideoPanel() { state_.presentOpenVideoPanel(); }
    Q_INVOKABLE void presentOpenFolderPanel() { state_.presentOpenFolderPanel(); }
    /// A clip or a folder, whichever is found there. What is no local file is left alone.
    Q_INVOKABLE void open(const QUrl& url);
    Q_INVOKABLE void openRecent(const QString& path);
    Q_INVOKABLE void clearRecents() { state_.clearRecents(); }
    Q_INVOKABLE void requestCloseVideo() { state_.requestCloseVideo(); }
    Q_INVOKABLE void closeVideo() { state_.closeVideo(); }
    Q_INVOKABLE void previousClip();
    Q_INVOKABLE void nextClip();

    // Playback
    /// Stops a freeze preview and goes exactly there.
    Q_INVOKABLE void seek(double seconds);

    // Annotations
    Q_INVOKABLE void addHighlightAtCurrentTime();
    Q_INVOKABLE void editHighlight(const QString& id);
    Q_INVOKABLE void deleteHighlight(const QString& id);
    Q_INVOKABLE void cancelDraft() { state_.setDraft(std::nullopt); }
    Q_INVOKABLE void commitDraft() { state_.commitDraft(); }
    Q_INVOKABLE void useStyleAlways() { state_.applyPendingDefaults(DefaultsScope::always); }
    Q_INVOKABLE void useStyleForThisSession() { state_.applyPendingDefaults(DefaultsScope::forThisSession); }
    Q_INVOKABLE void useStyleForThisClip() { state_.applyPendingDefaults(DefaultsScope::justThisClip); }
    Q_INVOKABLE void undo() { state_.undo(); }
    Q_INVOKABLE void redo() { state_.redo(); }

    // Trim and marked clips
    Q_INVOKABLE void beginTrim() { state_.beginTrim(); }
    Q_INVOKABLE void clearTrim() { state_.setTrim(std::nullopt); }
    Q_INVOKABLE void markInPoint() { state_.markInPoint(); }
    Q_INVOKABLE void markOutPoint() { state_.markOutPoint(); }
    Q_INVOKABLE void markCurrentClip() { state_.markCurrentClip(); }
    Q_INVOKABLE void editMarkedClip(const QString& id);
    Q_INVOKABLE void unmark(const QString& id);

    // Export
    Q_INVOKABLE void exportMovies();
    Q_INVOKABLE void revealLastExport() { state_.revealLastExport(); }
    Q_INVOKABLE void forgetLastExport() { state_.forgetLastExport(); }
    Q_INVOKABLE void closeAndOpenVideo() { state_.closeAndOpenVideo(); }
    Q_INVOKABLE void closeAndOpenFolder() { state_.closeAndOpenFolder(); }
    Q_INVOKABLE void quit() { state_.quit(); }

Q_SIGNALS:
    void videoChanged();
    void sourceInfoChanged();
    void currentTimeChanged();
    void trimChanged();
    void editingClipIDChanged();
    void isPreviewingChanged();
    void highlightsChanged();
    void markedClipsChanged();
    void queueChanged();
    void hasDraftChanged();

private:
    AppState& state_;
    bool hadDraft_ = false;
};

} // namespace zelvra
