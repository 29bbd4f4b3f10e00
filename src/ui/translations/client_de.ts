<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AgentTexts</name>
    <message>
        <source>Allow Accessibility Access…</source>
        <translation>Zugriff auf Bedienungshilfen erlauben …</translation>
    </message>
    <message>
        <source>Arrange Windows into Zones</source>
        <translation>Fenster in Zonen anordnen</translation>
    </message>
    <message>
        <source>Undo Window Action</source>
        <translation>Fensteraktion rückgängig machen</translation>
    </message>
    <message>
        <source>Focus Mode</source>
        <translation>Fokusmodus</translation>
    </message>
    <message>
        <source>Next Window in Current Zone</source>
        <translation>Nächstes Fenster in dieser Zone</translation>
    </message>
    <message>
        <source>Previous Window in Current Zone</source>
        <translation>Voriges Fenster in dieser Zone</translation>
    </message>
    <message>
        <source>Float Window</source>
        <translation>Fenster schweben lassen</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>Focus Left</source>
        <translation>Fokus nach links</translation>
    </message>
    <message>
        <source>Focus Right</source>
        <translation>Fokus nach rechts</translation>
    </message>
    <message>
        <source>Focus Up</source>
        <translation>Fokus nach oben</translation>
    </message>
    <message>
        <source>Focus Down</source>
        <translation>Fokus nach unten</translation>
    </message>
    <message>
        <source>Focus Next Display</source>
        <translation>Fokus auf den nächsten Bildschirm</translation>
    </message>
    <message>
        <source>Focus Previous Display</source>
        <translation>Fokus auf den vorigen Bildschirm</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Move Window Left</source>
        <translation>Fenster nach links</translation>
    </message>
    <message>
        <source>Move Window Right</source>
        <translation>Fenster nach rechts</translation>
    </message>
    <message>
        <source>Move Window Up</source>
        <translation>Fenster nach oben</translation>
    </message>
    <message>
        <source>Move Window Down</source>
        <translation>Fenster nach unten</translation>
    </message>
    <message>
        <source>Move Window to Next Display</source>
        <translation>Fenster auf den nächsten Bildschirm</translation>
    </message>
    <message>
        <source>Move Window to Previous Display</source>
        <translation>Fenster auf den vorigen Bildschirm</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Tauschen</translation>
    </message>
    <message>
        <source>Swap with Window Left</source>
        <translation>Mit dem linken Fenster tauschen</translation>
    </message>
    <message>
        <source>Swap with Window Right</source>
        <translation>Mit dem rechten Fenster tauschen</translation>
    </message>
    <message>
        <source>Swap with Window Above</source>
        <translation>Mit dem oberen Fenster tauschen</translation>
    </message>
    <message>
        <source>Swap with Window Below</source>
        <translation>Mit dem unteren Fenster tauschen</translation>
    </message>
    <message>
        <source>Place Window in Zone</source>
        <translation>Fenster in Zone legen</translation>
    </message>
    <message>
        <source>Layout on Current Display</source>
        <translation>Layout auf diesem Bildschirm</translation>
    </message>
    <message>
        <source>Layout on %1</source>
        <translation>Layout auf %1</translation>
    </message>
    <message>
        <source>Next Layout on Current Display</source>
        <translation>Nächstes Layout auf diesem Bildschirm</translation>
    </message>
    <message>
        <source>Previous Layout on Current Display</source>
        <translation>Voriges Layout auf diesem Bildschirm</translation>
    </message>
    <message>
        <source>Reset Layout Sizes on Current Display</source>
        <translation>Größen auf diesem Bildschirm zurücksetzen</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
    <message>
        <source>Capture Workspace as Scene</source>
        <translation>Arbeitsbereich als Szene festhalten</translation>
    </message>
    <message>
        <source>Continuously apply window rules</source>
        <translation>Fensterregeln ständig anwenden</translation>
    </message>
    <message>
        <source>Rules are explainable and run only when continuous management is enabled.</source>
        <translation>Regeln sind nachvollziehbar und wirken nur, solange sie ständig angewendet werden.</translation>
    </message>
    <message>
        <source>Use Theme Background</source>
        <translation>Hintergrund des Themas verwenden</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Introduction to KOVA</source>
        <translation>Einführung in KOVA</translation>
    </message>
    <message>
        <source>Quick Settings</source>
        <translation>Schnelleinstellungen</translation>
    </message>
    <message>
        <source>Automatically arrange after launch</source>
        <translation>Nach dem Start automatisch anordnen</translation>
    </message>
    <message>
        <source>Show Tile Backgrounds</source>
        <translation>Kachelhintergründe zeigen</translation>
    </message>
    <message>
        <source>Bring Next Window Forward</source>
        <translation>Nächstes Fenster nach vorn holen</translation>
    </message>
    <message>
        <source>Start at Login</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Hide the Dock Automatically</source>
        <translation>Dock automatisch ausblenden</translation>
    </message>
    <message>
        <source>Check for Updates Automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Download Updates Automatically</source>
        <translation>Updates automatisch laden</translation>
    </message>
    <message>
        <source>Export Scenes and Rules…</source>
        <translation>Szenen und Regeln exportieren …</translation>
    </message>
    <message>
        <source>Import Scenes and Rules…</source>
        <translation>Szenen und Regeln importieren …</translation>
    </message>
    <message>
        <source>Portable JSON · local-first</source>
        <translation>Übertragbares JSON · bleibt auf diesem Rechner</translation>
    </message>
    <message>
        <source>Pause KOVA</source>
        <translation>KOVA anhalten</translation>
    </message>
    <message>
        <source>Force Quit All Open Applications…</source>
        <translation>Alle offenen Programme sofort beenden …</translation>
    </message>
    <message>
        <source>Recheck Accessibility</source>
        <translation>Berechtigung erneut prüfen</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Quit KOVA</source>
        <translation>KOVA beenden</translation>
    </message>
    <message>
        <source>Windows arranged into zones — Undo is available</source>
        <translation>Fenster in Zonen angeordnet – das lässt sich rückgängig machen</translation>
    </message>
    <message>
        <source>There is no window to arrange</source>
        <translation>Es gibt kein Fenster zum Anordnen</translation>
    </message>
    <message>
        <source>Last window action undone</source>
        <translation>Letzte Fensteraktion rückgängig gemacht</translation>
    </message>
    <message>
        <source>There is nothing to undo</source>
        <translation>Es gibt nichts rückgängig zu machen</translation>
    </message>
    <message>
        <source>Accessibility permission is required</source>
        <translation>Die Berechtigung für Bedienungshilfen fehlt</translation>
    </message>
    <message>
        <source>No managed window has the focus</source>
        <translation>Kein verwaltetes Fenster hat den Fokus</translation>
    </message>
    <message>
        <source>No display is connected</source>
        <translation>Kein Bildschirm ist angeschlossen</translation>
    </message>
    <message>
        <source>KOVA is paused; “kova resume” goes on</source>
        <translation>KOVA ist angehalten; „kova resume“ setzt fort</translation>
    </message>
    <message>
        <source>Focus Mode closed — workspace restored</source>
        <translation>Fokusmodus beendet – Arbeitsbereich wiederhergestellt</translation>
    </message>
    <message>
        <source>Focus Mode closed because its window is no longer available</source>
        <translation>Fokusmodus beendet, weil es sein Fenster nicht mehr gibt</translation>
    </message>
    <message>
        <source>Focus Mode — %1 owns this display</source>
        <translation>Fokusmodus – %1 hat diesen Bildschirm für sich</translation>
    </message>
    <message>
        <source>This display already uses a single-pane layout</source>
        <translation>Dieser Bildschirm hat bereits ein Layout mit nur einer Kachel</translation>
    </message>
    <message>
        <source>No occupied zone left of the focused window</source>
        <translation>Links vom fokussierten Fenster ist keine belegte Zone</translation>
    </message>
    <message>
        <source>No occupied zone right of the focused window</source>
        <translation>Rechts vom fokussierten Fenster ist keine belegte Zone</translation>
    </message>
    <message>
        <source>No occupied zone up of the focused window</source>
        <translation>Über dem fokussierten Fenster ist keine belegte Zone</translation>
    </message>
    <message>
        <source>No occupied zone down of the focused window</source>
        <translation>Unter dem fokussierten Fenster ist keine belegte Zone</translation>
    </message>
    <message>
        <source>No zone left of the focused window</source>
        <translation>Links vom fokussierten Fenster ist keine Zone</translation>
    </message>
    <message>
        <source>No zone right of the focused window</source>
        <translation>Rechts vom fokussierten Fenster ist keine Zone</translation>
    </message>
    <message>
        <source>No zone up of the focused window</source>
        <translation>Über dem fokussierten Fenster ist keine Zone</translation>
    </message>
    <message>
        <source>No zone down of the focused window</source>
        <translation>Unter dem fokussierten Fenster ist keine Zone</translation>
    </message>
    <message>
        <source>Moved %1 to the left zone</source>
        <translation>%1 in die linke Zone verschoben</translation>
    </message>
    <message>
        <source>Moved %1 to the right zone</source>
        <translation>%1 in die rechte Zone verschoben</translation>
    </message>
    <message>
        <source>Moved %1 to the up zone</source>
        <translation>%1 in die obere Zone verschoben</translation>
    </message>
    <message>
        <source>Moved %1 to the down zone</source>
        <translation>%1 in die untere Zone verschoben</translation>
    </message>
    <message>
        <source>Moved %1 to %2</source>
        <translation>%1 nach %2 verschoben</translation>
    </message>
    <message>
        <source>Swapped %1 and %2</source>
        <translation>%1 und %2 getauscht</translation>
    </message>
    <message>
        <source>Focused %1</source>
        <translation>%1 hat den Fokus</translation>
    </message>
    <message>
        <source>%1 is now active</source>
        <translation>%1 ist jetzt aktiv</translation>
    </message>
    <message>
        <source>%1 floats until the next arrangement</source>
        <translation>%1 schwebt bis zur nächsten Anordnung</translation>
    </message>
    <message>
        <source>%1 floats until it is put into a tile</source>
        <translation>%1 schwebt, bis es in eine Kachel gelegt wird</translation>
    </message>
    <message>
        <source>%1 floats already</source>
        <translation>%1 schwebt bereits</translation>
    </message>
    <message>
        <source>Rule added for %1</source>
        <translation>Regel für %1 hinzugefügt</translation>
    </message>
    <message>
        <source>Rule “%1” placed %2</source>
        <translation>Die Regel „%1“ hat %2 platziert</translation>
    </message>
    <message>
        <source>Scene “%1” captured</source>
        <translation>Szene „%1“ festgehalten</translation>
    </message>
    <message>
        <source>Scene “%1” deleted</source>
        <translation>Szene „%1“ gelöscht</translation>
    </message>
    <message>
        <source>Scene “%1” restored to the list</source>
        <translation>Szene „%1“ ist wieder in der Liste</translation>
    </message>
    <message>
        <source>Scene “%1” restored</source>
        <translation>Szene „%1“ wiederhergestellt</translation>
    </message>
    <message>
        <source>Scene “%1” renamed to “%2”</source>
        <translation>Szene „%1“ in „%2“ umbenannt</translation>
    </message>
    <message>
        <source>Scene fully restored</source>
        <translation>Szene vollständig wiederhergestellt</translation>
    </message>
    <message>
        <source>Restoring Scene “%1” — waiting for %2 app window</source>
        <translation>Szene „%1“ wird wiederhergestellt – %2 Fenster fehlt noch</translation>
    </message>
    <message>
        <source>Restoring Scene “%1” — waiting for %2 app windows</source>
        <translation>Szene „%1“ wird wiederhergestellt – %2 Fenster fehlen noch</translation>
    </message>
    <message>
        <source>Scene restored — %1 app window was unavailable</source>
        <translation>Szene wiederhergestellt – %1 Fenster war nicht verfügbar</translation>
    </message>
    <message>
        <source>Scene restored — %1 app windows were unavailable</source>
        <translation>Szene wiederhergestellt – %1 Fenster waren nicht verfügbar</translation>
    </message>
    <message>
        <source>Layout sizes reset on %1</source>
        <translation>Größen auf %1 zurückgesetzt</translation>
    </message>
    <message>
        <source>Imported %1 scenes and %2 rules</source>
        <translation>%1 Szenen und %2 Regeln importiert</translation>
    </message>
    <message>
        <source>Quit requested for %1</source>
        <translation>%1 wurde aufgefordert, sich zu beenden</translation>
    </message>
    <message>
        <source>Force quit requested for %1</source>
        <translation>%1 wird sofort beendet</translation>
    </message>
    <message>
        <source>No open applications were force quit</source>
        <translation>Kein offenes Programm wurde beendet</translation>
    </message>
    <message>
        <source>%1 did not fit in the selected tile, so KOVA automatically claimed %2 additional tiles</source>
        <translation>%1 passte nicht in die gewählte Kachel, daher hat KOVA %2 weitere Kacheln hinzugenommen</translation>
    </message>
    <message>
        <source>No Open Applications</source>
        <translation>Keine offenen Programme</translation>
    </message>
    <message>
        <source>There are no regular applications to close. KOVA and Finder are always kept open.</source>
        <translation>Es gibt keine gewöhnlichen Programme zu beenden. KOVA und Finder bleiben immer offen.</translation>
    </message>
    <message>
        <source>Force Quit All Open Applications?</source>
        <translation>Alle offenen Programme sofort beenden?</translation>
    </message>
    <message>
        <source>This immediately closes %1 applications. Unsaved changes will be lost. KOVA and Finder will stay open.</source>
        <translation>Damit werden %1 Programme sofort beendet. Nicht gesicherte Änderungen gehen verloren. KOVA und Finder bleiben offen.</translation>
    </message>
    <message>
        <source>Force Quit All</source>
        <translation>Alle sofort beenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>There is no such window</source>
        <translation>Dieses Fenster gibt es nicht</translation>
    </message>
    <message>
        <source>There is no such tile</source>
        <translation>Diese Kachel gibt es nicht</translation>
    </message>
    <message>
        <source>There is no tile %1 in this layout</source>
        <translation>In diesem Layout gibt es keine Kachel %1</translation>
    </message>
    <message>
        <source>There is no tile to the left of %1</source>
        <translation>Links von %1 gibt es keine Kachel</translation>
    </message>
    <message>
        <source>There is no tile to the right of %1</source>
        <translation>Rechts von %1 gibt es keine Kachel</translation>
    </message>
    <message>
        <source>There is no tile above %1</source>
        <translation>Über %1 gibt es keine Kachel</translation>
    </message>
    <message>
        <source>There is no tile below %1</source>
        <translation>Unter %1 gibt es keine Kachel</translation>
    </message>
    <message>
        <source>There is no tile for %1</source>
        <translation>Für %1 gibt es keine Kachel</translation>
    </message>
    <message>
        <source>There is no other display</source>
        <translation>Es gibt keinen anderen Bildschirm</translation>
    </message>
    <message>
        <source>There is no such display</source>
        <translation>Diesen Bildschirm gibt es nicht</translation>
    </message>
    <message>
        <source>%1 has no tile</source>
        <translation>%1 hat keine Kachel</translation>
    </message>
    <message>
        <source>%1 is too large to trade places with %2</source>
        <translation>%1 ist zu groß, um mit %2 den Platz zu tauschen</translation>
    </message>
    <message>
        <source>No window on %1 can be focused</source>
        <translation>Auf %1 kann kein Fenster den Fokus erhalten</translation>
    </message>
    <message>
        <source>%1 is on %2 already</source>
        <translation>%1 ist bereits auf %2</translation>
    </message>
    <message>
        <source>%1 is in %2 already</source>
        <translation>%1 ist bereits in %2</translation>
    </message>
    <message>
        <source>%1 is on another desktop; go there first</source>
        <translation>%1 ist auf einer anderen Arbeitsfläche; zuerst dorthin wechseln</translation>
    </message>
    <message>
        <source>%1 is in full screen; end that first</source>
        <translation>%1 ist im Vollbild; dieses zuerst beenden</translation>
    </message>
    <message>
        <source>%1 is in no tile. Put it into one with “kova tile” or “kova place”</source>
        <translation>%1 ist in keiner Kachel. „kova tile“ oder „kova place“ legt es in eine</translation>
    </message>
    <message>
        <source>%1 waits behind another window. Bring it to the front with “kova focus window”</source>
        <translation>%1 wartet hinter einem anderen Fenster. „kova focus window“ holt es nach vorn</translation>
    </message>
    <message>
        <source>No other window waits in that tile</source>
        <translation>In dieser Kachel wartet kein anderes Fenster</translation>
    </message>
    <message>
        <source>No other window waits behind it in its tile</source>
        <translation>Dahinter wartet in der Kachel kein anderes Fenster</translation>
    </message>
    <message>
        <source>No focused application window found</source>
        <translation>Kein Programmfenster hat den Fokus</translation>
    </message>
    <message>
        <source>The window lies on no display</source>
        <translation>Das Fenster liegt auf keinem Bildschirm</translation>
    </message>
    <message>
        <source>The screen is locked</source>
        <translation>Der Bildschirm ist gesperrt</translation>
    </message>
    <message>
        <source>Suspended while the screen is asleep, locked or another user&apos;s</source>
        <translation>Ausgesetzt, solange der Bildschirm ausgeschaltet oder gesperrt ist oder jemand anders angemeldet ist</translation>
    </message>
    <message>
        <source>A scene needs a name</source>
        <translation>Eine Szene braucht einen Namen</translation>
    </message>
    <message>
        <source>A rule needs an application or a part of a title</source>
        <translation>Eine Regel braucht ein Programm oder einen Teil eines Titels</translation>
    </message>
    <message>
        <source>Not changed, because it could not be stored: %1</source>
        <translation>Nicht geändert, da es nicht gespeichert werden konnte: %1</translation>
    </message>
    <message>
        <source>%1 belongs to the desktop and stays open</source>
        <translation>%1 gehört zum Desktop und bleibt offen</translation>
    </message>
    <message>
        <source>%1 was not force quit: %2</source>
        <translation>%1 wurde nicht sofort beendet: %2</translation>
    </message>
    <message>
        <source>%1 places windows itself, so they stay where it puts them. Only windows that float there can be arranged; use KOVA with a window manager that lets windows float.</source>
        <translation>%1 ordnet Fenster selbst an, daher bleiben sie dort. Nur schwebende Fenster können angeordnet werden; KOVA braucht einen Fenstermanager, der Fenster schweben lässt.</translation>
    </message>
    <message>
        <source>No window goes where it is sent: the window manager places them itself. Only windows that float there can be arranged; use KOVA with a window manager that lets windows float.</source>
        <translation>Kein Fenster geht an seinen Platz: Der Fenstermanager ordnet sie selbst an. Nur schwebende Fenster können angeordnet werden; KOVA braucht einen Fenstermanager, der Fenster schweben lässt.</translation>
    </message>
    <message>
        <source>KOVA cannot show the overlay</source>
        <translation>KOVA kann nichts anzeigen</translation>
    </message>
    <message>
        <source>kova-ui %1 does not fit kova-agent %2. Install the same version of both, then run “kova ui restart”</source>
        <translation>kova-ui %1 passt nicht zu kova-agent %2. Beide in derselben Version installieren und dann „kova ui restart“ aufrufen</translation>
    </message>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 kann nicht gestartet werden: %2</translation>
    </message>
    <message>
        <source>This is a Wayland session. Log in to an X11 session instead.</source>
        <translation>Dies ist eine Wayland-Sitzung. KOVA braucht eine X11-Sitzung.</translation>
    </message>
</context>
</TS>
