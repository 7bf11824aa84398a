// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraApp/journal/StateFolder.h"
#include "ZelvraApp/player/Player.h"
#include "ZelvraApp/session/ClipQueue.h"
#include "ZelvraApp/session/Exporter.h"
#include "ZelvraApp/session/HighlightDraft.h"
#include "ZelvraApp/session/OpenClip.h"
#include "ZelvraApp/session/PlayerController.h"
#include "ZelvraApp/session/RecentItem.h"
#include "ZelvraApp/session/ShellServices.h"
#include "ZelvraApp/session/WorkKeeper.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <qcoro/qcorotask.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
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
/// Main thread only. What returns a task suspends while the engine works; meanwhile other operations may run.
/// What was asked for last wins: the result of an older request is dropped, and so is one for a clip that is
/// no longer open. A task may be dropped: it runs on. One whose session is destroyed ends without touching
/// it.
class AppState : public QObject {
    Q_OBJECT

public:
    /// Starts with nothing open, the saved styles and recents. Unfinished work is kept in the folder `state`.
    /// `preferences` outlives the session. Throws MediaError if no player can be made.
    explicit AppState(PreferenceStore& preferences, const ShellServices& services = {},
                      const std::filesystem::path& state = stateFolder(), QObject* parent = nullptr);
    ~AppState() override;

    Player& player() { return *player_; }
    PlayerController& playerController() { return playerController_; }
    PreferenceStore& preferences() { return preferences_; }

    /// The open clip; nullopt if none is open. Its signal is videoURLChanged.
    std::optional<std::filesystem::path> videoFile() const;
    std::optional<SourceInfo> sourceInfo() const;
    /// As last observed.
    const CMTime& currentTime() const { return currentTime_; }
    /// One line, shown until it is dismissed; empty if there is none.
    const QString& errorMessage() const { return errorMessage_; }
    void setErrorMessage(const QString& line);
    /// There is something to show on the timeline strip: a highlight, a trim or a marked clip.
    bool timelineHasContent() const { return annotations().hasContent(); }

    // ---- The playhead (Playback.cpp). All but `play` end a freeze preview. See Player.

    /// Takes a position of the playhead. The player reports it 30 times a second while it plays, and after
    /// every move while it is paused. May begin a freeze preview.
    void observePlaybackTime(const CMTime& time);
    void play();
    void pause();
    /// Moves exactly there.
    void seek(const CMTime& time);
    /// Moves near there, quickly.
    void scrub(const CMTime& time);
    /// Pauses and moves by that many frames.
    void step(int frames);

    /// The highlight on which playback has stopped for as long as it will freeze.
    const std::optional<Highlight>& previewHighlight() const { return previewHighlight_; }
    bool previewEnabled() const;
    /// How long a highlight is previewed: as long as its freeze, but at least 0.1 s.
    static std::chrono::milliseconds previewLength(const Highlight& highlight);
    /// Ends a preview; playback stays paused.
    void cancelHighlightPreview();

    // ---- Opening, the queue of a folder, recents, closing (Opening.cpp)

    /// A folder is being listed, or a clip read.
    bool isOpening() const { return !opening_.expired(); }

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

    const std::vector<std::filesystem::path>& clipQueue() const { return queue_.clips(); }
    int queueIndex() const { return queue_.index(); }
    bool canGoNext() const { return queue_.next().has_value(); }
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
    /// There is work that no export has written as it is now.
    bool closingLosesWork() const { return clip_ && clip_->work.hasUnexportedWork(); }
    /// Closes at once, or asks first if there is unexported work.
    void requestCloseVideo();
    /// Closes the clip. Its work stays in the journal.
    void closeVideo();
    /// The answers to the question: forget the clip's work, here and in the journal, and close it or go on to
    /// the clip that the question was asked for. Or stay.
    void closeAndDiscard();
    void keepClipOpen();

    // ---- Remembered work (Keeping.cpp)

    /// Work of an earlier time on the open clip that can be restored.
    struct LeftWork {
        int highlights = 0; ///< all of them, those in marked clips included
        int markedClips = 0;
    };
    /// nullopt if there is none, and once it was taken or refused.
    std::optional<LeftWork> leftWork() const;
    /// The journal has answered for the open clip; before that nothing is offered.
    bool leftWorkIsKnown() const { return clip_ && clip_->journalHasAnswered; }
    /// Takes it, as one step, in addition to what was done since.
    void restoreLeftWork();
    void dismissLeftWork();

    /// What is remembered of the movie at that path; null if nothing. Its signal is rememberedWorkChanged.
    const WorkKeeper::Summary* rememberedWork(const std::filesystem::path& movie) const;
    /// The clips that were open when earlier runs were killed or crashed, and were not opened since; the
    /// latest first. The same signal.
    const std::vector<std::filesystem::path>& interruptedClips() const { return keeper_.interruptedClips(); }
    /// If not, or if the state folder cannot be written, another clip replaces one with unexported work only
    /// after a question.
    bool remembersWork() const;
    void forgetRememberedWork();

    /// Lets the user choose a file and writes the annotations there.
    void saveAnnotations();
    /// Lets the user choose such a file; its annotations replace those of the open clip, as one step. What
    /// lies beyond the clip's end is left out, with a line that says so.
    void openAnnotations();

    // ---- Highlights (Authoring.cpp)

    /// In ascending order of time.
    const std::vector<Highlight>& highlights() const { return annotations().highlights; }
    const std::optional<HighlightDraft>& draft() const { return draft_; }
    /// The editor is about to open; its frame is being read.
    bool isGrabbingFrame() const { return !grabbing_.expired(); }
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
    const HighlightDefaults& clipDefaults() const { return clip_ ? clip_->work.defaults : sessionDefaults_; }
    bool showDefaultsScopePrompt() const { return showDefaultsScopePrompt_; }
    void setShowDefaultsScopePrompt(bool on);
    /// Answers the prompt. Does nothing if no style waits for an answer.
    void applyPendingDefaults(DefaultsScope scope);
    /// Applies saved styles that another part of the program or another program has changed, to the session
    /// and to the open clip.
    void savedDefaultsMayHaveChanged();

    // ---- Annotations and their history (Editing.cpp). See Annotations for the rules.

    const Annotations& annotations() const { return clip_ ? clip_->work.annotations : noAnnotations_; }
    bool canUndo() const { return clip_ && clip_->history.canUndo(); }
    bool canRedo() const { return clip_ && clip_->history.canRedo(); }
    /// Records the annotations as they are, as one step. Dragging an edge calls it once, when the drag
    /// begins; all other operations record their step themselves.
    void pushUndo();
    void undo();
    void redo();

    const std::optional<CMTimeRange>& trimRange() const { return annotations().trimRange; }
    /// Opens the trim editor of the player's view.
    void beginTrim();
    void setTrim(std::optional<CMTimeRange> range);
    /// Move one edge while it is dragged, in seconds of the source. No step of undo.
    void dragTrimStart(double toSeconds);
    void dragTrimEnd(double toSeconds);

    const std::vector<MarkedClip>& markedClips() const { return annotations().markedClips; }
    const std::optional<Uuid>& editingClipID() const { return annotations().editingClipID; }
    const std::optional<Uuid>& activeRoughClipID() const { return annotations().activeRoughClipID; }
    /// Mark at the playhead.
    void markInPoint();
    void markOutPoint();
    /// Stores the trim as a marked clip, or back into the one that is edited, and goes to its end.
    void markCurrentClip();
    /// Takes the marked clip of that id for editing, and goes to its start.
    void editMarkedClip(const MarkedClip& clip);
    void unmark(const Uuid& id);

    // ---- Export (Exporting.cpp)

    bool canExport() const;
    bool isExporting() const { return exporter_.isRunning(); }
    /// From 0 to 1 over all files.
    double exportProgress() const { return exporter_.progress(); }
    /// The last movie that was written, also if its clip is no longer open. Its signal is
    /// lastExportURLChanged.
    const std::optional<std::filesystem::path>& lastExportFile() const { return lastExportFile_; }
    /// Writes each marked clip as a movie of its own; without any, the trimmed clip with its highlights. Goes
    /// on if another clip is opened. The dialog after it is shown only if the clip is still open.
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
    void leftWorkChanged();
    void rememberedWorkChanged();
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

    /// A request whose answer takes time. It is under way while anyone holds it.
    class Request;

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

    /// Makes a request the newest of its kind; the others no longer count.
    std::shared_ptr<const Request> begin(std::weak_ptr<const Request>& newest);
    static bool isNewest(const Request& request, const std::weak_ptr<const Request>& newest);

    // Opening
    QCoro::Task<> openClip(std::filesystem::path clip, const Request& request);
    QCoro::Task<> openFolder(std::filesystem::path folder, const Request& request);
    QCoro::Task<bool> loadClip(std::filesystem::path clip, const Request& request);
    QCoro::Task<> loadAsked(std::filesystem::path clip);
    QCoro::Task<> loadFolderAsked(std::filesystem::path folder);
    QCoro::Task<> goTo(std::optional<int> place);
    QCoro::Task<> openWhatIsThere(std::filesystem::path path, bool isRecent);
    void noteRecent(const std::filesystem::path& path, bool isFolder);
    void setRecents(std::vector<RecentItem> recents);
    void setQueue(ClipQueue queue);
    bool mayReplaceClip(std::function<void()> then);
    void apply(std::shared_ptr<OpenClip> clip);

    // Authoring
    QCoro::Task<> openEditor(std::optional<Highlight> edited);
    QCoro::Task<std::optional<Image>> grabFrame(std::shared_ptr<const Asset> asset, CMTime time);

    // Annotations
    void edit(Annotations after);
    void adopt(Annotations after);
    void notifyOfChanges(const Annotations& before);
    void applyTrimToPlayer();

    // Remembered work
    QCoro::Task<> lookForLeftWork(std::shared_ptr<OpenClip> clip);
    void keepWork(const std::shared_ptr<OpenClip>& clip);
    QCoro::Task<> writeAnnotationsTo(std::filesystem::path file);
    QCoro::Task<> takeAnnotationsFrom(std::filesystem::path file);

    // Style defaults
    void setDefaults(const HighlightDefaults& ofSession, const HighlightDefaults& ofClip);

    // Preview
    void previewCrossing(double previousSeconds, const CMTime& time);
    void startHighlightPreview(const Highlight& highlight);
    void endHighlightPreview();

    // Export
    QCoro::Task<> exportClip(std::shared_ptr<OpenClip> clip);

    PreferenceStore& preferences_;
    ShellServices services_;
    std::unique_ptr<Player> player_;
    PlayerController playerController_;

    std::shared_ptr<OpenClip> clip_; ///< null if none is open
    const Annotations noAnnotations_;
    CMTime currentTime_ = CMTime::zero();
    CMTime lastObservedTime_ = CMTime::zero();
    QString errorMessage_;

    std::weak_ptr<const Request> opening_;
    std::weak_ptr<const Request> grabbing_;
    bool triggerOpen_ = false;
    bool triggerOpenFolder_ = false;
    std::vector<RecentItem> recents_;
    ClipQueue queue_;
    bool showCloseConfirmation_ = false;
    std::function<void()> afterDiscarding_; ///< what the close question was asked for; none: just closing

    std::optional<HighlightDraft> draft_;

    HighlightDefaults sessionDefaults_;
    HighlightDefaults lastSeenSavedDefaults_;
    std::optional<HighlightDefaults> pendingDefaults_; ///< waits for the user's choice of scope
    bool showDefaultsScopePrompt_ = false;

    std::optional<Highlight> previewHighlight_;
    QTimer previewTimer_;

    WorkKeeper keeper_;
    Exporter exporter_;
    std::optional<std::filesystem::path> lastExportFile_;
    bool showPostExportDialog_ = false;

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
