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
        <source>They would be ended without asking them</source>
        <translation>Sie würden ohne Rückfrage beendet</translation>
    </message>
    <message>
        <source>Carries out what is asked</source>
        <translation>Führt das Gefragte aus</translation>
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
    <message>
        <source>Part of the file panel</source>
        <translation>Teil der Dateiauswahl</translation>
    </message>
</context>
</TS>
