<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>Settings</name>
    <message>
        <location filename="../data/ConfigWindow.ui" line="6"/>
        <source>Pelmora Options</source>
        <translation>Opciones de Pelmora</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="18"/>
        <source>Folders that cannot be found</source>
        <translation>Carpetas que no se encuentran</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="23"/>
        <location filename="../data/SourceListViewController.ui" line="13"/>
        <source>Folders</source>
        <translation>Carpetas</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="35"/>
        <source>&amp;Show only pictures that match:</source>
        <translation>&amp;Mostrar solo las imágenes que cumplan:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="42"/>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="33"/>
        <location filename="../src/filtereditor/PredicateEditor.cpp" line="40"/>
        <source>Filter</source>
        <translation>Filtro</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="50"/>
        <source>&amp;Pictures on each display:</source>
        <translation>&amp;Imágenes en cada pantalla:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="62"/>
        <source>Pictures on each display</source>
        <translation>Imágenes en cada pantalla</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="76"/>
        <source>&amp;New picture after:</source>
        <translation>&amp;Nueva imagen tras:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="84"/>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="89"/>
        <source>New picture after, in seconds</source>
        <translation>Nueva imagen tras, en segundos</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="102"/>
        <source>Look:</source>
        <translation>Aspecto:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="107"/>
        <source>Show pictures as &amp;instant photos</source>
        <translation>Mostrar las imágenes como &amp;fotos instantáneas</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="112"/>
        <source>Music:</source>
        <translation>Música:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="119"/>
        <source>Show the &amp;track that is playing</source>
        <translation>Mostrar la &amp;pista en reproducción</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="124"/>
        <location filename="../data/ConfigWindow.ui" line="125"/>
        <source>How the track is shown</source>
        <translation>Cómo se muestra la pista</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="127"/>
        <source>Fades in and out</source>
        <translation>Aparece y se desvanece</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="128"/>
        <source>Flies around</source>
        <translation>Vuela por la pantalla</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="129"/>
        <source>Stands still</source>
        <translation>Permanece quieta</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="25"/>
        <source>&amp;Add Folders…</source>
        <translation>Aña&amp;dir carpetas…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="28"/>
        <source>Choose folders with pictures</source>
        <translation>Elegir carpetas con imágenes</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="31"/>
        <location filename="../src/config/DialogFolderChooser.cpp" line="41"/>
        <source>Add Folders</source>
        <translation>Añadir carpetas</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="39"/>
        <location filename="../src/config/SourceMenu.cpp" line="24"/>
        <source>&amp;Remove</source>
        <translation>&amp;Quitar</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="42"/>
        <source>Take the selected folders off the list; the folders themselves stay</source>
        <translation>Quitar de la lista las carpetas seleccionadas; las carpetas en sí se conservan</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="45"/>
        <source>Remove Selected Folders</source>
        <translation>Quitar las carpetas seleccionadas</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="53"/>
        <source>C&amp;hange…</source>
        <translation>Cam&amp;biar…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="56"/>
        <source>Switch the selected folders on or off, choose their days, chance and screens</source>
        <translation>Activar o desactivar las carpetas seleccionadas y elegir sus días, su probabilidad y sus pantallas</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="59"/>
        <source>Change Selected Folders</source>
        <translation>Cambiar las carpetas seleccionadas</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="210"/>
        <source>These folders cannot be found. OK takes them out of the list:</source>
        <translation>No se encuentran estas carpetas. «Aceptar» las quita de la lista:</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="222"/>
        <source>Failed to load configuration window.</source>
        <translation>No se pudo cargar la ventana de configuración.</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="224"/>
        <source>Damn</source>
        <translation>¡Vaya!</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="286"/>
        <source>The settings could not be saved.</source>
        <translation>No se pudieron guardar los ajustes.</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="16"/>
        <location filename="../src/config/DaysCellView.cpp" line="41"/>
        <location filename="../src/config/SourceMenu.cpp" line="52"/>
        <source>Every Day</source>
        <translation>Cada día</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="22"/>
        <location filename="../src/config/DaysCellView.cpp" line="42"/>
        <location filename="../src/config/SourceMenu.cpp" line="53"/>
        <source>No Days</source>
        <translation>Ningún día</translation>
    </message>
    <message>
        <location filename="../src/config/DaysCellView.cpp" line="37"/>
        <location filename="../src/config/SourcesController.cpp" line="35"/>
        <source>Days</source>
        <translation>Días</translation>
    </message>
    <message>
        <location filename="../src/config/DialogFolderChooser.cpp" line="44"/>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <location filename="../src/config/EnabledCellView.cpp" line="14"/>
        <location filename="../src/config/SourcesController.cpp" line="28"/>
        <location filename="../src/config/SourcesController.cpp" line="246"/>
        <source>On</source>
        <translation>Activa</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="160"/>
        <location filename="../src/config/SourcesController.cpp" line="37"/>
        <source>Chance</source>
        <translation>Probabilidad</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="170"/>
        <location filename="../src/config/SourcesController.cpp" line="40"/>
        <source>Screens</source>
        <translation>Pantallas</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="20"/>
        <source>&amp;Chance</source>
        <translation>&amp;Probabilidad</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="22"/>
        <source>&amp;Screens</source>
        <translation>Pan&amp;tallas</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="30"/>
        <source>&amp;Open Folder</source>
        <translation>&amp;Abrir carpeta</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="38"/>
        <source>O&amp;n</source>
        <translation>Acti&amp;va</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="47"/>
        <source>&amp;Days</source>
        <translation>&amp;Días</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="74"/>
        <source>Other…</source>
        <translation>Otra…</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="29"/>
        <source>Whether pictures of the folder are shown</source>
        <translation>Si se muestran las imágenes de la carpeta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="30"/>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="31"/>
        <source>Pictures are taken from the folder and from the folders in it</source>
        <translation>Las imágenes se toman de la carpeta y de sus subcarpetas</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="33"/>
        <source>Pictures</source>
        <translation>Imágenes</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="34"/>
        <source>How many pictures were found in the folder</source>
        <translation>Cuántas imágenes se encontraron en la carpeta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="36"/>
        <source>The days of the week on which the folder is used</source>
        <translation>Los días de la semana en que se usa la carpeta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="38"/>
        <source>How likely the folder&apos;s pictures are, from 0.001 to 100 percent</source>
        <translation>Probabilidad de las imágenes de la carpeta, de 0,001 a 100 por ciento</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="41"/>
        <source>The screens that show the folder: All, or their numbers, such as 1, 3</source>
        <translation>Las pantallas que muestran la carpeta: «Todas» o sus números, por ejemplo 1, 3</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="48"/>
        <source>This folder cannot be found.</source>
        <translation>No se encuentra esta carpeta.</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="57"/>
        <location filename="../src/host/tests/TranslationsTest.cpp" line="13"/>
        <source>All</source>
        <translation>Todas</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="247"/>
        <source>Off</source>
        <translation>Inactiva</translation>
    </message>
    <message>
        <location filename="../src/config/SourceTable.cpp" line="229"/>
        <source>Add folders with pictures, or drop them here.</source>
        <translation>Añada carpetas con imágenes o suéltelas aquí.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="12"/>
        <source>File name</source>
        <translation>Nombre de archivo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="13"/>
        <source>Tags</source>
        <translation>Etiquetas</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="14"/>
        <source>Keywords</source>
        <translation>Palabras clave</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="15"/>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="16"/>
        <source>Description</source>
        <translation>Descripción</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="17"/>
        <source>Kind</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="18"/>
        <source>Folder and name</source>
        <translation>Carpeta y nombre</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="19"/>
        <source>City</source>
        <translation>Ciudad</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="20"/>
        <source>State or province</source>
        <translation>Estado o provincia</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="21"/>
        <source>Country</source>
        <translation>País</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="22"/>
        <source>Place</source>
        <translation>Lugar</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="23"/>
        <source>Author</source>
        <translation>Autor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="24"/>
        <source>Copyright</source>
        <translation>Derechos de autor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="25"/>
        <source>Camera</source>
        <translation>Cámara</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="26"/>
        <source>Camera maker</source>
        <translation>Fabricante de la cámara</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="27"/>
        <source>Lens</source>
        <translation>Objetivo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="28"/>
        <source>Headline</source>
        <translation>Titular</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="29"/>
        <source>Subject</source>
        <translation>Asunto</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="30"/>
        <source>Comment</source>
        <translation>Comentario</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="31"/>
        <source>Comment on file</source>
        <translation>Comentario del archivo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="32"/>
        <source>Program</source>
        <translation>Programa</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="33"/>
        <source>Color space</source>
        <translation>Espacio de color</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="34"/>
        <source>Content type</source>
        <translation>Tipo de contenido</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="35"/>
        <source>Content types</source>
        <translation>Tipos de contenido</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="36"/>
        <source>Name as shown</source>
        <translation>Nombre mostrado</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="18"/>
        <source>All of the following</source>
        <translation>Todas las condiciones siguientes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="19"/>
        <source>Any of the following</source>
        <translation>Alguna de las condiciones siguientes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="20"/>
        <source>None of the following</source>
        <translation>Ninguna de las condiciones siguientes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="22"/>
        <source>Match</source>
        <translation>Coincidencia</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="21"/>
        <source>Replace It</source>
        <translation>Sustituirlo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="23"/>
        <source>This filter cannot be edited here. It is kept as it is.</source>
        <translation>Este filtro no se puede editar aquí. Se conserva tal como está.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="40"/>
        <source>Add row</source>
        <translation>Añadir fila</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="42"/>
        <source>Add group</source>
        <translation>Añadir grupo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="48"/>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="42"/>
        <source>contains</source>
        <translation>contiene</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="43"/>
        <source>begins with</source>
        <translation>empieza por</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="44"/>
        <source>ends with</source>
        <translation>termina en</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="45"/>
        <source>is</source>
        <translation>es</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="46"/>
        <source>is not</source>
        <translation>no es</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="77"/>
        <source>Attribute</source>
        <translation>Atributo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="88"/>
        <source>Operator</source>
        <translation>Operador</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="104"/>
        <source>Text</source>
        <translation>Texto</translation>
    </message>
    <message>
        <location filename="../src/host/PortalFolderChooser.cpp" line="24"/>
        <source>Choose Folders</source>
        <translation>Elegir carpetas</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="58"/>
        <source>Pelmora Screen Saver</source>
        <translation>Salvapantallas Pelmora</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="60"/>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="62"/>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="63"/>
        <source>&amp;Options…</source>
        <translation>&amp;Opciones…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="65"/>
        <source>&amp;Close</source>
        <translation>&amp;Cerrar</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="145"/>
        <source>No pictures were found. Options lets you choose folders.</source>
        <translation>No se encontraron imágenes. En «Opciones» puede elegir carpetas.</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="148"/>
        <source>Looking for pictures…</source>
        <translation>Buscando imágenes…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="150"/>
        <source>Folders: %1  Pictures: %2</source>
        <translation>Carpetas: %1  Imágenes: %2</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="154"/>
        <source>Filter: %1 folders to read</source>
        <translation>Carpetas por leer para el filtro: %1</translation>
    </message>
</context>
</TS>
