<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>kel::FieldControl</name>
    <message>
        <source>required</source>
        <translation>obligatoire</translation>
    </message>
</context>
<context>
    <name>kel::KelDate</name>
    <message>
        <source>Invalid Date</source>
        <translation>Date non valide</translation>
    </message>
    <message>
        <source>This field only accepts dates from %1 to %2.</source>
        <translation>Ce champ n&apos;accepte que des dates du %1 au %2.</translation>
    </message>
    <message>
        <source>Please enter a valid date in this field.</source>
        <translation>Veuillez saisir une date valide dans ce champ.</translation>
    </message>
</context>
<context>
    <name>kel::KelNumber</name>
    <message>
        <source>Please enter a non-zero value in this field.</source>
        <translation>Veuillez saisir une valeur non nulle dans ce champ.</translation>
    </message>
    <message>
        <source>This field only accepts values from %1 to %2.</source>
        <translation>Ce champ n&apos;accepte que des valeurs de %1 à %2.</translation>
    </message>
    <message>
        <source>Invalid Value</source>
        <translation>Valeur non valide</translation>
    </message>
</context>
<context>
    <name>kel::KelTime</name>
    <message>
        <source>Invalid Time</source>
        <translation>Heure non valide</translation>
    </message>
    <message>
        <source>This field only accepts times from %1 to %2.</source>
        <translation>Ce champ n&apos;accepte que des heures de %1 à %2.</translation>
    </message>
    <message>
        <source>Please enter a valid time in this field.</source>
        <translation>Veuillez saisir une heure valide dans ce champ.</translation>
    </message>
</context>
</TS>
