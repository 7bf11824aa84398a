<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Zelvra</source>
        <translation>Über Zelvra</translation>
    </message>
    <message>
        <source>An App for highlighting your best moves.</source>
        <translation>Eine App, die Ihre besten Szenen hervorhebt.</translation>
    </message>
    <message>
        <source>Made by Corvath</source>
        <translation>Entwickelt von Corvath</translation>
    </message>
</context>
<context>
    <name>AppMenuItem</name>
    <message>
        <source>Ctrl+</source>
        <translation>Strg+</translation>
    </message>
    <message>
        <source>Shift+</source>
        <translation>Umschalt+</translation>
    </message>
</context>
<context>
    <name>ColorPicker</name>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Saturation and brightness</source>
        <translation>Sättigung und Helligkeit</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Hexadecimal color</source>
        <translation>Hexadezimaler Farbwert</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>ControlBar</name>
    <message>
        <source>Add Highlight at %1</source>
        <translation>Highlight bei %1 hinzufügen</translation>
    </message>
    <message>
        <source>Add Highlight</source>
        <translation>Highlight hinzufügen</translation>
    </message>
    <message>
        <source>Open a video or a folder of clips</source>
        <translation>Ein Video oder einen Ordner mit Clips öffnen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open Video…</source>
        <translation>Video öffnen …</translation>
    </message>
    <message>
        <source>Open Folder of Clips…</source>
        <translation>Ordner mit Clips öffnen …</translation>
    </message>
    <message>
        <source>Close current clip</source>
        <translation>Aktuellen Clip schließen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Previous clip (⌘[)</source>
        <translation>Vorheriger Clip (Strg+Bild auf)</translation>
    </message>
    <message>
        <source>Previous clip</source>
        <translation>Vorheriger Clip</translation>
    </message>
    <message>
        <source>Next clip (⌘])</source>
        <translation>Nächster Clip (Strg+Bild ab)</translation>
    </message>
    <message>
        <source>Next clip</source>
        <translation>Nächster Clip</translation>
    </message>
    <message>
        <source>Add highlight at current time (N)</source>
        <translation>Highlight an der aktuellen Stelle hinzufügen (N)</translation>
    </message>
    <message>
        <source>Export (⌘E)</source>
        <translation>Exportieren (Strg+E)</translation>
    </message>
</context>
<context>
    <name>EditorCanvas</name>
    <message>
        <source>Frame</source>
        <translation>Einzelbild</translation>
    </message>
    <message>
        <source>Drag to move the shape</source>
        <translation>Ziehen, um die Form zu verschieben</translation>
    </message>
</context>
<context>
    <name>EditorControls</name>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Stroke</source>
        <translation>Strichstärke</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Standbild</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>EditorHeader</name>
    <message>
        <source>Drag on the frame to draw a new shape. The colored handle moves it; the white arrows resize.</source>
        <translation>Zum Zeichnen einer neuen Form auf dem Bild ziehen. Der farbige Griff verschiebt sie, die weißen Pfeile ändern ihre Größe.</translation>
    </message>
</context>
<context>
    <name>EmptyLandingView</name>
    <message>
        <source>Drop a video or folder here</source>
        <translation>Video oder Ordner hierher ziehen</translation>
    </message>
    <message>
        <source>or</source>
        <translation>oder</translation>
    </message>
    <message>
        <source>Open Video…</source>
        <translation>Video öffnen …</translation>
    </message>
    <message>
        <source>Open Folder…</source>
        <translation>Ordner öffnen …</translation>
    </message>
    <message>
        <source>Zelvra did not end properly. Your work was kept: open “%1” to go on.</source>
        <translation>Zelvra wurde nicht richtig beendet. Ihre Arbeit ist noch da: Öffnen Sie „%1“, um weiterzumachen.</translation>
    </message>
</context>
<context>
    <name>ExportProgressBar</name>
    <message>
        <source>Exporting</source>
        <translation>Export läuft</translation>
    </message>
</context>
<context>
    <name>ExportSuccessBanner</name>
    <message>
        <source>Exported</source>
        <translation>Exportiert</translation>
    </message>
    <message>
        <source>Reveal in Finder</source>
        <translation>Im Ordner anzeigen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
</context>
<context>
    <name>FilePanel</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Replace “%1”?</source>
        <translation>„%1“ ersetzen?</translation>
    </message>
    <message>
        <source>A file of this name exists in this folder. Its content will be lost.</source>
        <translation>In diesem Ordner gibt es schon eine Datei dieses Namens. Ihr Inhalt geht verloren.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Zelvra Help</source>
        <translation>Zelvra-Hilfe</translation>
    </message>
    <message>
        <source>A quick tour of the app.</source>
        <translation>Ein kurzer Rundgang durch die App.</translation>
    </message>
</context>
<context>
    <name>HighlightPreviewOverlay</name>
    <message>
        <source>Freeze preview</source>
        <translation>Standbild-Vorschau</translation>
    </message>
</context>
<context>
    <name>HighlightRow</name>
    <message>
        <source>circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Click to edit, or use the trash to delete</source>
        <translation>Zum Bearbeiten klicken, zum Löschen den Papierkorb verwenden</translation>
    </message>
    <message>
        <source>Delete highlight</source>
        <translation>Highlight löschen</translation>
    </message>
</context>
<context>
    <name>HighlightsSidebar</name>
    <message>
        <source>Highlights</source>
        <translation>Highlights</translation>
    </message>
    <message>
        <source>Undo last change (⌘Z)</source>
        <translation>Letzte Änderung rückgängig machen (Strg+Z)</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>No highlights yet</source>
        <translation>Noch keine Highlights</translation>
    </message>
    <message>
        <source>Scrub the video, then click
“Add Highlight”.</source>
        <translation>Stelle im Video suchen, dann auf
„Highlight hinzufügen“ klicken.</translation>
    </message>
</context>
<context>
    <name>InlineControls</name>
    <message>
        <source>Sound on</source>
        <translation>Ton ein</translation>
    </message>
    <message>
        <source>Sound off</source>
        <translation>Ton aus</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Back one frame (←)</source>
        <translation>Ein Bild zurück (←)</translation>
    </message>
    <message>
        <source>Back one frame</source>
        <translation>Ein Bild zurück</translation>
    </message>
    <message>
        <source>Pause (Space)</source>
        <translation>Pause (Leertaste)</translation>
    </message>
    <message>
        <source>Play (Space)</source>
        <translation>Wiedergabe (Leertaste)</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Forward one frame (→)</source>
        <translation>Ein Bild vor (→)</translation>
    </message>
    <message>
        <source>Forward one frame</source>
        <translation>Ein Bild vor</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>Speed %1</source>
        <translation>Geschwindigkeit %1</translation>
    </message>
    <message>
        <source>Leave full screen (Esc)</source>
        <translation>Vollbild beenden (Esc)</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
</context>
<context>
    <name>LeftWorkOffer</name>
    <message>
        <source>Restore what you left on this clip (R)</source>
        <translation>Zurückgelassene Arbeit an diesem Clip wiederherstellen (R)</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
</context>
<context>
    <name>MainMenuBar</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open Video…</source>
        <translation>Video öffnen …</translation>
    </message>
    <message>
        <source>Open Folder of Clips…</source>
        <translation>Ordner mit Clips öffnen …</translation>
    </message>
    <message>
        <source>Open Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Clear Menu</source>
        <translation>Liste leeren</translation>
    </message>
    <message>
        <source>Close Clip</source>
        <translation>Clip schließen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Preview Highlights During Playback</source>
        <translation>Highlights bei der Wiedergabe zeigen</translation>
    </message>
    <message>
        <source>&amp;Clip</source>
        <translation>&amp;Clip</translation>
    </message>
    <message>
        <source>Add Highlight</source>
        <translation>Highlight hinzufügen</translation>
    </message>
    <message>
        <source>Trim Clip…</source>
        <translation>Clip trimmen …</translation>
    </message>
    <message>
        <source>Clear Trim</source>
        <translation>Trimmung aufheben</translation>
    </message>
    <message>
        <source>Start Clip Here</source>
        <translation>Clip hier beginnen</translation>
    </message>
    <message>
        <source>End Clip Here</source>
        <translation>Clip hier beenden</translation>
    </message>
    <message>
        <source>Previous Clip</source>
        <translation>Vorheriger Clip</translation>
    </message>
    <message>
        <source>Next Clip</source>
        <translation>Nächster Clip</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Zelvra Help</source>
        <translation>Zelvra-Hilfe</translation>
    </message>
    <message>
        <source>About Zelvra</source>
        <translation>Über Zelvra</translation>
    </message>
    <message>
        <source>Save Annotations…</source>
        <translation>Anmerkungen speichern …</translation>
    </message>
    <message>
        <source>Open Annotations…</source>
        <translation>Anmerkungen öffnen …</translation>
    </message>
    <message>
        <source>Restore Unfinished Work</source>
        <translation>Unfertige Arbeit wiederherstellen</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Stop the export and quit?</source>
        <translation>Export abbrechen und beenden?</translation>
    </message>
    <message>
        <source>The export is still running. Quitting stops it, and the unfinished movie is removed. Highlights and marked clips that haven&apos;t been exported yet are discarded.</source>
        <translation>Der Export läuft noch. Beim Beenden wird er abgebrochen und der unfertige Film gelöscht. Noch nicht exportierte Highlights und markierte Clips werden verworfen.</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Abbrechen und beenden</translation>
    </message>
    <message>
        <source>Keep Exporting</source>
        <translation>Weiter exportieren</translation>
    </message>
    <message>
        <source>The export is still running. Quitting stops it, and the unfinished movie is removed.</source>
        <translation>Der Export läuft noch. Beim Beenden wird er abgebrochen und der unfertige Film gelöscht.</translation>
    </message>
</context>
<context>
    <name>MarkedClipRow</name>
    <message>
        <source>Remove from list</source>
        <translation>Aus der Liste entfernen</translation>
    </message>
</context>
<context>
    <name>MarkedClipsSection</name>
    <message>
        <source>Marked Clips</source>
        <translation>Markierte Clips</translation>
    </message>
    <message>
        <source>Marked clips</source>
        <translation>Markierte Clips</translation>
    </message>
</context>
<context>
    <name>PlayerView</name>
    <message>
        <source>Player</source>
        <translation>Player</translation>
    </message>
</context>
<context>
    <name>QuestionHost</name>
    <message>
        <source>Something went wrong</source>
        <translation>Etwas ist schiefgegangen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Use these settings for future highlights?</source>
        <translation>Diese Einstellungen für weitere Highlights verwenden?</translation>
    </message>
    <message>
        <source>You changed the color, size, stroke, or freeze duration on that highlight. Where should new highlights start from these settings? (Esc keeps your current defaults.)</source>
        <translation>Sie haben Farbe, Größe, Strichstärke oder Standbilddauer dieses Highlights geändert. Wo sollen neue Highlights mit diesen Einstellungen beginnen? (Esc behält Ihre bisherigen Vorgaben bei.)</translation>
    </message>
    <message>
        <source>Always (Save as My Defaults)</source>
        <translation>Immer (als Vorgaben speichern)</translation>
    </message>
    <message>
        <source>For This Session</source>
        <translation>In dieser Sitzung</translation>
    </message>
    <message>
        <source>Just This Clip</source>
        <translation>Nur in diesem Clip</translation>
    </message>
    <message>
        <source>Close this clip?</source>
        <translation>Diesen Clip schließen?</translation>
    </message>
    <message>
        <source>Close and Discard</source>
        <translation>Schließen und verwerfen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Open New Video…</source>
        <translation>Neues Video öffnen …</translation>
    </message>
    <message>
        <source>Open Folder of Clips…</source>
        <translation>Ordner mit Clips öffnen …</translation>
    </message>
    <message>
        <source>Stay with Current Clip</source>
        <translation>Beim aktuellen Clip bleiben</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Export complete</source>
        <translation>Export abgeschlossen</translation>
    </message>
</context>
<context>
    <name>QueueLabel</name>
    <message>
        <source>Clips of this folder</source>
        <translation>Clips dieses Ordners</translation>
    </message>
</context>
<context>
    <name>QuickStartSteps</name>
    <message>
        <source>Open a clip — or just drop one here</source>
        <translation>Clip öffnen – oder einfach hierher ziehen</translation>
    </message>
    <message>
        <source>Pause where it matters, press N to add a highlight</source>
        <translation>An der entscheidenden Stelle anhalten und mit N ein Highlight hinzufügen</translation>
    </message>
    <message>
        <source>Press ⌘E to export the finished clip</source>
        <translation>Mit Strg+E den fertigen Clip exportieren</translation>
    </message>
</context>
<context>
    <name>RecentsList</name>
    <message>
        <source>Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
</context>
<context>
    <name>Scrubber</name>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Highlight Defaults</source>
        <translation>Vorgaben für Highlights</translation>
    </message>
    <message>
        <source>Starting values for every new highlight. Changes here apply immediately. When you restyle a highlight in the editor, the app asks whether to keep that look for the clip, the session, or always.</source>
        <translation>Startwerte für jedes neue Highlight. Änderungen gelten sofort. Wenn Sie ein Highlight im Editor umgestalten, fragt die App, ob das Aussehen für den Clip, für die Sitzung oder immer gelten soll.</translation>
    </message>
    <message>
        <source>Highlight Color</source>
        <translation>Farbe der Highlights</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Stroke</source>
        <translation>Strichstärke</translation>
    </message>
    <message>
        <source>Freeze Duration</source>
        <translation>Standbilddauer</translation>
    </message>
    <message>
        <source>Marking Clips</source>
        <translation>Clips markieren</translation>
    </message>
    <message>
        <source>Press I while watching to drop a clip of this length into Marked Clips — playback keeps going. Press O to set the exact end, or click the clip later to fine-tune on the zoomed strip.</source>
        <translation>I legt beim Ansehen einen Clip dieser Länge unter „Markierte Clips“ ab – die Wiedergabe läuft weiter. O setzt das genaue Ende; oder Sie klicken später auf den Clip und passen ihn auf der vergrößerten Leiste an.</translation>
    </message>
    <message>
        <source>New clip length</source>
        <translation>Länge neuer Clips</translation>
    </message>
    <message>
        <source>Output Location</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>Export to</source>
        <translation>Exportieren in</translation>
    </message>
    <message>
        <source>Same folder as source</source>
        <translation>Ordner des Originals</translation>
    </message>
    <message>
        <source>Subfolder of source</source>
        <translation>Unterordner des Originals</translation>
    </message>
    <message>
        <source>Custom folder</source>
        <translation>Eigener Ordner</translation>
    </message>
    <message>
        <source>Subfolder name</source>
        <translation>Name des Unterordners</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>— not chosen —</source>
        <translation>– nicht ausgewählt –</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Include audio in exported clips</source>
        <translation>Exportierte Clips mit Ton</translation>
    </message>
    <message>
        <source>Reset to Factory Defaults</source>
        <translation>Auf Werkseinstellungen zurücksetzen</translation>
    </message>
    <message>
        <source>Forget all unfinished work?</source>
        <translation>Alle unfertige Arbeit vergessen?</translation>
    </message>
    <message>
        <source>What is remembered of all clips is deleted. The clip that is open keeps its highlights and marked clips, and exported movies stay.</source>
        <translation>Was zu allen Clips gemerkt wurde, wird gelöscht. Der geöffnete Clip behält seine Highlights und markierten Clips, und exportierte Filme bleiben.</translation>
    </message>
    <message>
        <source>Forget All</source>
        <translation>Alles vergessen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Unfinished Work</source>
        <translation>Unfertige Arbeit</translation>
    </message>
    <message>
        <source>Highlights, trims and marked clips are kept for every clip until you discard them, and offered again when you open it. If this is off, the app asks before another clip takes the place of unexported work.</source>
        <translation>Highlights, Trimmung und markierte Clips werden zu jedem Clip gemerkt, bis Sie sie verwerfen, und beim nächsten Öffnen wieder angeboten. Ist dies ausgeschaltet, fragt die App nach, bevor ein anderer Clip noch nicht exportierte Arbeit ablöst.</translation>
    </message>
    <message>
        <source>Remember unfinished work</source>
        <translation>Unfertige Arbeit merken</translation>
    </message>
    <message>
        <source>Forget All…</source>
        <translation>Alles vergessen …</translation>
    </message>
</context>
<context>
    <name>Spinner</name>
    <message>
        <source>Busy</source>
        <translation>Bitte warten</translation>
    </message>
</context>
<context>
    <name>TimelineRow</name>
    <message>
        <source>Highlights</source>
        <translation>Highlights</translation>
    </message>
</context>
<context>
    <name>TimelineStrip</name>
    <message>
        <source>Timeline</source>
        <translation>Zeitleiste</translation>
    </message>
    <message>
        <source>Clip start</source>
        <translation>Clipanfang</translation>
    </message>
    <message>
        <source>Clip end</source>
        <translation>Clipende</translation>
    </message>
    <message>
        <source>Highlights on the timeline</source>
        <translation>Highlights auf der Zeitleiste</translation>
    </message>
</context>
<context>
    <name>ToolPicker</name>
    <message>
        <source>Shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
</context>
<context>
    <name>TrimBar</name>
    <message>
        <source>Start of the trim</source>
        <translation>Anfang der Trimmung</translation>
    </message>
    <message>
        <source>End of the trim</source>
        <translation>Ende der Trimmung</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Trim</source>
        <translation>Trimmen</translation>
    </message>
</context>
<context>
    <name>WindowToolbar</name>
    <message>
        <source>Open Video</source>
        <translation>Video öffnen</translation>
    </message>
    <message>
        <source>Open Video… (⌘O)</source>
        <translation>Video öffnen … (Strg+O)</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Open Folder of Clips… (⇧⌘O)</source>
        <translation>Ordner mit Clips öffnen … (Strg+Umschalt+O)</translation>
    </message>
    <message>
        <source>Close Clip</source>
        <translation>Clip schließen</translation>
    </message>
    <message>
        <source>Close current clip (⌘W)</source>
        <translation>Aktuellen Clip schließen (Strg+W)</translation>
    </message>
    <message>
        <source>Trim</source>
        <translation>Trimmen</translation>
    </message>
    <message>
        <source>Trim clip (⇧⌘T)</source>
        <translation>Clip trimmen (Strg+Umschalt+T)</translation>
    </message>
</context>
<context>
    <name>zelvra::About</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>zelvra::AppState</name>
    <message>
        <source>Failed to load: %1</source>
        <translation>Laden fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Frame extraction failed: %1</source>
        <translation>Das Einzelbild konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Choose a video clip to annotate.</source>
        <translation>Wählen Sie einen Videoclip zum Bearbeiten aus.</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Choose a folder of clips to work through in order.</source>
        <translation>Wählen Sie einen Ordner mit Clips aus, die der Reihe nach bearbeitet werden.</translation>
    </message>
    <message>
        <source>No .mov/.mp4/.m4v files found in “%1”.</source>
        <translation>In „%1“ wurden keine .mov-, .mp4- oder .m4v-Dateien gefunden.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>“%1” can&apos;t be found. It may have been moved or deleted.</source>
        <translation>„%1“ wurde nicht gefunden. Möglicherweise wurde das Objekt verschoben oder gelöscht.</translation>
    </message>
    <message>
        <source>“%1”: %2</source>
        <translation>„%1“: %2</translation>
    </message>
    <message>
        <source>Unfinished work can&apos;t be remembered: %1</source>
        <translation>Unfertige Arbeit kann nicht gemerkt werden: %1</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Choose where the annotations are saved.</source>
        <translation>Wählen Sie aus, wo die Anmerkungen gespeichert werden.</translation>
    </message>
    <message>
        <source>The annotations were not saved: %1</source>
        <translation>Die Anmerkungen wurden nicht gespeichert: %1</translation>
    </message>
    <message>
        <source>Choose a file of annotations.</source>
        <translation>Wählen Sie eine Datei mit Anmerkungen aus.</translation>
    </message>
    <message>
        <source>The annotations were not opened: %1</source>
        <translation>Die Anmerkungen wurden nicht geöffnet: %1</translation>
    </message>
    <message>
        <source>Annotations beyond the end of “%1” were left out.</source>
        <translation>Anmerkungen hinter dem Ende von „%1“ wurden weggelassen.</translation>
    </message>
</context>
<context>
    <name>zelvra::Exporter</name>
    <message>
        <source>Couldn&apos;t create output folder: %1</source>
        <translation>Der Ausgabeordner konnte nicht erstellt werden: %1</translation>
    </message>
    <message>
        <source>Clip %1 failed: %2</source>
        <translation>Clip %1 fehlgeschlagen: %2</translation>
    </message>
    <message>
        <source>Export failed: %1</source>
        <translation>Export fehlgeschlagen: %1</translation>
    </message>
</context>
<context>
    <name>zelvra::FilePanels</name>
    <message>
        <source>Movies</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Movies: .mov, .mp4, .m4v</source>
        <translation>Filme: .mov, .mp4, .m4v</translation>
    </message>
    <message>
        <source>Annotations: .json</source>
        <translation>Anmerkungen: .json</translation>
    </message>
    <message>
        <source>No movies in here</source>
        <translation>Keine Filme vorhanden</translation>
    </message>
    <message>
        <source>No annotations in here</source>
        <translation>Keine Anmerkungen vorhanden</translation>
    </message>
    <message>
        <source>No folders in here</source>
        <translation>Keine Ordner vorhanden</translation>
    </message>
    <message>
        <source>Annotations</source>
        <translation>Anmerkungen</translation>
    </message>
</context>
<context>
    <name>zelvra::Film</name>
    <message>
        <source>the pictures cannot be decoded</source>
        <translation>Die Bilder können nicht dekodiert werden.</translation>
    </message>
</context>
<context>
    <name>zelvra::HelpContent</name>
    <message>
        <source>help.md</source>
        <comment>the file in ZelvraApp/resources</comment>
        <translation>help.de.md</translation>
    </message>
    <message>
        <source>On this keyboard, ⌘ is the Ctrl key and ⇧ the Shift key: ⇧⌘O is Ctrl+Shift+O.</source>
        <translation>Strg ist auf manchen Tastaturen mit Ctrl beschriftet, Umschalt mit Shift oder ⇧.</translation>
    </message>
    <message>
        <source>Unfinished work is remembered. When you open a clip again, R restores what you left on it. File › Save Annotations… (⌘S) and File › Open Annotations… (⌘I) keep it in a file of its own.</source>
        <translation>Unfertige Arbeit wird gemerkt. Wenn Sie einen Clip wieder öffnen, stellt R wieder her, was Sie dort zurückgelassen haben. Datei › Anmerkungen speichern … (Strg+S) und Datei › Anmerkungen öffnen … (Strg+I) legen sie in einer eigenen Datei ab.</translation>
    </message>
</context>
<context>
    <name>zelvra::HighlightEditor</name>
    <message>
        <source>Drag to change the circle&apos;s size</source>
        <translation>Ziehen, um die Größe des Kreises zu ändern</translation>
    </message>
    <message>
        <source>Drag to move this end of the arrow</source>
        <translation>Ziehen, um dieses Ende des Pfeils zu verschieben</translation>
    </message>
    <message>
        <source>Drag to resize</source>
        <translation>Ziehen, um die Größe zu ändern</translation>
    </message>
    <message>
        <source>Edit Highlight</source>
        <translation>Highlight bearbeiten</translation>
    </message>
    <message>
        <source>New Highlight</source>
        <translation>Neues Highlight</translation>
    </message>
    <message>
        <source>at %1</source>
        <translation>bei %1</translation>
    </message>
    <message>
        <source>Update Highlight</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Add Highlight</source>
        <translation>Hinzufügen</translation>
    </message>
</context>
<context>
    <name>zelvra::IdleInhibitor</name>
    <message>
        <source>A movie is playing</source>
        <translation>Ein Film wird wiedergegeben</translation>
    </message>
</context>
<context>
    <name>zelvra::MenuState</name>
    <message>
        <source>Export…</source>
        <translation>Exportieren …</translation>
    </message>
    <message numerus="yes">
        <source>Export %n Marked Clips…</source>
        <translation>
            <numerusform>%n markierten Clip exportieren …</numerusform>
            <numerusform>%n markierte Clips exportieren …</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>zelvra::Player</name>
    <message>
        <source>“%1” cannot be played: %2</source>
        <translation>„%1“ kann nicht abgespielt werden: %2</translation>
    </message>
</context>
<context>
    <name>zelvra::Settings</name>
    <message>
        <source>Exports land next to each source clip, as {name}_highlighted.{ext}.</source>
        <translation>Exporte landen neben dem jeweiligen Original, als {name}_highlighted.{ext}.</translation>
    </message>
    <message>
        <source>Exports go into a “%1” folder inside each source&apos;s folder. Created on first export.</source>
        <translation>Exporte landen im Ordner „%1“ neben dem jeweiligen Original. Er wird beim ersten Export angelegt.</translation>
    </message>
    <message>
        <source>Pick a folder. Until you do, exports fall back to the source folder.</source>
        <translation>Wählen Sie einen Ordner aus. Bis dahin landen Exporte im Ordner des Originals.</translation>
    </message>
    <message>
        <source>All exports go to the chosen folder, regardless of source location.</source>
        <translation>Alle Exporte landen im ausgewählten Ordner, unabhängig vom Ort des Originals.</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Pick a folder to export highlighted clips into.</source>
        <translation>Wählen Sie einen Ordner für die exportierten Clips aus.</translation>
    </message>
</context>
<context>
    <name>zelvra::SleepInhibitor</name>
    <message>
        <source>A movie is exported</source>
        <translation>Ein Film wird exportiert</translation>
    </message>
</context>
<context>
    <name>zelvra::Texts</name>
    <message numerus="yes">
        <source>%n marked clip(s)</source>
        <translation>
            <numerusform>%n markierter Clip</numerusform>
            <numerusform>%n markierte Clips</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 haven&apos;t been exported yet. Closing will discard them.</source>
        <translation>Noch nicht exportiert: %1. Beim Schließen geht das verloren.</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <comment>marked clips and highlights</comment>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Gespeichert als %1.</translation>
    </message>
    <message>
        <source>Next Clip (%1 of %2)</source>
        <translation>Nächster Clip (%1 von %2)</translation>
    </message>
    <message>
        <source>Export (%1)</source>
        <translation>Exportieren (%1)</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Save &amp; Return</source>
        <translation>Speichern &amp; zurück</translation>
    </message>
    <message>
        <source>Mark Clip</source>
        <translation>Clip markieren</translation>
    </message>
    <message>
        <source>Save edits and return to the full video (⇧⌘M)</source>
        <translation>Änderungen speichern und zum ganzen Video zurückkehren (Strg+Umschalt+M)</translation>
    </message>
    <message>
        <source>Mark the current trim + highlights as a clip (⇧⌘M)</source>
        <translation>Aktuelle Trimmung und Highlights als Clip markieren (Strg+Umschalt+M)</translation>
    </message>
    <message>
        <source>Nudge the clip&apos;s start to the current time (I)</source>
        <translation>Clipanfang an die aktuelle Stelle setzen (I)</translation>
    </message>
    <message>
        <source>Start a %1-second clip here (I) — press O to set the exact end</source>
        <translation>Hier einen Clip von %1 Sekunden beginnen (I) – O setzt das genaue Ende</translation>
    </message>
    <message>
        <source>Nudge the clip&apos;s end to the current time (O)</source>
        <translation>Clipende an die aktuelle Stelle setzen (O)</translation>
    </message>
    <message>
        <source>Set the new clip&apos;s end to the current time (O)</source>
        <translation>Ende des neuen Clips an die aktuelle Stelle setzen (O)</translation>
    </message>
    <message>
        <source>Press I first to start a clip</source>
        <translation>Zuerst mit I einen Clip beginnen</translation>
    </message>
    <message>
        <source>Discard edit and return to full video</source>
        <translation>Änderungen verwerfen und zum ganzen Video zurückkehren</translation>
    </message>
    <message>
        <source>Clear trim</source>
        <translation>Trimmung aufheben</translation>
    </message>
    <message numerus="yes">
        <source>%n highlight(s)</source>
        <translation>
            <numerusform>%n Highlight</numerusform>
            <numerusform>%n Highlights</numerusform>
        </translation>
    </message>
    <message>
        <source>Currently editing — use Save &amp; Return to commit</source>
        <translation>Wird gerade bearbeitet – mit „Speichern &amp; zurück“ übernehmen</translation>
    </message>
    <message>
        <source>Click to fine-tune (load into editor)</source>
        <translation>Zum Feinabstimmen anklicken (im Editor öffnen)</translation>
    </message>
    <message>
        <source>%1s freeze</source>
        <translation>%1 s Standbild</translation>
    </message>
    <message>
        <source>You left %1 here.</source>
        <translation>Von Ihnen noch da: %1.</translation>
    </message>
    <message>
        <source>You left %1 and %2 here.</source>
        <comment>highlights and marked clips</comment>
        <translation>Von Ihnen noch da: %1 und %2.</translation>
    </message>
    <message>
        <source>a trimmed range</source>
        <translation>eine Trimmung</translation>
    </message>
    <message numerus="yes">
        <source>%n clip(s)</source>
        <translation>
            <numerusform>%n Clip</numerusform>
            <numerusform>%n Clips</numerusform>
        </translation>
    </message>
    <message>
        <source>trimmed</source>
        <translation>getrimmt</translation>
    </message>
    <message>
        <source>All of it is exported</source>
        <translation>Alles davon ist exportiert</translation>
    </message>
    <message>
        <source>Was open when Zelvra did not end properly</source>
        <translation>War geöffnet, als Zelvra nicht richtig beendet wurde</translation>
    </message>
</context>
<context>
    <name>zelvra::TimelineStripModel</name>
    <message>
        <source>Drag to adjust the clip&apos;s start</source>
        <translation>Ziehen, um den Clipanfang anzupassen</translation>
    </message>
    <message>
        <source>Drag to adjust the clip&apos;s end</source>
        <translation>Ziehen, um das Clipende anzupassen</translation>
    </message>
    <message>
        <source>%1 — click to edit</source>
        <translation>%1 – zum Bearbeiten klicken</translation>
    </message>
</context>
</TS>
