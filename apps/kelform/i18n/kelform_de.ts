<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>FormDatabase</name>
    <message>
        <location filename="../formdatabase.cpp" line="34"/>
        <source>the schema is missing from the program</source>
        <translation>das Schema fehlt im Programm</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="75"/>
        <source>PostgreSQL&apos;s Qt driver is not installed (Debian package libqt6sql6-psql)</source>
        <translation>Der Qt-Treiber für PostgreSQL ist nicht installiert (Debian-Paket libqt6sql6-psql)</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="76"/>
        <source>SQLite&apos;s Qt driver is not installed (Debian package libqt6sql6-sqlite)</source>
        <translation>Der Qt-Treiber für SQLite ist nicht installiert (Debian-Paket libqt6sql6-sqlite)</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="96"/>
        <source>%1 could not be opened: %2</source>
        <translation>%1 konnte nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="104"/>
        <source>%1 is not a database kelform can open: it is damaged or not a SQLite file. It was left as it was.</source>
        <translation>%1 ist keine Datenbank, die kelform öffnen kann: Sie ist beschädigt oder keine SQLite-Datei. Sie wurde unverändert gelassen.</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="105"/>
        <source>Details: %1</source>
        <translation>Einzelheiten: %1</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="113"/>
        <source>%1: the example&apos;s tables could not be made: %2</source>
        <translation>%1: Die Tabellen des Beispiels konnten nicht angelegt werden: %2</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="56"/>
        <source>&quot;%1&quot; names no database: give a SQLite file or a postgresql://user@host:port/dbname address.</source>
        <translation>„%1“ nennt keine Datenbank: Geben Sie eine SQLite-Datei oder eine Adresse postgresql://user@host:port/dbname an.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="68"/>
        <source>%1: kelform opens SQLite files and postgresql:// addresses, not %2:// ones.</source>
        <translation>%1: kelform öffnet SQLite-Dateien und postgresql://-Adressen, keine %2://-Adressen.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="71"/>
        <source>%1 is not a database address of the form postgresql://user@host:port/dbname</source>
        <translation>%1 ist keine Datenbankadresse der Form postgresql://user@host:port/dbname</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="78"/>
        <source>A password does not belong on the command line: put it in ~/.pgpass or PGPASSWORD.</source>
        <translation>Ein Passwort gehört nicht in die Befehlszeile: Legen Sie es in ~/.pgpass oder PGPASSWORD ab.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="90"/>
        <source>%1: kelform does not pass the parameter &quot;%2&quot; on to the server; leave it out.</source>
        <translation>%1: kelform gibt den Parameter „%2“ nicht an den Server weiter; lassen Sie ihn weg.</translation>
    </message>
</context>
<context>
    <name>kel::kelform</name>
    <message>
        <location filename="../recordform.cpp" line="51"/>
        <source>the database file is read-only</source>
        <translation>die Datenbankdatei ist schreibgeschützt</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="52"/>
        <source>the disk is full</source>
        <translation>der Datenträger ist voll</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="54"/>
        <location filename="../recordform.cpp" line="67"/>
        <source>someone else is writing to the database right now; please try again in a moment</source>
        <translation>jemand anderes schreibt gerade in die Datenbank; bitte versuchen Sie es gleich noch einmal</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="55"/>
        <location filename="../recordform.cpp" line="69"/>
        <source>the database refused one of its values</source>
        <translation>die Datenbank hat einen der Werte abgelehnt</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="56"/>
        <source>the database file could not be written</source>
        <translation>die Datenbankdatei konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="58"/>
        <source>the database file is damaged</source>
        <translation>die Datenbankdatei ist beschädigt</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="61"/>
        <source>the database is read-only</source>
        <translation>die Datenbank ist schreibgeschützt</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="63"/>
        <source>you are not allowed to change this table</source>
        <translation>Sie dürfen diese Tabelle nicht ändern</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="65"/>
        <source>the database server&apos;s disk is full</source>
        <translation>der Datenträger des Datenbankservers ist voll</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="71"/>
        <source>the connection to the database was lost</source>
        <translation>die Verbindung zur Datenbank ist abgebrochen</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="73"/>
        <source>the database reported an error</source>
        <translation>die Datenbank hat einen Fehler gemeldet</translation>
    </message>
</context>
<context>
    <name>kel::kelform::RecordForm</name>
    <message>
        <location filename="../recordform.cpp" line="147"/>
        <source>&amp;Record</source>
        <translation>&amp;Datensatz</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="153"/>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="159"/>
        <source>&amp;First</source>
        <translation>&amp;Erster</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="160"/>
        <source>&amp;Previous</source>
        <translation>&amp;Vorheriger</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="161"/>
        <source>&amp;Next</source>
        <translation>&amp;Nächster</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="162"/>
        <source>&amp;Last</source>
        <translation>&amp;Letzter</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="165"/>
        <source>Ne&amp;w</source>
        <translation>Ne&amp;u</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="166"/>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="168"/>
        <source>Re&amp;vert</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="171"/>
        <source>&amp;Delete</source>
        <translation>Lösc&amp;hen</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="177"/>
        <source>Run &amp;batch</source>
        <translation>Stapel &amp;ausführen</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="229"/>
        <source>%1 (read-only)</source>
        <translation>%1 (schreibgeschützt)</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="230"/>
        <source>This database is read-only: you can look at the records but not change them.</source>
        <translation>Diese Datenbank ist schreibgeschützt: Sie können die Datensätze ansehen, aber nicht ändern.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="346"/>
        <source>Save changes to this record?</source>
        <translation>Änderungen an diesem Datensatz speichern?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="384"/>
        <source>Please fill in &quot;%1&quot;.</source>
        <translation>Bitte füllen Sie „%1“ aus.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="395"/>
        <source>Details: %1</source>
        <translation>Einzelheiten: %1</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="402"/>
        <location filename="../recordform.cpp" line="439"/>
        <source>The %1 could not be saved: %2. Your changes are still on the form.</source>
        <translation>%1: Speichern nicht möglich: %2. Ihre Änderungen stehen noch im Formular.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="425"/>
        <source>This %1 was changed by someone else since you opened it.</source>
        <translation>%1: seit dem Öffnen von jemand anderem geändert.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="426"/>
        <source>Show their version? Your changes will be discarded. Choose No to keep editing.</source>
        <translation>Die andere Fassung anzeigen? Ihre Änderungen werden verworfen. Wählen Sie Nein, um weiter zu bearbeiten.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="432"/>
        <source>This %1 was deleted by someone else since you opened it.</source>
        <translation>%1: seit dem Öffnen von jemand anderem gelöscht.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="433"/>
        <source>Save your version as a new %1? Choose No to keep editing.</source>
        <translation>Ihre Fassung neu anlegen (%1)? Wählen Sie Nein, um weiter zu bearbeiten.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="467"/>
        <source>Delete this record?</source>
        <translation>Diesen Datensatz löschen?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="473"/>
        <source>This %1 was changed by someone else since you opened it. It was not deleted; their version is shown now.</source>
        <translation>%1: seit dem Öffnen von jemand anderem geändert. Es wurde nicht gelöscht; die andere Fassung wird jetzt angezeigt.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="479"/>
        <source>This %1 was already deleted by someone else.</source>
        <translation>%1: bereits von jemand anderem gelöscht.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="482"/>
        <source>The %1 could not be deleted: %2.</source>
        <translation>%1: Löschen nicht möglich: %2.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="504"/>
        <source>Run the batch on all %1 records?</source>
        <translation>Den Stapel für alle %1 Datensätze ausführen?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="505"/>
        <source>Run &quot;%1&quot; on all %2 records?</source>
        <translation>„%1“ für alle %2 Datensätze ausführen?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="548"/>
        <source>The batch was not run: %1. Nothing was changed.</source>
        <translation>Der Stapel wurde nicht ausgeführt: %1. Es wurde nichts geändert.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="582"/>
        <source>No records: %1</source>
        <translation>Keine Datensätze: %1</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="584"/>
        <source>New record</source>
        <translation>Neuer Datensatz</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="586"/>
        <source>No records</source>
        <translation>Keine Datensätze</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="590"/>
        <source>Record %1 of %2</source>
        <translation>Datensatz %1 von %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="592"/>
        <source>Record %1 of more than %2</source>
        <translation>Datensatz %1 von mehr als %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="593"/>
        <source>Record %1 %2</source>
        <translation>Datensatz %1 %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="625"/>
        <source>record</source>
        <translation>Datensatz</translation>
    </message>
</context>
<context>
    <name>kelform</name>
    <message>
        <location filename="../main.cpp" line="28"/>
        <source>KelControls8 demo form</source>
        <translation>KelControls8-Beispielformular</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="38"/>
        <source>Text fields</source>
        <translation>Textfelder</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="41"/>
        <source>Number fields</source>
        <translation>Zahlenfelder</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="44"/>
        <source>Date and time fields</source>
        <translation>Datums- und Zeitfelder</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="47"/>
        <source>Combo fields</source>
        <translation>Kombinationsfelder</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="50"/>
        <source>Check fields and progress</source>
        <translation>Kontrollkästchen und Fortschritt</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="68"/>
        <source>Shows a form of KelControls8 controls.</source>
        <translation>Zeigt ein Formular aus KelControls8-Steuerelementen.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="69"/>
        <source>Exit status: 0 done, 1 a form, database or file could not be read or written, 2 wrong use of the command line.</source>
        <translation>Rückgabewert: 0 erledigt, 1 ein Formular, eine Datenbank oder Datei konnte nicht gelesen oder geschrieben werden, 2 falscher Aufruf.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="73"/>
        <source>Show the gallery of every control.</source>
        <translation>Zeigt die Übersicht aller Steuerelemente.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="80"/>
        <source>Too many arguments.</source>
        <translation>Zu viele Argumente.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="82"/>
        <source>Try &apos;kelform --help&apos;.</source>
        <translation>Siehe „kelform --help“.</translation>
    </message>
    <message>
        <source>Use the database &lt;file&gt; instead of the one in the application data folder.</source>
        <translation type="vanished">Die Datenbank &lt;file&gt; statt der im Anwendungsdatenordner verwenden.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="45"/>
        <source>Use the SQLite file &lt;db&gt; instead of the one in the application data folder, or the PostgreSQL server postgresql://user@host:port/dbname (password from PGPASSWORD or ~/.pgpass).</source>
        <translation>Die SQLite-Datei &lt;db&gt; statt der im Anwendungsdatenordner verwenden, oder den PostgreSQL-Server postgresql://user@host:port/dbname (Passwort aus PGPASSWORD oder ~/.pgpass).</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="48"/>
        <source>Render the form (or the gallery) to the PNG &lt;file&gt; and exit; no window opens.</source>
        <translation>Das Formular (oder die Übersicht) als PNG in &lt;file&gt; zeichnen und beenden; es öffnet sich kein Fenster.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="49"/>
        <source>Print every control&apos;s persisted properties and exit.</source>
        <translation>Die gespeicherten Eigenschaften aller Steuerelemente ausgeben und beenden.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="50"/>
        <source>The .ui form to run (default: the order-entry example).</source>
        <translation>Das auszuführende .ui-Formular (Vorgabe: das Bestellbeispiel).</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="68"/>
        <source>cannot write %1</source>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="93"/>
        <source>no display to show the form on; --screenshot and --dump need none</source>
        <translation>kein Bildschirm, auf dem das Formular erscheinen kann; --screenshot und --dump brauchen keinen</translation>
    </message>
</context>
</TS>
