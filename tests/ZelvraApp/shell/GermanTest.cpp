// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/HelpContent.h"
#include "ZelvraApp/translations/Translations.h"
#include "ZelvraApp/views/Texts.h"
#include "tests/ZelvraApp/shell/ShellFixture.h"

namespace zelvra::test {
namespace {

/// What identifies a section in every language: its sign, and how many items it has.
QList<std::pair<QString, qsizetype>> outline() {
    QList<std::pair<QString, qsizetype>> sections;
    for (const QVariant& section : HelpContent::sections()) {
        sections.append({section.toMap()["icon"].toString(), section.toMap()["items"].toStringList().size()});
    }
    return sections;
}

QString countIn(const QStringList& languages, int highlights) {
    const Translations translations(languages);
    return Texts::highlightCount(highlights);
}

TEST(Language, IsTheFirstOfTheUsersThatThereIs) {
    EXPECT_EQ(countIn({"fr-CA", "de-AT", "en"}, 2), "2 Highlights");
    EXPECT_EQ(countIn({"en-GB", "de"}, 1), "1 highlight");
    EXPECT_EQ(countIn({"fr"}, 2), "2 highlights");
    EXPECT_EQ(countIn({"C"}, 0), "0 highlights");
    EXPECT_EQ(countIn({}, 1), "1 highlight");
}

TEST(Language, HasTheWholeHelpInGerman) {
    const auto english = outline();
    const Translations german({"de"});
    EXPECT_EQ(outline(), english);
    EXPECT_EQ(HelpContent::sections().first().toMap()["title"], "1. Einen Clip laden");
}

class German : public ShellFixture {
protected:
    German() : ShellFixture({"de-DE", "de", "en"}) {}

    /// Does the item end within the other one?
    bool endsWithin(const QString& name, const QString& outer) {
        const QQuickItem& inside = item(name);
        return inside.mapToItem(&item(outer), {inside.width(), 0}).x() <= item(outer).width();
    }
};

TEST_F(German, SpeaksGermanFromTheLandingScreenToTheExport) {
    EXPECT_EQ(textOf("landingOpenVideo"), "Video öffnen …");
    openClip();
    EXPECT_EQ(textOf("toolbarTrimButton"), "Trimmen");
    addHighlight(0.5);
    mark(0.4, 1);
    EXPECT_EQ(textOf("clipHighlights"), "1 Highlight");
    EXPECT_EQ(textOf("exportMovies"), "Exportieren (1)");
    EXPECT_EQ(menuItem("Datei", "exportItem").property("text"), "1 markierten Clip exportieren …");
    closeMenus();
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(textOf("questionMessage"),
              "Noch nicht exportiert: 1 markierter Clip. Beim Schließen geht das verloren.");
    EXPECT_EQ(textOf("answer:Abbrechen"), "Abbrechen");
}

TEST_F(German, KeepsAllControlsInTheSmallestWindow) {
    openClip();
    mark(0.2, 0.5);
    trim(0.5, 1.5);
    window().resize(window().minimumSize());
    wait(100);
    EXPECT_TRUE(endsWithin("exportMovies", "controlBar"));
    EXPECT_EQ(textOf("exportMovies"), "") << "texts give way, as in English";
    HighlightDraft draft = draftAt(0.7, 1, 0, state().sourceInfo()->displaySize);
    draft.isEditing = true;
    state().setDraft(draft);
    EXPECT_EQ(textOf("commitDraft"), "Aktualisieren");
    QWindow* editor = item("commitDraft").window();
    editor->resize(editor->minimumSize());
    wait(100);
    EXPECT_TRUE(endsWithin("commitDraft", "editorCanvas"));
    EXPECT_FALSE(item("editorHint").property("truncated").toBool());
}

TEST_F(German, OpensTheGermanHelp) {
    key(Qt::Key_F1);
    ASSERT_TRUE(isFront("Zelvra-Hilfe"));
    EXPECT_TRUE(textOf("helpKeys").startsWith("Strg"));
}

} // namespace
} // namespace zelvra::test
