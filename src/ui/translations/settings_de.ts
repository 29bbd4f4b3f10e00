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
    <name>kova::ui::ApplicationsPane</name>
    <message>
        <source>Applications</source>
        <translation>Anwendungen</translation>
    </message>
    <message>
        <source>Browser</source>
        <translation>Browser</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktivität</translation>
    </message>
    <message>
        <source>Coding agent</source>
        <translation>Coding-Agent</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Dienstprogramm</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>%1 (preferred)</source>
        <translation>%1 (bevorzugt)</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>tile of layout</comment>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 (put there by you)</source>
        <translation>%1 (von Ihnen dorthin gelegt)</translation>
    </message>
    <message>
        <source>%1 (seldom)</source>
        <translation>%1 (selten)</translation>
    </message>
    <message>
        <source>Arrangements choose a tile for a window by the role of its application and by where it was kept before. A minimum size is what a window has shown by refusing to shrink.</source>
        <translation>Beim Anordnen wird die Kachel eines Fensters nach der Rolle seiner Anwendung gewählt und danach, wo es bisher lag. Eine Mindestgröße hat ein Fenster gezeigt, indem es sich nicht weiter verkleinern ließ.</translation>
    </message>
    <message>
        <source>What KOVA has learned about each application. The Delete key deletes it</source>
        <translation>Was KOVA über jede Anwendung gelernt hat. Entf löscht es</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Anwendung</translation>
    </message>
    <message>
        <source>Role</source>
        <translation>Rolle</translation>
    </message>
    <message>
        <source>Minimum size</source>
        <translation>Mindestgröße</translation>
    </message>
    <message>
        <source>Tiles</source>
        <translation>Kacheln</translation>
    </message>
    <message>
        <source>&amp;Forget</source>
        <translation>&amp;Vergessen</translation>
    </message>
    <message>
        <source>Deletes what KOVA has learned about the selected application; KOVA learns it anew</source>
        <translation>Löscht, was KOVA über die ausgewählte Anwendung gelernt hat; KOVA lernt es neu</translation>
    </message>
    <message>
        <source>Nothing learned yet</source>
        <translation>Noch nichts gelernt</translation>
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
        <source>Arranges the windows once after each start of KOVA. Windows that are in tiles already stay there.</source>
        <translation>Ordnet die Fenster einmal nach jedem Start von KOVA an. Fenster, die schon in Kacheln sind, bleiben dort.</translation>
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
        <source>The program kova-ui shows them and this window. Switching it off closes this window; other windows stay in their tiles. “kova ui on” switches it on again.</source>
        <translation>Das Programm kova-ui zeigt sie und dieses Fenster. Das Ausschalten schließt dieses Fenster; andere Fenster bleiben in ihren Kacheln. „kova ui on“ schaltet es wieder ein.</translation>
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
        <source>Restores the original sizes of the tiles in the layout in force</source>
        <translation>Stellt die ursprünglichen Größen der Kacheln im geltenden Layout wieder her</translation>
    </message>
    <message>
        <source>Return selects the layout for the display</source>
        <translation>Die Eingabetaste wählt das Layout für den Bildschirm</translation>
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
        <source>%1 pt too narrow</source>
        <translation>%1 pt zu schmal</translation>
    </message>
    <message>
        <source>%1 pt too short</source>
        <translation>%1 pt zu niedrig</translation>
    </message>
    <message>
        <source>%1 pt too narrow and %2 pt too short</source>
        <translation>%1 pt zu schmal und %2 pt zu niedrig</translation>
    </message>
    <message>
        <source>No display is connected</source>
        <translation>Kein Bildschirm ist angeschlossen</translation>
    </message>
    <message>
        <source>Too small for %1: its best tile is %2.</source>
        <translation>Zu klein für %1: Die beste Kachel ist %2.</translation>
    </message>
    <message>
        <source>%1 × %2 pt too small</source>
        <translation>%1 × %2 pt zu klein</translation>
    </message>
</context>
<context>
    <name>kova::ui::RuleTable</name>
    <message>
        <source>Rule</source>
        <translation>Regel</translation>
    </message>
    <message>
        <source>For</source>
        <translation>Für</translation>
    </message>
    <message>
        <source>What happens</source>
        <translation>Was geschieht</translation>
    </message>
    <message>
        <source>Open windows</source>
        <translation>Offene Fenster</translation>
    </message>
</context>
<context>
    <name>kova::ui::RuleTexts</name>
    <message>
        <source>Tile %1</source>
        <translation>Kachel %1</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Schweben lassen</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>“%1” in the title</source>
        <translation>„%1“ im Titel</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Not known: there are too many rules.</source>
        <translation>Nicht bekannt: Es gibt zu viele Regeln.</translation>
    </message>
    <message>
        <source>No open window matches now.</source>
        <translation>Zurzeit passt kein offenes Fenster.</translation>
    </message>
    <message>
        <source>%1 (an earlier rule decides)</source>
        <translation>%1 (eine frühere Regel entscheidet)</translation>
    </message>
</context>
<context>
    <name>kova::ui::RulesPane</name>
    <message>
        <source>Rules</source>
        <translation>Regeln</translation>
    </message>
    <message>
        <source>&amp;Continuously apply window rules</source>
        <translation>Fensterregeln &amp;ständig anwenden</translation>
    </message>
    <message>
        <source>Applies the rules once to each open window and once to each new window</source>
        <translation>Wendet die Regeln je einmal auf die offenen Fenster und auf jedes neue an</translation>
    </message>
    <message>
        <source>Rules are explainable and run only when continuous management is enabled.</source>
        <translation>Regeln sind nachvollziehbar und wirken nur, solange sie ständig angewendet werden.</translation>
    </message>
    <message>
        <source>What a new rule does with the windows of the application</source>
        <translation>Was eine neue Regel mit den Fenstern der Anwendung macht</translation>
    </message>
    <message>
        <source>&amp;New rule:</source>
        <translation>&amp;Neue Regel:</translation>
    </message>
    <message>
        <source>Rule for &amp;Focused App</source>
        <translation>Regel für &amp;fokussierte App</translation>
    </message>
    <message>
        <source>Adds a rule for the application whose window was focused last</source>
        <translation>Fügt eine Regel für die Anwendung hinzu, deren Fenster zuletzt die Tastatur hatte</translation>
    </message>
    <message>
        <source>Rule for a &amp;Window</source>
        <translation>Regel für ein F&amp;enster</translation>
    </message>
    <message>
        <source>Adds a rule for the application of an open window</source>
        <translation>Fügt eine Regel für die Anwendung eines offenen Fensters hinzu</translation>
    </message>
    <message>
        <source>E&amp;xclude from KOVA</source>
        <translation>&amp;Von KOVA ausnehmen</translation>
    </message>
    <message>
        <source>Adds a rule by which KOVA ignores the windows of the application that was focused last</source>
        <translation>Fügt eine Regel hinzu, nach der KOVA die Fenster der zuletzt fokussierten Anwendung ignoriert</translation>
    </message>
    <message>
        <source>Click the window that the rule is for. Escape cancels.</source>
        <translation>Klicken Sie auf das Fenster, für das die Regel gelten soll. Esc bricht ab.</translation>
    </message>
    <message>
        <source>The first rule that matches a window decides. Drag rules to change their order, or press Alt with the up or down arrow</source>
        <translation>Die erste Regel, die auf ein Fenster passt, entscheidet. Ziehen Sie Regeln, um die Reihenfolge zu ändern, oder drücken Sie Alt mit dem Pfeil nach oben oder unten</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Lets the selected rule decide before the rule that is above it now</source>
        <translation>Lässt die ausgewählte Regel vor der Regel entscheiden, die jetzt darüber steht</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Lets the selected rule decide after the rule that is below it now</source>
        <translation>Lässt die ausgewählte Regel nach der Regel entscheiden, die jetzt darunter steht</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Deletes the selected rule</source>
        <translation>Löscht die ausgewählte Regel</translation>
    </message>
    <message>
        <source>Selected rule</source>
        <translation>Ausgewählte Regel</translation>
    </message>
    <message>
        <source>Any title</source>
        <translation>Beliebiger Titel</translation>
    </message>
    <message>
        <source>Only windows whose title contains this text, in upper or lower case</source>
        <translation>Nur Fenster mit diesem Text im Titel, gleich ob groß oder klein geschrieben</translation>
    </message>
    <message>
        <source>What the selected rule does with a new window</source>
        <translation>Was die ausgewählte Regel mit einem neuen Fenster macht</translation>
    </message>
    <message>
        <source>&amp;Title contains:</source>
        <translation>&amp;Titel enthält:</translation>
    </message>
    <message>
        <source>W&amp;hat happens:</source>
        <translation>&amp;Was geschieht:</translation>
    </message>
    <message>
        <source>Open windows:</source>
        <translation>Offene Fenster:</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Schweben lassen</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Tile %1</source>
        <translation>Kachel %1</translation>
    </message>
    <message>
        <source>&amp;Pick with the Pointer</source>
        <translation>Mit dem &amp;Zeiger auswählen</translation>
    </message>
    <message>
        <source>No focused application window found</source>
        <translation>Kein fokussiertes Anwendungsfenster gefunden</translation>
    </message>
    <message>
        <source>No window that KOVA manages is there</source>
        <translation>Dort ist kein Fenster, das KOVA verwaltet</translation>
    </message>
    <message>
        <source>No rules yet</source>
        <translation>Noch keine Regeln</translation>
    </message>
</context>
<context>
    <name>kova::ui::ScenesPane</name>
    <message>
        <source>JSON files (*.json)</source>
        <translation>JSON-Dateien (*.json)</translation>
    </message>
    <message>
        <source>Export Scenes and Rules</source>
        <translation>Szenen und Regeln exportieren</translation>
    </message>
    <message>
        <source>Import Scenes and Rules</source>
        <translation>Szenen und Regeln importieren</translation>
    </message>
    <message>
        <source>A scene would be added from “%1”: %2</source>
        <translation>Aus „%1“ käme eine Szene hinzu: %2</translation>
    </message>
    <message>
        <source>%1 scenes would be added from “%2”: %3</source>
        <translation>Aus „%2“ kämen %1 Szenen hinzu: %3</translation>
    </message>
    <message>
        <source>A rule would be added from “%1”, as the last: %2</source>
        <translation>Aus „%1“ käme als letzte eine Regel hinzu: %2</translation>
    </message>
    <message>
        <source>%1 rules would be added from “%2”, as the last: %3</source>
        <translation>Aus „%2“ kämen als letzte %1 Regeln hinzu: %3</translation>
    </message>
    <message>
        <source>Nothing in “%1” is new.</source>
        <translation>In „%1“ ist nichts Neues.</translation>
    </message>
    <message>
        <source>Already there and left unchanged: %1</source>
        <translation>Schon vorhanden und unverändert: %1</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
    <message>
        <source>A Scene restores layouts, windows, tile stacks, display roles, and theme.</source>
        <translation>Eine Szene stellt Layouts, Fenster, Kachelstapel, Bildschirmrollen und Thema wieder her.</translation>
    </message>
    <message>
        <source>Scene name (optional)</source>
        <translation>Name der Szene (optional)</translation>
    </message>
    <message>
        <source>Without a name, the scene is named after the current time</source>
        <translation>Ohne Namen heißt die Szene nach der Uhrzeit</translation>
    </message>
    <message>
        <source>&amp;Capture Workspace as Scene</source>
        <translation>Arbeitsbereich als Szene &amp;festhalten</translation>
    </message>
    <message>
        <source>Saves the layouts, the windows in their tiles and the theme as they are now</source>
        <translation>Sichert die Layouts, die Fenster in ihren Kacheln und das Thema, wie sie jetzt sind</translation>
    </message>
    <message>
        <source>Return opens the selected scene, F2 renames it, Delete deletes it</source>
        <translation>Die Eingabetaste öffnet die ausgewählte Szene, F2 benennt sie um, Entf löscht sie</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Windows</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Captured</source>
        <translation>Festgehalten</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Öffnen</translation>
    </message>
    <message>
        <source>Restores the layouts, windows and theme of the selected scene</source>
        <translation>Stellt Layouts, Fenster und Thema der ausgewählten Szene wieder her</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>Gives the selected scene another name</source>
        <translation>Gibt der ausgewählten Szene einen anderen Namen</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Deletes the selected scene; this can be undone</source>
        <translation>Löscht die ausgewählte Szene; das lässt sich rückgängig machen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Brings back the scene that was deleted last</source>
        <translation>Holt die zuletzt gelöschte Szene zurück</translation>
    </message>
    <message>
        <source>What opening the scene changes</source>
        <translation>Was das Öffnen der Szene ändert</translation>
    </message>
    <message>
        <source>A line for each difference between the selected scene and the current workspace</source>
        <translation>Eine Zeile für jeden Unterschied zwischen der ausgewählten Szene und dem jetzigen Arbeitsbereich</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>In the scene</source>
        <translation>In der Szene</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Portable JSON · local-first</source>
        <translation>Portables JSON · bleibt auf diesem Rechner</translation>
    </message>
    <message>
        <source>&amp;Export…</source>
        <translation>&amp;Exportieren …</translation>
    </message>
    <message>
        <source>Writes all scenes and rules to a file that another machine can import</source>
        <translation>Schreibt alle Szenen und Regeln in eine Datei, die ein anderer Rechner importieren kann</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>&amp;Importieren …</translation>
    </message>
    <message>
        <source>Reads scenes and rules of a file and says what is new</source>
        <translation>Liest Szenen und Regeln einer Datei und sagt, was neu ist</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Adds the new scenes and rules after the existing ones</source>
        <translation>Fügt die neuen Szenen und Regeln nach den vorhandenen hinzu</translation>
    </message>
    <message>
        <source>Do &amp;Not Add</source>
        <translation>&amp;Nicht hinzufügen</translation>
    </message>
    <message>
        <source>Leaves scenes and rules as they are</source>
        <translation>Lässt Szenen und Regeln, wie sie sind</translation>
    </message>
    <message>
        <source>Picture of %1</source>
        <translation>Bild von %1</translation>
    </message>
    <message>
        <source>Opened or captured last</source>
        <translation>Zuletzt geöffnet oder festgehalten</translation>
    </message>
    <message>
        <source>Nothing: the workspace is as in the scene.</source>
        <translation>Nichts: Der Arbeitsbereich ist wie in der Szene.</translation>
    </message>
    <message>
        <source>No scenes yet. Capture the workspace as the first one.</source>
        <translation>Noch keine Szenen. Halten Sie den Arbeitsbereich als erste fest.</translation>
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
        <source>Removes the keys of the chosen action</source>
        <translation>Entfernt die Tasten der gewählten Aktion</translation>
    </message>
    <message>
        <source>Restore &amp;Defaults</source>
        <translation>&amp;Standard wiederherstellen</translation>
    </message>
    <message>
        <source>Restores the default keys of every action</source>
        <translation>Stellt die Standardtasten jeder Aktion wieder her</translation>
    </message>
    <message>
        <source>Keyboard shortcut not set</source>
        <translation>Kein Tastenkürzel festgelegt</translation>
    </message>
    <message>
        <source>In use by the system</source>
        <translation>Vom System belegt</translation>
    </message>
    <message>
        <source>In use by another program</source>
        <translation>Anderes Programm belegt es</translation>
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
        <source>Records keys for the chosen action, or ends recording</source>
        <translation>Nimmt Tasten für die gewählte Aktion auf oder beendet die Aufnahme</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>KOVA cannot record keys here. Set them with: kova shortcut set ACTION KEYS</source>
        <translation>KOVA kann hier keine Tasten aufnehmen. Legen Sie sie fest mit: kova shortcut set AKTION TASTEN</translation>
    </message>
    <message>
        <source>Choose an action to record keys for it.</source>
        <translation>Wählen Sie eine Aktion, um Tasten für sie aufzunehmen.</translation>
    </message>
    <message>
        <source>Press Return to record keys for the action.</source>
        <translation>Drücken Sie die Eingabetaste, um Tasten für die Aktion aufzunehmen.</translation>
    </message>
    <message>
        <source>Click to record a keyboard shortcut</source>
        <translation>Klicken, um einen Tastaturkurzbefehl aufzunehmen</translation>
    </message>
</context>
</TS>
