<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl">
<context>
    <name>Settings</name>
    <message>
        <location filename="../data/ConfigWindow.ui" line="6"/>
        <source>Pelmora Options</source>
        <translation>Opcje programu Pelmora</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="18"/>
        <source>Folders that cannot be found</source>
        <translation>Nieodnalezione katalogi</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="23"/>
        <location filename="../data/SourceListViewController.ui" line="13"/>
        <source>Folders</source>
        <translation>Katalogi</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="35"/>
        <source>&amp;Show only pictures that match:</source>
        <translation>&amp;Pokazuj tylko pasujące obrazy:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="42"/>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="33"/>
        <location filename="../src/filtereditor/PredicateEditor.cpp" line="40"/>
        <source>Filter</source>
        <translation>Filtr</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="50"/>
        <source>&amp;Pictures on each display:</source>
        <translation>O&amp;brazy na każdym ekranie:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="62"/>
        <source>Pictures on each display</source>
        <translation>Obrazy na każdym ekranie</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="76"/>
        <source>&amp;New picture after:</source>
        <translation>&amp;Nowy obraz po:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="84"/>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="89"/>
        <source>New picture after, in seconds</source>
        <translation>Nowy obraz po, w sekundach</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="102"/>
        <source>Look:</source>
        <translation>Wygląd:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="107"/>
        <source>Show pictures as &amp;instant photos</source>
        <translation>Pokazuj obrazy jako zdjęcia na&amp;tychmiastowe</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="112"/>
        <source>Music:</source>
        <translation>Muzyka:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="119"/>
        <source>Show the &amp;track that is playing</source>
        <translation>Pokazuj odtwarzany ut&amp;wór</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="124"/>
        <location filename="../data/ConfigWindow.ui" line="125"/>
        <source>How the track is shown</source>
        <translation>Sposób pokazywania utworu</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="127"/>
        <source>Fades in and out</source>
        <translation>Płynnie pojawia się i znika</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="128"/>
        <source>Flies around</source>
        <translation>Lata po ekranie</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="129"/>
        <source>Stands still</source>
        <translation>Stoi w miejscu</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="25"/>
        <source>&amp;Add Folders…</source>
        <translation>&amp;Dodaj katalogi…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="28"/>
        <source>Choose folders with pictures</source>
        <translation>Wybór katalogów z obrazami</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="31"/>
        <location filename="../src/config/DialogFolderChooser.cpp" line="41"/>
        <source>Add Folders</source>
        <translation>Dodaj katalogi</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="39"/>
        <location filename="../src/config/SourceMenu.cpp" line="24"/>
        <source>&amp;Remove</source>
        <translation>&amp;Usuń</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="42"/>
        <source>Take the selected folders off the list; the folders themselves stay</source>
        <translation>Usuwa zaznaczone katalogi z listy; same katalogi pozostają</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="45"/>
        <source>Remove Selected Folders</source>
        <translation>Usuń zaznaczone katalogi z listy</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="53"/>
        <source>C&amp;hange…</source>
        <translation>&amp;Zmień…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="56"/>
        <source>Switch the selected folders on or off, choose their days, chance and screens</source>
        <translation>Włącza lub wyłącza zaznaczone katalogi, wybiera ich dni, szansę i ekrany</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="59"/>
        <source>Change Selected Folders</source>
        <translation>Zmień zaznaczone katalogi</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="210"/>
        <source>These folders cannot be found. OK takes them out of the list:</source>
        <translation>Nie można odnaleźć tych katalogów. Przycisk „OK” usunie je z listy:</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="222"/>
        <source>Failed to load configuration window.</source>
        <translation>Nie udało się wczytać okna ustawień.</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="224"/>
        <source>Damn</source>
        <translation>A niech to</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="286"/>
        <source>The settings could not be saved.</source>
        <translation>Nie udało się zapisać ustawień.</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="16"/>
        <location filename="../src/config/DaysCellView.cpp" line="41"/>
        <location filename="../src/config/SourceMenu.cpp" line="52"/>
        <source>Every Day</source>
        <translation>Codziennie</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="22"/>
        <location filename="../src/config/DaysCellView.cpp" line="42"/>
        <location filename="../src/config/SourceMenu.cpp" line="53"/>
        <source>No Days</source>
        <translation>Nigdy</translation>
    </message>
    <message>
        <location filename="../src/config/DaysCellView.cpp" line="37"/>
        <location filename="../src/config/SourcesController.cpp" line="35"/>
        <source>Days</source>
        <translation>Dni</translation>
    </message>
    <message>
        <location filename="../src/config/DialogFolderChooser.cpp" line="44"/>
        <source>Add</source>
        <translation>Dodaj</translation>
    </message>
    <message>
        <location filename="../src/config/EnabledCellView.cpp" line="14"/>
        <location filename="../src/config/SourcesController.cpp" line="28"/>
        <location filename="../src/config/SourcesController.cpp" line="246"/>
        <source>On</source>
        <translation>Wł.</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="160"/>
        <location filename="../src/config/SourcesController.cpp" line="37"/>
        <source>Chance</source>
        <translation>Szansa</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="170"/>
        <location filename="../src/config/SourcesController.cpp" line="40"/>
        <source>Screens</source>
        <translation>Ekrany</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="20"/>
        <source>&amp;Chance</source>
        <translation>Szan&amp;sa</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="22"/>
        <source>&amp;Screens</source>
        <translation>&amp;Ekrany</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="30"/>
        <source>&amp;Open Folder</source>
        <translation>&amp;Otwórz katalog</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="38"/>
        <source>O&amp;n</source>
        <translation>&amp;Wł.</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="47"/>
        <source>&amp;Days</source>
        <translation>&amp;Dni</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="74"/>
        <source>Other…</source>
        <translation>Inne…</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="29"/>
        <source>Whether pictures of the folder are shown</source>
        <translation>Czy obrazy z katalogu są pokazywane</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="30"/>
        <source>Folder</source>
        <translation>Katalog</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="31"/>
        <source>Pictures are taken from the folder and from the folders in it</source>
        <translation>Obrazy są brane z katalogu i jego podkatalogów</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="33"/>
        <source>Pictures</source>
        <translation>Obrazy</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="34"/>
        <source>How many pictures were found in the folder</source>
        <translation>Ile obrazów znaleziono w katalogu</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="36"/>
        <source>The days of the week on which the folder is used</source>
        <translation>Dni tygodnia, w które katalog jest używany</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="38"/>
        <source>How likely the folder&apos;s pictures are, from 0.001 to 100 percent</source>
        <translation>Prawdopodobieństwo obrazów z katalogu, od 0,001 do 100 procent</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="41"/>
        <source>The screens that show the folder: All, or their numbers, such as 1, 3</source>
        <translation>Ekrany, na których pokazywany jest katalog: „Wszystkie” lub ich numery, na przykład 1, 3</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="48"/>
        <source>This folder cannot be found.</source>
        <translation>Nie można odnaleźć tego katalogu.</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="57"/>
        <location filename="../src/host/tests/TranslationsTest.cpp" line="13"/>
        <source>All</source>
        <translation>Wszystkie</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="247"/>
        <source>Off</source>
        <translation>Wył.</translation>
    </message>
    <message>
        <location filename="../src/config/SourceTable.cpp" line="229"/>
        <source>Add folders with pictures, or drop them here.</source>
        <translation>Należy dodać katalogi z obrazami lub upuścić je tutaj.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="12"/>
        <source>File name</source>
        <translation>Nazwa pliku</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="13"/>
        <source>Tags</source>
        <translation>Znaczniki</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="14"/>
        <source>Keywords</source>
        <translation>Słowa kluczowe</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="15"/>
        <source>Title</source>
        <translation>Tytuł</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="16"/>
        <source>Description</source>
        <translation>Opis</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="17"/>
        <source>Kind</source>
        <translation>Rodzaj</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="18"/>
        <source>Folder and name</source>
        <translation>Katalog i nazwa</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="19"/>
        <source>City</source>
        <translation>Miasto</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="20"/>
        <source>State or province</source>
        <translation>Województwo lub stan</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="21"/>
        <source>Country</source>
        <translation>Kraj</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="22"/>
        <source>Place</source>
        <translation>Miejsce</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="23"/>
        <source>Author</source>
        <translation>Autor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="24"/>
        <source>Copyright</source>
        <translation>Prawa autorskie</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="25"/>
        <source>Camera</source>
        <translation>Aparat</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="26"/>
        <source>Camera maker</source>
        <translation>Producent aparatu</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="27"/>
        <source>Lens</source>
        <translation>Obiektyw</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="28"/>
        <source>Headline</source>
        <translation>Nagłówek</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="29"/>
        <source>Subject</source>
        <translation>Temat</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="30"/>
        <source>Comment</source>
        <translation>Komentarz</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="31"/>
        <source>Comment on file</source>
        <translation>Komentarz do pliku</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="32"/>
        <source>Program</source>
        <translation>Program</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="33"/>
        <source>Color space</source>
        <translation>Przestrzeń barw</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="34"/>
        <source>Content type</source>
        <translation>Typ zawartości</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="35"/>
        <source>Content types</source>
        <translation>Typy zawartości</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="36"/>
        <source>Name as shown</source>
        <translation>Wyświetlana nazwa</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="18"/>
        <source>All of the following</source>
        <translation>Wszystkie poniższe warunki</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="19"/>
        <source>Any of the following</source>
        <translation>Dowolny z poniższych warunków</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="20"/>
        <source>None of the following</source>
        <translation>Żaden z poniższych warunków</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="22"/>
        <source>Match</source>
        <translation>Dopasowanie</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="21"/>
        <source>Replace It</source>
        <translation>Zastąp</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="23"/>
        <source>This filter cannot be edited here. It is kept as it is.</source>
        <translation>Tego filtra nie można tutaj edytować. Pozostaje bez zmian.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="40"/>
        <source>Add row</source>
        <translation>Dodaj wiersz</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="42"/>
        <source>Add group</source>
        <translation>Dodaj grupę</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="48"/>
        <source>Remove</source>
        <translation>Usuń</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="42"/>
        <source>contains</source>
        <translation>zawiera</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="43"/>
        <source>begins with</source>
        <translation>zaczyna się od</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="44"/>
        <source>ends with</source>
        <translation>kończy się na</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="45"/>
        <source>is</source>
        <translation>jest</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="46"/>
        <source>is not</source>
        <translation>nie jest</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="77"/>
        <source>Attribute</source>
        <translation>Atrybut</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="88"/>
        <source>Operator</source>
        <translation>Operator</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="104"/>
        <source>Text</source>
        <translation>Tekst</translation>
    </message>
    <message>
        <location filename="../src/host/PortalFolderChooser.cpp" line="24"/>
        <source>Choose Folders</source>
        <translation>Wybór katalogów</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="58"/>
        <source>Pelmora Screen Saver</source>
        <translation>Wygaszacz ekranu Pelmora</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="60"/>
        <source>Preview</source>
        <translation>Podgląd</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="62"/>
        <source>Progress</source>
        <translation>Postęp</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="63"/>
        <source>&amp;Options…</source>
        <translation>&amp;Opcje…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="65"/>
        <source>&amp;Close</source>
        <translation>&amp;Zamknij</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="145"/>
        <source>No pictures were found. Options lets you choose folders.</source>
        <translation>Nie znaleziono obrazów. Przycisk „Opcje” umożliwia wybór katalogów.</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="148"/>
        <source>Looking for pictures…</source>
        <translation>Wyszukiwanie obrazów…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="150"/>
        <source>Folders: %1  Pictures: %2</source>
        <translation>Katalogi: %1  Obrazy: %2</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="154"/>
        <source>Filter: %1 folders to read</source>
        <translation>Katalogi do odczytania dla filtra: %1</translation>
    </message>
</context>
</TS>
