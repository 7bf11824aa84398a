// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/ShellServices.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace zelvra::test {

/// A desktop that records the session's requests, and returns the test's answer from its panels.
struct Desktop : OpenPanel, FileViewer, Terminator, RecentDocuments, SavePanel {
    void ask(const OpenPanelRequest& request,
             std::function<void(const std::filesystem::path&)> chosen) override {
        asked = request;
        if (!answer.empty()) {
            chosen(answer);
        }
    }
    void askForName(const SavePanelRequest& request,
                    std::function<void(const std::filesystem::path&)> chosen) override {
        suggested = request.suggestion;
        if (!answer.empty()) {
            chosen(answer);
        }
    }
    void reveal(const std::filesystem::path& file) override { revealed = file; }
    void terminate() override { terminated = true; }
    void note(const std::filesystem::path& path) override { noted.push_back(path); }

    ShellServices services() { return {this, this, this, this, this}; }

    std::optional<OpenPanelRequest> asked;
    std::filesystem::path suggested; ///< to the save panel
    std::filesystem::path answer;    ///< result of either panel; empty cancels
    std::filesystem::path revealed;
    bool terminated = false;
    std::vector<std::filesystem::path> noted;
};

} // namespace zelvra::test
