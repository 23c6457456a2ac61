<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Other…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The driver of this printer was changed. What you had set was taken over.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Printing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Printer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
