<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>FormDatabase</name>
    <message>
        <location filename="../formdatabase.cpp" line="34"/>
        <source>the schema is missing from the program</source>
        <translation>le schéma manque dans le programme</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="75"/>
        <source>PostgreSQL&apos;s Qt driver is not installed (Debian package libqt6sql6-psql)</source>
        <translation>Le pilote Qt de PostgreSQL n&apos;est pas installé (paquet Debian libqt6sql6-psql)</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="76"/>
        <source>SQLite&apos;s Qt driver is not installed (Debian package libqt6sql6-sqlite)</source>
        <translation>Le pilote Qt de SQLite n&apos;est pas installé (paquet Debian libqt6sql6-sqlite)</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="96"/>
        <source>%1 could not be opened: %2</source>
        <translation>%1 n&apos;a pas pu être ouvert : %2</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="104"/>
        <source>%1 is not a database kelform can open: it is damaged or not a SQLite file. It was left as it was.</source>
        <translation>%1 n&apos;est pas une base de données que kelform peut ouvrir : elle est endommagée ou n&apos;est pas un fichier SQLite. Elle a été laissée telle quelle.</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="105"/>
        <source>Details: %1</source>
        <translation>Détails : %1</translation>
    </message>
    <message>
        <location filename="../formdatabase.cpp" line="113"/>
        <source>%1: the example&apos;s tables could not be made: %2</source>
        <translation>%1 : les tables de l&apos;exemple n&apos;ont pas pu être créées : %2</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="56"/>
        <source>&quot;%1&quot; names no database: give a SQLite file or a postgresql://user@host:port/dbname address.</source>
        <translation>« %1 » ne désigne aucune base de données : indiquez un fichier SQLite ou une adresse postgresql://user@host:port/dbname.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="68"/>
        <source>%1: kelform opens SQLite files and postgresql:// addresses, not %2:// ones.</source>
        <translation>%1 : kelform ouvre les fichiers SQLite et les adresses postgresql://, pas les adresses %2://.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="71"/>
        <source>%1 is not a database address of the form postgresql://user@host:port/dbname</source>
        <translation>%1 n&apos;est pas une adresse de base de données de la forme postgresql://user@host:port/dbname</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="78"/>
        <source>A password does not belong on the command line: put it in ~/.pgpass or PGPASSWORD.</source>
        <translation>Un mot de passe n&apos;a pas sa place sur la ligne de commande : mettez-le dans ~/.pgpass ou PGPASSWORD.</translation>
    </message>
    <message>
        <location filename="../databaseaddress.cpp" line="90"/>
        <source>%1: kelform does not pass the parameter &quot;%2&quot; on to the server; leave it out.</source>
        <translation>%1 : kelform ne transmet pas le paramètre « %2 » au serveur ; retirez-le.</translation>
    </message>
</context>
<context>
    <name>kel::kelform</name>
    <message>
        <location filename="../recordform.cpp" line="51"/>
        <source>the database file is read-only</source>
        <translation>le fichier de base de données est en lecture seule</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="52"/>
        <source>the disk is full</source>
        <translation>le disque est plein</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="54"/>
        <location filename="../recordform.cpp" line="67"/>
        <source>someone else is writing to the database right now; please try again in a moment</source>
        <translation>quelqu&apos;un d&apos;autre écrit en ce moment dans la base de données ; veuillez réessayer dans un instant</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="55"/>
        <location filename="../recordform.cpp" line="69"/>
        <source>the database refused one of its values</source>
        <translation>la base de données a refusé l&apos;une des valeurs</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="56"/>
        <source>the database file could not be written</source>
        <translation>le fichier de base de données n&apos;a pas pu être écrit</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="58"/>
        <source>the database file is damaged</source>
        <translation>le fichier de base de données est endommagé</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="61"/>
        <source>the database is read-only</source>
        <translation>la base de données est en lecture seule</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="63"/>
        <source>you are not allowed to change this table</source>
        <translation>vous n&apos;avez pas le droit de modifier cette table</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="65"/>
        <source>the database server&apos;s disk is full</source>
        <translation>le disque du serveur de base de données est plein</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="71"/>
        <source>the connection to the database was lost</source>
        <translation>la connexion à la base de données a été perdue</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="73"/>
        <source>the database reported an error</source>
        <translation>la base de données a signalé une erreur</translation>
    </message>
</context>
<context>
    <name>kel::kelform::RecordForm</name>
    <message>
        <location filename="../recordform.cpp" line="147"/>
        <source>&amp;Record</source>
        <translation>&amp;Enregistrement</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="153"/>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="159"/>
        <source>&amp;First</source>
        <translation>&amp;Premier</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="160"/>
        <source>&amp;Previous</source>
        <translation>Pré&amp;cédent</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="161"/>
        <source>&amp;Next</source>
        <translation>&amp;Suivant</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="162"/>
        <source>&amp;Last</source>
        <translation>&amp;Dernier</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="165"/>
        <source>Ne&amp;w</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="166"/>
        <source>&amp;Save</source>
        <translation>En&amp;registrer</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="168"/>
        <source>Re&amp;vert</source>
        <translation>&amp;Annuler les modifications</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="171"/>
        <source>&amp;Delete</source>
        <translation>Suppri&amp;mer</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="177"/>
        <source>Run &amp;batch</source>
        <translation>Exécuter le &amp;lot</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="229"/>
        <source>%1 (read-only)</source>
        <translation>%1 (lecture seule)</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="230"/>
        <source>This database is read-only: you can look at the records but not change them.</source>
        <translation>Cette base de données est en lecture seule : vous pouvez consulter les enregistrements mais pas les modifier.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="346"/>
        <source>Save changes to this record?</source>
        <translation>Enregistrer les modifications de cet enregistrement ?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="384"/>
        <source>Please fill in &quot;%1&quot;.</source>
        <translation>Veuillez remplir « %1 ».</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="395"/>
        <source>Details: %1</source>
        <translation>Détails : %1</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="402"/>
        <location filename="../recordform.cpp" line="439"/>
        <source>The %1 could not be saved: %2. Your changes are still on the form.</source>
        <translation>%1 : l&apos;enregistrement a échoué : %2. Vos modifications sont toujours dans le formulaire.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="425"/>
        <source>This %1 was changed by someone else since you opened it.</source>
        <translation>%1 : modifié par quelqu&apos;un d&apos;autre depuis son ouverture.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="426"/>
        <source>Show their version? Your changes will be discarded. Choose No to keep editing.</source>
        <translation>Afficher l&apos;autre version ? Vos modifications seront perdues. Choisissez Non pour continuer la saisie.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="432"/>
        <source>This %1 was deleted by someone else since you opened it.</source>
        <translation>%1 : supprimé par quelqu&apos;un d&apos;autre depuis son ouverture.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="433"/>
        <source>Save your version as a new %1? Choose No to keep editing.</source>
        <translation>Enregistrer votre version comme nouvel élément (%1) ? Choisissez Non pour continuer la saisie.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="467"/>
        <source>Delete this record?</source>
        <translation>Supprimer cet enregistrement ?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="473"/>
        <source>This %1 was changed by someone else since you opened it. It was not deleted; their version is shown now.</source>
        <translation>%1 : modifié par quelqu&apos;un d&apos;autre depuis son ouverture. Rien n&apos;a été supprimé ; l&apos;autre version est affichée.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="479"/>
        <source>This %1 was already deleted by someone else.</source>
        <translation>%1 : déjà supprimé par quelqu&apos;un d&apos;autre.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="482"/>
        <source>The %1 could not be deleted: %2.</source>
        <translation>%1 : la suppression a échoué : %2.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="504"/>
        <source>Run the batch on all %1 records?</source>
        <translation>Exécuter le lot sur les %1 enregistrements ?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="505"/>
        <source>Run &quot;%1&quot; on all %2 records?</source>
        <translation>Exécuter « %1 » sur les %2 enregistrements ?</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="548"/>
        <source>The batch was not run: %1. Nothing was changed.</source>
        <translation>Le lot n&apos;a pas été exécuté : %1. Rien n&apos;a été modifié.</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="582"/>
        <source>No records: %1</source>
        <translation>Aucun enregistrement : %1</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="584"/>
        <source>New record</source>
        <translation>Nouvel enregistrement</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="586"/>
        <source>No records</source>
        <translation>Aucun enregistrement</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="590"/>
        <source>Record %1 of %2</source>
        <translation>Enregistrement %1 sur %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="592"/>
        <source>Record %1 of more than %2</source>
        <translation>Enregistrement %1 sur plus de %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="593"/>
        <source>Record %1 %2</source>
        <translation>Enregistrement %1 %2</translation>
    </message>
    <message>
        <location filename="../recordform.cpp" line="625"/>
        <source>record</source>
        <translation>enregistrement</translation>
    </message>
</context>
<context>
    <name>kelform</name>
    <message>
        <location filename="../main.cpp" line="28"/>
        <source>KelControls8 demo form</source>
        <translation>Formulaire de démonstration KelControls8</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="38"/>
        <source>Text fields</source>
        <translation>Champs de texte</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="41"/>
        <source>Number fields</source>
        <translation>Champs numériques</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="44"/>
        <source>Date and time fields</source>
        <translation>Champs de date et d&apos;heure</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="47"/>
        <source>Combo fields</source>
        <translation>Listes déroulantes</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="50"/>
        <source>Check fields and progress</source>
        <translation>Cases à cocher et progression</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="68"/>
        <source>Shows a form of KelControls8 controls.</source>
        <translation>Affiche un formulaire de contrôles KelControls8.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="69"/>
        <source>Exit status: 0 done, 1 a form, database or file could not be read or written, 2 wrong use of the command line.</source>
        <translation>Code de sortie : 0 terminé, 1 un formulaire, une base de données ou un fichier n&apos;a pu être lu ou écrit, 2 mauvaise utilisation de la ligne de commande.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="73"/>
        <source>Show the gallery of every control.</source>
        <translation>Affiche la galerie de tous les contrôles.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="80"/>
        <source>Too many arguments.</source>
        <translation>Trop d&apos;arguments.</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="82"/>
        <source>Try &apos;kelform --help&apos;.</source>
        <translation>Essayez « kelform --help ».</translation>
    </message>
    <message>
        <source>Use the database &lt;file&gt; instead of the one in the application data folder.</source>
        <translation type="vanished">Utiliser la base de données &lt;file&gt; au lieu de celle du dossier de données de l&apos;application.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="45"/>
        <source>Use the SQLite file &lt;db&gt; instead of the one in the application data folder, or the PostgreSQL server postgresql://user@host:port/dbname (password from PGPASSWORD or ~/.pgpass).</source>
        <translation>Utiliser le fichier SQLite &lt;db&gt; au lieu de celui du dossier de données de l&apos;application, ou le serveur PostgreSQL postgresql://user@host:port/dbname (mot de passe dans PGPASSWORD ou ~/.pgpass).</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="48"/>
        <source>Render the form (or the gallery) to the PNG &lt;file&gt; and exit; no window opens.</source>
        <translation>Dessiner le formulaire (ou la galerie) dans le PNG &lt;file&gt; et quitter ; aucune fenêtre ne s&apos;ouvre.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="49"/>
        <source>Print every control&apos;s persisted properties and exit.</source>
        <translation>Afficher les propriétés enregistrées de chaque contrôle et quitter.</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="50"/>
        <source>The .ui form to run (default: the order-entry example).</source>
        <translation>Le formulaire .ui à exécuter (par défaut : l&apos;exemple de saisie de commandes).</translation>
    </message>
    <message>
        <location filename="../runform.cpp" line="68"/>
        <source>cannot write %1</source>
        <translation>impossible d&apos;écrire %1</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="93"/>
        <source>no display to show the form on; --screenshot and --dump need none</source>
        <translation>aucun écran pour afficher le formulaire ; --screenshot et --dump n&apos;en ont pas besoin</translation>
    </message>
</context>
</TS>
