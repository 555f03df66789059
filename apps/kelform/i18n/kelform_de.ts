<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>kel::kelform::RecordForm</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Datensatz</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>&amp;First</source>
        <translation>&amp;Erster</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>&amp;Vorheriger</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Nächster</translation>
    </message>
    <message>
        <source>&amp;Last</source>
        <translation>&amp;Letzter</translation>
    </message>
    <message>
        <source>Ne&amp;w</source>
        <translation>Ne&amp;u</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Re&amp;vert</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Lösc&amp;hen</translation>
    </message>
    <message>
        <source>Run &amp;batch</source>
        <translation>Stapel &amp;ausführen</translation>
    </message>
    <message>
        <source>Save changes to this record?</source>
        <translation>Änderungen an diesem Datensatz speichern?</translation>
    </message>
    <message>
        <source>Please fill in &quot;%1&quot;.</source>
        <translation>Bitte füllen Sie „%1“ aus.</translation>
    </message>
    <message>
        <source>Delete this record?</source>
        <translation>Diesen Datensatz löschen?</translation>
    </message>
    <message>
        <source>Run the batch on all %1 records?</source>
        <translation>Den Stapel für alle %1 Datensätze ausführen?</translation>
    </message>
    <message>
        <source>Run &quot;%1&quot; on all %2 records?</source>
        <translation>„%1“ für alle %2 Datensätze ausführen?</translation>
    </message>
    <message>
        <source>No records: %1</source>
        <translation>Keine Datensätze: %1</translation>
    </message>
    <message>
        <source>New record</source>
        <translation>Neuer Datensatz</translation>
    </message>
    <message>
        <source>No records</source>
        <translation>Keine Datensätze</translation>
    </message>
    <message>
        <source>Record %1 of %2</source>
        <translation>Datensatz %1 von %2</translation>
    </message>
</context>
<context>
    <name>kelform</name>
    <message>
        <source>KelControls8 demo form</source>
        <translation>KelControls8-Beispielformular</translation>
    </message>
    <message>
        <source>Text fields</source>
        <translation>Textfelder</translation>
    </message>
    <message>
        <source>Number fields</source>
        <translation>Zahlenfelder</translation>
    </message>
    <message>
        <source>Date and time fields</source>
        <translation>Datums- und Zeitfelder</translation>
    </message>
    <message>
        <source>Combo fields</source>
        <translation>Kombinationsfelder</translation>
    </message>
    <message>
        <source>Check fields and progress</source>
        <translation>Kontrollkästchen und Fortschritt</translation>
    </message>
    <message>
        <source>Shows a form of KelControls8 controls.</source>
        <translation>Zeigt ein Formular aus KelControls8-Steuerelementen.</translation>
    </message>
    <message>
        <source>Exit status: 0 done, 1 a form, database or file could not be read or written, 2 wrong use of the command line.</source>
        <translation>Rückgabewert: 0 erledigt, 1 ein Formular, eine Datenbank oder Datei konnte nicht gelesen oder geschrieben werden, 2 falscher Aufruf.</translation>
    </message>
    <message>
        <source>Show the gallery of every control.</source>
        <translation>Zeigt die Übersicht aller Steuerelemente.</translation>
    </message>
    <message>
        <source>Too many arguments.</source>
        <translation>Zu viele Argumente.</translation>
    </message>
    <message>
        <source>Try &apos;kelform --help&apos;.</source>
        <translation>Siehe „kelform --help“.</translation>
    </message>
    <message>
        <source>Use the database &lt;file&gt; instead of the one in the application data folder.</source>
        <translation>Die Datenbank &lt;file&gt; statt der im Anwendungsdatenordner verwenden.</translation>
    </message>
    <message>
        <source>Render the form (or the gallery) to the PNG &lt;file&gt; and exit; no window opens.</source>
        <translation>Das Formular (oder die Übersicht) als PNG in &lt;file&gt; zeichnen und beenden; es öffnet sich kein Fenster.</translation>
    </message>
    <message>
        <source>Print every control&apos;s persisted properties and exit.</source>
        <translation>Die gespeicherten Eigenschaften aller Steuerelemente ausgeben und beenden.</translation>
    </message>
    <message>
        <source>The .ui form to run (default: the order-entry example).</source>
        <translation>Das auszuführende .ui-Formular (Vorgabe: das Bestellbeispiel).</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>no display to show the form on; --screenshot and --dump need none</source>
        <translation>kein Bildschirm, auf dem das Formular erscheinen kann; --screenshot und --dump brauchen keinen</translation>
    </message>
</context>
</TS>
