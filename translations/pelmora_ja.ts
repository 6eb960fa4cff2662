<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>Settings</name>
    <message>
        <location filename="../data/ConfigWindow.ui" line="6"/>
        <source>Pelmora Options</source>
        <translation>Pelmora のオプション</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="18"/>
        <source>Folders that cannot be found</source>
        <translation>見つからないフォルダー</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="23"/>
        <location filename="../data/SourceListViewController.ui" line="13"/>
        <source>Folders</source>
        <translation>フォルダー</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="35"/>
        <source>&amp;Show only pictures that match:</source>
        <translation>条件に一致する画像だけを表示(&amp;S):</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="42"/>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="33"/>
        <location filename="../src/filtereditor/PredicateEditor.cpp" line="40"/>
        <source>Filter</source>
        <translation>フィルター</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="50"/>
        <source>&amp;Pictures on each display:</source>
        <translation>画面ごとの画像の数(&amp;P):</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="62"/>
        <source>Pictures on each display</source>
        <translation>画面ごとの画像の数</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="76"/>
        <source>&amp;New picture after:</source>
        <translation>次の画像までの時間(&amp;N):</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="84"/>
        <source> s</source>
        <translation> 秒</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="89"/>
        <source>New picture after, in seconds</source>
        <translation>次の画像までの時間 (秒)</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="102"/>
        <source>Look:</source>
        <translation>外観:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="107"/>
        <source>Show pictures as &amp;instant photos</source>
        <translation>画像をインスタント写真として表示(&amp;I)</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="112"/>
        <source>Music:</source>
        <translation>音楽:</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="119"/>
        <source>Show the &amp;track that is playing</source>
        <translation>再生中の曲を表示(&amp;T)</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="124"/>
        <location filename="../data/ConfigWindow.ui" line="125"/>
        <source>How the track is shown</source>
        <translation>曲の表示方法</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="127"/>
        <source>Fades in and out</source>
        <translation>フェードイン・フェードアウト</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="128"/>
        <source>Flies around</source>
        <translation>画面を飛び回る</translation>
    </message>
    <message>
        <location filename="../data/ConfigWindow.ui" line="129"/>
        <source>Stands still</source>
        <translation>静止</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="25"/>
        <source>&amp;Add Folders…</source>
        <translation>フォルダーを追加(&amp;A)…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="28"/>
        <source>Choose folders with pictures</source>
        <translation>画像のあるフォルダーを選択します</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="31"/>
        <location filename="../src/config/DialogFolderChooser.cpp" line="41"/>
        <source>Add Folders</source>
        <translation>フォルダーを追加</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="39"/>
        <location filename="../src/config/SourceMenu.cpp" line="24"/>
        <source>&amp;Remove</source>
        <translation>取り除く(&amp;R)</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="42"/>
        <source>Take the selected folders off the list; the folders themselves stay</source>
        <translation>選択したフォルダーをリストから取り除きます。フォルダー自体は残ります</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="45"/>
        <source>Remove Selected Folders</source>
        <translation>選択したフォルダーを取り除く</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="53"/>
        <source>C&amp;hange…</source>
        <translation>変更(&amp;H)…</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="56"/>
        <source>Switch the selected folders on or off, choose their days, chance and screens</source>
        <translation>選択したフォルダーのオン/オフ、曜日、確率、画面を選びます</translation>
    </message>
    <message>
        <location filename="../data/SourceListViewController.ui" line="59"/>
        <source>Change Selected Folders</source>
        <translation>選択したフォルダーを変更</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="210"/>
        <source>These folders cannot be found. OK takes them out of the list:</source>
        <translation>次のフォルダーが見つかりません。「OK」を押すとリストから取り除かれます:</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="222"/>
        <source>Failed to load configuration window.</source>
        <translation>設定ウィンドウを読み込めませんでした。</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="224"/>
        <source>Damn</source>
        <translation>しまった</translation>
    </message>
    <message>
        <location filename="../src/config/ConfigureSheet.cpp" line="286"/>
        <source>The settings could not be saved.</source>
        <translation>設定を保存できませんでした。</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="16"/>
        <location filename="../src/config/DaysCellView.cpp" line="41"/>
        <location filename="../src/config/SourceMenu.cpp" line="52"/>
        <source>Every Day</source>
        <translation>毎日</translation>
    </message>
    <message>
        <location filename="../src/config/DayNames.cpp" line="22"/>
        <location filename="../src/config/DaysCellView.cpp" line="42"/>
        <location filename="../src/config/SourceMenu.cpp" line="53"/>
        <source>No Days</source>
        <translation>曜日なし</translation>
    </message>
    <message>
        <location filename="../src/config/DaysCellView.cpp" line="37"/>
        <location filename="../src/config/SourcesController.cpp" line="35"/>
        <source>Days</source>
        <translation>曜日</translation>
    </message>
    <message>
        <location filename="../src/config/DialogFolderChooser.cpp" line="44"/>
        <source>Add</source>
        <translation>追加</translation>
    </message>
    <message>
        <location filename="../src/config/EnabledCellView.cpp" line="14"/>
        <location filename="../src/config/SourcesController.cpp" line="28"/>
        <location filename="../src/config/SourcesController.cpp" line="246"/>
        <source>On</source>
        <translation>オン</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="160"/>
        <location filename="../src/config/SourcesController.cpp" line="37"/>
        <source>Chance</source>
        <translation>確率</translation>
    </message>
    <message>
        <location filename="../src/config/SourceDelegate.cpp" line="170"/>
        <location filename="../src/config/SourcesController.cpp" line="40"/>
        <source>Screens</source>
        <translation>画面</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="20"/>
        <source>&amp;Chance</source>
        <translation>確率(&amp;C)</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="22"/>
        <source>&amp;Screens</source>
        <translation>画面(&amp;S)</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="30"/>
        <source>&amp;Open Folder</source>
        <translation>フォルダーを開く(&amp;O)</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="38"/>
        <source>O&amp;n</source>
        <translation>オン(&amp;N)</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="47"/>
        <source>&amp;Days</source>
        <translation>曜日(&amp;D)</translation>
    </message>
    <message>
        <location filename="../src/config/SourceMenu.cpp" line="74"/>
        <source>Other…</source>
        <translation>その他…</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="29"/>
        <source>Whether pictures of the folder are shown</source>
        <translation>フォルダーの画像を表示するかどうか</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="30"/>
        <source>Folder</source>
        <translation>フォルダー</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="31"/>
        <source>Pictures are taken from the folder and from the folders in it</source>
        <translation>画像はこのフォルダーとその中のフォルダーから選ばれます</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="33"/>
        <source>Pictures</source>
        <translation>画像数</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="34"/>
        <source>How many pictures were found in the folder</source>
        <translation>フォルダーで見つかった画像の数</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="36"/>
        <source>The days of the week on which the folder is used</source>
        <translation>フォルダーを使う曜日</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="38"/>
        <source>How likely the folder&apos;s pictures are, from 0.001 to 100 percent</source>
        <translation>フォルダーの画像が選ばれる確率。0.001 から 100 パーセントまで</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="41"/>
        <source>The screens that show the folder: All, or their numbers, such as 1, 3</source>
        <translation>フォルダーを表示する画面。「すべて」または 1, 3 のような画面の番号</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="48"/>
        <source>This folder cannot be found.</source>
        <translation>このフォルダーは見つかりません。</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="57"/>
        <location filename="../src/host/tests/TranslationsTest.cpp" line="13"/>
        <source>All</source>
        <translation>すべて</translation>
    </message>
    <message>
        <location filename="../src/config/SourcesController.cpp" line="247"/>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <location filename="../src/config/SourceTable.cpp" line="229"/>
        <source>Add folders with pictures, or drop them here.</source>
        <translation>画像のあるフォルダーを追加するか、ここにドロップしてください。</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="12"/>
        <source>File name</source>
        <translation>ファイル名</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="13"/>
        <source>Tags</source>
        <translation>タグ</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="14"/>
        <source>Keywords</source>
        <translation>キーワード</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="15"/>
        <source>Title</source>
        <translation>タイトル</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="16"/>
        <source>Description</source>
        <translation>説明</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="17"/>
        <source>Kind</source>
        <translation>種類</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="18"/>
        <source>Folder and name</source>
        <translation>フォルダーと名前</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="19"/>
        <source>City</source>
        <translation>市区町村</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="20"/>
        <source>State or province</source>
        <translation>都道府県・州</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="21"/>
        <source>Country</source>
        <translation>国</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="22"/>
        <source>Place</source>
        <translation>場所</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="23"/>
        <source>Author</source>
        <translation>作者</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="24"/>
        <source>Copyright</source>
        <translation>著作権</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="25"/>
        <source>Camera</source>
        <translation>カメラ</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="26"/>
        <source>Camera maker</source>
        <translation>カメラのメーカー</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="27"/>
        <source>Lens</source>
        <translation>レンズ</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="28"/>
        <source>Headline</source>
        <translation>見出し</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="29"/>
        <source>Subject</source>
        <translation>主題</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="30"/>
        <source>Comment</source>
        <translation>コメント</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="31"/>
        <source>Comment on file</source>
        <translation>ファイルのコメント</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="32"/>
        <source>Program</source>
        <translation>プログラム</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="33"/>
        <source>Color space</source>
        <translation>色空間</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="34"/>
        <source>Content type</source>
        <translation>コンテンツタイプ</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="35"/>
        <source>Content types</source>
        <translation>コンテンツタイプ (上位を含む)</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/AttributeNames.cpp" line="36"/>
        <source>Name as shown</source>
        <translation>表示名</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="18"/>
        <source>All of the following</source>
        <translation>次のすべてに一致</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="19"/>
        <source>Any of the following</source>
        <translation>次のいずれかに一致</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="20"/>
        <source>None of the following</source>
        <translation>次のどれにも一致しない</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/GroupHead.cpp" line="22"/>
        <source>Match</source>
        <translation>一致条件</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="21"/>
        <source>Replace It</source>
        <translation>置き換える</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/KeptNotice.cpp" line="23"/>
        <source>This filter cannot be edited here. It is kept as it is.</source>
        <translation>このフィルターはここでは編集できません。そのまま保持されます。</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="40"/>
        <source>Add row</source>
        <translation>行を追加</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="42"/>
        <source>Add group</source>
        <translation>グループを追加</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/LineWidget.cpp" line="48"/>
        <source>Remove</source>
        <translation>取り除く</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="42"/>
        <source>contains</source>
        <translation>次を含む</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="43"/>
        <source>begins with</source>
        <translation>次で始まる</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="44"/>
        <source>ends with</source>
        <translation>次で終わる</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="45"/>
        <source>is</source>
        <translation>次と等しい</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="46"/>
        <source>is not</source>
        <translation>次と等しくない</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="77"/>
        <source>Attribute</source>
        <translation>属性</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="88"/>
        <source>Operator</source>
        <translation>演算子</translation>
    </message>
    <message>
        <location filename="../src/filtereditor/RowWidget.cpp" line="104"/>
        <source>Text</source>
        <translation>テキスト</translation>
    </message>
    <message>
        <location filename="../src/host/PortalFolderChooser.cpp" line="24"/>
        <source>Choose Folders</source>
        <translation>フォルダーを選択</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="58"/>
        <source>Pelmora Screen Saver</source>
        <translation>Pelmora スクリーンセーバー</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="60"/>
        <source>Preview</source>
        <translation>プレビュー</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="62"/>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="63"/>
        <source>&amp;Options…</source>
        <translation>オプション(&amp;O)…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="65"/>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="145"/>
        <source>No pictures were found. Options lets you choose folders.</source>
        <translation>画像が見つかりませんでした。「オプション」でフォルダーを選択できます。</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="148"/>
        <source>Looking for pictures…</source>
        <translation>画像を探しています…</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="150"/>
        <source>Folders: %1  Pictures: %2</source>
        <translation>フォルダー: %1  画像: %2</translation>
    </message>
    <message>
        <location filename="../src/host/SettingsWindow.cpp" line="154"/>
        <source>Filter: %1 folders to read</source>
        <translation>フィルター: 読み取り待ちのフォルダー %1 個</translation>
    </message>
</context>
</TS>
