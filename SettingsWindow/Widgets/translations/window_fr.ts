<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation>Montrer ce qui est tapé</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>Choisir une couleur</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Choisir…</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Choisir un fichier</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Autre…</translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation>Travaux imprimés d’ici</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>Annuler le travail</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation>%1 (travail %2 sur %3) : %4</translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation>Comme mes réglages par &amp;défaut pour %1</translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation>Comme un jeu avec un &amp;nom, que les dialogues d’impression proposent :</translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation>Conserver aussi le code &amp;PIN et les mots de passe</translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation>Conserver les réglages</translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation>Nom du jeu</translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation>confidentiel</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>&amp;Conserver</translation>
    </message>
</context>
<context>
    <name>Keeping</name>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation>Conservé comme vos réglages par défaut pour %1.</translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation>Conservé comme %1/%2.</translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation>Renommer le jeu</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>Nouveau nom de %1 :</translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation>%1 s’appelle désormais %2.</translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation>Supprimer vos réglages par défaut pour %1 ?</translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation>Supprimer le jeu %1 ?</translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation>Supprimer le jeu</translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation>Supprimé. Les réglages à l’écran restent tels quels.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation>Réglages d’impression</translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation>Recherche d’imprimantes…</translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation>&amp;Conserver…</translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation>Copier comme co&amp;mmande</translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation>&amp;Imprimer</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation>L’imprimante %1 n’est plus là. Ce que vous avez réglé pour elle reste tant que cette fenêtre est ouverte.</translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation>Il n’y a ici aucune imprimante pilotée par jobfilter.</translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation>(Imprimantes d’autres sortes présentes : %L1)</translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation>Demandez à l’administrateur de vos imprimantes une file avec son pilote, ou ajoutez-en une :</translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation>Il n’y a pas d’imprimante %1 pilotée par jobfilter.</translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation>Il n’y a pas de jeu %1 pour cette imprimante.</translation>
    </message>
    <message>
        <source>This printer was changed on its server. What you had set was taken over.</source>
        <translation>Cette imprimante a changé sur son serveur. Vos réglages ont été repris.</translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation>Ouvrez d’abord un document</translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation>Ouvrir un document</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation>Documents PDF (*.pdf);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation>Copier comme commande</translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation>Mettre le code PIN et les mots de passe dans la commande ? Qui voit la commande peut les lire.</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>La commande est dans le presse-papiers.</translation>
    </message>
    <message>
        <source>Reading the driver of %1 …</source>
        <translation>Lecture du pilote de %1…</translation>
    </message>
    <message>
        <source>They count for every printer of the name %1, whatever server it is on.</source>
        <translation>Ils valent pour toute imprimante du nom de %1, quel que soit son serveur.</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation>Préparation des pages</translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation>Impossible d’apposer le filigrane</translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation>Impossible de faire le livret</translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation>Impossible d’ajouter les couvertures</translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation>Le document ne peut pas être lu : %1</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>Le document est vide.</translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation>Le document n’est pas un PDF.</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>Le document est endommagé.</translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation>Le document ne s’ouvre qu’avec son mot de passe.</translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation>Le document a trop de pages pour un aperçu.</translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation>La description d’imprimante de la file ne peut pas être lue : %1</translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation>Le toolkit n’est pas installé comme il se doit : %1</translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation>Il n’y a pas de place pour des fichiers temporaires : %1</translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation>La page ne peut pas être dessinée.</translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation>Le programme de l’aperçu ne peut pas être lancé : %1</translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation>Le document demande trop de mémoire pour un aperçu.</translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation>Le document demande trop de temps pour un aperçu.</translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation>Le programme de l’aperçu s’est terminé de façon inattendue (%1).</translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation>Il n’y a pas d’aperçu : %1</translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation>Les couvertures sont imprimées sur le papier du travail : un PDF ne peut pas choisir de bacs.</translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation>Cette file ne nomme aucun toolkit : elle imprime sans filigrane, livret ni couvertures.</translation>
    </message>
    <message>
        <source>Preparing the pages, step %L1</source>
        <translation>Préparation des pages, étape %L1</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation>&amp;Ouvrir un document…</translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation>Feuille précédente</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>Feuille suivante</translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation>Feuille affichée</translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation>Re&amp;tourner</translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation>Feuille</translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation>Arrêté. Le prochain changement recommence.</translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation>Un document d’exemple</translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation>sur %L1</translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation>Première de couverture, recto</translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation>Première de couverture, verso</translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation>Quatrième de couverture, recto</translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation>Quatrième de couverture, verso</translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation>Feuille %L1, recto</translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation>Feuille %L1, verso</translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation> · de %1</translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation> · sur %1</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Arrêter</translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation>Prête</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Impression en cours</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêtée</translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation>n’accepte pas de travaux</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Imprimante</translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation>Réglages de départ</translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation>&amp;Renommer ce jeu…</translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation>&amp;Supprimer ce jeu…</translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation>Chercher à nou&amp;veau des imprimantes</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation>Im&amp;primante :</translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation>Commencer a&amp;vec :</translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation>Les réglages de l’imprimante</translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation>Mes réglages par défaut</translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation>Pages de réglages</translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation>Il y a ici quelque chose à corriger</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation>Règle ce que sait faire une imprimante pilotée par jobfilter, et montre les pages telles qu’elles sortiront.</translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation>L’imprimante avec laquelle commencer, et un jeu de réglages conservé pour elle.</translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation>IMPRIMANTE[/JEU]</translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation>Un fichier PDF.</translation>
    </message>
</context>
<context>
    <name>words</name>
    <message>
        <source>this computer</source>
        <translation>cet ordinateur</translation>
    </message>
</context>
</TS>
