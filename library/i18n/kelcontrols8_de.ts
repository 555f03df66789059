<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>kel::FieldControl</name>
    <message>
        <source>required</source>
        <translation>Pflichtfeld</translation>
    </message>
</context>
<context>
    <name>kel::KelDate</name>
    <message>
        <source>Invalid Date</source>
        <translation>Ungültiges Datum</translation>
    </message>
    <message>
        <source>This field only accepts dates from %1 to %2.</source>
        <translation>Dieses Feld nimmt nur Daten vom %1 bis %2 an.</translation>
    </message>
    <message>
        <source>Please enter a valid date in this field.</source>
        <translation>Bitte geben Sie in dieses Feld ein gültiges Datum ein.</translation>
    </message>
</context>
<context>
    <name>kel::KelNumber</name>
    <message>
        <source>Please enter a non-zero value in this field.</source>
        <translation>Bitte geben Sie in dieses Feld einen Wert ungleich null ein.</translation>
    </message>
    <message>
        <source>This field only accepts values from %1 to %2.</source>
        <translation>Dieses Feld nimmt nur Werte von %1 bis %2 an.</translation>
    </message>
    <message>
        <source>Invalid Value</source>
        <translation>Ungültiger Wert</translation>
    </message>
</context>
<context>
    <name>kel::KelTime</name>
    <message>
        <source>Invalid Time</source>
        <translation>Ungültige Uhrzeit</translation>
    </message>
    <message>
        <source>This field only accepts times from %1 to %2.</source>
        <translation>Dieses Feld nimmt nur Uhrzeiten von %1 bis %2 an.</translation>
    </message>
    <message>
        <source>Please enter a valid time in this field.</source>
        <translation>Bitte geben Sie in dieses Feld eine gültige Uhrzeit ein.</translation>
    </message>
</context>
</TS>
