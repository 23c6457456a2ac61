<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation>Mostrar lo que se escribe</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>Elegir un color</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Elegir…</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Elegir un archivo</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Otro…</translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation>Trabajos impresos desde aquí</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>Cancelar trabajo</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Descartar</translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation>%1 (trabajo %2 en %3): %4</translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation>Como mis valores pre&amp;determinados para %1</translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation>Como un conjunto con &amp;nombre, que los diálogos de impresión muestran:</translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation>Conservar también el &amp;PIN y las contraseñas</translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation>Conservar ajustes</translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation>Nombre del conjunto</translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation>confidencial</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>&amp;Conservar</translation>
    </message>
</context>
<context>
    <name>Keeping</name>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation>Conservado como sus valores predeterminados para %1.</translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation>Conservado como %1/%2.</translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation>Cambiar el nombre del conjunto</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>Nuevo nombre de %1:</translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation>%1 se llama ahora %2.</translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation>¿Eliminar sus valores predeterminados para %1?</translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation>¿Eliminar el conjunto %1?</translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation>Eliminar conjunto</translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation>Eliminado. Los ajustes en pantalla quedan como están.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation>Ajustes de impresión</translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation>Buscando impresoras…</translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation>&amp;Conservar…</translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation>Copiar como &amp;orden</translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation>&amp;Imprimir ahora</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation>La impresora %1 ya no está. Lo que ha ajustado para ella se mantiene mientras esta ventana esté abierta.</translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation>Aquí no hay ninguna impresora que funcione con jobfilter.</translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation>(Impresoras de otros tipos que hay: %L1)</translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation>Pida al administrador de sus impresoras una cola con su controlador, o añada una:</translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation>No hay ninguna impresora %1 que funcione con jobfilter.</translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation>No hay ningún conjunto %1 para esta impresora.</translation>
    </message>
    <message>
        <source>This printer was changed on its server. What you had set was taken over.</source>
        <translation>Esta impresora ha cambiado en su servidor. Se ha mantenido lo que había ajustado.</translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation>Abra primero un documento</translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation>Abrir documento</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation>Documentos PDF (*.pdf);;Todos los archivos (*)</translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation>Copiar como orden</translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation>¿Poner el PIN y las contraseñas en la orden? Quien vea la orden puede leerlos.</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>La orden está en el portapapeles.</translation>
    </message>
    <message>
        <source>Reading the driver of %1 …</source>
        <translation>Leyendo el controlador de %1…</translation>
    </message>
    <message>
        <source>They count for every printer of the name %1, whatever server it is on.</source>
        <translation>Valen para toda impresora de nombre %1, sea cual sea su servidor.</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation>Preparando las páginas</translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation>No se puede poner la marca de agua</translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation>No se puede hacer el folleto</translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation>No se pueden añadir las portadas</translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation>No se puede leer el documento: %1</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>El documento está vacío.</translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation>El documento no es un PDF.</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>El documento está dañado.</translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation>El documento solo se puede abrir con su contraseña.</translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation>El documento tiene demasiadas páginas para una vista previa.</translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation>No se puede leer la descripción de impresora de la cola: %1</translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation>El toolkit no está instalado como debe: %1</translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation>No hay sitio para archivos temporales: %1</translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation>No se puede dibujar la página.</translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation>No se puede iniciar el programa de la vista previa: %1</translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation>El documento necesita demasiada memoria para una vista previa.</translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation>El documento tarda demasiado para una vista previa.</translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation>El programa de la vista previa ha terminado inesperadamente (%1).</translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation>No hay vista previa: %1</translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation>Las portadas se imprimen en el papel del trabajo: un PDF no puede elegir bandejas.</translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation>Esta cola no nombra ningún toolkit: imprime sin marca de agua, folleto ni portadas.</translation>
    </message>
    <message>
        <source>Preparing the pages, step %L1</source>
        <translation>Preparando las páginas, paso %L1</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation>&amp;Abrir documento…</translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation>Hoja anterior</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>Hoja siguiente</translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation>Hoja a la vista</translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation>Dar la &amp;vuelta</translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation>Hoja</translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation>Detenido. El próximo cambio empieza de nuevo.</translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation>Un documento de muestra</translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation>de %L1</translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation>Portada, anverso</translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation>Portada, reverso</translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation>Contraportada, anverso</translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation>Contraportada, reverso</translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation>Hoja %L1, anverso</translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation>Hoja %L1, reverso</translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation> · de %1</translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation> · en %1</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>De&amp;tener</translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation>Lista</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Imprimiendo</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Detenida</translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation>no acepta trabajos</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Impresora</translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation>Ajustes con los que empezar</translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation>Cambia&amp;r el nombre de este conjunto…</translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation>&amp;Eliminar este conjunto…</translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation>&amp;Buscar impresoras de nuevo</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Más</translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation>I&amp;mpresora:</translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation>Empe&amp;zar con:</translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation>Los ajustes de la impresora</translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation>Mis valores predeterminados</translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation>Páginas de ajustes</translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation>Aquí hay algo que corregir</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation>Ajusta lo que puede hacer una impresora que funciona con jobfilter y muestra las páginas tal como saldrán.</translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation>La impresora con la que empezar y un conjunto de ajustes conservado para ella.</translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation>IMPRESORA[/CONJUNTO]</translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation>Un archivo PDF.</translation>
    </message>
</context>
<context>
    <name>words</name>
    <message>
        <source>this computer</source>
        <translation>este equipo</translation>
    </message>
</context>
</TS>
