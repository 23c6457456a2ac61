<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Model</name>
    <message>
        <source>A name is needed</source>
        <translation>Ein Name wird gebraucht</translation>
    </message>
    <message>
        <source>A name must not have blanks, quotes or any of / # \</source>
        <translation>Ein Name darf weder Leerzeichen noch Anführungszeichen oder eines von / # \ haben</translation>
    </message>
    <message>
        <source>A name must not have more than 127 letters</source>
        <translation>Ein Name darf nicht mehr als 127 Buchstaben haben</translation>
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
        <translation>Über dem, was auf der Seite ist</translation>
    </message>
    <message>
        <source>Absolute colorimetric</source>
        <translation>Absolut farbmetrisch</translation>
    </message>
    <message>
        <source>Across the page, in percent from the left</source>
        <translation>Quer über die Seite, in Prozent von links</translation>
    </message>
    <message>
        <source>Advanced colour settings</source>
        <translation>Erweiterte Farbeinstellungen</translation>
    </message>
    <message>
        <source>All colours</source>
        <translation>Alle Farben</translation>
    </message>
    <message>
        <source>All over the page</source>
        <translation>Über die ganze Seite</translation>
    </message>
    <message>
        <source>Along the page, in percent from below</source>
        <translation>Längs der Seite, in Prozent von unten</translation>
    </message>
    <message>
        <source>Angle in degrees, clockwise</source>
        <translation>Winkel in Grad, im Uhrzeigersinn</translation>
    </message>
    <message>
        <source>Another value</source>
        <translation>Ein anderer Wert</translation>
    </message>
    <message>
        <source>As given across and along the page</source>
        <translation>Wie quer und längs angegeben</translation>
    </message>
    <message>
        <source>As set at the printer</source>
        <translation>Wie am Drucker eingestellt</translation>
    </message>
    <message>
        <source>As the job</source>
        <translation>Wie der Auftrag</translation>
    </message>
    <message>
        <source>As wide as the page</source>
        <translation>So breit wie die Seite</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>B4</source>
        <translation>B4</translation>
    </message>
    <message>
        <source>Back cover</source>
        <translation>Hinteres Deckblatt</translation>
    </message>
    <message>
        <source>Below what is on the page</source>
        <translation>Unter dem, was auf der Seite ist</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>Booklet</source>
        <translation>Broschüre</translation>
    </message>
    <message>
        <source>Booklet of sheets</source>
        <translation>Broschüre aus Bogen</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <source>Box name</source>
        <translation>Boxname</translation>
    </message>
    <message>
        <source>Box number</source>
        <translation>Boxnummer</translation>
    </message>
    <message>
        <source>Box password</source>
        <translation>Boxkennwort</translation>
    </message>
    <message>
        <source>By a profile of one's own</source>
        <translation>Nach einem eigenen Profil</translation>
    </message>
    <message>
        <source>By single profiles</source>
        <translation>Nach einzelnen Profilen</translation>
    </message>
    <message>
        <source>By the chosen profile</source>
        <translation>Nach dem gewählten Profil</translation>
    </message>
    <message>
        <source>By the printer</source>
        <translation>Durch den Drucker</translation>
    </message>
    <message>
        <source>CMYK source profile</source>
        <translation>CMYK-Quellprofil</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Colour matching</source>
        <translation>Farbanpassung</translation>
    </message>
    <message>
        <source>Colour matching, as told by programs</source>
        <translation>Farbanpassung, wie Programme sie angeben</translation>
    </message>
    <message>
        <source>Colour profile of the document, a file on the server</source>
        <translation>Farbprofil des Dokuments, eine Datei auf dem Server</translation>
    </message>
    <message>
        <source>Colours that profiles apply to</source>
        <translation>Farben, für die die Profile gelten</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Kopien</translation>
    </message>
    <message>
        <source>Courier</source>
        <translation>Courier</translation>
    </message>
    <message>
        <source>Courier Bold</source>
        <translation>Courier fett</translation>
    </message>
    <message>
        <source>Cover pages</source>
        <translation>Deckblätter</translation>
    </message>
    <message>
        <source>Covers from the tray of the job</source>
        <translation>Deckblätter aus dem Fach des Auftrags</translation>
    </message>
    <message>
        <source>Department code</source>
        <translation>Abteilungscode</translation>
    </message>
    <message>
        <source>Device colours only</source>
        <translation>Nur Gerätefarben</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>Diagonal</translation>
    </message>
    <message>
        <source>Distance from the edges</source>
        <translation>Abstand von den Rändern</translation>
    </message>
    <message>
        <source>Extended box password</source>
        <translation>Erweitertes Boxkennwort</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>Eingepasst</translation>
    </message>
    <message>
        <source>Folder in the box</source>
        <translation>Ordner in der Box</translation>
    </message>
    <message>
        <source>Follows from “%1”</source>
        <translation>Folgt aus „%1“</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Schrift</translation>
    </message>
    <message>
        <source>Front cover</source>
        <translation>Vorderes Deckblatt</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Held</source>
        <translation>Zurückgehalten</translation>
    </message>
    <message>
        <source>Helvetica</source>
        <translation>Helvetica</translation>
    </message>
    <message>
        <source>Helvetica Bold</source>
        <translation>Helvetica fett</translation>
    </message>
    <message>
        <source>How far each folded sheet sticks out</source>
        <translation>Wie weit jeder gefaltete Bogen übersteht</translation>
    </message>
    <message>
        <source>In its own size</source>
        <translation>In eigener Größe</translation>
    </message>
    <message>
        <source>Is too long</source>
        <translation>Ist zu lang</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Look the user's domain up in the directory</source>
        <translation>Die Domäne des Benutzers im Verzeichnis nachschlagen</translation>
    </message>
    <message>
        <source>Margin along the fold</source>
        <translation>Rand am Falz</translation>
    </message>
    <message>
        <source>Margin at the other edges</source>
        <translation>Rand an den anderen Kanten</translation>
    </message>
    <message>
        <source>Media type</source>
        <translation>Papiersorte</translation>
    </message>
    <message>
        <source>Media type of the back cover</source>
        <translation>Papiersorte des hinteren Deckblatts</translation>
    </message>
    <message>
        <source>Media type of the front cover</source>
        <translation>Papiersorte des vorderen Deckblatts</translation>
    </message>
    <message>
        <source>Must be %1 digits, and nothing else</source>
        <translation>Müssen %1 Ziffern sein und sonst nichts</translation>
    </message>
    <message>
        <source>Must be %1 to %2 digits, and nothing else</source>
        <translation>Müssen %1 bis %2 Ziffern sein und sonst nichts</translation>
    </message>
    <message>
        <source>Must be 1, 3 or 4 numbers from 0 to 1 with commas between them</source>
        <translation>Müssen 1, 3 oder 4 Zahlen von 0 bis 1 mit Kommas dazwischen sein</translation>
    </message>
    <message>
        <source>Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)</source>
        <translation>Muss eine Länge sein, wie 10mm oder 0.5in, oder eine Zahl von Punkten (1/72 Zoll)</translation>
    </message>
    <message>
        <source>Must be a list of pages, as 2-5,8,10-</source>
        <translation>Muss eine Liste von Seiten sein, wie 2-5,8,10-</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>Muss eine Zahl sein</translation>
    </message>
    <message>
        <source>Must be a number above 0</source>
        <translation>Muss eine Zahl über 0 sein</translation>
    </message>
    <message>
        <source>Must be a number from %1 to %2</source>
        <translation>Muss eine Zahl von %1 bis %2 sein</translation>
    </message>
    <message>
        <source>Must be a size, as 100x200mm</source>
        <translation>Muss ein Format sein, wie 100x200mm</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>Muss eine ganze Zahl sein</translation>
    </message>
    <message>
        <source>Must be digits, and nothing else</source>
        <translation>Müssen Ziffern sein und sonst nichts</translation>
    </message>
    <message>
        <source>Must be the full path of a file</source>
        <translation>Muss der volle Pfad einer Datei sein</translation>
    </message>
    <message>
        <source>Must have %1 characters</source>
        <translation>Muss %1 Zeichen haben</translation>
    </message>
    <message>
        <source>Must have %1 to %2 characters</source>
        <translation>Muss %1 bis %2 Zeichen haben</translation>
    </message>
    <message>
        <source>Must not have tabs, line breaks or the like</source>
        <translation>Darf keine Tabulatoren, Zeilenumbrüche oder Ähnliches haben</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>No booklet</source>
        <translation>Keine Broschüre</translation>
    </message>
    <message>
        <source>No cover</source>
        <translation>Kein Deckblatt</translation>
    </message>
    <message>
        <source>No temporary file can be made: %1</source>
        <translation>Es kann keine temporäre Datei angelegt werden: %1</translation>
    </message>
    <message>
        <source>Not specified</source>
        <translation>Keine Angabe</translation>
    </message>
    <message>
        <source>Not together with “%1”</source>
        <translation>Nicht zusammen mit „%1“</translation>
    </message>
    <message>
        <source>Not together with “%1”: %2</source>
        <translation>Nicht zusammen mit „%1“: %2</translation>
    </message>
    <message>
        <source>On one side</source>
        <translation>Auf einer Seite</translation>
    </message>
    <message>
        <source>On the pages</source>
        <translation>Auf den Seiten</translation>
    </message>
    <message>
        <source>Only with “%1”</source>
        <translation>Nur mit „%1“</translation>
    </message>
    <message>
        <source>Only with “%1”: %2</source>
        <translation>Nur mit „%1“: %2</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>Ausgabeprofil</translation>
    </message>
    <message>
        <source>PIN for private printing</source>
        <translation>PIN für vertraulichen Druck</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>Papierformat</translation>
    </message>
    <message>
        <source>Paper and printer</source>
        <translation>Papier und Drucker</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>Papierquelle</translation>
    </message>
    <message>
        <source>Paper source of the back cover</source>
        <translation>Papierquelle des hinteren Deckblatts</translation>
    </message>
    <message>
        <source>Paper source of the front cover</source>
        <translation>Papierquelle des vorderen Deckblatts</translation>
    </message>
    <message>
        <source>Perceptual</source>
        <translation>Wahrnehmungsgetreu</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Print mode</source>
        <translation>Druckmodus</translation>
    </message>
    <message>
        <source>Print when storing in a document box</source>
        <translation>Beim Speichern in einer Dokumentenbox drucken</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Druckt</translation>
    </message>
    <message>
        <source>Printing of the back cover</source>
        <translation>Bedruckung des hinteren Deckblatts</translation>
    </message>
    <message>
        <source>Printing of the front cover</source>
        <translation>Bedruckung des vorderen Deckblatts</translation>
    </message>
    <message>
        <source>Private printing and document box</source>
        <translation>Vertraulicher Druck und Dokumentenbox</translation>
    </message>
    <message>
        <source>Profile of one's own</source>
        <translation>Eigenes Profil</translation>
    </message>
    <message>
        <source>RGB source profile</source>
        <translation>RGB-Quellprofil</translation>
    </message>
    <message>
        <source>Reads from left to right</source>
        <translation>Liest sich von links nach rechts</translation>
    </message>
    <message>
        <source>Relative colorimetric</source>
        <translation>Relativ farbmetrisch</translation>
    </message>
    <message>
        <source>Rendering intent</source>
        <translation>Renderpriorität</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>See-through</source>
        <translation>Durchscheinend</translation>
    </message>
    <message>
        <source>Sheets folded together, 0 for all</source>
        <translation>Zusammen gefaltete Bogen, 0 für alle</translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation>Größe in Punkt</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Store in a document box</source>
        <translation>In einer Dokumentenbox speichern</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>Tabloid</translation>
    </message>
    <message>
        <source>The document was not sent: %1</source>
        <translation>Das Dokument wurde nicht gesendet: %1</translation>
    </message>
    <message>
        <source>The driver of the printer %1 cannot be read: %2</source>
        <translation>Der Treiber des Druckers %1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2</source>
        <translation>Die Datei %1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The printer %1 has another driver now, one without this filter</source>
        <translation>Der Drucker %1 hat jetzt einen anderen Treiber, ohne diesen Filter</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more</source>
        <translation>Den Drucker %1 gibt es nicht mehr</translation>
    </message>
    <message>
        <source>The printer has it</source>
        <translation>Der Drucker hat ihn</translation>
    </message>
    <message>
        <source>The server %1 does not answer</source>
        <translation>Der Server %1 antwortet nicht</translation>
    </message>
    <message>
        <source>The server %1 refuses: %2</source>
        <translation>Der Server %1 lehnt ab: %2</translation>
    </message>
    <message>
        <source>The server does not know the job any more</source>
        <translation>Der Server kennt den Auftrag nicht mehr</translation>
    </message>
    <message>
        <source>The settings cannot be kept in the file %1: %2. It is as it was</source>
        <translation>Die Einstellungen können in der Datei %1 nicht behalten werden: %2. Sie ist, wie sie war</translation>
    </message>
    <message>
        <source>The user's domain</source>
        <translation>Die Domäne des Benutzers</translation>
    </message>
    <message>
        <source>There are no settings of the name %1</source>
        <translation>Es gibt keine Einstellungen mit dem Namen %1</translation>
    </message>
    <message>
        <source>There are settings of the name %1 already</source>
        <translation>Es gibt schon Einstellungen mit dem Namen %1</translation>
    </message>
    <message>
        <source>There is no home folder to keep settings in</source>
        <translation>Es gibt keinen persönlichen Ordner, in dem Einstellungen behalten werden können</translation>
    </message>
    <message>
        <source>There is no such choice</source>
        <translation>Diese Auswahl gibt es nicht</translation>
    </message>
    <message>
        <source>These settings are too long to be kept; a shorter text would do</source>
        <translation>Diese Einstellungen sind zu lang, um behalten zu werden; mit einem kürzeren Text ginge es</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; everybody on this computer can read it</source>
        <translation>Sie liegen, wie sie sind, in der Datei %1; jeder an diesem Rechner kann sie lesen</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you and the administrator can read it</source>
        <translation>Sie liegen, wie sie sind, in der Datei %1; Sie und der Verwalter können sie lesen</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you, the administrator and the group %2 can read it</source>
        <translation>Sie liegen, wie sie sind, in der Datei %1; Sie, der Verwalter und die Gruppe %2 können sie lesen</translation>
    </message>
    <message>
        <source>Times Bold</source>
        <translation>Times fett</translation>
    </message>
    <message>
        <source>Times Roman</source>
        <translation>Times Roman</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <source>Turn landscape pages</source>
        <translation>Querformatige Seiten drehen</translation>
    </message>
    <message>
        <source>Two-sided</source>
        <translation>Beidseitig</translation>
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
        <translation>Benutzer, wenn nicht Sie es sind</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Was not printed</source>
        <translation>Wurde nicht gedruckt</translation>
    </message>
    <message>
        <source>Was set with another program, under a name that this printer's driver has no choice for</source>
        <translation>Wurde mit einem anderen Programm eingestellt, unter einem Namen, für den der Treiber dieses Druckers keine Auswahl hat</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>Wasserzeichen</translation>
    </message>
    <message>
        <source>Watermark and page</source>
        <translation>Lage des Wasserzeichens</translation>
    </message>
    <message>
        <source>Who prints</source>
        <translation>Wer druckt</translation>
    </message>
    <message>
        <source>With [user], [title], [date], [time], [page], [pages] and [job-id] put in</source>
        <translation>Mit eingesetztem [user], [title], [date], [time], [page], [pages] und [job-id]</translation>
    </message>
    <message>
        <source>Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]</source>
        <translation>Wörter in Klammern müssen [user], [title], [job-id], [date], [time], [page] oder [pages] sein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>sie ist zu groß</translation>
    </message>
</context>
</TS>
