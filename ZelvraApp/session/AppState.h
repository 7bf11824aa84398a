// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/HighlightDefaults.h"
#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/MarkedClip.h"
#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraApp/player/Player.h"
#include "ZelvraApp/session/HighlightDraft.h"
#include "ZelvraApp/session/OutputLocation.h"
#include "ZelvraApp/session/PlayerController.h"
#include "ZelvraApp/session/RecentItem.h"
#include "ZelvraApp/session/ShellServices.h"
#include "ZelvraApp/session/UndoSnapshot.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <qcoro/qcorotask.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace zelvra {

/// How far a new style reaches.
enum class DefaultsScope { justThisClip, forThisSession, always };

/// The session: everything the user works on, the player that plays it, and the operations that change it.
/// One object from the program's start to its end. Windows show it and call it, and keep no state of their
/// own.
///
/// Each value has a signal, which is emitted when the value changes in any detail, and only then. An
/// operation whose conditions are not met does nothing. One that fails leaves one line in `errorMessage` and
/// changes nothing else.
///
/// Main thread only. What returns a task suspends while the engine works; meanwhile other operations may run,
/// and a result that comes late is applied as it is. A task may be dropped: it runs on. One whose session is
/// destroyed ends without touching it.
class AppState : public QObject {
    Q_OBJECT

public:
    /// Starts with nothing open, the saved styles and recents. `preferences` outlives the session. Throws
    /// MediaError if no player can be made.
    explicit AppState(PreferenceStore& preferences, const ShellServices& services = {},
                      QObject* parent = nullptr);
    ~AppState() override;

    Player& player() { return *player_; }
    PlayerController& playerController() { return playerController_; }
    PreferenceStore& preferences() { return preferences_; }

    /// The open clip; nullopt if none is open. Its signal is videoURLChanged.
    const std::optional<std::filesystem::path>& videoFile() const { return videoFile_; }
    const std::optional<SourceInfo>& sourceInfo() const { return sourceInfo_; }
    /// As last observed.
    const CMTime& currentTime() const { return currentTime_; }
    /// One line, shown until it is dismissed; empty if there is none.
    const QString& errorMessage() const { return errorMessage_; }
    void setErrorMessage(const QString& line);
    /// There is something to show on the timeline strip: a highlight, a trim or a marked clip.
    bool timelineHasContent() const { return !highlights_.empty() || trimRange_ || !markedClips_.empty(); }

    /// Takes a position of the playhead. The player reports it 30 times a second while it plays, and after
    /// every move while it is paused. May begin a freeze preview.
    void observePlaybackTime(const CMTime& time);
    /// Moves the playhead exactly there.
    void seekSoon(const CMTime& time);

    // ---- Opening, the queue of a folder, recents, closing (Opening.cpp)

    /// A folder is being listed, or a clip read.
    bool isOpening() const { return openingsUnderway_ > 0; }

    /// One-shot requests to show an open panel. Who shows it takes the request back first.
    bool triggerOpen() const { return triggerOpen_; }
    void setTriggerOpen(bool on);
    bool triggerOpenFolder() const { return triggerOpenFolder_; }
    void setTriggerOpenFolder(bool on);

    void presentOpenVideoPanel();
    void presentOpenFolderPanel();
    /// Opens the first of what the desktop asks for, a clip or a folder.
    void handleOpenedURLs(const QList<QUrl>& urls);
    /// Opens a clip. If it is not in the queue, the queue is emptied.
    QCoro::Task<> load(std::filesystem::path clip);
    /// Queues a folder's clips in natural order and opens the first.
    QCoro::Task<> loadFolder(std::filesystem::path folder);

    const std::vector<std::filesystem::path>& clipQueue() const { return clipQueue_; }
    int queueIndex() const { return queueIndex_; }
    bool canGoNext() const { return queueIndex_ + 1 < static_cast<int>(clipQueue_.size()); }
    /// "1 of 3"; empty without a queue.
    QString queueLabel() const;
    QCoro::Task<> nextClip();
    QCoro::Task<> previousClip();

    /// Newest first.
    const std::vector<RecentItem>& recents() const { return recents_; }
    /// Opens it as the clip or the folder that it is now; forgets it if it no longer exists.
    void openRecent(const RecentItem& item);
    void clearRecents();

    bool showCloseConfirmation() const { return showCloseConfirmation_; }
    void setShowCloseConfirmation(bool on);
    /// There is work that was never exported.
    bool closingLosesWork() const;
    /// Closes at once, or asks first if work would be lost.
    void requestCloseVideo();
    /// Closes the clip. What was not exported is lost.
    void closeVideo();

    // ---- Highlights (Authoring.cpp)

    /// In ascending order of time.
    const std::vector<Highlight>& highlights() const { return highlights_; }
    const std::optional<HighlightDraft>& draft() const { return draft_; }
    /// The editor is about to open; its frame is being read.
    bool isGrabbingFrame() const { return grabsUnderway_ > 0; }
    /// Stores what the editor has made of the draft so far. nullopt closes the editor and changes nothing
    /// else.
    void setDraft(std::optional<HighlightDraft> draft);
    /// Pauses and opens the editor on a new circle over the frame on screen.
    QCoro::Task<> addHighlightAtCurrentTime();
    /// Pauses, goes to the highlight's moment and opens the editor on it.
    QCoro::Task<> editHighlight(Highlight highlight);
    void commitDraft();
    void deleteHighlight(const Highlight& highlight);

    // ---- Style defaults (Defaults.cpp)

    const HighlightDefaults& sessionDefaults() const { return sessionDefaults_; }
    const HighlightDefaults& clipDefaults() const { return clipDefaults_; }
    bool showDefaultsScopePrompt() const { return showDefaultsScopePrompt_; }
    void setShowDefaultsScopePrompt(bool on);
    /// Answers the prompt. Does nothing if no style waits for an answer.
    void applyPendingDefaults(DefaultsScope scope);
    /// Applies saved styles that another part of the program or another program has changed, to the session
    /// and to the open clip.
    void savedDefaultsMayHaveChanged();

    // ---- Undo (Undo.cpp)

    bool canUndo() const { return !undoStack_.empty(); }
    bool canRedo() const { return !redoStack_.empty(); }
    /// Records the annotations as they are, as one step. Called before a change; dragging an edge calls it
    /// once, when the drag begins.
    void pushUndo();
    void undo();
    void redo();

    // ---- Freeze preview (Preview.cpp)

    const std::optional<Highlight>& previewHighlight() const { return previewHighlight_; }
    bool previewEnabled() const;
    /// Ends a preview; playback stays paused.
    void cancelHighlightPreview();

    // ---- Trim (Trim.cpp)

    /// The part that is played and exported; nullopt means the whole source.
    const std::optional<CMTimeRange>& trimRange() const { return trimRange_; }
    /// Opens the trim editor of the player's view.
    void beginTrim();
    /// Sets or clears the trim, as one step. Highlights outside the trim are removed. Clearing ends the
    /// editing of a marked clip without saving it.
    void setTrim(std::optional<CMTimeRange> range);
    /// Move one edge while it is dragged, in seconds of the source. No step of undo; highlights stay.
    void dragTrimStart(double toSeconds);
    void dragTrimEnd(double toSeconds);

    // ---- Marked clips (MarkedClips.cpp)

    /// In the order in which they were made; they are exported and numbered so.
    const std::vector<MarkedClip>& markedClips() const { return markedClips_; }
    const std::optional<Uuid>& editingClipID() const { return editingClipID_; }
    /// The clip whose end the next out-point moves.
    const std::optional<Uuid>& activeRoughClipID() const { return activeRoughClipID_; }
    /// Makes a clip of the default length at the playhead; with a trim, moves the trim's start there.
    void markInPoint();
    /// Moves the newest clip's end to the playhead; with a trim, the trim's end.
    void markOutPoint();
    /// Stores the trim and its highlights as a clip, or back into the one that is edited.
    void markCurrentClip();
    /// Loads a clip's range and highlights for editing.
    void editMarkedClip(MarkedClip clip);
    void unmark(const Uuid& id);

    // ---- Export (Export.cpp)

    bool canExport() const;
    bool isExporting() const { return isExporting_; }
    /// From 0 to 1 over all files.
    double exportProgress() const { return exportProgress_; }
    /// Its signal is lastExportURLChanged.
    const std::optional<std::filesystem::path>& lastExportFile() const { return lastExportFile_; }
    /// Writes each marked clip as a movie of its own; without any, the trimmed clip with its highlights.
    QCoro::Task<> exportMovies();

    bool showPostExportDialog() const { return showPostExportDialog_; }
    void setShowPostExportDialog(bool on);
    /// Answers of the dialog after an export.
    void closeAndOpenVideo();
    void closeAndOpenFolder();
    void quit();
    /// Shows the last exported file in the file viewer.
    void revealLastExport();
    /// The file itself stays.
    void forgetLastExport();

Q_SIGNALS:
    void videoURLChanged();
    void sourceInfoChanged();
    void currentTimeChanged();
    void errorMessageChanged();
    void isOpeningChanged();
    void triggerOpenChanged();
    void triggerOpenFolderChanged();
    void recentsChanged();
    void clipQueueChanged();
    void queueIndexChanged();
    void canGoNextChanged();
    void queueLabelChanged();
    void showCloseConfirmationChanged();
    void highlightsChanged();
    void draftChanged();
    void isGrabbingFrameChanged();
    void timelineHasContentChanged();
    void sessionDefaultsChanged();
    void clipDefaultsChanged();
    void showDefaultsScopePromptChanged();
    void canUndoChanged();
    void canRedoChanged();
    void previewHighlightChanged();
    void trimRangeChanged();
    void markedClipsChanged();
    void editingClipIDChanged();
    void activeRoughClipIDChanged();
    void canExportChanged();
    void isExportingChanged();
    void exportProgressChanged();
    void lastExportURLChanged();
    void showPostExportDialogChanged();

private:
    using Changed = void (AppState::*)();

    /// Sets a published field. No other function does.
    template <class Value>
    void publish(Value& field, std::type_identity_t<Value> value, Changed changed) {
        if (identical(field, value)) {
            return;
        }
        field = std::move(value);
        Q_EMIT(this->*changed)();
        publishDerived();
    }
    /// Notifies of changes of the values that are computed from others.
    void publishDerived();
    /// Counts one piece of work for as long as it lives.
    class Underway;

    // Opening
    QCoro::Task<> loadClip(std::filesystem::path clip);
    QCoro::Task<> openWhatIsThere(std::filesystem::path path);
    QCoro::Task<> openOrForget(RecentItem item);
    void noteRecent(const std::filesystem::path& path, bool isFolder);
    void forgetAnnotations();

    // Authoring
    QCoro::Task<std::optional<Image>> grabFrame(std::shared_ptr<const Asset> asset, CMTime time);

    // Undo
    UndoSnapshot currentSnapshot() const;
    void restore(UndoSnapshot snapshot);
    void clearUndoHistory();

    // Preview
    void previewCrossing(double previousSeconds, const CMTime& time);
    void startHighlightPreview(const Highlight& highlight);
    void endHighlightPreview();

    // Trim and marked clips
    void finishTrim();
    void applyTrimToPlayer();
    void moveTrim(const CMTime& start, const CMTime& end);
    void dropRoughClip(const CMTime& start);

    // Export
    struct ExportJob;
    QCoro::Task<> exportSingleClip();
    QCoro::Task<> exportMarkedClips();
    bool prepareOutputs(const std::vector<std::filesystem::path>& outputs, bool ofClips);
    static QString exportFailure(const QString& cause);
    static QString clipFailure(std::size_t index, const QString& cause);
    void beginExporting();
    void finishExporting(std::filesystem::path lastFile);
    void failExporting(const QString& line);
    QCoro::Task<std::filesystem::path> render(ExportJob job);

    PreferenceStore& preferences_;
    ShellServices services_;
    std::unique_ptr<Player> player_;
    PlayerController playerController_;

    std::optional<std::filesystem::path> videoFile_;
    std::shared_ptr<const Asset> asset_; ///< the open clip's; its index is read once for all that use it
    std::optional<SourceInfo> sourceInfo_;
    CMTime currentTime_ = CMTime::zero();
    CMTime lastObservedTime_ = CMTime::zero();
    QString errorMessage_;

    int openingsUnderway_ = 0;
    int grabsUnderway_ = 0;
    bool triggerOpen_ = false;
    bool triggerOpenFolder_ = false;
    std::vector<RecentItem> recents_;
    std::vector<std::filesystem::path> clipQueue_;
    int queueIndex_ = 0;
    bool showCloseConfirmation_ = false;

    std::vector<Highlight> highlights_;
    std::optional<HighlightDraft> draft_;

    HighlightDefaults sessionDefaults_;
    HighlightDefaults clipDefaults_;
    HighlightDefaults lastSeenSavedDefaults_;
    std::optional<HighlightDefaults> pendingDefaults_; ///< waits for the user's choice of scope
    bool showDefaultsScopePrompt_ = false;

    std::vector<UndoSnapshot> undoStack_; ///< oldest first, at most 50
    std::vector<UndoSnapshot> redoStack_;

    std::optional<Highlight> previewHighlight_;
    QTimer previewTimer_;

    std::optional<CMTimeRange> trimRange_;
    std::vector<MarkedClip> markedClips_;
    std::optional<Uuid> editingClipID_;
    std::optional<Uuid> activeRoughClipID_;

    bool isExporting_ = false;
    double exportProgress_ = 0;
    std::optional<std::filesystem::path> lastExportFile_;
    bool showPostExportDialog_ = false;
    std::stop_source exportStop_; ///< an export does not outlive the session

    /// As last published.
    struct Derived {
        bool canGoNext = false;
        QString queueLabel;
        bool isOpening = false;
        bool isGrabbingFrame = false;
        bool timelineHasContent = false;
        bool canUndo = false;
        bool canRedo = false;
        bool canExport = false;
    } derived_;
};

} // namespace zelvra
