<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt">
<context>
    <name>Settings</name>
    <message>
        <location filename="../data/ConfigWindow.ui" line="6"/>
        <source>Pelmora Options</source>
        <translation>Opções do Pelmora</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="18"/>
        <source>Folders that cannot be found</source>
        <translation>Pastas não encontradas</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="23"/>
        <location filename="../data/SourceListViewController.ui" line="13"/>
        <source>Folders</source>
        <translation>Pastas</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="35"/>
        <source>&amp;Show only pictures that match:</source>
        <translation>&amp;Mostrar apenas as imagens que cumprem:</translation>
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
        <translation>&amp;Imagens em cada ecrã:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="62"/>
        <source>Pictures on each display</source>
        <translation>Imagens em cada ecrã</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="76"/>
        <source>&amp;New picture after:</source>
        <translation>&amp;Nova imagem após:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="84"/>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="89"/>
        <source>New picture after, in seconds</source>
        <translation>Nova imagem após, em segundos</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="102"/>
        <source>Look:</source>
        <translation>Aspeto:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="107"/>
        <source>Show pictures as &amp;instant photos</source>
        <translation>Mostrar as imagens como &amp;fotografias instantâneas</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="112"/>
        <source>Music:</source>
        <translation>Música:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="119"/>
        <source>Show the &amp;track that is playing</source>
        <translation>Mostrar a faixa em re&amp;produção</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="124"/>
        <location filename="../data/ConfigWindow.ui" line="125"/>
        <source>How the track is shown</source>
        <translation>Como a faixa é mostrada</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="127"/>
        <source>Fades in and out</source>
        <translation>Aparece e desvanece-se</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="128"/>
        <source>Flies around</source>
        <translation>Voa pelo ecrã</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="129"/>
        <source>Stands still</source>
        <translation>Fica parada</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="25"/>
        <source>&amp;Add Folders…</source>
        <translation>A&amp;dicionar pastas…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="28"/>
        <source>Choose folders with pictures</source>
        <translation>Escolher pastas com imagens</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="31"/>
        <location filename="../src/config/DialogFolderChooser.cpp" line="41"/>
        <source>Add Folders</source>
        <translation>Adicionar pastas</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="39"/>
        <location filename="../src/config/SourceMenu.cpp" line="24"/>
        <source>&amp;Remove</source>
        <translation>&amp;Remover</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="42"/>
        <source>Take the selected folders off the list; the folders themselves stay</source>
        <translation>Retirar da lista as pastas selecionadas; as próprias pastas mantêm-se</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="45"/>
        <source>Remove Selected Folders</source>
        <translation>Remover as pastas selecionadas</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="53"/>
        <source>C&amp;hange…</source>
        <translation>A&amp;lterar…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="56"/>
        <source>Switch the selected folders on or off, choose their days, chance and screens</source>
        <translation>Ativar ou desativar as pastas selecionadas e escolher os seus dias, a probabilidade e os ecrãs</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="59"/>
        <source>Change Selected Folders</source>
        <translation>Alterar as pastas selecionadas</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="210"/>
        <source>These folders cannot be found. OK takes them out of the list:</source>
        <translation>Não é possível encontrar estas pastas. «OK» retira-as da lista:</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="222"/>
        <source>Failed to load configuration window.</source>
        <translation>Não foi possível carregar a janela de configuração.</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="224"/>
        <source>Damn</source>
        <translation>Bolas</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="286"/>
        <source>The settings could not be saved.</source>
        <translation>Não foi possível guardar as definições.</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="16"/>
        <location filename="../src/config/DaysCellView.cpp" line="41"/>
        <location filename="../src/config/SourceMenu.cpp" line="52"/>
        <source>Every Day</source>
        <translation>Todos os dias</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="22"/>
        <location filename="../src/config/DaysCellView.cpp" line="42"/>
        <location filename="../src/config/SourceMenu.cpp" line="53"/>
        <source>No Days</source>
        <translation>Nenhum dia</translation>
    </message>
    <message>
        <location filename="../src/config/DaysCellView.cpp" line="37"/>
        <location filename="../src/config/SourcesController.cpp" line="35"/>
        <source>Days</source>
        <translation>Dias</translation>
    </message>
    <message>
        <location filename="../src/config/DialogFolderChooser.cpp" line="44"/>
        <source>Add</source>
        <translation>Adicionar</translation>
    </message>
    <message>
        <location filename="../src/config/EnabledCellView.cpp" line="14"/>
        <location filename="../src/config/SourcesController.cpp" line="28"/>
        <location filename="../src/config/SourcesController.cpp" line="246"/>
        <source>On</source>
        <translation>Ativa</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="160"/>
        <location filename="../src/config/SourcesController.cpp" line="37"/>
        <source>Chance</source>
        <translation>Probabilidade</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="170"/>
        <location filename="../src/config/SourcesController.cpp" line="40"/>
        <source>Screens</source>
        <translation>Ecrãs</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="20"/>
        <source>&amp;Chance</source>
        <translation>&amp;Probabilidade</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="22"/>
        <source>&amp;Screens</source>
        <translation>&amp;Ecrãs</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="30"/>
        <source>&amp;Open Folder</source>
        <translation>&amp;Abrir a pasta</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="38"/>
        <source>O&amp;n</source>
        <translation>A&amp;tiva</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="47"/>
        <source>&amp;Days</source>
        <translation>&amp;Dias</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="74"/>
        <source>Other…</source>
        <translation>Outro…</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="29"/>
        <source>Whether pictures of the folder are shown</source>
        <translation>Se as imagens da pasta são mostradas</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="30"/>
        <source>Folder</source>
        <translation>Pasta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="31"/>
        <source>Pictures are taken from the folder and from the folders in it</source>
        <translation>As imagens são obtidas da pasta e das suas subpastas</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="33"/>
        <source>Pictures</source>
        <translation>Imagens</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="34"/>
        <source>How many pictures were found in the folder</source>
        <translation>Quantas imagens foram encontradas na pasta</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="36"/>
        <source>The days of the week on which the folder is used</source>
        <translation>Os dias da semana em que a pasta é usada</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="38"/>
        <source>How likely the folder&apos;s pictures are, from 0.001 to 100 percent</source>
        <translation>Probabilidade das imagens da pasta, de 0,001 a 100 por cento</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="41"/>
        <source>The screens that show the folder: All, or their numbers, such as 1, 3</source>
        <translation>Os ecrãs que mostram a pasta: «Todos» ou os seus números, por exemplo 1, 3</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="48"/>
        <source>This folder cannot be found.</source>
        <translation>Não é possível encontrar esta pasta.</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="57"/>
        <location filename="../src/host/tests/TranslationsTest.cpp" line="13"/>
        <source>All</source>
        <translation>Todos</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="247"/>
        <source>Off</source>
        <translation>Inativa</translation>
    </message>
    <message>
        <location filename="../src/config/SourceTable.cpp" line="229"/>
        <source>Add folders with pictures, or drop them here.</source>
        <translation>Adicione pastas com imagens ou largue-as aqui.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="12"/>
        <source>File name</source>
        <translation>Nome do ficheiro</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="13"/>
        <source>Tags</source>
        <translation>Etiquetas</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="14"/>
        <source>Keywords</source>
        <translation>Palavras-chave</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="15"/>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="16"/>
        <source>Description</source>
        <translation>Descrição</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="17"/>
        <source>Kind</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="18"/>
        <source>Folder and name</source>
        <translation>Pasta e nome</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="19"/>
        <source>City</source>
        <translation>Cidade</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="20"/>
        <source>State or province</source>
        <translation>Estado ou província</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="21"/>
        <source>Country</source>
        <translation>País</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="22"/>
        <source>Place</source>
        <translation>Local</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="23"/>
        <source>Author</source>
        <translation>Autor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="24"/>
        <source>Copyright</source>
        <translation>Direitos de autor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="25"/>
        <source>Camera</source>
        <translation>Câmara</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="26"/>
        <source>Camera maker</source>
        <translation>Fabricante da câmara</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="27"/>
        <source>Lens</source>
        <translation>Objetiva</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="28"/>
        <source>Headline</source>
        <translation>Título principal</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="29"/>
        <source>Subject</source>
        <translation>Assunto</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="30"/>
        <source>Comment</source>
        <translation>Comentário</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="31"/>
        <source>Comment on file</source>
        <translation>Comentário do ficheiro</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="32"/>
        <source>Program</source>
        <translation>Programa</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="33"/>
        <source>Color space</source>
        <translation>Espaço de cor</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="34"/>
        <source>Content type</source>
        <translation>Tipo de conteúdo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="35"/>
        <source>Content types</source>
        <translation>Tipos de conteúdo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="36"/>
        <source>Name as shown</source>
        <translation>Nome apresentado</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="18"/>
        <source>All of the following</source>
        <translation>Todas as condições seguintes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="19"/>
        <source>Any of the following</source>
        <translation>Alguma das condições seguintes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="20"/>
        <source>None of the following</source>
        <translation>Nenhuma das condições seguintes</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="22"/>
        <source>Match</source>
        <translation>Correspondência</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="21"/>
        <source>Replace It</source>
        <translation>Substituir</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="23"/>
        <source>This filter cannot be edited here. It is kept as it is.</source>
        <translation>Este filtro não pode ser editado aqui. É mantido tal como está.</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="40"/>
        <source>Add row</source>
        <translation>Adicionar linha</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="42"/>
        <source>Add group</source>
        <translation>Adicionar grupo</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="48"/>
        <source>Remove</source>
        <translation>Remover</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="42"/>
        <source>contains</source>
        <translation>contém</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="43"/>
        <source>begins with</source>
        <translation>começa por</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="44"/>
        <source>ends with</source>
        <translation>termina em</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="45"/>
        <source>is</source>
        <translation>é</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="46"/>
        <source>is not</source>
        <translation>não é</translation>
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
        <translation>Escolher pastas</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="58"/>
        <source>Pelmora Screen Saver</source>
        <translation>Proteção de ecrã Pelmora</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="60"/>
        <source>Preview</source>
        <translation>Antevisão</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="62"/>
        <source>Progress</source>
        <translation>Progresso</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="63"/>
        <source>&amp;Options…</source>
        <translation>&amp;Opções…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="65"/>
        <source>&amp;Close</source>
        <translation>&amp;Fechar</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="145"/>
        <source>No pictures were found. Options lets you choose folders.</source>
        <translation>Não foram encontradas imagens. Em «Opções» pode escolher pastas.</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="148"/>
        <source>Looking for pictures…</source>
        <translation>A procurar imagens…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="150"/>
        <source>Folders: %1  Pictures: %2</source>
        <translation>Pastas: %1  Imagens: %2</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="154"/>
        <source>Filter: %1 folders to read</source>
        <translation>Pastas por ler para o filtro: %1</translation>
    </message>
</context>
</TS>
