<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>kel::kelform::RecordForm</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Enregistrement</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>&amp;First</source>
        <translation>&amp;Premier</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>Pré&amp;cédent</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Suivant</translation>
    </message>
    <message>
        <source>&amp;Last</source>
        <translation>&amp;Dernier</translation>
    </message>
    <message>
        <source>Ne&amp;w</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>En&amp;registrer</translation>
    </message>
    <message>
        <source>Re&amp;vert</source>
        <translation>&amp;Annuler les modifications</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Suppri&amp;mer</translation>
    </message>
    <message>
        <source>Run &amp;batch</source>
        <translation>Exécuter le &amp;lot</translation>
    </message>
    <message>
        <source>Save changes to this record?</source>
        <translation>Enregistrer les modifications de cet enregistrement ?</translation>
    </message>
    <message>
        <source>Please fill in &quot;%1&quot;.</source>
        <translation>Veuillez remplir « %1 ».</translation>
    </message>
    <message>
        <source>Delete this record?</source>
        <translation>Supprimer cet enregistrement ?</translation>
    </message>
    <message>
        <source>Run the batch on all %1 records?</source>
        <translation>Exécuter le lot sur les %1 enregistrements ?</translation>
    </message>
    <message>
        <source>Run &quot;%1&quot; on all %2 records?</source>
        <translation>Exécuter « %1 » sur les %2 enregistrements ?</translation>
    </message>
    <message>
        <source>No records: %1</source>
        <translation>Aucun enregistrement : %1</translation>
    </message>
    <message>
        <source>New record</source>
        <translation>Nouvel enregistrement</translation>
    </message>
    <message>
        <source>No records</source>
        <translation>Aucun enregistrement</translation>
    </message>
    <message>
        <source>Record %1 of %2</source>
        <translation>Enregistrement %1 sur %2</translation>
    </message>
</context>
<context>
    <name>kelform</name>
    <message>
        <source>KelControls8 demo form</source>
        <translation>Formulaire de démonstration KelControls8</translation>
    </message>
    <message>
        <source>Text fields</source>
        <translation>Champs de texte</translation>
    </message>
    <message>
        <source>Number fields</source>
        <translation>Champs numériques</translation>
    </message>
    <message>
        <source>Date and time fields</source>
        <translation>Champs de date et d&apos;heure</translation>
    </message>
    <message>
        <source>Combo fields</source>
        <translation>Listes déroulantes</translation>
    </message>
    <message>
        <source>Check fields and progress</source>
        <translation>Cases à cocher et progression</translation>
    </message>
    <message>
        <source>Shows a form of KelControls8 controls.</source>
        <translation>Affiche un formulaire de contrôles KelControls8.</translation>
    </message>
    <message>
        <source>Exit status: 0 done, 1 a form, database or file could not be read or written, 2 wrong use of the command line.</source>
        <translation>Code de sortie : 0 terminé, 1 un formulaire, une base de données ou un fichier n&apos;a pu être lu ou écrit, 2 mauvaise utilisation de la ligne de commande.</translation>
    </message>
    <message>
        <source>Show the gallery of every control.</source>
        <translation>Affiche la galerie de tous les contrôles.</translation>
    </message>
    <message>
        <source>Too many arguments.</source>
        <translation>Trop d&apos;arguments.</translation>
    </message>
    <message>
        <source>Try &apos;kelform --help&apos;.</source>
        <translation>Essayez « kelform --help ».</translation>
    </message>
    <message>
        <source>Use the database &lt;file&gt; instead of the one in the application data folder.</source>
        <translation>Utiliser la base de données &lt;file&gt; au lieu de celle du dossier de données de l&apos;application.</translation>
    </message>
    <message>
        <source>Render the form (or the gallery) to the PNG &lt;file&gt; and exit; no window opens.</source>
        <translation>Dessiner le formulaire (ou la galerie) dans le PNG &lt;file&gt; et quitter ; aucune fenêtre ne s&apos;ouvre.</translation>
    </message>
    <message>
        <source>Print every control&apos;s persisted properties and exit.</source>
        <translation>Afficher les propriétés enregistrées de chaque contrôle et quitter.</translation>
    </message>
    <message>
        <source>The .ui form to run (default: the order-entry example).</source>
        <translation>Le formulaire .ui à exécuter (par défaut : l&apos;exemple de saisie de commandes).</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>impossible d&apos;écrire %1</translation>
    </message>
    <message>
        <source>no display to show the form on; --screenshot and --dump need none</source>
        <translation>aucun écran pour afficher le formulaire ; --screenshot et --dump n&apos;en ont pas besoin</translation>
    </message>
</context>
</TS>
