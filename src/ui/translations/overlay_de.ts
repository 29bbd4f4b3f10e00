<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Overlay</name>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>Launch an app in this tile</source>
        <translation>Programm in dieser Kachel starten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Drop on %1</source>
        <translation>Ablegen auf %1</translation>
    </message>
</context>
</TS>
