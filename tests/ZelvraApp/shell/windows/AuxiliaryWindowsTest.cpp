// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/About.h"
#include "ZelvraApp/shell/windows/HelpContent.h"
#include "tests/ZelvraApp/shell/ShellFixture.h"

#include <QTextDocument>

namespace zelvra::test {
namespace {

using AuxiliaryWindows = ShellFixture;

TEST(AppVersion, NamesVersionAndBuildAsFarAsTheyAreKnown) {
    EXPECT_EQ(appVersionString("1.2", "45"), "1.2 (45)");
    EXPECT_EQ(appVersionString("1.2", std::nullopt), "1.2");
    EXPECT_EQ(appVersionString(std::nullopt, "45"), "1.0");
}

TEST(Help, IsASixPartTourInMarkdown) {
    QStringList titles;
    QList<qsizetype> items;
    QString all;
    for (const QVariant& section : HelpContent::sections()) {
        titles.append(section.toMap()["title"].toString());
        items.append(section.toMap()["items"].toStringList().size());
        for (const QString& markdown : section.toMap()["items"].toStringList()) {
            QTextDocument document;
            document.setMarkdown(markdown);
            EXPECT_FALSE(document.toPlainText().contains('\n')) << markdown.toStdString();
            EXPECT_FALSE(document.toPlainText().contains("**")) << markdown.toStdString();
            all += document.toPlainText();
        }
    }
    EXPECT_EQ(titles,
              QStringList({"1. Loading a clip", "2. Trimming a clip (optional)", "3. Adding highlights",
                           "4. Marking clips from a long source", "5. Exporting", "Tips"}));
    EXPECT_EQ(items, QList<qsizetype>({5, 4, 7, 6, 4, 3}));
    EXPECT_TRUE(all.contains("{name}_clip_01_highlighted.{ext}, _02, _03, etc."));
    EXPECT_TRUE(all.contains("a counter like “3 of 12” appears"));
}

TEST_F(AuxiliaryWindows, OpensOneHelpWindowByEitherKey) {
    key(Qt::Key_F1);
    ASSERT_TRUE(isFront("Zelvra Help"));
    EXPECT_TRUE(textOf("helpKeys").contains("⌘ is the Ctrl key"));
    key(Qt::Key_End);
    EXPECT_GT(item("helpScroller").property("contentY").toDouble(), 0);
    window().requestActivate();
    ASSERT_TRUE(isFront("Zelvra"));
    key(Qt::Key_Question, Qt::ControlModifier);
    ASSERT_TRUE(isFront("Zelvra Help"));
    EXPECT_EQ(std::ranges::count(QGuiApplication::allWindows(), "Zelvra Help", &QWindow::title), 1);
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(isShown("helpScroller"));
    EXPECT_TRUE(window().isVisible());
}

TEST_F(AuxiliaryWindows, ShowsVersionAndMaker) {
    choose("Help", "aboutItem");
    ASSERT_TRUE(isFront("About Zelvra"));
    EXPECT_EQ(QGuiApplication::focusWindow()->size(), QSize(380, 520));
    EXPECT_TRUE(textOf("versionText").startsWith("Version "));
    EXPECT_EQ(item("appIcon").size(), QSizeF(128, 128));
    EXPECT_LE(item("makerLogo").width(), 140);
}

} // namespace
} // namespace zelvra::test
