<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::AlertWindow</name>
    <message>
        <source>Applications that would end</source>
        <translation>Programme, die beendet würden</translation>
    </message>
    <message>
        <source>These applications would be ended without being asked</source>
        <translation>Diese Anwendungen würden ohne Rückfrage beendet</translation>
    </message>
    <message>
        <source>Carries out the action that the text describes</source>
        <translation>Führt die beschriebene Aktion aus</translation>
    </message>
    <message>
        <source>Changes nothing</source>
        <translation>Ändert nichts</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Schließt diese Meldung</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>kova::ui::DocumentFile</name>
    <message>
        <source>Export failed: %1</source>
        <translation>Export fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Import failed: %1</source>
        <translation>Import fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>larger than %1 MiB</source>
        <translation>größer als %1 MiB</translation>
    </message>
    <message>
        <source>“%1” is not UTF-8 text</source>
        <translation>„%1“ ist kein UTF-8-Text</translation>
    </message>
</context>
<context>
    <name>kova::ui::DocumentWindow</name>
    <message>
        <source>Export Scenes and Rules</source>
        <translation>Szenen und Regeln exportieren</translation>
    </message>
    <message>
        <source>Import Scenes and Rules</source>
        <translation>Szenen und Regeln importieren</translation>
    </message>
    <message>
        <source>JSON files (*.json)</source>
        <translation>JSON-Dateien (*.json)</translation>
    </message>
</context>
<context>
    <name>kova::ui::FilePanel</name>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>The folder that is shown, and the folders above it</source>
        <translation>Der angezeigte Ordner und die Ordner darüber</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Shows the folder that was shown before</source>
        <translation>Zeigt den Ordner, der zuvor angezeigt wurde</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vor</translation>
    </message>
    <message>
        <source>Shows the folder that was left with “Back”</source>
        <translation>Zeigt den Ordner, der mit „Zurück“ verlassen wurde</translation>
    </message>
    <message>
        <source>Folder Above</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Shows the folder that contains this one</source>
        <translation>Zeigt den Ordner, der diesen enthält</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Creates a folder in the folder that is shown</source>
        <translation>Legt im angezeigten Ordner einen Ordner an</translation>
    </message>
    <message>
        <source>Names</source>
        <translation>Namen</translation>
    </message>
    <message>
        <source>Lists only the names of the files</source>
        <translation>Zeigt nur die Namen der Dateien</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Lists files with their size, type and date</source>
        <translation>Zeigt Dateien mit Größe, Art und Datum</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Frequently used folders</source>
        <translation>Häufig benötigte Ordner</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>The files and folders in the folder that is shown</source>
        <translation>Die Dateien und Ordner im angezeigten Ordner</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>The name of the file to write; a path is possible</source>
        <translation>Der Name der Datei, die geschrieben wird; ein Pfad ist möglich</translation>
    </message>
    <message>
        <source>The name of the file to read; a path is possible</source>
        <translation>Der Name der Datei, die gelesen wird; ein Pfad ist möglich</translation>
    </message>
    <message>
        <source>File type</source>
        <translation>Dateityp</translation>
    </message>
    <message>
        <source>Which files are listed</source>
        <translation>Welche Dateien angezeigt werden</translation>
    </message>
    <message>
        <source>Closes the file panel and leaves everything as it is</source>
        <translation>Schließt die Dateiauswahl und lässt alles, wie es ist</translation>
    </message>
    <message>
        <source>Writes the file with that name</source>
        <translation>Schreibt die Datei mit diesem Namen</translation>
    </message>
    <message>
        <source>Reads the chosen file</source>
        <translation>Liest die gewählte Datei</translation>
    </message>
</context>
</TS>
