// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace zelvra {

/// A failure of the engine's own operations. `description()` is one line for the user.
class ZVError : public std::exception {
public:
    enum class Case {
        contextCreationFailed,
        writerFailed,
        exportFailed,
        fileNotFound,
        invalidTimestamp,
        noVideoTrack,
        frameExtractionFailed,
    };

    static ZVError contextCreationFailed(std::string step) {
        return {Case::contextCreationFailed, std::move(step)};
    }
    static ZVError writerFailed(std::optional<std::string> underlyingDescription = {}) {
        return {Case::writerFailed, std::move(underlyingDescription)};
    }
    static ZVError exportFailed(std::optional<std::string> underlyingDescription = {}) {
        return {Case::exportFailed, std::move(underlyingDescription)};
    }
    static ZVError fileNotFound(std::string path) { return {Case::fileNotFound, std::move(path)}; }
    static ZVError invalidTimestamp(std::string text) { return {Case::invalidTimestamp, std::move(text)}; }
    static ZVError noVideoTrack() { return {Case::noVideoTrack, std::nullopt}; }
    static ZVError frameExtractionFailed() { return {Case::frameExtractionFailed, std::nullopt}; }

    Case kind() const { return kind_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

private:
    ZVError(Case kind, std::optional<std::string> payload);

    Case kind_;
    std::string description_;
};

} // namespace zelvra
