// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraApp/journal/StateFolder.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/ShellServices.h"
#include "ZelvraApp/shell/DesktopServices.h"
#include "ZelvraApp/shell/Shell.h"
#include "ZelvraApp/translations/Translations.h"

#include <QLocale>
#include <QQmlApplicationEngine>

#include <filesystem>
#include <memory>

class QQuickWindow;

namespace zelvra {

/// The running program: the preferences, the one session, and the windows that show it. A QGuiApplication
/// must exist and outlive it. Main thread.
class Application {
public:
    /// What the program uses; tests pass parts of their own.
    struct Options {
        std::filesystem::path preferences = PreferenceStore::standardFile();
        /// The folder of the window's state and of the journal.
        std::filesystem::path state = stateFolder();
        /// The user's languages, most wanted first.
        QStringList languages = QLocale::system().uiLanguages();
        /// Used instead of the desktop's; the desktop's are used for null members.
        ShellServices services = {};
    };

    /// Settings of the toolkit that must be made before the QGuiApplication.
    static void prepare();

    /// Opens the main window. Throws MediaError if no player can be made.
    explicit Application(const Options& options);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    AppState& state() { return *state_; }
    QQuickWindow& mainWindow() const;

    /// Brings the main window to the front. `activationToken` is the desktop's permission to do so; empty
    /// if it gave none.
    void present(const QString& activationToken = {});

private:
    /// Ends the program for the session, after the questions of Leaving.
    struct AskFirst : Terminator {
        void terminate() override { leaving->request(); }
        Leaving* leaving = nullptr;
    };

    Translations translations_;
    FilePanels panels_{QDBusConnection::sessionBus()};
    DesktopServices desktop_;
    AskFirst askFirst_;
    WindowState windowState_;
    PreferenceStore preferences_;
    std::unique_ptr<AppState> state_;
    std::unique_ptr<Session> session_;
    std::unique_ptr<Dialogs> dialogs_;
    std::unique_ptr<Settings> settings_;
    std::unique_ptr<Leaving> leaving_;
    std::unique_ptr<MenuState> menu_;
    Shell shell_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
};

} // namespace zelvra
