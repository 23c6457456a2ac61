<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Model</name>
    <message>
        <source>A name is needed</source>
        <translation>Il faut un nom</translation>
    </message>
    <message>
        <source>A name must not have blanks, quotes or any of / # \</source>
        <translation>Un nom ne peut contenir ni espaces, ni guillemets, ni / # \</translation>
    </message>
    <message>
        <source>A name must not have more than 127 letters</source>
        <translation>Un nom ne peut avoir plus de 127 lettres</translation>
    </message>
    <message>
        <source>A3</source>
        <translation>A3</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Above what is on the page</source>
        <translation>Au-dessus de ce qui est sur la page</translation>
    </message>
    <message>
        <source>Absolute colorimetric</source>
        <translation>Colorimétrie absolue</translation>
    </message>
    <message>
        <source>Across the page, in percent from the left</source>
        <translation>En travers de la page, en pour cent depuis la gauche</translation>
    </message>
    <message>
        <source>Advanced colour settings</source>
        <translation>Réglages de couleur avancés</translation>
    </message>
    <message>
        <source>All colours</source>
        <translation>Toutes les couleurs</translation>
    </message>
    <message>
        <source>All over the page</source>
        <translation>Sur toute la page</translation>
    </message>
    <message>
        <source>Along the page, in percent from below</source>
        <translation>Le long de la page, en pour cent depuis le bas</translation>
    </message>
    <message>
        <source>Angle in degrees, clockwise</source>
        <translation>Angle en degrés, dans le sens horaire</translation>
    </message>
    <message>
        <source>Another value</source>
        <translation>Une autre valeur</translation>
    </message>
    <message>
        <source>As given across and along the page</source>
        <translation>Comme indiqué en travers et le long</translation>
    </message>
    <message>
        <source>As set at the printer</source>
        <translation>Comme réglé sur l’imprimante</translation>
    </message>
    <message>
        <source>As the job</source>
        <translation>Comme le travail</translation>
    </message>
    <message>
        <source>As wide as the page</source>
        <translation>Aussi large que la page</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>B4</source>
        <translation>B4</translation>
    </message>
    <message>
        <source>Back cover</source>
        <translation>Quatrième de couverture</translation>
    </message>
    <message>
        <source>Below what is on the page</source>
        <translation>Au-dessous de ce qui est sur la page</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>Vierge</translation>
    </message>
    <message>
        <source>Booklet</source>
        <translation>Livret</translation>
    </message>
    <message>
        <source>Booklet of sheets</source>
        <translation>Livret de feuilles</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>En bas</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>En bas à gauche</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>En bas à droite</translation>
    </message>
    <message>
        <source>Box name</source>
        <translation>Nom de la boîte</translation>
    </message>
    <message>
        <source>Box number</source>
        <translation>Numéro de la boîte</translation>
    </message>
    <message>
        <source>Box password</source>
        <translation>Mot de passe de la boîte</translation>
    </message>
    <message>
        <source>By a profile of one's own</source>
        <translation>Par un profil personnel</translation>
    </message>
    <message>
        <source>By single profiles</source>
        <translation>Par des profils individuels</translation>
    </message>
    <message>
        <source>By the chosen profile</source>
        <translation>Par le profil choisi</translation>
    </message>
    <message>
        <source>By the printer</source>
        <translation>Par l’imprimante</translation>
    </message>
    <message>
        <source>CMYK source profile</source>
        <translation>Profil source CMJN</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Colour matching</source>
        <translation>Correspondance des couleurs</translation>
    </message>
    <message>
        <source>Colour matching, as told by programs</source>
        <translation>Correspondance des couleurs, selon les programmes</translation>
    </message>
    <message>
        <source>Colour profile of the document, a file on the server</source>
        <translation>Profil de couleur du document, un fichier sur le serveur</translation>
    </message>
    <message>
        <source>Colours that profiles apply to</source>
        <translation>Couleurs auxquelles les profils s’appliquent</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Copies</translation>
    </message>
    <message>
        <source>Courier</source>
        <translation>Courier</translation>
    </message>
    <message>
        <source>Courier Bold</source>
        <translation>Courier gras</translation>
    </message>
    <message>
        <source>Cover pages</source>
        <translation>Couvertures</translation>
    </message>
    <message>
        <source>Covers from the tray of the job</source>
        <translation>Couvertures depuis le bac du travail</translation>
    </message>
    <message>
        <source>Department code</source>
        <translation>Code de service</translation>
    </message>
    <message>
        <source>Device colours only</source>
        <translation>Couleurs du périphérique seulement</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>Diagonale</translation>
    </message>
    <message>
        <source>Distance from the edges</source>
        <translation>Distance des bords</translation>
    </message>
    <message>
        <source>Extended box password</source>
        <translation>Mot de passe étendu de la boîte</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>Ajusté</translation>
    </message>
    <message>
        <source>Folder in the box</source>
        <translation>Dossier dans la boîte</translation>
    </message>
    <message>
        <source>Follows from “%1”</source>
        <translation>Découle de « %1 »</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Police</translation>
    </message>
    <message>
        <source>Front cover</source>
        <translation>Première de couverture</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Held</source>
        <translation>Retenu</translation>
    </message>
    <message>
        <source>Helvetica</source>
        <translation>Helvetica</translation>
    </message>
    <message>
        <source>Helvetica Bold</source>
        <translation>Helvetica gras</translation>
    </message>
    <message>
        <source>How far each folded sheet sticks out</source>
        <translation>De combien dépasse chaque feuille pliée</translation>
    </message>
    <message>
        <source>In its own size</source>
        <translation>Dans sa propre taille</translation>
    </message>
    <message>
        <source>Is too long</source>
        <translation>Est trop long</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Gauche</translation>
    </message>
    <message>
        <source>Look the user's domain up in the directory</source>
        <translation>Chercher le domaine de l’utilisateur dans l’annuaire</translation>
    </message>
    <message>
        <source>Margin along the fold</source>
        <translation>Marge le long du pli</translation>
    </message>
    <message>
        <source>Margin at the other edges</source>
        <translation>Marge aux autres bords</translation>
    </message>
    <message>
        <source>Media type</source>
        <translation>Type de papier</translation>
    </message>
    <message>
        <source>Media type of the back cover</source>
        <translation>Type de papier de la quatrième de couverture</translation>
    </message>
    <message>
        <source>Media type of the front cover</source>
        <translation>Type de papier de la première de couverture</translation>
    </message>
    <message>
        <source>Must be %1 digits, and nothing else</source>
        <translation>Doit être %1 chiffres, et rien d’autre</translation>
    </message>
    <message>
        <source>Must be %1 to %2 digits, and nothing else</source>
        <translation>Doit être %1 à %2 chiffres, et rien d’autre</translation>
    </message>
    <message>
        <source>Must be 1, 3 or 4 numbers from 0 to 1 with commas between them</source>
        <translation>Doit être 1, 3 ou 4 nombres de 0 à 1 séparés par des virgules</translation>
    </message>
    <message>
        <source>Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)</source>
        <translation>Doit être une longueur, comme 10mm ou 0.5in, ou un nombre de points (1/72 pouce)</translation>
    </message>
    <message>
        <source>Must be a list of pages, as 2-5,8,10-</source>
        <translation>Doit être une liste de pages, comme 2-5,8,10-</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>Doit être un nombre</translation>
    </message>
    <message>
        <source>Must be a number above 0</source>
        <translation>Doit être un nombre supérieur à 0</translation>
    </message>
    <message>
        <source>Must be a number from %1 to %2</source>
        <translation>Doit être un nombre de %1 à %2</translation>
    </message>
    <message>
        <source>Must be a size, as 100x200mm</source>
        <translation>Doit être un format, comme 100x200mm</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>Doit être un nombre entier</translation>
    </message>
    <message>
        <source>Must be digits, and nothing else</source>
        <translation>Doit être des chiffres, et rien d’autre</translation>
    </message>
    <message>
        <source>Must be the full path of a file</source>
        <translation>Doit être le chemin complet d’un fichier</translation>
    </message>
    <message>
        <source>Must have %1 characters</source>
        <translation>Doit avoir %1 caractères</translation>
    </message>
    <message>
        <source>Must have %1 to %2 characters</source>
        <translation>Doit avoir %1 à %2 caractères</translation>
    </message>
    <message>
        <source>Must not have tabs, line breaks or the like</source>
        <translation>Ne peut contenir ni tabulations, ni sauts de ligne ou semblables</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>No booklet</source>
        <translation>Pas de livret</translation>
    </message>
    <message>
        <source>No cover</source>
        <translation>Pas de couverture</translation>
    </message>
    <message>
        <source>No temporary file can be made: %1</source>
        <translation>Impossible de créer un fichier temporaire : %1</translation>
    </message>
    <message>
        <source>Not specified</source>
        <translation>Non spécifié</translation>
    </message>
    <message>
        <source>Not together with “%1”</source>
        <translation>Pas avec « %1 »</translation>
    </message>
    <message>
        <source>Not together with “%1”: %2</source>
        <translation>Pas avec « %1 » : %2</translation>
    </message>
    <message>
        <source>On one side</source>
        <translation>Sur une face</translation>
    </message>
    <message>
        <source>On the pages</source>
        <translation>Sur les pages</translation>
    </message>
    <message>
        <source>Only with “%1”</source>
        <translation>Seulement avec « %1 »</translation>
    </message>
    <message>
        <source>Only with “%1”: %2</source>
        <translation>Seulement avec « %1 » : %2</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>Profil de sortie</translation>
    </message>
    <message>
        <source>PIN for private printing</source>
        <translation>Code PIN d’impression confidentielle</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>Format de page</translation>
    </message>
    <message>
        <source>Paper and printer</source>
        <translation>Papier et imprimante</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>Source de papier</translation>
    </message>
    <message>
        <source>Paper source of the back cover</source>
        <translation>Source de papier de la quatrième de couverture</translation>
    </message>
    <message>
        <source>Paper source of the front cover</source>
        <translation>Source de papier de la première de couverture</translation>
    </message>
    <message>
        <source>Perceptual</source>
        <translation>Perceptif</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Print mode</source>
        <translation>Mode d’impression</translation>
    </message>
    <message>
        <source>Print when storing in a document box</source>
        <translation>Imprimer en stockant dans une boîte de documents</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>En cours d’impression</translation>
    </message>
    <message>
        <source>Printing of the back cover</source>
        <translation>Impression de la quatrième de couverture</translation>
    </message>
    <message>
        <source>Printing of the front cover</source>
        <translation>Impression de la première de couverture</translation>
    </message>
    <message>
        <source>Private printing and document box</source>
        <translation>Impression confidentielle et boîte de documents</translation>
    </message>
    <message>
        <source>Profile of one's own</source>
        <translation>Profil personnel</translation>
    </message>
    <message>
        <source>RGB source profile</source>
        <translation>Profil source RVB</translation>
    </message>
    <message>
        <source>Reads from left to right</source>
        <translation>Se lit de gauche à droite</translation>
    </message>
    <message>
        <source>Relative colorimetric</source>
        <translation>Colorimétrie relative</translation>
    </message>
    <message>
        <source>Rendering intent</source>
        <translation>Mode de rendu</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Droite</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturation</translation>
    </message>
    <message>
        <source>See-through</source>
        <translation>Translucide</translation>
    </message>
    <message>
        <source>Sheets folded together, 0 for all</source>
        <translation>Feuilles pliées ensemble, 0 pour toutes</translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation>Taille en points</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>Store in a document box</source>
        <translation>Stocker dans une boîte de documents</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>Tabloïd</translation>
    </message>
    <message>
        <source>The document was not sent: %1</source>
        <translation>Le document n’a pas été envoyé : %1</translation>
    </message>
    <message>
        <source>The driver of the printer %1 cannot be read: %2</source>
        <translation>Le pilote de l’imprimante %1 ne peut pas être lu : %2</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2</source>
        <translation>Le fichier %1 ne peut pas être lu : %2</translation>
    </message>
    <message>
        <source>The printer %1 has another driver now, one without this filter</source>
        <translation>L’imprimante %1 a maintenant un autre pilote, sans ce filtre</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more</source>
        <translation>L’imprimante %1 n’est plus là</translation>
    </message>
    <message>
        <source>The printer has it</source>
        <translation>L’imprimante l’a</translation>
    </message>
    <message>
        <source>The server %1 does not answer</source>
        <translation>Le serveur %1 ne répond pas</translation>
    </message>
    <message>
        <source>The server %1 refuses: %2</source>
        <translation>Le serveur %1 refuse : %2</translation>
    </message>
    <message>
        <source>The server does not know the job any more</source>
        <translation>Le serveur ne connaît plus le travail</translation>
    </message>
    <message>
        <source>The settings cannot be kept in the file %1: %2. It is as it was</source>
        <translation>Les réglages ne peuvent pas être conservés dans le fichier %1 : %2. Il est comme il était</translation>
    </message>
    <message>
        <source>The user's domain</source>
        <translation>Le domaine de l’utilisateur</translation>
    </message>
    <message>
        <source>There are no settings of the name %1</source>
        <translation>Il n’y a pas de réglages nommés %1</translation>
    </message>
    <message>
        <source>There are settings of the name %1 already</source>
        <translation>Il y a déjà des réglages nommés %1</translation>
    </message>
    <message>
        <source>There is no home folder to keep settings in</source>
        <translation>Il n’y a pas de dossier personnel où conserver des réglages</translation>
    </message>
    <message>
        <source>There is no such choice</source>
        <translation>Ce choix n’existe pas</translation>
    </message>
    <message>
        <source>These settings are too long to be kept; a shorter text would do</source>
        <translation>Ces réglages sont trop longs pour être conservés ; un texte plus court conviendrait</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; everybody on this computer can read it</source>
        <translation>Ils sont tels quels dans le fichier %1 ; tout le monde sur cet ordinateur peut le lire</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you and the administrator can read it</source>
        <translation>Ils sont tels quels dans le fichier %1 ; vous et l’administrateur pouvez le lire</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you, the administrator and the group %2 can read it</source>
        <translation>Ils sont tels quels dans le fichier %1 ; vous, l’administrateur et le groupe %2 pouvez le lire</translation>
    </message>
    <message>
        <source>Times Bold</source>
        <translation>Times gras</translation>
    </message>
    <message>
        <source>Times Roman</source>
        <translation>Times Roman</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>En haut</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>En haut à gauche</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>En haut à droite</translation>
    </message>
    <message>
        <source>Turn landscape pages</source>
        <translation>Tourner les pages en paysage</translation>
    </message>
    <message>
        <source>Two-sided</source>
        <translation>Recto verso</translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation>US Legal</translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation>US Letter</translation>
    </message>
    <message>
        <source>User, where it is not you</source>
        <translation>Utilisateur, si ce n’est pas vous</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Was not printed</source>
        <translation>N’a pas été imprimé</translation>
    </message>
    <message>
        <source>Was set with another program, under a name that this printer's driver has no choice for</source>
        <translation>A été réglé par un autre programme, sous un nom pour lequel le pilote de cette imprimante n’a pas de choix</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>Filigrane</translation>
    </message>
    <message>
        <source>Watermark and page</source>
        <translation>Plan du filigrane</translation>
    </message>
    <message>
        <source>Who prints</source>
        <translation>Qui imprime</translation>
    </message>
    <message>
        <source>With [user], [title], [date], [time], [page], [pages] and [job-id] put in</source>
        <translation>Avec [user], [title], [date], [time], [page], [pages] et [job-id] remplacés</translation>
    </message>
    <message>
        <source>Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]</source>
        <translation>Les mots entre crochets doivent être [user], [title], [job-id], [date], [time], [page] ou [pages]</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>il est trop grand</translation>
    </message>
</context>
</TS>
