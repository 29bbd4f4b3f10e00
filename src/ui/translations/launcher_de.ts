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
        <source>Start with the session: on</source>
        <translation>Mit der Sitzung starten: ein</translation>
    </message>
    <message>
        <source>Start with the session: off</source>
        <translation>Mit der Sitzung starten: aus</translation>
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
</TS>
