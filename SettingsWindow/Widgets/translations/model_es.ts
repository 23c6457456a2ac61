<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Model</name>
    <message>
        <source>A name is needed</source>
        <translation>Hace falta un nombre</translation>
    </message>
    <message>
        <source>A name must not have blanks, quotes or any of / # \</source>
        <translation>Un nombre no puede tener espacios, comillas ni ninguno de / # \</translation>
    </message>
    <message>
        <source>A name must not have more than 127 letters</source>
        <translation>Un nombre no puede tener más de 127 letras</translation>
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
        <translation>Encima de lo que hay en la página</translation>
    </message>
    <message>
        <source>Absolute colorimetric</source>
        <translation>Colorimétrico absoluto</translation>
    </message>
    <message>
        <source>Across the page, in percent from the left</source>
        <translation>A lo ancho de la página, en tanto por ciento desde la izquierda</translation>
    </message>
    <message>
        <source>Advanced colour settings</source>
        <translation>Ajustes de color avanzados</translation>
    </message>
    <message>
        <source>All colours</source>
        <translation>Todos los colores</translation>
    </message>
    <message>
        <source>All over the page</source>
        <translation>Por toda la página</translation>
    </message>
    <message>
        <source>Along the page, in percent from below</source>
        <translation>A lo largo de la página, en tanto por ciento desde abajo</translation>
    </message>
    <message>
        <source>Angle in degrees, clockwise</source>
        <translation>Ángulo en grados, en el sentido de las agujas del reloj</translation>
    </message>
    <message>
        <source>Another value</source>
        <translation>Otro valor</translation>
    </message>
    <message>
        <source>As given across and along the page</source>
        <translation>Según lo indicado a lo ancho y a lo largo</translation>
    </message>
    <message>
        <source>As set at the printer</source>
        <translation>Según lo ajustado en la impresora</translation>
    </message>
    <message>
        <source>As the job</source>
        <translation>Como el trabajo</translation>
    </message>
    <message>
        <source>As wide as the page</source>
        <translation>Tan ancha como la página</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <source>B4</source>
        <translation>B4</translation>
    </message>
    <message>
        <source>Back cover</source>
        <translation>Contraportada</translation>
    </message>
    <message>
        <source>Below what is on the page</source>
        <translation>Debajo de lo que hay en la página</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>En blanco</translation>
    </message>
    <message>
        <source>Booklet</source>
        <translation>Folleto</translation>
    </message>
    <message>
        <source>Booklet of sheets</source>
        <translation>Folleto de hojas</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Abajo</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>Abajo a la izquierda</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Abajo a la derecha</translation>
    </message>
    <message>
        <source>Box name</source>
        <translation>Nombre del buzón</translation>
    </message>
    <message>
        <source>Box number</source>
        <translation>Número del buzón</translation>
    </message>
    <message>
        <source>Box password</source>
        <translation>Contraseña del buzón</translation>
    </message>
    <message>
        <source>By a profile of one's own</source>
        <translation>Según un perfil propio</translation>
    </message>
    <message>
        <source>By single profiles</source>
        <translation>Según perfiles individuales</translation>
    </message>
    <message>
        <source>By the chosen profile</source>
        <translation>Según el perfil elegido</translation>
    </message>
    <message>
        <source>By the printer</source>
        <translation>Por la impresora</translation>
    </message>
    <message>
        <source>CMYK source profile</source>
        <translation>Perfil de origen CMYK</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Cancelado</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Centro</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Colour matching</source>
        <translation>Ajuste de color</translation>
    </message>
    <message>
        <source>Colour matching, as told by programs</source>
        <translation>Ajuste de color, según los programas</translation>
    </message>
    <message>
        <source>Colour profile of the document, a file on the server</source>
        <translation>Perfil de color del documento, un archivo en el servidor</translation>
    </message>
    <message>
        <source>Colours that profiles apply to</source>
        <translation>Colores a los que se aplican los perfiles</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Copias</translation>
    </message>
    <message>
        <source>Courier</source>
        <translation>Courier</translation>
    </message>
    <message>
        <source>Courier Bold</source>
        <translation>Courier negrita</translation>
    </message>
    <message>
        <source>Cover pages</source>
        <translation>Portadas</translation>
    </message>
    <message>
        <source>Covers from the tray of the job</source>
        <translation>Portadas de la bandeja del trabajo</translation>
    </message>
    <message>
        <source>Department code</source>
        <translation>Código de departamento</translation>
    </message>
    <message>
        <source>Device colours only</source>
        <translation>Solo colores del dispositivo</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>Diagonal</translation>
    </message>
    <message>
        <source>Distance from the edges</source>
        <translation>Distancia a los bordes</translation>
    </message>
    <message>
        <source>Extended box password</source>
        <translation>Contraseña ampliada del buzón</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>Ajustada</translation>
    </message>
    <message>
        <source>Folder in the box</source>
        <translation>Carpeta en el buzón</translation>
    </message>
    <message>
        <source>Follows from “%1”</source>
        <translation>Se deduce de «%1»</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Tipo de letra</translation>
    </message>
    <message>
        <source>Front cover</source>
        <translation>Portada</translation>
    </message>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Held</source>
        <translation>Retenido</translation>
    </message>
    <message>
        <source>Helvetica</source>
        <translation>Helvetica</translation>
    </message>
    <message>
        <source>Helvetica Bold</source>
        <translation>Helvetica negrita</translation>
    </message>
    <message>
        <source>How far each folded sheet sticks out</source>
        <translation>Cuánto sobresale cada hoja doblada</translation>
    </message>
    <message>
        <source>In its own size</source>
        <translation>En su propio tamaño</translation>
    </message>
    <message>
        <source>Is too long</source>
        <translation>Es demasiado largo</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Izquierda</translation>
    </message>
    <message>
        <source>Look the user's domain up in the directory</source>
        <translation>Buscar el dominio del usuario en el directorio</translation>
    </message>
    <message>
        <source>Margin along the fold</source>
        <translation>Margen en el pliegue</translation>
    </message>
    <message>
        <source>Margin at the other edges</source>
        <translation>Margen en los otros bordes</translation>
    </message>
    <message>
        <source>Media type</source>
        <translation>Tipo de papel</translation>
    </message>
    <message>
        <source>Media type of the back cover</source>
        <translation>Tipo de papel de la contraportada</translation>
    </message>
    <message>
        <source>Media type of the front cover</source>
        <translation>Tipo de papel de la portada</translation>
    </message>
    <message>
        <source>Must be %1 digits, and nothing else</source>
        <translation>Deben ser %1 cifras y nada más</translation>
    </message>
    <message>
        <source>Must be %1 to %2 digits, and nothing else</source>
        <translation>Deben ser de %1 a %2 cifras y nada más</translation>
    </message>
    <message>
        <source>Must be 1, 3 or 4 numbers from 0 to 1 with commas between them</source>
        <translation>Deben ser 1, 3 o 4 números de 0 a 1 con comas entre ellos</translation>
    </message>
    <message>
        <source>Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)</source>
        <translation>Debe ser una longitud, como 10mm o 0.5in, o un número de puntos (1/72 de pulgada)</translation>
    </message>
    <message>
        <source>Must be a list of pages, as 2-5,8,10-</source>
        <translation>Debe ser una lista de páginas, como 2-5,8,10-</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>Debe ser un número</translation>
    </message>
    <message>
        <source>Must be a number above 0</source>
        <translation>Debe ser un número mayor que 0</translation>
    </message>
    <message>
        <source>Must be a number from %1 to %2</source>
        <translation>Debe ser un número de %1 a %2</translation>
    </message>
    <message>
        <source>Must be a size, as 100x200mm</source>
        <translation>Debe ser un tamaño, como 100x200mm</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>Debe ser un número entero</translation>
    </message>
    <message>
        <source>Must be digits, and nothing else</source>
        <translation>Deben ser cifras y nada más</translation>
    </message>
    <message>
        <source>Must be the full path of a file</source>
        <translation>Debe ser la ruta completa de un archivo</translation>
    </message>
    <message>
        <source>Must have %1 characters</source>
        <translation>Debe tener %1 caracteres</translation>
    </message>
    <message>
        <source>Must have %1 to %2 characters</source>
        <translation>Debe tener de %1 a %2 caracteres</translation>
    </message>
    <message>
        <source>Must not have tabs, line breaks or the like</source>
        <translation>No puede tener tabuladores, saltos de línea ni similares</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>No booklet</source>
        <translation>Sin folleto</translation>
    </message>
    <message>
        <source>No cover</source>
        <translation>Sin portada</translation>
    </message>
    <message>
        <source>No temporary file can be made: %1</source>
        <translation>No se puede crear un archivo temporal: %1</translation>
    </message>
    <message>
        <source>Not specified</source>
        <translation>Sin especificar</translation>
    </message>
    <message>
        <source>Not together with “%1”</source>
        <translation>No junto con «%1»</translation>
    </message>
    <message>
        <source>Not together with “%1”: %2</source>
        <translation>No junto con «%1»: %2</translation>
    </message>
    <message>
        <source>On one side</source>
        <translation>Por una cara</translation>
    </message>
    <message>
        <source>On the pages</source>
        <translation>En las páginas</translation>
    </message>
    <message>
        <source>Only with “%1”</source>
        <translation>Solo con «%1»</translation>
    </message>
    <message>
        <source>Only with “%1”: %2</source>
        <translation>Solo con «%1»: %2</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>Perfil de salida</translation>
    </message>
    <message>
        <source>PIN for private printing</source>
        <translation>PIN para impresión privada</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>Tamaño de página</translation>
    </message>
    <message>
        <source>Paper and printer</source>
        <translation>Papel e impresora</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>Origen del papel</translation>
    </message>
    <message>
        <source>Paper source of the back cover</source>
        <translation>Origen del papel de la contraportada</translation>
    </message>
    <message>
        <source>Paper source of the front cover</source>
        <translation>Origen del papel de la portada</translation>
    </message>
    <message>
        <source>Perceptual</source>
        <translation>Perceptual</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Lugar</translation>
    </message>
    <message>
        <source>Print mode</source>
        <translation>Modo de impresión</translation>
    </message>
    <message>
        <source>Print when storing in a document box</source>
        <translation>Imprimir al guardar en un buzón de documentos</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Imprimiendo</translation>
    </message>
    <message>
        <source>Printing of the back cover</source>
        <translation>Impresión de la contraportada</translation>
    </message>
    <message>
        <source>Printing of the front cover</source>
        <translation>Impresión de la portada</translation>
    </message>
    <message>
        <source>Private printing and document box</source>
        <translation>Impresión privada y buzón de documentos</translation>
    </message>
    <message>
        <source>Profile of one's own</source>
        <translation>Perfil propio</translation>
    </message>
    <message>
        <source>RGB source profile</source>
        <translation>Perfil de origen RGB</translation>
    </message>
    <message>
        <source>Reads from left to right</source>
        <translation>Se lee de izquierda a derecha</translation>
    </message>
    <message>
        <source>Relative colorimetric</source>
        <translation>Colorimétrico relativo</translation>
    </message>
    <message>
        <source>Rendering intent</source>
        <translation>Propósito de representación</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Derecha</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturación</translation>
    </message>
    <message>
        <source>See-through</source>
        <translation>Translúcida</translation>
    </message>
    <message>
        <source>Sheets folded together, 0 for all</source>
        <translation>Hojas dobladas juntas, 0 para todas</translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation>Tamaño en puntos</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Detenido</translation>
    </message>
    <message>
        <source>Store in a document box</source>
        <translation>Guardar en un buzón de documentos</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>Tabloide</translation>
    </message>
    <message>
        <source>The document was not sent: %1</source>
        <translation>No se ha enviado el documento: %1</translation>
    </message>
    <message>
        <source>The driver of the printer %1 cannot be read: %2</source>
        <translation>No se puede leer el controlador de la impresora %1: %2</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2</source>
        <translation>No se puede leer el archivo %1: %2</translation>
    </message>
    <message>
        <source>The printer %1 has another driver now, one without this filter</source>
        <translation>La impresora %1 tiene ahora otro controlador, sin este filtro</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more</source>
        <translation>La impresora %1 ya no está</translation>
    </message>
    <message>
        <source>The printer has it</source>
        <translation>La impresora lo tiene</translation>
    </message>
    <message>
        <source>The server %1 does not answer</source>
        <translation>El servidor %1 no responde</translation>
    </message>
    <message>
        <source>The server %1 refuses: %2</source>
        <translation>El servidor %1 lo rechaza: %2</translation>
    </message>
    <message>
        <source>The server does not know the job any more</source>
        <translation>El servidor ya no conoce el trabajo</translation>
    </message>
    <message>
        <source>The settings cannot be kept in the file %1: %2. It is as it was</source>
        <translation>No se pueden conservar los ajustes en el archivo %1: %2. Está como estaba</translation>
    </message>
    <message>
        <source>The user's domain</source>
        <translation>El dominio del usuario</translation>
    </message>
    <message>
        <source>There are no settings of the name %1</source>
        <translation>No hay ajustes con el nombre %1</translation>
    </message>
    <message>
        <source>There are settings of the name %1 already</source>
        <translation>Ya hay ajustes con el nombre %1</translation>
    </message>
    <message>
        <source>There is no home folder to keep settings in</source>
        <translation>No hay carpeta personal en la que conservar ajustes</translation>
    </message>
    <message>
        <source>There is no such choice</source>
        <translation>No existe esa opción</translation>
    </message>
    <message>
        <source>These settings are too long to be kept; a shorter text would do</source>
        <translation>Estos ajustes son demasiado largos para conservarlos; con un texto más corto se podría</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; everybody on this computer can read it</source>
        <translation>Están tal cual en el archivo %1; todos los de este equipo pueden leerlo</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you and the administrator can read it</source>
        <translation>Están tal cual en el archivo %1; usted y el administrador pueden leerlo</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you, the administrator and the group %2 can read it</source>
        <translation>Están tal cual en el archivo %1; usted, el administrador y el grupo %2 pueden leerlo</translation>
    </message>
    <message>
        <source>Times Bold</source>
        <translation>Times negrita</translation>
    </message>
    <message>
        <source>Times Roman</source>
        <translation>Times Roman</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Arriba</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>Arriba a la izquierda</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Arriba a la derecha</translation>
    </message>
    <message>
        <source>Turn landscape pages</source>
        <translation>Girar las páginas apaisadas</translation>
    </message>
    <message>
        <source>Two-sided</source>
        <translation>A doble cara</translation>
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
        <translation>Usuario, si no es usted</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>En espera</translation>
    </message>
    <message>
        <source>Was not printed</source>
        <translation>No se ha impreso</translation>
    </message>
    <message>
        <source>Was set with another program, under a name that this printer's driver has no choice for</source>
        <translation>Se ajustó con otro programa, con un nombre para el que el controlador de esta impresora no tiene opción</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>Marca de agua</translation>
    </message>
    <message>
        <source>Watermark and page</source>
        <translation>Capa de la marca de agua</translation>
    </message>
    <message>
        <source>Who prints</source>
        <translation>Quién imprime</translation>
    </message>
    <message>
        <source>With [user], [title], [date], [time], [page], [pages] and [job-id] put in</source>
        <translation>Con [user], [title], [date], [time], [page], [pages] y [job-id] sustituidos</translation>
    </message>
    <message>
        <source>Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]</source>
        <translation>Las palabras entre corchetes deben ser [user], [title], [job-id], [date], [time], [page] o [pages]</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>es demasiado grande</translation>
    </message>
</context>
</TS>
