<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::AboutPane</name>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Divides each display into named tiles and keeps windows in them.</source>
        <translation>Teilt jeden Bildschirm in benannte Kacheln und hält Fenster darin.</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Aktualisierungen</translation>
    </message>
    <message>
        <source>Check for &amp;updates automatically</source>
        <translation>Automatisch nach A&amp;ktualisierungen suchen</translation>
    </message>
    <message>
        <source>&amp;Download updates automatically</source>
        <translation>Aktualisierungen automatisch &amp;herunterladen</translation>
    </message>
    <message>
        <source>Check &amp;Now</source>
        <translation>&amp;Jetzt suchen</translation>
    </message>
    <message>
        <source>Looks for a newer version now</source>
        <translation>Sucht jetzt nach einer neueren Version</translation>
    </message>
    <message>
        <source>Log and report</source>
        <translation>Protokoll und Bericht</translation>
    </message>
    <message>
        <source>Show &amp;Log</source>
        <translation>&amp;Protokoll anzeigen</translation>
    </message>
    <message>
        <source>Shows the newest lines of the agent&apos;s log</source>
        <translation>Zeigt die neuesten Zeilen des Protokolls des Agenten</translation>
    </message>
    <message>
        <source>Write &amp;Bug Report…</source>
        <translation>&amp;Fehlerbericht schreiben …</translation>
    </message>
    <message>
        <source>Writes the agent&apos;s state, preferences and log into a file; titles and other texts of yours are replaced</source>
        <translation>Schreibt Zustand, Einstellungen und Protokoll des Agenten in eine Datei; Titel und andere Texte von Ihnen werden ersetzt</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>The newest lines of the agent&apos;s log, the last one at the end</source>
        <translation>Die neuesten Zeilen des Protokolls des Agenten, die letzte am Ende</translation>
    </message>
    <message>
        <source>KOVA %1</source>
        <translation>KOVA %1</translation>
    </message>
    <message>
        <source>KOVA %1, user interface %2</source>
        <translation>KOVA %1, Bedienoberfläche %2</translation>
    </message>
    <message>
        <source>Write Bug Report</source>
        <translation>Fehlerbericht schreiben</translation>
    </message>
    <message>
        <source>The command line “kova” is not installed.</source>
        <translation>Das Befehlszeilenprogramm „kova“ ist nicht installiert.</translation>
    </message>
    <message>
        <source>The command line ended unexpectedly.</source>
        <translation>Das Befehlszeilenprogramm wurde unerwartet beendet.</translation>
    </message>
</context>
<context>
    <name>kova::ui::AppearancePane</name>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Thema</translation>
    </message>
    <message>
        <source>The colors of backdrop, tile footers and menus</source>
        <translation>Die Farben von Hintergrund, Kachelfußzeilen und Menüs</translation>
    </message>
    <message>
        <source>Accent color</source>
        <translation>Akzentfarbe</translation>
    </message>
    <message>
        <source>The color of lines, buttons and the drop target</source>
        <translation>Die Farbe von Linien, Schaltflächen und dem Ablageziel</translation>
    </message>
    <message>
        <source>Shown</source>
        <translation>Angezeigt</translation>
    </message>
    <message>
        <source>Use theme &amp;background</source>
        <translation>&amp;Hintergrund des Themas verwenden</translation>
    </message>
    <message>
        <source>Covers the desktop&apos;s wallpaper with the background of the theme.</source>
        <translation>Überdeckt das Hintergrundbild der Arbeitsfläche mit dem Hintergrund des Themas.</translation>
    </message>
    <message>
        <source>Show &amp;tile backgrounds</source>
        <translation>&amp;Kachelhintergründe anzeigen</translation>
    </message>
    <message>
        <source>Draws a panel and an outline where a tile is empty.</source>
        <translation>Zeichnet eine Fläche und einen Umriss, wo eine Kachel leer ist.</translation>
    </message>
    <message>
        <source>Show the bra&amp;in</source>
        <translation>Das Geh&amp;irn anzeigen</translation>
    </message>
    <message>
        <source>Lets particles move over the background.</source>
        <translation>Lässt Teilchen über den Hintergrund ziehen.</translation>
    </message>
</context>
<context>
    <name>kova::ui::GeneralPane</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start KOVA at &amp;login</source>
        <translation>KOVA bei der &amp;Anmeldung starten</translation>
    </message>
    <message>
        <source>Automatically &amp;arrange after launch</source>
        <translation>Nach dem Start automatisch an&amp;ordnen</translation>
    </message>
    <message>
        <source>Puts every window into a tile once KOVA has started. Windows that were in a tile before stay there.</source>
        <translation>Legt jedes Fenster in eine Kachel, sobald KOVA gestartet ist. Fenster, die schon in einer Kachel waren, bleiben dort.</translation>
    </message>
    <message>
        <source>Hide the &amp;Dock automatically</source>
        <translation>&amp;Dock automatisch ausblenden</translation>
    </message>
    <message>
        <source>This changes the system-wide Dock preference. The Dock briefly restarts when the setting changes.</source>
        <translation>Dies ändert die systemweite Einstellung des Docks. Das Dock startet kurz neu, wenn sie sich ändert.</translation>
    </message>
    <message>
        <source>Tiles</source>
        <translation>Kacheln</translation>
    </message>
    <message>
        <source>&amp;Bring the next window forward</source>
        <translation>&amp;Nächstes Fenster nach vorn holen</translation>
    </message>
    <message>
        <source>When the window in front of a tile leaves it, the next one that waits there comes forward.</source>
        <translation>Verlässt das vordere Fenster eine Kachel, kommt das nächste nach vorn, das dort wartet.</translation>
    </message>
    <message>
        <source> pt</source>
        <translation> pt</translation>
    </message>
    <message>
        <source>The gap on each side between a tile and its window, in points</source>
        <translation>Der Abstand auf jeder Seite zwischen einer Kachel und ihrem Fenster, in Punkten</translation>
    </message>
    <message>
        <source>Preview of the tile inset</source>
        <translation>Vorschau des Kachelabstands</translation>
    </message>
    <message>
        <source>Tile &amp;inset:</source>
        <translation>Kachelabstand (&amp;i):</translation>
    </message>
    <message>
        <source>User interface</source>
        <translation>Bedienoberfläche</translation>
    </message>
    <message>
        <source>&amp;Show tile footers, backdrop and menu</source>
        <translation>Kachelfußzeilen, Hintergrund und Menü an&amp;zeigen</translation>
    </message>
    <message>
        <source>They are shown by kova-ui, and so is this window: without it the window closes, and windows stay in their tiles. “kova ui on” switches it on again.</source>
        <translation>Sie werden von kova-ui gezeigt, ebenso dieses Fenster: Ohne es schließt sich das Fenster, und Fenster bleiben in ihren Kacheln. „kova ui on“ schaltet es wieder ein.</translation>
    </message>
</context>
<context>
    <name>kova::ui::LayoutsPane</name>
    <message>
        <source>Layouts</source>
        <translation>Layouts</translation>
    </message>
    <message>
        <source>&amp;Reset Sizes</source>
        <translation>Größen &amp;zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Display:</source>
        <translation>Bil&amp;dschirm:</translation>
    </message>
    <message>
        <source>The display whose layouts are shown</source>
        <translation>Der Bildschirm, dessen Layouts gezeigt werden</translation>
    </message>
    <message>
        <source>Gives the tiles of the layout in force the sizes that they had at first</source>
        <translation>Gibt den Kacheln des geltenden Layouts die Größen, die sie am Anfang hatten</translation>
    </message>
    <message>
        <source>Return puts the layout in force on the display</source>
        <translation>Die Eingabetaste setzt das Layout auf dem Bildschirm in Kraft</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>The display&apos;s shape decides.</source>
        <translation>Die Form des Bildschirms entscheidet.</translation>
    </message>
    <message>
        <source>%1, in force</source>
        <translation>%1, in Kraft</translation>
    </message>
    <message>
        <source>All open windows fit.</source>
        <translation>Alle offenen Fenster passen.</translation>
    </message>
    <message>
        <source>Too small for %1: its best tile lacks %2 × %3 points.</source>
        <translation>Zu klein für %1: Der besten Kachel fehlen %2 × %3 Punkte.</translation>
    </message>
    <message>
        <source>%1
−%2 × %3 pt</source>
        <translation>%1
−%2 × %3 pt</translation>
    </message>
</context>
<context>
    <name>kova::ui::SettingsWindow</name>
    <message>
        <source>KOVA Settings</source>
        <translation>KOVA-Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Panes</source>
        <translation>&amp;Bereiche</translation>
    </message>
    <message>
        <source>Chooses the settings that are shown beside the list</source>
        <translation>Wählt die Einstellungen, die neben der Liste gezeigt werden</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>kova::ui::ShortcutsPane</name>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>S&amp;earch:</source>
        <translation>Su&amp;chen:</translation>
    </message>
    <message>
        <source>Shows the actions that have this text in their name or keys</source>
        <translation>Zeigt die Aktionen, in deren Namen oder Tasten dieser Text vorkommt</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>An action in each row, with its keys; Return records other keys for it</source>
        <translation>Eine Aktion in jeder Zeile, mit ihren Tasten; die Eingabetaste nimmt andere Tasten dafür auf</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Bemerkung</translation>
    </message>
    <message>
        <source>&amp;Record…</source>
        <translation>&amp;Aufnehmen …</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Takes the keys of the chosen action away</source>
        <translation>Entfernt die Tasten der gewählten Aktion</translation>
    </message>
    <message>
        <source>Restore &amp;Defaults</source>
        <translation>&amp;Standard wiederherstellen</translation>
    </message>
    <message>
        <source>Gives every action the keys that it had at first</source>
        <translation>Gibt jeder Aktion die Tasten, die sie am Anfang hatte</translation>
    </message>
    <message>
        <source>Keyboard shortcut not set</source>
        <translation>Kein Tastenkürzel festgelegt</translation>
    </message>
    <message>
        <source>In use by another program</source>
        <translation>Von einem anderen Programm belegt</translation>
    </message>
    <message>
        <source>Same keys as “%1”</source>
        <translation>Dieselben Tasten wie „%1“</translation>
    </message>
    <message>
        <source>Type the keys. Delete takes the shortcut away, Escape leaves it as it is.</source>
        <translation>Drücken Sie die Tasten. Entf entfernt das Kürzel, Esc lässt es, wie es ist.</translation>
    </message>
    <message>
        <source>Choose an action and press Return to record keys for it.</source>
        <translation>Wählen Sie eine Aktion und drücken Sie die Eingabetaste, um Tasten dafür aufzunehmen.</translation>
    </message>
    <message>
        <source>Records keys for the chosen action, or ends recording</source>
        <translation>Nimmt Tasten für die gewählte Aktion auf oder beendet die Aufnahme</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
</TS>
