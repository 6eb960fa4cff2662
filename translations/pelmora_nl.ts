<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl">
<context>
    <name>Settings</name>
    <message>
        <location filename="../data/ConfigWindow.ui" line="6"/>
        <source>Pelmora Options</source>
        <translation>Pelmora-opties</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="18"/>
        <source>Folders that cannot be found</source>
        <translation>Mappen die niet te vinden zijn</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="23"/>
        <location filename="../data/SourceListViewController.ui" line="13"/>
        <source>Folders</source>
        <translation>Mappen</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="35"/>
        <source>&amp;Show only pictures that match:</source>
        <translation>Alleen afbeeldingen &amp;tonen die voldoen aan:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="42"/>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="33"/>
        <location filename="../src/filtereditor/PredicateEditor.cpp" line="40"/>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="50"/>
        <source>&amp;Pictures on each display:</source>
        <translation>Af&amp;beeldingen per scherm:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="62"/>
        <source>Pictures on each display</source>
        <translation>Afbeeldingen per scherm</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="76"/>
        <source>&amp;New picture after:</source>
        <translation>&amp;Nieuwe afbeelding na:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="84"/>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="89"/>
        <source>New picture after, in seconds</source>
        <translation>Nieuwe afbeelding na, in seconden</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="102"/>
        <source>Look:</source>
        <translation>Uiterlijk:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="107"/>
        <source>Show pictures as &amp;instant photos</source>
        <translation>Afbeeldingen als &amp;instantfoto&apos;s tonen</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="112"/>
        <source>Music:</source>
        <translation>Muziek:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="119"/>
        <source>Show the &amp;track that is playing</source>
        <translation>Het nummer tonen dat wordt af&amp;gespeeld</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="124"/>
        <location filename="../data/ConfigWindow.ui" line="125"/>
        <source>How the track is shown</source>
        <translation>Hoe het nummer wordt getoond</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="127"/>
        <source>Fades in and out</source>
        <translation>Verschijnt en vervaagt</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="128"/>
        <source>Flies around</source>
        <translation>Vliegt rond</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="129"/>
        <source>Stands still</source>
        <translation>Staat stil</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="25"/>
        <source>&amp;Add Folders…</source>
        <translation>&amp;Mappen toevoegen…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="28"/>
        <source>Choose folders with pictures</source>
        <translation>Mappen met afbeeldingen kiezen</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="31"/>
        <location filename="../src/config/DialogFolderChooser.cpp" line="41"/>
        <source>Add Folders</source>
        <translation>Mappen toevoegen</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="39"/>
        <location filename="../src/config/SourceMenu.cpp" line="24"/>
        <source>&amp;Remove</source>
        <translation>&amp;Verwijderen</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="42"/>
        <source>Take the selected folders off the list; the folders themselves stay</source>
        <translation>De geselecteerde mappen uit de lijst halen; de mappen zelf blijven bestaan</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="45"/>
        <source>Remove Selected Folders</source>
        <translation>Geselecteerde mappen uit de lijst verwijderen</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="53"/>
        <source>C&amp;hange…</source>
        <translation>&amp;Wijzigen…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="56"/>
        <source>Switch the selected folders on or off, choose their days, chance and screens</source>
        <translation>De geselecteerde mappen aan- of uitzetten en hun dagen, kans en schermen kiezen</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="59"/>
        <source>Change Selected Folders</source>
        <translation>Geselecteerde mappen wijzigen</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="210"/>
        <source>These folders cannot be found. OK takes them out of the list:</source>
        <translation>Deze mappen zijn niet te vinden. ‘OK’ haalt ze uit de lijst:</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="222"/>
        <source>Failed to load configuration window.</source>
        <translation>Het instellingenvenster kon niet worden geladen.</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="224"/>
        <source>Damn</source>
        <translation>Verdorie</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="286"/>
        <source>The settings could not be saved.</source>
        <translation>De instellingen konden niet worden opgeslagen.</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="16"/>
        <location filename="../src/config/DaysCellView.cpp" line="41"/>
        <location filename="../src/config/SourceMenu.cpp" line="52"/>
        <source>Every Day</source>
        <translation>Elke dag</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="22"/>
        <location filename="../src/config/DaysCellView.cpp" line="42"/>
        <location filename="../src/config/SourceMenu.cpp" line="53"/>
        <source>No Days</source>
        <translation>Geen dagen</translation>
    </message>
    <message>
        <location filename="../src/config/DaysCellView.cpp" line="37"/>
        <location filename="../src/config/SourcesController.cpp" line="35"/>
        <source>Days</source>
        <translation>Dagen</translation>
    </message>
    <message>
        <location filename="../src/config/DialogFolderChooser.cpp" line="44"/>
        <source>Add</source>
        <translation>Toevoegen</translation>
    </message>
    <message>
        <location filename="../src/config/EnabledCellView.cpp" line="14"/>
        <location filename="../src/config/SourcesController.cpp" line="28"/>
        <location filename="../src/config/SourcesController.cpp" line="246"/>
        <source>On</source>
        <translation>Aan</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="160"/>
        <location filename="../src/config/SourcesController.cpp" line="37"/>
        <source>Chance</source>
        <translation>Kans</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="170"/>
        <location filename="../src/config/SourcesController.cpp" line="40"/>
        <source>Screens</source>
        <translation>Schermen</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="20"/>
        <source>&amp;Chance</source>
        <translation>&amp;Kans</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="22"/>
        <source>&amp;Screens</source>
        <translation>&amp;Schermen</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="30"/>
        <source>&amp;Open Folder</source>
        <translation>Map &amp;openen</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="38"/>
        <source>O&amp;n</source>
        <translation>&amp;Aan</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="47"/>
        <source>&amp;Days</source>
        <translation>&amp;Dagen</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="74"/>
        <source>Other…</source>
        <translation>Anders…</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="29"/>
        <source>Whether pictures of the folder are shown</source>
        <translation>Of afbeeldingen uit de map worden getoond</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="30"/>
        <source>Folder</source>
        <translation>Map</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="31"/>
        <source>Pictures are taken from the folder and from the folders in it</source>
        <translation>De afbeeldingen komen uit de map en uit de mappen daarin</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="33"/>
        <source>Pictures</source>
        <translation>Afbeeldingen</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="34"/>
        <source>How many pictures were found in the folder</source>
        <translation>Hoeveel afbeeldingen er in de map zijn gevonden</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="36"/>
        <source>The days of the week on which the folder is used</source>
        <translation>De dagen van de week waarop de map wordt gebruikt</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="38"/>
        <source>How likely the folder&apos;s pictures are, from 0.001 to 100 percent</source>
        <translation>Hoe waarschijnlijk de afbeeldingen uit de map zijn, van 0,001 tot 100 procent</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="41"/>
        <source>The screens that show the folder: All, or their numbers, such as 1, 3</source>
        <translation>De schermen die de map tonen: ‘Alle’ of hun nummers, bijvoorbeeld 1, 3</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="48"/>
        <source>This folder cannot be found.</source>
        <translation>Deze map is niet te vinden.</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="57"/>
        <location filename="../src/host/tests/TranslationsTest.cpp" line="13"/>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="247"/>
        <source>Off</source>
        <translation>Uit</translation>
    </message>
    <message>
        <location filename="../src/config/SourceTable.cpp" line="229"/>
        <source>Add folders with pictures, or drop them here.</source>
        <translation>Voeg mappen met afbeeldingen toe of sleep ze hierheen.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="12"/>
        <source>File name</source>
        <translation>Bestandsnaam</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="13"/>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="14"/>
        <source>Keywords</source>
        <translation>Trefwoorden</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="15"/>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="16"/>
        <source>Description</source>
        <translation>Beschrijving</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="17"/>
        <source>Kind</source>
        <translation>Soort</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="18"/>
        <source>Folder and name</source>
        <translation>Map en naam</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="19"/>
        <source>City</source>
        <translation>Stad</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="20"/>
        <source>State or province</source>
        <translation>Staat of provincie</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="21"/>
        <source>Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="22"/>
        <source>Place</source>
        <translation>Plaats</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="23"/>
        <source>Author</source>
        <translation>Auteur</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="24"/>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="25"/>
        <source>Camera</source>
        <translation>Camera</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="26"/>
        <source>Camera maker</source>
        <translation>Camerafabrikant</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="27"/>
        <source>Lens</source>
        <translation>Lens</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="28"/>
        <source>Headline</source>
        <translation>Kop</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="29"/>
        <source>Subject</source>
        <translation>Onderwerp</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="30"/>
        <source>Comment</source>
        <translation>Opmerking</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="31"/>
        <source>Comment on file</source>
        <translation>Opmerking bij bestand</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="32"/>
        <source>Program</source>
        <translation>Programma</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="33"/>
        <source>Color space</source>
        <translation>Kleurruimte</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="34"/>
        <source>Content type</source>
        <translation>Inhoudstype</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="35"/>
        <source>Content types</source>
        <translation>Inhoudstypen</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="36"/>
        <source>Name as shown</source>
        <translation>Weergegeven naam</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="18"/>
        <source>All of the following</source>
        <translation>Alle volgende voorwaarden</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="19"/>
        <source>Any of the following</source>
        <translation>Minstens één van de volgende voorwaarden</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="20"/>
        <source>None of the following</source>
        <translation>Geen van de volgende voorwaarden</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="22"/>
        <source>Match</source>
        <translation>Overeenkomst</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="21"/>
        <source>Replace It</source>
        <translation>Vervangen</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="23"/>
        <source>This filter cannot be edited here. It is kept as it is.</source>
        <translation>Dit filter kan hier niet worden bewerkt. Het blijft zoals het is.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="40"/>
        <source>Add row</source>
        <translation>Rij toevoegen</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="42"/>
        <source>Add group</source>
        <translation>Groep toevoegen</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="48"/>
        <source>Remove</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="42"/>
        <source>contains</source>
        <translation>bevat</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="43"/>
        <source>begins with</source>
        <translation>begint met</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="44"/>
        <source>ends with</source>
        <translation>eindigt op</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="45"/>
        <source>is</source>
        <translation>is</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="46"/>
        <source>is not</source>
        <translation>is niet</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="77"/>
        <source>Attribute</source>
        <translation>Attribuut</translation>
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
        <translation>Mappen kiezen</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="58"/>
        <source>Pelmora Screen Saver</source>
        <translation>Pelmora-schermbeveiliging</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="60"/>
        <source>Preview</source>
        <translation>Voorbeeld</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="62"/>
        <source>Progress</source>
        <translation>Voortgang</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="63"/>
        <source>&amp;Options…</source>
        <translation>&amp;Opties…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="65"/>
        <source>&amp;Close</source>
        <translation>&amp;Sluiten</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="145"/>
        <source>No pictures were found. Options lets you choose folders.</source>
        <translation>Er zijn geen afbeeldingen gevonden. Via ‘Opties’ kunt u mappen kiezen.</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="148"/>
        <source>Looking for pictures…</source>
        <translation>Afbeeldingen zoeken…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="150"/>
        <source>Folders: %1  Pictures: %2</source>
        <translation>Mappen: %1  Afbeeldingen: %2</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="154"/>
        <source>Filter: %1 folders to read</source>
        <translation>Nog te lezen mappen voor het filter: %1</translation>
    </message>
</context>
</TS>
