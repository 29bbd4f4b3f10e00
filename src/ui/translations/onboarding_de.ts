<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::OnboardingWindow</name>
    <message>
        <source>Welcome to KOVA</source>
        <translation>Willkommen bei KOVA</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>Goes to the previous page</source>
        <translation>Geht zur vorigen Seite</translation>
    </message>
    <message>
        <source>&amp;Continue</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Goes to the next page, or closes the window after the last one</source>
        <translation>Geht zur nächsten Seite oder schließt nach der letzten das Fenster</translation>
    </message>
    <message>
        <source>KOVA divides each display into tiles and keeps the windows of your applications in them.</source>
        <translation>KOVA teilt jeden Bildschirm in Kacheln und hält die Fenster Ihrer Anwendungen darin.</translation>
    </message>
    <message>
        <source>Drag the gap between two tiles to resize them, or drag a window into another tile. What does not fit waits behind the window in front.</source>
        <translation>Ziehen Sie an der Lücke zwischen zwei Kacheln, um ihre Größe zu ändern, oder ziehen Sie ein Fenster in eine andere Kachel. Was keinen Platz hat, wartet hinter dem vorderen Fenster.</translation>
    </message>
    <message>
        <source>&amp;Open System Settings…</source>
        <translation>&amp;Systemeinstellungen öffnen …</translation>
    </message>
    <message>
        <source>Makes the system ask for the permission, or opens the matching page of the system settings</source>
        <translation>Lässt das System nach der Berechtigung fragen oder öffnet die passende Seite der Systemeinstellungen</translation>
    </message>
    <message>
        <source>Permission to Manage Windows</source>
        <translation>Berechtigung, Fenster zu verwalten</translation>
    </message>
    <message>
        <source>To move the windows of other applications KOVA needs the Accessibility permission: allow KOVA under System Settings → Privacy &amp; Security → Accessibility. Until then it stays idle.</source>
        <translation>Um Fenster anderer Anwendungen zu bewegen, braucht KOVA die Berechtigung für Bedienungshilfen: Erlauben Sie KOVA unter Systemeinstellungen → Datenschutz &amp; Sicherheit → Bedienungshilfen. Bis dahin tut es nichts.</translation>
    </message>
    <message>
        <source>&amp;Start KOVA at login</source>
        <translation>KOVA bei der &amp;Anmeldung starten</translation>
    </message>
    <message>
        <source>&amp;Hide the Dock Automatically</source>
        <translation>&amp;Dock automatisch ausblenden</translation>
    </message>
    <message>
        <source>Optional. KOVA leaves your current Dock behavior untouched unless you change this option. Changing it briefly restarts the Dock.</source>
        <translation>Optional. KOVA lässt das Verhalten Ihres Docks unverändert, solange Sie diese Option nicht ändern. Eine Änderung startet das Dock kurz neu.</translation>
    </message>
    <message>
        <source>There is nothing to set up on this desktop.</source>
        <translation>Auf diesem Desktop gibt es nichts einzurichten.</translation>
    </message>
    <message>
        <source>Set Up</source>
        <translation>Einrichten</translation>
    </message>
    <message>
        <source>You can change this at any time in the settings.</source>
        <translation>Sie können das jederzeit in den Einstellungen ändern.</translation>
    </message>
    <message>
        <source>&amp;Arrange Now</source>
        <translation>Jetzt &amp;anordnen</translation>
    </message>
    <message>
        <source>Puts the open windows into tiles</source>
        <translation>Legt die offenen Fenster in Kacheln</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Puts the windows back to where they were</source>
        <translation>Legt die Fenster dorthin zurück, wo sie waren</translation>
    </message>
    <message>
        <source>Try It</source>
        <translation>Ausprobieren</translation>
    </message>
    <message>
        <source>Put the windows that are open into tiles. One click on Undo puts all of them back.</source>
        <translation>Legen Sie die offenen Fenster in Kacheln. Ein Klick auf „Rückgängig“ legt alle wieder zurück.</translation>
    </message>
    <message>
        <source>KOVA has the permission.</source>
        <translation>KOVA hat die Berechtigung.</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>Save the workspace as a scene, and bring all of it back later. Every command that rearranges windows can be undone.</source>
        <translation>Sichern Sie den Arbeitsbereich als Szene und holen Sie ihn später ganz zurück. Jeder Befehl, der Fenster neu anordnet, lässt sich rückgängig machen.</translation>
    </message>
</context>
</TS>
