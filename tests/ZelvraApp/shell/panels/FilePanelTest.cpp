// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/shell/ShellFixture.h"

namespace zelvra::test {
namespace {

/// The program on a desktop without a file chooser of its own.
class FilePanel : public ShellFixture {
protected:
    FilePanel() {
        std::filesystem::create_directories(folder_ / "Movies" / "season");
        clip("Movies/a.MOV");
        writeBytes(folder_ / "Movies" / "notes.txt", {'x'});
        qputenv("HOME", folder_.path().c_str());
        qputenv("XDG_CONFIG_HOME", folder_.path().c_str());
        const std::string folders = "XDG_VIDEOS_DIR=\"$HOME/Movies\"\n";
        writeBytes(folder_ / "user-dirs.dirs", Bytes(folders.begin(), folders.end()));
        application_.reset();
        application_ = std::make_unique<Application>(Application::Options{
            .preferences = folder_ / "preferences.json", .state = folder_ / "state", .services = {}});
        window().requestActivate();
        EXPECT_TRUE(isFront("Zelvra"));
    }
};

TEST_F(FilePanel, ListsMoviesAndOpensTheChosenOne) {
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(textOf("panelMessage"), "Choose a video clip to annotate.");
    EXPECT_EQ(textOf("panelChoose"), "Open");
    item("file:a.MOV");
    EXPECT_TRUE(isShown("file:season"));
    EXPECT_FALSE(isShown("file:notes.txt"));
    EXPECT_FALSE(item("panelChoose").isEnabled());
    key(Qt::Key_I); // no command now
    click("file:a.MOV");
    click("panelChoose");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "Movies" / "a.MOV"; }));
    EXPECT_FALSE(isShown("panelMessage"));
}

TEST_F(FilePanel, WalksThroughFoldersByKeys) {
    key(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    item("file:season");
    EXPECT_FALSE(isShown("file:a.MOV"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(textOf("panelEmpty"), "No folders in here");
    EXPECT_TRUE(isShown("way:season"));
    key(Qt::Key_Backspace);
    EXPECT_TRUE(comesTrue([&] { return !isShown("way:season") && isShown("file:season"); }));
    click("panelChoose");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() && state().queueLabel() == "1 of 1"; }));
}

TEST_F(FilePanel, NamesAFileOfAnnotationsThatIsOpenedAgain) {
    open(folder_ / "Movies" / "a.MOV");
    addHighlight(0.5);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(textOf("panelChoose"), "Save");
    EXPECT_EQ(textOf("panelName"), "a_annotations.json");
    EXPECT_TRUE(isShown("way:Movies")) << "beside the clip";
    wait(50);      // the panel takes the keys once it is laid out
    type("final"); // replaces the name, not the extension
    key(Qt::Key_Return);
    const auto file = folder_ / "Movies" / "final.json";
    ASSERT_TRUE(comesTrue([&] { return std::filesystem::exists(file) && !isShown("panelName"); }));
    const Bytes written = readBytes(file);

    addHighlight(1);
    key(Qt::Key_S, Qt::ControlModifier);
    click("file:final.json");
    EXPECT_EQ(textOf("panelName"), "final.json");
    click("panelChoose");
    EXPECT_EQ(textOf("questionTitle"), "Replace “final.json”?");
    click("answer:Cancel");
    EXPECT_TRUE(comesTrue([&] { return !isShown("questionTitle"); }));
    EXPECT_TRUE(isShown("panelName")) << "another name can be given";
    EXPECT_EQ(readBytes(file), written);
    click("panelCancel");

    key(Qt::Key_I, Qt::ControlModifier);
    click("file:final.json");
    EXPECT_FALSE(isShown("file:a.MOV"));
    click("panelChoose");
    EXPECT_TRUE(comesTrue([&] { return state().highlights().size() == 1; }));
    state().undo();
    EXPECT_EQ(state().highlights().size(), 2U);
}

TEST_F(FilePanel, AsksOverTheSettings) {
    key(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(isFront("Settings"));
    click("outputCustom");
    click("chooseFolder");
    EXPECT_EQ(item("panelMessage").window()->title(), "Settings");
    click("file:season");
    click("panelChoose");
    EXPECT_EQ(textOf("customFolder").toStdString(), (folder_ / "Movies" / "season").string());
}

} // namespace
} // namespace zelvra::test
