<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>kova::ui::AgentActions</name>
    <message>
        <source>Bring to Front</source>
        <translation>Nach vorn holen</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Schweben lassen</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>%1 beenden</translation>
    </message>
    <message>
        <source>Force Quit %1…</source>
        <translation>%1 sofort beenden …</translation>
    </message>
    <message>
        <source>Move to</source>
        <translation>Verschieben nach</translation>
    </message>
    <message>
        <source>Rule for %1</source>
        <translation>Regel für %1</translation>
    </message>
    <message>
        <source>Always in %1</source>
        <translation>Immer in %1</translation>
    </message>
    <message>
        <source>Always Float</source>
        <translation>Immer schweben lassen</translation>
    </message>
    <message>
        <source>Leave Alone</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Force %1 to quit?</source>
        <translation>%1 sofort beenden?</translation>
    </message>
    <message>
        <source>Changes that were not saved are lost.</source>
        <translation>Nicht gesicherte Änderungen gehen verloren.</translation>
    </message>
    <message>
        <source>Force Quit</source>
        <translation>Sofort beenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>The rule is not applied yet</source>
        <translation>Die Regel wird noch nicht angewendet</translation>
    </message>
    <message>
        <source>Rules run only when continuous management is enabled. Enable it now?</source>
        <translation>Regeln wirken nur, solange sie ständig angewendet werden. Jetzt einschalten?</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>Einschalten</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
</context>
</TS>
