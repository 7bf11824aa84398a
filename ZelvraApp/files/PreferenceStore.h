// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceKey.h"

#include <QFileSystemWatcher>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>

#include <filesystem>
#include <optional>
#include <type_traits>

namespace zelvra {

/// The user's preferences: a JSON object in one file, read when the store is made and whenever any program
/// changes the file. It keeps values and their types; it knows no defaults and no meanings.
///
/// A write is atomic, and replaces only the values it names: values that another process has written in the
/// meantime stay. A file that is no JSON object counts as empty, and is renamed, never overwritten. A file
/// that cannot be read or written, or is no regular file, stays as it is; changes then last as long as the
/// store.
///
/// Main thread only.
class PreferenceStore : public QObject {
    Q_OBJECT

public:
    /// The file that the environment names in ZELVRA_PREFERENCES, else "zelvra/preferences.json" in the
    /// user's folder of configurations.
    static std::filesystem::path standardFile();

    explicit PreferenceStore(const std::filesystem::path& file = standardFile(), QObject* parent = nullptr);

    const std::filesystem::path& file() const { return file_; }

    /// The value of the key; nullopt if it is absent or of another type.
    template <class Value>
    std::optional<Value> read(const PreferenceKey<Value>& key) const {
        return valueAs<Value>(values_.value(QLatin1String(key.name)));
    }

    /// Several values that are written in one step.
    class Changes {
    public:
        template <class Value>
        Changes& set(const PreferenceKey<Value>& key, const Value& value) {
            values_.insert(QLatin1String(key.name), value);
            return *this;
        }

    private:
        friend class PreferenceStore;
        QJsonObject values_;
    };
    void write(const Changes& changes);

    template <class Value>
    void write(const PreferenceKey<Value>& key, const Value& value) {
        write(Changes{}.set(key, value));
    }

Q_SIGNALS:
    /// Some value has changed, by a write here or by another program.
    void changed();

private:
    template <class Value>
    static std::optional<Value> valueAs(const QJsonValue& value);

    void replaceValues(QJsonObject values);
    /// The file or its folder has changed.
    void reload();
    void watch();

    std::filesystem::path file_;
    QJsonObject values_;
    QFileSystemWatcher watcher_;
};

template <class Value>
std::optional<Value> PreferenceStore::valueAs(const QJsonValue& value) {
    if constexpr (std::is_same_v<Value, QString>) {
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    } else if constexpr (std::is_same_v<Value, double>) {
        return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
    } else if constexpr (std::is_same_v<Value, bool>) {
        return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
    } else {
        static_assert(std::is_same_v<Value, QJsonArray>, "no such values are kept");
        return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
    }
}

} // namespace zelvra
