<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::EmptyListText</name>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen …</translation>
    </message>
</context>
<context>
    <name>kova::ui::FieldError</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Why the last change was refused</source>
        <translation>Warum die letzte Änderung abgelehnt wurde</translation>
    </message>
</context>
</TS>
