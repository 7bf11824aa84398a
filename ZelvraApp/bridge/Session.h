// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/SessionModels.h"
#include "ZelvraApp/session/AppState.h"

#include <QObject>
#include <QUrl>
#include <qqml.h>

#include <filesystem>

namespace zelvra {

/// The session as QML sees it: its times as numbers and texts, its lists as rows, and its operations as
/// commands that take what a view has (a row's id, a URL, seconds). It decides nothing, and keeps nothing but
/// the rows.
///
/// Times are seconds of the source. Ids are the texts of the session's rows; one that is unknown, or no
/// longer exists, does nothing. Commands that take time return at once and run on.
///
/// Make it before anything else that observes the AppState: then rows and lists are never seen apart. Main
/// thread. The AppState outlives it.
class Session : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one session.")
    // The open clip
    Q_PROPERTY(bool hasVideo READ hasVideo NOTIFY videoChanged)
    /// The open clip's name; empty if none is open.
    Q_PROPERTY(QString fileName READ fileName NOTIFY videoChanged)
    /// Of the source; 0 if it is not known.
    Q_PROPERTY(double duration READ duration NOTIFY sourceInfoChanged)
    /// As shown, upright, in square pixels; empty if it is not known.
    Q_PROPERTY(QSizeF displaySize READ displaySize NOTIFY sourceInfoChanged)
    /// Of the playhead, and the same as text.
    Q_PROPERTY(double currentSeconds READ currentSeconds NOTIFY currentTimeChanged)
    Q_PROPERTY(QString timecode READ timecode NOTIFY currentTimeChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    // Opening
    Q_PROPERTY(bool isOpening READ isOpening NOTIFY isOpeningChanged)
    Q_PROPERTY(QAbstractItemModel* recentRows READ recentRows CONSTANT)
    /// Number of clips in the folder that is worked through; 0 if there is none.
    Q_PROPERTY(int queueLength READ queueLength NOTIFY queueChanged)
    Q_PROPERTY(int queueIndex READ queueIndex NOTIFY queueIndexChanged)
    Q_PROPERTY(QString queueLabel READ queueLabel NOTIFY queueLabelChanged)
    Q_PROPERTY(bool canGoNext READ canGoNext NOTIFY canGoNextChanged)
    Q_PROPERTY(QAbstractItemModel* queueRows READ queueRows CONSTANT)
    // Remembered work
    /// Work of an earlier time on the open clip is offered to be restored.
    Q_PROPERTY(bool hasLeftWork READ hasLeftWork NOTIFY leftWorkChanged)
    Q_PROPERTY(int leftHighlightCount READ leftHighlightCount NOTIFY leftWorkChanged)
    Q_PROPERTY(int leftMarkedClipCount READ leftMarkedClipCount NOTIFY leftWorkChanged)
    /// Name of the clip with remembered work that was open when the program was last killed or has crashed;
    /// empty if there is none.
    Q_PROPERTY(QString interruptedClip READ interruptedClip NOTIFY rememberedWorkChanged)
    // Annotations
    Q_PROPERTY(QAbstractItemModel* highlightRows READ highlightRows CONSTANT)
    Q_PROPERTY(int highlightCount READ highlightCount NOTIFY highlightsChanged)
    Q_PROPERTY(bool hasDraft READ hasDraft NOTIFY hasDraftChanged)
    Q_PROPERTY(bool isGrabbingFrame READ isGrabbingFrame NOTIFY isGrabbingFrameChanged)
    Q_PROPERTY(bool timelineHasContent READ timelineHasContent NOTIFY timelineHasContentChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged)
    /// Playback has stopped on this highlight, whose shape shows for as long as it will freeze.
    Q_PROPERTY(std::optional<zelvra::Highlight> previewHighlight READ previewHighlight NOTIFY
                   previewHighlightChanged)
    Q_PROPERTY(bool isPreviewing READ isPreviewing NOTIFY previewHighlightChanged)
    // Trim and marked clips
    Q_PROPERTY(bool hasTrim READ hasTrim NOTIFY trimChanged)
    /// 0 without a trim.
    Q_PROPERTY(double trimStart READ trimStart NOTIFY trimChanged)
    Q_PROPERTY(double trimEnd READ trimEnd NOTIFY trimChanged)
    Q_PROPERTY(QAbstractItemModel* markedClipRows READ markedClipRows CONSTANT)
    Q_PROPERTY(int markedClipCount READ markedClipCount NOTIFY markedClipsChanged)
    /// Id of the marked clip that is edited; empty if none is.
    Q_PROPERTY(QString editingClipID READ editingClipID NOTIFY editingClipIDChanged)
    Q_PROPERTY(bool isEditingClip READ isEditingClip NOTIFY editingClipIDChanged)
    // Export
    Q_PROPERTY(bool canExport READ canExport NOTIFY canExportChanged)
    Q_PROPERTY(bool isExporting READ isExporting NOTIFY isExportingChanged)
    /// From 0 to 1 over all files.
    Q_PROPERTY(double exportProgress READ exportProgress NOTIFY exportProgressChanged)
    /// Empty if nothing was exported.
    Q_PROPERTY(QUrl lastExportURL READ lastExportURL NOTIFY lastExportURLChanged)

public:
    explicit Session(AppState& state, QObject* parent = nullptr);

    /// For models in C++; QML uses the properties and commands here.
    AppState* state() const { return &state_; }
    /// Stops a freeze preview and goes exactly there.
    void seek(double seconds);

    bool hasVideo() const { return state_.videoFile().has_value(); }
    QString fileName() const;
    double duration() const;
    QSizeF displaySize() const;
    double currentSeconds() const { return state_.currentTime().seconds(); }
    QString timecode() const;
    const QString& errorMessage() const { return state_.errorMessage(); }
    bool isOpening() const { return state_.isOpening(); }
    ClipModel* recentRows() { return &recentRows_; }
    ClipModel* queueRows() { return &queueRows_; }
    int queueIndex() const { return state_.queueIndex(); }
    QString queueLabel() const { return state_.queueLabel(); }
    bool canGoNext() const { return state_.canGoNext(); }
    bool hasLeftWork() const { return state_.leftWork().has_value(); }
    int leftHighlightCount() const { return state_.leftWork().value_or(AppState::LeftWork{}).highlights; }
    int leftMarkedClipCount() const { return state_.leftWork().value_or(AppState::LeftWork{}).markedClips; }
    QString interruptedClip() const;
    HighlightModel* highlightRows() { return &highlightRows_; }
    bool isGrabbingFrame() const { return state_.isGrabbingFrame(); }
    bool timelineHasContent() const { return state_.timelineHasContent(); }
    bool canUndo() const { return state_.canUndo(); }
    const std::optional<Highlight>& previewHighlight() const { return state_.previewHighlight(); }
    MarkedClipModel* markedClipRows() { return &markedClipRows_; }
    bool canExport() const { return state_.canExport(); }
    bool isExporting() const { return state_.isExporting(); }
    double exportProgress() const { return state_.exportProgress(); }
    QUrl lastExportURL() const;
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
    /// Opens a clip or a folder. Ignores what is no local file.
    Q_INVOKABLE void open(const QUrl& url);
    Q_INVOKABLE void openRecent(const QString& path);
    Q_INVOKABLE void clearRecents() { state_.clearRecents(); }
    Q_INVOKABLE void requestCloseVideo() { state_.requestCloseVideo(); }
    Q_INVOKABLE void previousClip();
    Q_INVOKABLE void nextClip();
    /// Opens the clip at that place of the queue, counted from 0.
    Q_INVOKABLE void openQueued(int place);
    /// The answers to the close question.
    Q_INVOKABLE void closeAndDiscard() { state_.closeAndDiscard(); }
    Q_INVOKABLE void keepClipOpen() { state_.keepClipOpen(); }

    // Remembered work
    Q_INVOKABLE void restoreLeftWork() { state_.restoreLeftWork(); }
    Q_INVOKABLE void dismissLeftWork() { state_.dismissLeftWork(); }
    Q_INVOKABLE void forgetRememberedWork() { state_.forgetRememberedWork(); }
    Q_INVOKABLE void saveAnnotations() { state_.saveAnnotations(); }
    Q_INVOKABLE void openAnnotations() { state_.openAnnotations(); }

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
    void errorMessageChanged();
    void isOpeningChanged();
    void queueChanged();
    void queueIndexChanged();
    void queueLabelChanged();
    void canGoNextChanged();
    void leftWorkChanged();
    void rememberedWorkChanged();
    void highlightsChanged();
    void hasDraftChanged();
    void isGrabbingFrameChanged();
    void timelineHasContentChanged();
    void canUndoChanged();
    void previewHighlightChanged();
    void trimChanged();
    void markedClipsChanged();
    void editingClipIDChanged();
    void canExportChanged();
    void isExportingChanged();
    void exportProgressChanged();
    void lastExportURLChanged();

private:
    void keepRows();
    ClipRow clipRow(const std::filesystem::path& path, bool isFolder) const;
    void updateClipRows();
    void passOnChanges();
    void answerOpenRequests();

    AppState& state_;
    ClipModel recentRows_;
    ClipModel queueRows_;
    HighlightModel highlightRows_;
    MarkedClipModel markedClipRows_;
    bool hadDraft_ = false;
};

} // namespace zelvra
