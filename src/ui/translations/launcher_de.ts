<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::CommandPalette</name>
    <message>
        <source>Palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>Applications, windows, scenes, layouts and commands</source>
        <translation>Programme, Fenster, Szenen, Layouts und Befehle</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Type a part of what you want; arrow keys choose, Enter carries it out</source>
        <translation>Einen Teil des Gewünschten tippen; Pfeiltasten wählen, Eingabe führt es aus</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Treffer</translation>
    </message>
    <message>
        <source>Applications, windows, scenes, layouts and commands, the best match first</source>
        <translation>Programme, Fenster, Szenen, Layouts und Befehle, der beste Treffer zuerst</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>bring to %1</source>
        <translation>nach %1 holen</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <comment>tile on display</comment>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>Acts on the tile %1</source>
        <translation>Wirkt auf die Kachel %1</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Arrange all windows</source>
        <translation>Alle Fenster anordnen</translation>
    </message>
    <message>
        <source>Undo the last step</source>
        <translation>Letzten Schritt rückgängig machen</translation>
    </message>
    <message>
        <source>Focus mode for the focused window</source>
        <translation>Fokusmodus für das fokussierte Fenster</translation>
    </message>
    <message>
        <source>Focus the window on the left</source>
        <translation>Fenster links fokussieren</translation>
    </message>
    <message>
        <source>Focus the window on the right</source>
        <translation>Fenster rechts fokussieren</translation>
    </message>
    <message>
        <source>Focus the window above</source>
        <translation>Fenster darüber fokussieren</translation>
    </message>
    <message>
        <source>Focus the window below</source>
        <translation>Fenster darunter fokussieren</translation>
    </message>
    <message>
        <source>Move the window to the left</source>
        <translation>Fenster nach links bewegen</translation>
    </message>
    <message>
        <source>Move the window to the right</source>
        <translation>Fenster nach rechts bewegen</translation>
    </message>
    <message>
        <source>Move the window up</source>
        <translation>Fenster nach oben bewegen</translation>
    </message>
    <message>
        <source>Move the window down</source>
        <translation>Fenster nach unten bewegen</translation>
    </message>
    <message>
        <source>Swap with the window on the left</source>
        <translation>Mit dem Fenster links tauschen</translation>
    </message>
    <message>
        <source>Swap with the window on the right</source>
        <translation>Mit dem Fenster rechts tauschen</translation>
    </message>
    <message>
        <source>Swap with the window above</source>
        <translation>Mit dem Fenster darüber tauschen</translation>
    </message>
    <message>
        <source>Swap with the window below</source>
        <translation>Mit dem Fenster darunter tauschen</translation>
    </message>
    <message>
        <source>Next window of the stack</source>
        <translation>Nächstes Fenster des Stapels</translation>
    </message>
    <message>
        <source>Previous window of the stack</source>
        <translation>Voriges Fenster des Stapels</translation>
    </message>
    <message>
        <source>Float the window, or put it into a tile</source>
        <translation>Fenster schweben lassen oder in eine Kachel legen</translation>
    </message>
    <message>
        <source>Put the window into a tile</source>
        <translation>Fenster in eine Kachel legen</translation>
    </message>
    <message>
        <source>Focus the next display</source>
        <translation>Nächsten Bildschirm fokussieren</translation>
    </message>
    <message>
        <source>Focus the previous display</source>
        <translation>Vorigen Bildschirm fokussieren</translation>
    </message>
    <message>
        <source>Move the window to the next display</source>
        <translation>Fenster auf den nächsten Bildschirm bewegen</translation>
    </message>
    <message>
        <source>Move the window to the previous display</source>
        <translation>Fenster auf den vorigen Bildschirm bewegen</translation>
    </message>
    <message>
        <source>Next layout</source>
        <translation>Nächstes Layout</translation>
    </message>
    <message>
        <source>Previous layout</source>
        <translation>Voriges Layout</translation>
    </message>
    <message>
        <source>Reset the sizes of the tiles</source>
        <translation>Größen der Kacheln zurücksetzen</translation>
    </message>
    <message>
        <source>Pause KOVA</source>
        <translation>KOVA anhalten</translation>
    </message>
    <message>
        <source>Resume KOVA</source>
        <translation>KOVA fortsetzen</translation>
    </message>
    <message>
        <source>Continuous management on</source>
        <translation>Fortlaufende Verwaltung ein</translation>
    </message>
    <message>
        <source>Continuous management off</source>
        <translation>Fortlaufende Verwaltung aus</translation>
    </message>
    <message>
        <source>Arrange after launch: on</source>
        <translation>Nach dem Start anordnen: ein</translation>
    </message>
    <message>
        <source>Arrange after launch: off</source>
        <translation>Nach dem Start anordnen: aus</translation>
    </message>
    <message>
        <source>Bring the next window of a tile forward: on</source>
        <translation>Nächstes Fenster einer Kachel nach vorn holen: ein</translation>
    </message>
    <message>
        <source>Bring the next window of a tile forward: off</source>
        <translation>Nächstes Fenster einer Kachel nach vorn holen: aus</translation>
    </message>
    <message>
        <source>Theme background on</source>
        <translation>Hintergrund des Themas ein</translation>
    </message>
    <message>
        <source>Theme background off</source>
        <translation>Hintergrund des Themas aus</translation>
    </message>
    <message>
        <source>Tile backgrounds on</source>
        <translation>Kachelhintergründe ein</translation>
    </message>
    <message>
        <source>Tile backgrounds off</source>
        <translation>Kachelhintergründe aus</translation>
    </message>
    <message>
        <source>Decoration on</source>
        <translation>Dekoration ein</translation>
    </message>
    <message>
        <source>Decoration off</source>
        <translation>Dekoration aus</translation>
    </message>
    <message>
        <source>Start KOVA at login: on</source>
        <translation>KOVA bei der Anmeldung starten: ein</translation>
    </message>
    <message>
        <source>Start KOVA at login: off</source>
        <translation>KOVA bei der Anmeldung starten: aus</translation>
    </message>
    <message>
        <source>Open the settings</source>
        <translation>Einstellungen öffnen</translation>
    </message>
    <message>
        <source>Open the menu</source>
        <translation>Menü öffnen</translation>
    </message>
    <message>
        <source>Restart the user interface</source>
        <translation>Bedienoberfläche neu starten</translation>
    </message>
    <message>
        <source>Switch the user interface off</source>
        <translation>Bedienoberfläche ausschalten</translation>
    </message>
    <message>
        <source>Quit KOVA</source>
        <translation>KOVA beenden</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1?</source>
        <translation>%1?</translation>
    </message>
    <message>
        <source>Changes that were not saved are lost.</source>
        <translation>Nicht gespeicherte Änderungen gehen verloren.</translation>
    </message>
    <message>
        <source>Force Quit</source>
        <translation>Beenden erzwingen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Bring the deleted scene back</source>
        <translation>Gelöschte Szene zurückholen</translation>
    </message>
    <message>
        <source>Restore the standard shortcuts</source>
        <translation>Standardkürzel wiederherstellen</translation>
    </message>
    <message>
        <source>Check the placements and repair them</source>
        <translation>Plätze der Fenster prüfen und berichtigen</translation>
    </message>
    <message>
        <source>Ask for the permission</source>
        <translation>Um die Erlaubnis bitten</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Check for updates automatically: on</source>
        <translation>Automatisch nach Aktualisierungen suchen: ein</translation>
    </message>
    <message>
        <source>Check for updates automatically: off</source>
        <translation>Automatisch nach Aktualisierungen suchen: aus</translation>
    </message>
    <message>
        <source>Download updates automatically: on</source>
        <translation>Aktualisierungen automatisch laden: ein</translation>
    </message>
    <message>
        <source>Download updates automatically: off</source>
        <translation>Aktualisierungen automatisch laden: aus</translation>
    </message>
    <message>
        <source>Hide the Dock: on</source>
        <translation>Dock ausblenden: ein</translation>
    </message>
    <message>
        <source>Hide the Dock: off</source>
        <translation>Dock ausblenden: aus</translation>
    </message>
    <message>
        <source>Export scenes and rules</source>
        <translation>Szenen und Regeln exportieren</translation>
    </message>
    <message>
        <source>Import scenes and rules</source>
        <translation>Szenen und Regeln importieren</translation>
    </message>
    <message>
        <source>Force quit all open applications</source>
        <translation>Beenden aller offenen Programme erzwingen</translation>
    </message>
    <message>
        <source>Open the introduction</source>
        <translation>Einführung öffnen</translation>
    </message>
    <message>
        <source>Close the settings</source>
        <translation>Einstellungen schließen</translation>
    </message>
    <message>
        <source>Launch an application into a tile</source>
        <translation>Programm in einer Kachel starten</translation>
    </message>
    <message>
        <source>Settings: General</source>
        <translation>Einstellungen: Allgemein</translation>
    </message>
    <message>
        <source>Settings: Layouts</source>
        <translation>Einstellungen: Layouts</translation>
    </message>
    <message>
        <source>Settings: Shortcuts</source>
        <translation>Einstellungen: Tastenkürzel</translation>
    </message>
    <message>
        <source>Settings: Rules</source>
        <translation>Einstellungen: Regeln</translation>
    </message>
    <message>
        <source>Settings: Scenes</source>
        <translation>Einstellungen: Szenen</translation>
    </message>
    <message>
        <source>Settings: Appearance</source>
        <translation>Einstellungen: Darstellung</translation>
    </message>
    <message>
        <source>Settings: Applications</source>
        <translation>Einstellungen: Programme</translation>
    </message>
    <message>
        <source>Settings: About</source>
        <translation>Einstellungen: Über</translation>
    </message>
    <message>
        <source>Show a window</source>
        <translation>Fenster zeigen</translation>
    </message>
    <message>
        <source>Which window?</source>
        <translation>Welches Fenster?</translation>
    </message>
    <message>
        <source>Put a window into a tile</source>
        <translation>Fenster in eine Kachel legen</translation>
    </message>
    <message>
        <source>Which tile?</source>
        <translation>Welche Kachel?</translation>
    </message>
    <message>
        <source>Swap with another window</source>
        <translation>Mit einem anderen Fenster tauschen</translation>
    </message>
    <message>
        <source>Move the window to another display</source>
        <translation>Fenster auf einen anderen Bildschirm bewegen</translation>
    </message>
    <message>
        <source>Which display?</source>
        <translation>Welcher Bildschirm?</translation>
    </message>
    <message>
        <source>Focus another display</source>
        <translation>Anderen Bildschirm fokussieren</translation>
    </message>
    <message>
        <source>Move a divider</source>
        <translation>Trennlinie verschieben</translation>
    </message>
    <message>
        <source>Which divider?</source>
        <translation>Welche Trennlinie?</translation>
    </message>
    <message>
        <source>Points to the right or downwards</source>
        <translation>Punkte nach rechts oder unten</translation>
    </message>
    <message>
        <source>Set the tile inset</source>
        <translation>Kachelabstand festlegen</translation>
    </message>
    <message>
        <source>Points from 0 to 100</source>
        <translation>Punkte von 0 bis 100</translation>
    </message>
    <message>
        <source>Prefer a tile for an application</source>
        <translation>Kachel bevorzugt für ein Programm</translation>
    </message>
    <message>
        <source>Which application?</source>
        <translation>Welches Programm?</translation>
    </message>
    <message>
        <source>Capture the workspace as a scene</source>
        <translation>Arbeitsbereich als Szene festhalten</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Rename a scene</source>
        <translation>Szene umbenennen</translation>
    </message>
    <message>
        <source>Which scene?</source>
        <translation>Welche Szene?</translation>
    </message>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
    <message>
        <source>Delete a scene</source>
        <translation>Szene löschen</translation>
    </message>
    <message>
        <source>Add a rule: always in a tile</source>
        <translation>Regel hinzufügen: immer in eine Kachel</translation>
    </message>
    <message>
        <source>For the application of which window?</source>
        <translation>Für das Programm welches Fensters?</translation>
    </message>
    <message>
        <source>Add a rule: always float</source>
        <translation>Regel hinzufügen: immer schweben</translation>
    </message>
    <message>
        <source>Add a rule: leave alone</source>
        <translation>Regel hinzufügen: in Ruhe lassen</translation>
    </message>
    <message>
        <source>Change a rule: only windows with a text in their title</source>
        <translation>Regel ändern: nur Fenster mit einem Text im Titel</translation>
    </message>
    <message>
        <source>Which rule?</source>
        <translation>Welche Regel?</translation>
    </message>
    <message>
        <source>Text in the title; empty for all windows</source>
        <translation>Text im Titel; leer für alle Fenster</translation>
    </message>
    <message>
        <source>Enable a rule</source>
        <translation>Regel einschalten</translation>
    </message>
    <message>
        <source>Disable a rule</source>
        <translation>Regel ausschalten</translation>
    </message>
    <message>
        <source>Delete a rule</source>
        <translation>Regel löschen</translation>
    </message>
    <message>
        <source>Move a rule</source>
        <translation>Regel verschieben</translation>
    </message>
    <message>
        <source>Place in the list; 1 comes first</source>
        <translation>Platz in der Liste; 1 steht vorn</translation>
    </message>
    <message>
        <source>Choose a theme</source>
        <translation>Thema wählen</translation>
    </message>
    <message>
        <source>Which theme?</source>
        <translation>Welches Thema?</translation>
    </message>
    <message>
        <source>Choose an accent color</source>
        <translation>Akzentfarbe wählen</translation>
    </message>
    <message>
        <source>Which accent color?</source>
        <translation>Welche Akzentfarbe?</translation>
    </message>
    <message>
        <source>Set a shortcut</source>
        <translation>Tastenkürzel festlegen</translation>
    </message>
    <message>
        <source>For which action?</source>
        <translation>Für welche Aktion?</translation>
    </message>
    <message>
        <source>Keys, such as ctrl+alt+h</source>
        <translation>Tasten, etwa ctrl+alt+h</translation>
    </message>
    <message>
        <source>Clear a shortcut</source>
        <translation>Tastenkürzel entfernen</translation>
    </message>
    <message>
        <source>Of which action?</source>
        <translation>Von welcher Aktion?</translation>
    </message>
    <message>
        <source>Quit an application</source>
        <translation>Programm beenden</translation>
    </message>
    <message>
        <source>The application of which window?</source>
        <translation>Die Anwendung welches Fensters?</translation>
    </message>
    <message>
        <source>Force an application to quit</source>
        <translation>Beenden eines Programms erzwingen</translation>
    </message>
    <message>
        <source>Forget what was learned of an application</source>
        <translation>Gelerntes über ein Programm vergessen</translation>
    </message>
    <message>
        <source>Open a kova:// URL</source>
        <translation>kova://-URL öffnen</translation>
    </message>
    <message>
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Put a divider back</source>
        <translation>Trennlinie zurücksetzen</translation>
    </message>
</context>
<context>
    <name>kova::ui::Launcher</name>
    <message>
        <source>Launch an app in this tile</source>
        <translation>App in dieser Kachel starten</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Type a part of the name; arrow keys choose, Enter launches into the tile</source>
        <translation>Einen Teil des Namens tippen; Pfeiltasten wählen, Eingabe startet in der Kachel</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Installed applications, most used first</source>
        <translation>Installierte Programme, die meistbenutzten zuerst</translation>
    </message>
</context>
<context>
    <name>kova::ui::PaletteAnswers</name>
    <message>
        <source>%1 — %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Between %1 and %2</source>
        <translation>Zwischen %1 und %2</translation>
    </message>
    <message>
        <source>side by side</source>
        <translation>nebeneinander</translation>
    </message>
    <message>
        <source>one above the other</source>
        <translation>übereinander</translation>
    </message>
    <message>
        <source>%1: “%2”</source>
        <translation>%1: „%2“</translation>
    </message>
</context>
<context>
    <name>kova::ui::SearchWindow</name>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
</context>
</TS>
