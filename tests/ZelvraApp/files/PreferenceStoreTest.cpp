// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/PreferenceStore.h"

#include "tests/support/Files.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <sys/stat.h>

namespace zelvra {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Optional;

class Preferences : public testing::Test {
protected:
    static bool comesTrue(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }

    void writeByHand(const std::string& text) const { std::ofstream(file_) << text; }
    std::string readByHand(const std::string& name = "preferences.json") const {
        const test::Bytes bytes = test::readBytes(folder_ / name);
        return {bytes.begin(), bytes.end()};
    }

    test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "preferences.json";
};

TEST_F(Preferences, KeepValuesAndTheirTypes) {
    const QJsonArray recents{QJsonObject{{"path", "/a \"quoted\" 🏀"}, {"isFolder", true}}};
    PreferenceStore store(file_);
    store.write(PreferenceStore::Changes{}
                    .set(preferences::defaultColorHex, QStringLiteral("#0A84FF"))
                    .set(preferences::defaultDurationSec, 3.0)
                    .set(preferences::previewEnabled, false)
                    .set(preferences::recents, recents));

    const PreferenceStore again(file_);
    EXPECT_THAT(again.read(preferences::defaultColorHex), Optional(QStringLiteral("#0A84FF")));
    EXPECT_THAT(again.read(preferences::defaultDurationSec), Optional(3.0));
    EXPECT_THAT(again.read(preferences::previewEnabled), Optional(false));
    EXPECT_THAT(again.read(preferences::recents), Optional(recents));
    EXPECT_EQ(again.read(preferences::outputMode), std::nullopt);
}

TEST_F(Preferences, ReadValuesOfAnotherTypeAsAbsent) {
    writeByHand(
        R"({"zvPreview.enabled": 1, "zvDefault.durationSec": "3", "zvOutput.mode": 5, "zvRecents": {}})");
    const PreferenceStore store(file_);
    EXPECT_EQ(store.read(preferences::previewEnabled), std::nullopt);
    EXPECT_EQ(store.read(preferences::defaultDurationSec), std::nullopt);
    EXPECT_EQ(store.read(preferences::outputMode), std::nullopt);
    EXPECT_EQ(store.read(preferences::recents), std::nullopt);
}

TEST_F(Preferences, NotifyOfChangesAndOnlyOfChanges) {
    PreferenceStore store(file_);
    const QSignalSpy changed(&store, &PreferenceStore::changed);
    store.write(preferences::clipDefaultLengthSec, 20.0);
    store.write(preferences::clipDefaultLengthSec, 20.0);
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(Preferences, NotifyOfEachChangeByAnotherProgram) {
    PreferenceStore store(file_);
    PreferenceStore other(file_);
    const auto length = [&] { return store.read(preferences::clipDefaultLengthSec).value_or(0); };
    for (const double seconds : {10.0, 11.0, 12.0}) {
        other.write(preferences::clipDefaultLengthSec, seconds);
        EXPECT_TRUE(comesTrue([&] { return length() == seconds; })) << seconds;
    }
    writeByHand(R"({"zvClip.defaultLengthSec": 13})");
    EXPECT_TRUE(comesTrue([&] { return length() == 13; })) << "edited in place";
    std::filesystem::remove(file_);
    EXPECT_TRUE(comesTrue([&] { return length() == 0; })) << "deleted";
}

TEST_F(Preferences, KeepWhatAnotherProgramHasWrittenMeanwhile) {
    PreferenceStore one(file_);
    PreferenceStore two(file_);
    two.write(preferences::outputIncludeAudio, false);
    one.write(preferences::previewEnabled, false);
    EXPECT_THAT(one.read(preferences::outputIncludeAudio), Optional(false));
    EXPECT_THAT(PreferenceStore(file_).read(preferences::outputIncludeAudio), Optional(false));
}

TEST_F(Preferences, RenameADamagedFile) {
    for (const std::string damaged : {"{\"zvPreview.enabled\": fal", "[1, 2]"}) {
        writeByHand(damaged);
        PreferenceStore store(file_);
        EXPECT_EQ(store.read(preferences::previewEnabled), std::nullopt);
        EXPECT_EQ(readByHand(), damaged) << "nothing has been written yet";
        store.write(preferences::previewEnabled, false);
        EXPECT_THAT(PreferenceStore(file_).read(preferences::previewEnabled), Optional(false));
    }
    EXPECT_EQ(readByHand("preferences.json.damaged-1"), "{\"zvPreview.enabled\": fal");
    EXPECT_EQ(readByHand("preferences.json.damaged-2"), "[1, 2]");
}

TEST_F(Preferences, KeepTheirValuesWhileAFileIsHalfWritten) {
    PreferenceStore store(file_);
    store.write(preferences::clipDefaultLengthSec, 20.0);
    const QSignalSpy changed(&store, &PreferenceStore::changed);
    writeByHand(R"({"zvClip.defaultLengthSec": )");
    QTest::qWait(100);
    EXPECT_THAT(store.read(preferences::clipDefaultLengthSec), Optional(20.0));
    EXPECT_EQ(changed.count(), 0);
    writeByHand(R"({"zvClip.defaultLengthSec": 25})");
    EXPECT_TRUE(comesTrue([&] { return changed.count() == 1; }));
    EXPECT_THAT(folder_.names(), testing::Not(Contains(testing::HasSubstr("damaged"))));
}

TEST_F(Preferences, LeaveAFileAloneThatCannotBeRead) {
    const std::vector<std::function<void()>> kinds{
        [this] { std::filesystem::create_directory(file_); },
        [this] { ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0); },
        [this] { std::filesystem::create_symlink("/dev/zero", file_); },
        [this] {
            writeByHand("{}");
            std::filesystem::resize_file(file_, std::uintmax_t{1} << 40);
        },
    };
    for (const auto& makeFile : kinds) {
        makeFile();
        const auto type = std::filesystem::symlink_status(file_).type();
        PreferenceStore store(file_);
        store.write(preferences::previewEnabled, false);
        EXPECT_THAT(store.read(preferences::previewEnabled), Optional(false)) << "as long as the store lives";
        EXPECT_THAT(folder_.names(), ElementsAre("preferences.json"));
        EXPECT_EQ(std::filesystem::symlink_status(file_).type(), type);
        std::filesystem::remove(file_);
    }
}

TEST_F(Preferences, FollowALinkToTheFile) {
    std::filesystem::create_symlink(folder_ / "elsewhere.json", file_);
    writeByHand("{}");
    PreferenceStore(file_).write(preferences::previewEnabled, false);
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_THAT(PreferenceStore(folder_ / "elsewhere.json").read(preferences::previewEnabled),
                Optional(false));
}

TEST_F(Preferences, AreInTheFileThatTheEnvironmentNames) {
    qputenv("ZELVRA_PREFERENCES", file_.c_str());
    EXPECT_EQ(PreferenceStore::standardFile(), file_);
    qunsetenv("ZELVRA_PREFERENCES");
    EXPECT_EQ(PreferenceStore::standardFile().filename(), "preferences.json");
    PreferenceStore(folder_ / "new" / "deep" / "file.json").write(preferences::previewEnabled, true);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "new" / "deep" / "file.json"));
}

} // namespace
} // namespace zelvra
