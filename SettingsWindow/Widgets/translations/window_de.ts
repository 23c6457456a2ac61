<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation>Zeigen, was getippt ist</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>Eine Farbe wählen</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Wählen …</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Eine Datei wählen</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Andere …</translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation>Von hier gedruckte Aufträge</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>Auftrag abbrechen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation>%1 (Auftrag %2 auf %3): %4</translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation>Als meine &amp;Vorgaben für %1</translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation>Als Satz mit einem &amp;Namen, den Druckdialoge auflisten:</translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation>Auch &amp;PIN und Kennwörter behalten</translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation>Einstellungen behalten</translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation>Name des Satzes</translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation>vertraulich</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>&amp;Behalten</translation>
    </message>
</context>
<context>
    <name>Keeping</name>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation>Als Ihre Vorgaben für %1 behalten.</translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation>Als %1/%2 behalten.</translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation>Satz umbenennen</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>Neuer Name von %1:</translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation>%1 heißt jetzt %2.</translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation>Ihre Vorgaben für %1 entfernen?</translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation>Den Satz %1 entfernen?</translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation>Satz entfernen</translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation>Entfernt. Die Einstellungen auf dem Bildschirm bleiben, wie sie sind.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation>Druckeinstellungen</translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation>Drucker werden gesucht …</translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation>&amp;Behalten …</translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation>Als Be&amp;fehl kopieren</translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation>&amp;Jetzt drucken</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation>Den Drucker %1 gibt es nicht mehr. Was Sie für ihn eingestellt haben, bleibt, solange dieses Fenster offen ist.</translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation>Hier ist kein Drucker, der von jobfilter angesteuert wird.</translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation>(Drucker anderer Art, die da sind: %L1)</translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation>Bitten Sie den Verwalter Ihrer Drucker um eine Warteschlange mit dessen Treiber, oder legen Sie eine an:</translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation>Es gibt keinen Drucker %1, der von jobfilter angesteuert wird.</translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation>Für diesen Drucker gibt es keinen Satz %1.</translation>
    </message>
    <message>
        <source>This printer was changed on its server. What you had set was taken over.</source>
        <translation>Dieser Drucker wurde auf seinem Server geändert. Was Sie eingestellt hatten, wurde übernommen.</translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation>Öffnen Sie zuerst ein Dokument</translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation>Dokument öffnen</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation>PDF-Dokumente (*.pdf);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation>Als Befehl kopieren</translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation>PIN und Kennwörter in den Befehl schreiben? Wer den Befehl sieht, kann sie lesen.</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>Der Befehl ist in der Zwischenablage.</translation>
    </message>
    <message>
        <source>Reading the driver of %1 …</source>
        <translation>Der Treiber von %1 wird gelesen …</translation>
    </message>
    <message>
        <source>They count for every printer of the name %1, whatever server it is on.</source>
        <translation>Sie gelten für jeden Drucker mit dem Namen %1, gleich auf welchem Server er ist.</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation>Die Seiten werden vorbereitet</translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation>Das Wasserzeichen kann nicht angebracht werden</translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation>Die Broschüre kann nicht gemacht werden</translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation>Die Deckblätter können nicht hinzugefügt werden</translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation>Das Dokument kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>Das Dokument ist leer.</translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation>Das Dokument ist kein PDF.</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>Das Dokument ist beschädigt.</translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation>Das Dokument lässt sich nur mit seinem Kennwort öffnen.</translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation>Das Dokument hat zu viele Seiten für eine Vorschau.</translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation>Die Druckerbeschreibung der Warteschlange kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation>Das Toolkit ist nicht so installiert, wie es sein soll: %1</translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation>Für temporäre Dateien ist kein Platz: %1</translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation>Die Seite kann nicht gezeichnet werden.</translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation>Das Programm der Vorschau lässt sich nicht starten: %1</translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation>Das Dokument braucht zu viel Speicher für eine Vorschau.</translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation>Das Dokument braucht zu lange für eine Vorschau.</translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation>Das Programm der Vorschau hat unerwartet geendet (%1).</translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation>Es gibt keine Vorschau: %1</translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation>Die Deckblätter werden auf das Papier des Auftrags gedruckt: Ein PDF kann keine Fächer wählen.</translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation>Diese Warteschlange nennt kein Toolkit: Sie druckt ohne Wasserzeichen, Broschüre und Deckblätter.</translation>
    </message>
    <message>
        <source>Preparing the pages, step %L1</source>
        <translation>Die Seiten werden vorbereitet, Schritt %L1</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation>Dokument öff&amp;nen …</translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation>Vorheriges Blatt</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>Nächstes Blatt</translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation>Gezeigtes Blatt</translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation>&amp;Umdrehen</translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation>Blatt</translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation>Angehalten. Die nächste Änderung beginnt von vorn.</translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation>Ein Beispieldokument</translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation>von %L1</translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation>Vorderes Deckblatt, Vorderseite</translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation>Vorderes Deckblatt, Rückseite</translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation>Hinteres Deckblatt, Vorderseite</translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation>Hinteres Deckblatt, Rückseite</translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation>Blatt %L1, Vorderseite</translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation>Blatt %L1, Rückseite</translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation> · aus %1</translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation> · auf %1</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>An&amp;halten</translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Druckt</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation>nimmt keine Aufträge an</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Drucker</translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation>Einstellungen für den Anfang</translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation>Diesen Satz &amp;umbenennen …</translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation>Diesen Satz &amp;entfernen …</translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation>Drucker erneut &amp;suchen</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation>D&amp;rucker:</translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation>Be&amp;ginnen mit:</translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation>Den Einstellungen des Druckers</translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation>Meinen Vorgaben</translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation>Seiten mit Einstellungen</translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation>Hier ist etwas zu berichtigen</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation>Stellt ein, was ein von jobfilter angesteuerter Drucker kann, und zeigt die Seiten, wie sie herauskommen.</translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation>Der Drucker, mit dem begonnen wird, und ein für ihn behaltener Satz Einstellungen.</translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation>DRUCKER[/SATZ]</translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation>Eine PDF-Datei.</translation>
    </message>
</context>
<context>
    <name>words</name>
    <message>
        <source>this computer</source>
        <translation>dieser Computer</translation>
    </message>
</context>
</TS>
