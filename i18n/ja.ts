<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>CommandLine</name>
    <message>
        <source>&apos;%1&apos; needs a file behind it</source>
        <translation>&apos;%1&apos;の後にファイルが必要です</translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a file</source>
        <translation>&apos;%1&apos;にはファイルが必要です</translation>
    </message>
    <message>
        <source>there is no option &apos;%1&apos;</source>
        <translation>オプション&apos;%1&apos;はありません</translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a name, as in &apos;--charset=UTF-8&apos;</source>
        <translation>&apos;%1&apos;には名前が必要です（例: &apos;--charset=UTF-8&apos;）</translation>
    </message>
    <message>
        <source>there is no character code &apos;%1&apos;</source>
        <translation>文字コード&apos;%1&apos;はありません</translation>
    </message>
    <message>
        <source>there is no line &apos;%1&apos;</source>
        <translation>行&apos;%1&apos;はありません</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can be named only once</source>
        <translation>&apos;%1&apos;は1回だけ指定できます</translation>
    </message>
    <message>
        <source>a file has a name</source>
        <translation>ファイル名が空です</translation>
    </message>
    <message>
        <source>marlopad: %1 (see marlopad --help)</source>
        <translation>marlopad: %1（marlopad --helpを参照）</translation>
    </message>
    <message>
        <source>marlopad: the window that is open does not answer, and none can be shown here (try again, or end process %1)</source>
        <translation>marlopad: 開いているウィンドウが応答しません。ここでは別のウィンドウを表示できません（もう一度試すか、プロセス%1を終了してください）</translation>
    </message>
    <message>
        <source>marlopad: the platform &apos;%1&apos; is not installed (see QT_QPA_PLATFORM)</source>
        <translation>marlopad: プラットフォーム&apos;%1&apos;はインストールされていません（QT_QPA_PLATFORMを確認してください）</translation>
    </message>
    <message>
        <source>marlopad: there is no display to show a window on (see DISPLAY and WAYLAND_DISPLAY)</source>
        <translation>marlopad: ウィンドウを表示できるディスプレイがありません（DISPLAY、WAYLAND_DISPLAYを確認してください）</translation>
    </message>
    <message>
        <source>Usage: marlopad [OPTION]... [FILE]...</source>
        <translation>使い方: marlopad [OPTION]... [FILE]...</translation>
    </message>
    <message>
        <source>open the file, or begin a new one of that name</source>
        <translation>ファイルを開く。なければその名前で新規作成</translation>
    </message>
    <message>
        <source>open it with the cursor there</source>
        <translation>カーソルをその位置に置いて開く</translation>
    </message>
    <message>
        <source>the same, unless there is a file named so</source>
        <translation>同じ。その名前のファイルがあればそれを開く</translation>
    </message>
    <message>
        <source>a new document with what standard input brings</source>
        <translation>標準入力の内容で新しい文書を作る</translation>
    </message>
    <message>
        <source>all that follow are names of files</source>
        <translation>以降はすべてファイル名</translation>
    </message>
    <message>
        <source>read them as UTF-8, Shift_JIS, EUC-JP or ISO-2022-JP</source>
        <translation>読み込む文字コード: UTF-8 Shift_JIS EUC-JP ISO-2022-JP</translation>
    </message>
    <message>
        <source>return when the documents have been closed</source>
        <translation>文書が閉じられるまで終了しない</translation>
    </message>
    <message>
        <source>show this text</source>
        <translation>この説明を表示</translation>
    </message>
    <message>
        <source>show the version</source>
        <translation>バージョンを表示</translation>
    </message>
    <message>
        <source>A window that is there already takes the files.</source>
        <translation>すでに開いているウィンドウがあれば、そこで開きます。</translation>
    </message>
    <message>
        <source>begin a new document</source>
        <translation>新しい文書を作る</translation>
    </message>
    <message>
        <source>show the files that were closed last</source>
        <translation>最近使ったファイルを表示</translation>
    </message>
</context>
<context>
    <name>DiskNotices</name>
    <message>
        <source>Another program has added to this file.</source>
        <translation>ほかのプログラムがこのファイルに追記しました。</translation>
    </message>
    <message>
        <source>Another program has made this file.</source>
        <translation>ほかのプログラムがこのファイルを作成しました。</translation>
    </message>
    <message>
        <source>Another program has changed this file.</source>
        <translation>ほかのプログラムがこのファイルを変更しました。</translation>
    </message>
    <message>
        <source>Another program has replaced this file.</source>
        <translation>ほかのプログラムがこのファイルを置き換えました。</translation>
    </message>
    <message>
        <source>This file was deleted. Saving makes it again.</source>
        <translation>このファイルは削除されました。保存すると作り直します。</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>追従</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>再読み込み</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>このまま</translation>
    </message>
    <message>
        <source>Show both</source>
        <translation>両方を表示</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>%1 on disk</source>
        <translation>%1 (ディスク)</translation>
    </message>
    <message>
        <source>What is added to this file comes into the text.</source>
        <translation>このファイルへの追記をテキストに読み込みます。</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>This file and its folder are gone.</source>
        <translation>このファイルとフォルダはなくなりました。</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>名前を付けて保存…</translation>
    </message>
</context>
<context>
    <name>DocumentJournals</name>
    <message>
        <source>the disk is full</source>
        <translation>ディスクに空きがありません</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>書き込み権限がありません</translation>
    </message>
    <message>
        <source>files cannot be locked there</source>
        <translation>ファイルをロックできません</translation>
    </message>
    <message>
        <source>the disk cannot be written</source>
        <translation>ディスクに書き込めません</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>Recovery is off: %1</source>
        <translation>復元用の保存ができません: %1</translation>
    </message>
</context>
<context>
    <name>FirstOffers</name>
    <message>
        <source>New documents are in %1 with %2</source>
        <translation>新規文書は %1、改行 %2</translation>
    </message>
    <message>
        <source>UTF-8 with LF</source>
        <translation>UTF-8・LF にする</translation>
    </message>
</context>
<context>
    <name>GuideBrowser</name>
    <message>
        <source>The guide is in English.</source>
        <translation>使い方は英語です。</translation>
    </message>
</context>
<context>
    <name>InterruptedSaves</name>
    <message>
        <source>Open both</source>
        <translation>両方を開く</translation>
    </message>
    <message>
        <source>Open it</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Delete the copy</source>
        <translation>コピーを削除</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>後で</translation>
    </message>
    <message>
        <source>A save was interrupted. The old text of its file is kept.</source>
        <translation>保存が中断されました。元のファイルの内容は残っています。</translation>
    </message>
    <message>
        <source>Saving %1 was interrupted. Its old text is kept.</source>
        <translation>%1 の保存が中断されました。元の内容は残っています。</translation>
    </message>
    <message>
        <source>Old text</source>
        <translation>元のテキスト</translation>
    </message>
    <message>
        <source>%1 before</source>
        <translation>%1 (保存前)</translation>
    </message>
</context>
<context>
    <name>LongEdit</name>
    <message>
        <source>There is not enough memory for this edit!</source>
        <translation>この編集にはメモリが足りません。</translation>
    </message>
</context>
<context>
    <name>NoticeStrip</name>
    <message>
        <source>Notices</source>
        <translation>お知らせ</translation>
    </message>
    <message>
        <source>More offers</source>
        <translation>その他の操作</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>&amp;More options</source>
        <translation>詳細設定(&amp;M)</translation>
    </message>
</context>
<context>
    <name>ObstacleNotices</name>
    <message>
        <source>You may not write this file.</source>
        <translation>このファイルに書き込む権限がありません。</translation>
    </message>
    <message>
        <source>The disk of this file can only be read.</source>
        <translation>このファイルのディスクは読み取り専用です。</translation>
    </message>
    <message>
        <source>The disk of this file is full.</source>
        <translation>このファイルのディスクは一杯です。</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>名前を付けて保存…</translation>
    </message>
</context>
<context>
    <name>QMultiLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>元に戻す(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>やり直す(&amp;R)</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>切り取り(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>貼り付け(&amp;P)</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>すべてを選択(&amp;A)</translation>
    </message>
    <message>
        <source>Vertical scroll bar</source>
        <translation>垂直スクロールバー</translation>
    </message>
    <message>
        <source>Horizontal scroll bar</source>
        <translation>水平スクロールバー</translation>
    </message>
</context>
<context>
    <name>Recovery</name>
    <message>
        <source>Parts are missing; a line with dots stands for each</source>
        <translation>一部が失われました。点の行がその箇所です</translation>
    </message>
    <message>
        <source>Nothing is missing; this text was saved already</source>
        <translation>失われたものはありません。この文章は保存済みです</translation>
    </message>
    <message>
        <source>The file has changed; this text is in no file yet</source>
        <translation>ファイルが変更されました。この文章は未保存です</translation>
    </message>
    <message>
        <source>The file is gone; this text is in no file yet</source>
        <translation>ファイルがありません。この文章は未保存です</translation>
    </message>
    <message>
        <source>%1 (other edits)</source>
        <translation>%1 (別の編集)</translation>
    </message>
    <message>
        <source>The file has other edits in its tab; these are in no file yet</source>
        <translation>タブのファイルには別の編集があります。これは未保存です</translation>
    </message>
    <message>
        <source>Open the file</source>
        <translation>ファイルを開く</translation>
    </message>
    <message>
        <source>1 document was not saved</source>
        <translation>1 件の文書が保存されていません</translation>
    </message>
    <message numerus="yes">
        <source>%n documents were not saved</source>
        <translation>
            <numerusform>%n 件の文書が保存されていません</numerusform>
        </translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>復元</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>後で</translation>
    </message>
    <message>
        <source>There is not enough memory to restore these texts:
%1</source>
        <translation>次のテキストを復元するにはメモリーが足りません:
%1</translation>
    </message>
    <message>
        <source>These texts could not be restored:
%1</source>
        <translation>次のテキストは復元できませんでした:
%1</translation>
    </message>
</context>
<context>
    <name>RequestedFiles</name>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Only files of this computer can be opened. These are none:
%1</source>
        <translation>開けるのはこのコンピュータのファイルだけです。次のものは開けません:
%1</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Character code</source>
        <translation>文字コード</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>改行コード</translation>
    </message>
    <message>
        <source>OVR</source>
        <translation>上書</translation>
    </message>
    <message>
        <source>INS</source>
        <translation>挿入</translation>
    </message>
    <message>
        <source>Overwrite, or insert</source>
        <translation>上書き／挿入</translation>
    </message>
    <message>
        <source>RO</source>
        <translation>読専</translation>
    </message>
    <message>
        <source>Read only</source>
        <translation>読み取り専用</translation>
    </message>
    <message>
        <source>Line %1, column %2</source>
        <translation>%1 行 %2 桁</translation>
    </message>
    <message>
        <source>Selected: %1</source>
        <translation>選択: %1</translation>
    </message>
    <message>
        <source>Selected lines: %1</source>
        <translation>選択行: %1</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>ステータス行</translation>
    </message>
    <message>
        <source>Line and column</source>
        <translation>行と桁</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Reopen as %1</source>
        <translation>%1 で開き直す</translation>
    </message>
    <message>
        <source>Save as %1</source>
        <translation>%1 で保存</translation>
    </message>
</context>
<context>
    <name>TabMenu</name>
    <message>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Close &amp;others</source>
        <translation>他を閉じる(&amp;O)</translation>
    </message>
    <message>
        <source>Copy &amp;path</source>
        <translation>パスをコピー(&amp;P)</translation>
    </message>
    <message>
        <source>Open &amp;folder</source>
        <translation>フォルダを開く(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>再読み込み(&amp;R)</translation>
    </message>
    <message>
        <source>Reopen &amp;as</source>
        <translation>開き直す(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;More options</source>
        <translation>詳細設定(&amp;M)</translation>
    </message>
</context>
<context>
    <name>WorkNotice</name>
    <message>
        <source>Stop</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>中止しています</translation>
    </message>
    <message>
        <source>Restoring</source>
        <translation>復元中</translation>
    </message>
    <message>
        <source>Not while it is being restored</source>
        <translation>復元中にはできません</translation>
    </message>
    <message>
        <source>Restoring has ended</source>
        <translation>復元が終わりました</translation>
    </message>
    <message>
        <source>Loading has ended</source>
        <translation>読み込みが終わりました</translation>
    </message>
    <message>
        <source>Saving has ended</source>
        <translation>保存が終わりました</translation>
    </message>
    <message>
        <source>To be gone to when it is loaded</source>
        <translation>読み込みが終わると移動します</translation>
    </message>
    <message>
        <source>To be closed when it is done</source>
        <translation>終わると閉じます</translation>
    </message>
    <message>
        <source>Not while it is loading</source>
        <translation>読み込み中はできません</translation>
    </message>
    <message>
        <source>Not while it is being saved</source>
        <translation>保存中はできません</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>読み込み中</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>保存中</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>検索中</translation>
    </message>
    <message>
        <source>Not while it is being searched</source>
        <translation>検索中はできません</translation>
    </message>
    <message>
        <source>Searching has ended</source>
        <translation>検索が終わりました</translation>
    </message>
    <message>
        <source>Counting</source>
        <translation>集計中</translation>
    </message>
    <message>
        <source>Not while it is being counted</source>
        <translation>集計中はできません</translation>
    </message>
    <message>
        <source>Counting has ended</source>
        <translation>集計が終わりました</translation>
    </message>
    <message>
        <source>Opening files</source>
        <translation>ファイルを開いています</translation>
    </message>
    <message>
        <source>Not while files are being opened</source>
        <translation>ファイルを開いている間はできません</translation>
    </message>
    <message>
        <source>Opening files has ended</source>
        <translation>ファイルを開き終わりました</translation>
    </message>
    <message>
        <source>Indenting</source>
        <translation>字下げ中</translation>
    </message>
    <message>
        <source>Not while it is being indented</source>
        <translation>字下げ中はできません</translation>
    </message>
    <message>
        <source>Indenting has ended</source>
        <translation>字下げが終わりました</translation>
    </message>
    <message>
        <source>Pasting</source>
        <translation>貼り付け中</translation>
    </message>
    <message>
        <source>Not while text is being pasted</source>
        <translation>貼り付け中はできません</translation>
    </message>
    <message>
        <source>Pasting has ended</source>
        <translation>貼り付けが終わりました</translation>
    </message>
    <message>
        <source>Laying out</source>
        <translation>レイアウト中</translation>
    </message>
    <message>
        <source>Laying out has ended</source>
        <translation>レイアウトが終わりました</translation>
    </message>
    <message>
        <source>%1: %2%</source>
        <translation>%1: %2%</translation>
    </message>
</context>
<context>
    <name>ctlEditer</name>
    <message>
        <source>(new document)</source>
        <translation>(新規文書)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>The binary file cannot be saved.</source>
        <translation>バイナリファイルは保存できません。</translation>
    </message>
    <message>
        <source>File Write Error</source>
        <translation>書き込みエラー</translation>
    </message>
    <message>
        <source>Cannot write the file.
You do not have the permission or the file may be in use.</source>
        <translation>ファイルに書き込めません。
書き込み権限がないか、ファイルが使用中の可能性があります。</translation>
    </message>
    <message>
        <source>The file may be damaged. Its old content is kept in the file
%1</source>
        <translation>ファイルが壊れた可能性があります。元の内容は次のファイルに残してあります。
%1</translation>
    </message>
    <message>
        <source>This file can only be written over when its old content is kept before, in the folder
%1
That was not possible. Save the text under another name, or see to it that this folder has room and can be written to.</source>
        <translation>このファイルに上書きするには、元の内容を先に次のフォルダへ残す必要があります。
%1
それができませんでした。別の名前で保存するか、このフォルダの空きと書き込み権限を確かめてください。</translation>
    </message>
    <message>
        <source>Confirm File Save</source>
        <translation>保存の確認</translation>
    </message>
    <message>
        <source>Another document was saved as this file since. Its old content is kept in the file
%1</source>
        <translation>このファイルには、その後ほかの文書が保存されました。元の内容は次のファイルに残してあります。
%1</translation>
    </message>
    <message>
        <source>The file could not be read before. Its old content is kept in the file
%1</source>
        <translation>このファイルは以前に読み込めませんでした。元の内容は次のファイルに残してあります。
%1</translation>
    </message>
    <message>
        <source>This file is not exists!</source>
        <translation>ファイルが存在しません。</translation>
    </message>
    <message>
        <source>This file was not opened!</source>
        <translation>ファイルを開けませんでした。</translation>
    </message>
    <message>
        <source>This is a folder, not a file!</source>
        <translation>これはファイルではなくフォルダです。</translation>
    </message>
    <message>
        <source>This is a device or a pipe, not a file!</source>
        <translation>これはファイルではなくデバイスまたはパイプです。</translation>
    </message>
    <message>
        <source>There is not enough memory for this!</source>
        <translation>メモリが足りません。</translation>
    </message>
    <message>
        <source>There is not enough memory for this file!</source>
        <translation>このファイルを開くにはメモリが足りません。</translation>
    </message>
    <message>
        <source>This file could not be read to its end!</source>
        <translation>ファイルを最後まで読み込めませんでした。</translation>
    </message>
    <message>
        <source>File Load Error!</source>
        <translation>読み込みエラー</translation>
    </message>
</context>
<context>
    <name>ctlFileListView</name>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>サイズ</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>更新日時</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>フォルダを読み込んでいます…</translation>
    </message>
    <message>
        <source>There is not enough memory to read this folder. Choose Refresh to try again.</source>
        <translation>このフォルダを読み込むにはメモリが足りません。「最新の情報に更新」でもう一度読み込みます。</translation>
    </message>
</context>
<context>
    <name>ctlFileListViewItem</name>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>フォルダ</translation>
    </message>
</context>
<context>
    <name>ctlTabBar</name>
    <message>
        <source>Documents</source>
        <translation>文書</translation>
    </message>
    <message>
        <source>Scroll Left</source>
        <translation>左へスクロール</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>右へスクロール</translation>
    </message>
</context>
<context>
    <name>frmFileDialog</name>
    <message>
        <source>text files (*.txt;..)</source>
        <translation>テキストファイル (*.txt;..)</translation>
    </message>
    <message>
        <source>Qtopia files (*.conf;..)</source>
        <translation>Qtopiaファイル (*.conf;..)</translation>
    </message>
    <message>
        <source>HTML files (*.htm;js;..)</source>
        <translation>HTMLファイル (*.htm;js;..)</translation>
    </message>
    <message>
        <source>Web files (*.cgi;pl;..)</source>
        <translation>Webファイル (*.cgi;pl;..)</translation>
    </message>
    <message>
        <source>C language (*.h;c;cpp;..)</source>
        <translation>C言語 (*.h;c;cpp;..)</translation>
    </message>
    <message>
        <source>Java language (*.java;..)</source>
        <translation>Java言語 (*.java;..)</translation>
    </message>
    <message>
        <source>all files (*.*)</source>
        <translation>すべてのファイル (*.*)</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>名前を付けて保存</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>フォルダ</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上へ</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>最新の情報に更新</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>お気に入り</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>改行コード</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>File Name:</source>
        <translation>ファイル名:</translation>
    </message>
    <message>
        <source>File Type:</source>
        <translation>種類:</translation>
    </message>
    <message>
        <source>Char code:</source>
        <translation>文字コード:</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Enter the file name.</source>
        <translation>ファイル名を入力してください。</translation>
    </message>
    <message>
        <source>A file name cannot contain any of the following characters;
\ / : , ; * ? &quot; &lt; &gt; |</source>
        <translation>ファイル名に次の文字は使えません。
\ / : , ; * ? &quot; &lt; &gt; |</translation>
    </message>
    <message>
        <source>error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>%1
This file does not exists.</source>
        <translation>%1
このファイルは存在しません。</translation>
    </message>
    <message>
        <source>%1
This file already exists.
Replace existing file?</source>
        <translation>%1
このファイルはすでに存在します。
置き換えますか？</translation>
    </message>
    <message>
        <source>Replace confirm</source>
        <translation>置き換えの確認</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>This folder is not there yet. It is made when you save.</source>
        <translation>このフォルダはまだありません。保存するときに作成します。</translation>
    </message>
    <message>
        <source>A file stands where this folder should be. Rename that file, or choose another folder.</source>
        <translation>このフォルダの場所に、同じ名前のファイルがあります。そのファイルの名前を変えるか、ほかのフォルダを選んでください。</translation>
    </message>
    <message>
        <source>There is not enough memory to sort this folder.
Its files stay in the order that they had.</source>
        <translation>このフォルダを並べ替えるにはメモリが足りません。
ファイルの順番は元のままです。</translation>
    </message>
    <message>
        <source>There is no file of this type here. For others choose a File Type below.</source>
        <translation>この種類のファイルはここにありません。ほかのファイルは下の「種類」で選べます。</translation>
    </message>
</context>
<context>
    <name>frmGuide</name>
    <message>
        <source>Guide</source>
        <translation>使い方</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>frmJumpTo</name>
    <message>
        <source>Jump to</source>
        <translation>指定行へ移動</translation>
    </message>
    <message>
        <source>Line No:</source>
        <translation>行番号:</translation>
    </message>
    <message>
        <source>Jump</source>
        <translation>移動</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Input Error</source>
        <translation>入力エラー</translation>
    </message>
    <message>
        <source>Input a number.</source>
        <translation>数値を入力してください。</translation>
    </message>
</context>
<context>
    <name>frmMain</name>
    <message>
        <source>&amp;New</source>
        <translation>新規(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Open  (Fn+O)</source>
        <translation>開く(&amp;O)  (Fn+O)</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>再読み込み(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Properties</source>
        <translation>プロパティ(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Save  (Fn+S)</source>
        <translation>上書き保存(&amp;S)  (Fn+S)</translation>
    </message>
    <message>
        <source>Save &amp;As</source>
        <translation>名前を付けて保存(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Close  (Cancel)</source>
        <translation>閉じる(&amp;C)  (Cancel)</translation>
    </message>
    <message>
        <source>Save A&amp;ll</source>
        <translation>すべて保存(&amp;L)</translation>
    </message>
    <message>
        <source>Quit &amp;with Save</source>
        <translation>保存して終了(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Quit  (Fn+Q)</source>
        <translation>終了(&amp;Q)  (Fn+Q)</translation>
    </message>
    <message>
        <source>R&amp;ecent Files</source>
        <translation>最近使ったファイル(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Undo  (Fn+Z)</source>
        <translation>元に戻す(&amp;U)  (Fn+Z)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>やり直す(&amp;R)</translation>
    </message>
    <message>
        <source>Cu&amp;t  (Fn+X)</source>
        <translation>切り取り(&amp;T)  (Fn+X)</translation>
    </message>
    <message>
        <source>&amp;Copy  (Fn+C)</source>
        <translation>コピー(&amp;C)  (Fn+C)</translation>
    </message>
    <message>
        <source>&amp;Paste  (Fn+V)</source>
        <translation>貼り付け(&amp;P)  (Fn+V)</translation>
    </message>
    <message>
        <source>Select &amp;All  (Fn+A)</source>
        <translation>すべてを選択(&amp;A)  (Fn+A)</translation>
    </message>
    <message>
        <source>&amp;Date and Time</source>
        <translation>日付と時刻(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Options...</source>
        <translation>オプション(&amp;O)...</translation>
    </message>
    <message>
        <source>&amp;Prev Window</source>
        <translation>前のウィンドウ(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Next Window</source>
        <translation>次のウィンドウ(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Search  (Fn+N)</source>
        <translation>検索(&amp;S)  (Fn+N)</translation>
    </message>
    <message>
        <source>Search &amp;Before  (Fn+1)</source>
        <translation>前を検索(&amp;B)  (Fn+1)</translation>
    </message>
    <message>
        <source>Search &amp;Next  (Fn+2)</source>
        <translation>次を検索(&amp;N)  (Fn+2)</translation>
    </message>
    <message>
        <source>&amp;Replace  (Fn+M)</source>
        <translation>置換(&amp;R)  (Fn+M)</translation>
    </message>
    <message>
        <source>Line &amp;Jump</source>
        <translation>指定行へ移動(&amp;J)</translation>
    </message>
    <message>
        <source>&amp;Last Edited Pos  (Fn+5)</source>
        <translation>最後の編集位置へ移動(&amp;E)  (Fn+5)</translation>
    </message>
    <message>
        <source>&amp;Full Screen</source>
        <translation>全画面表示(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>言語(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>バージョン情報(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Japanese</source>
        <translation>日本語(&amp;J)</translation>
    </message>
    <message>
        <source>&amp;English</source>
        <translation>英語(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;French</source>
        <translation>フランス語(&amp;F)</translation>
    </message>
    <message>
        <source>File named &apos;%1&apos; already opens.
Cancel edit and reload?</source>
        <translation>ファイル「%1」はすでに開かれています。
編集内容を破棄して再読み込みしますか？</translation>
    </message>
    <message>
        <source>Existing File</source>
        <translation>開いているファイル</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Cancel edit and reload
&apos;%1&apos;?</source>
        <translation>編集内容を破棄して
「%1」を再読み込みしますか？</translation>
    </message>
    <message>
        <source>Confirm Reload</source>
        <translation>再読み込みの確認</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>編集(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>表示(&amp;V)</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>ツールバー</translation>
    </message>
    <message>
        <source>More buttons</source>
        <translation>その他のボタン</translation>
    </message>
    <message>
        <source>Document properties</source>
        <translation>文書のプロパティ</translation>
    </message>
    <message>
        <source>Path : %1
Name : %2

Char code  : %3
Return code: %4
</source>
        <translation>フォルダ: %1
名前: %2

文字コード: %3
改行コード: %4
</translation>
    </message>
    <message>
        <source>File size  : %1 KB (%2 byte)

</source>
        <translation>サイズ: %1 KB (%2 バイト)

</translation>
    </message>
    <message>
        <source>Char count : %1
Row count  : %2</source>
        <translation>文字数: %1
行数: %2</translation>
    </message>
    <message>
        <source>(no item)</source>
        <translation>(なし)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is edited.
 Would you want to save this file?</source>
        <translation>「%1」は変更されています。
保存しますか？</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Confirm File Save</source>
        <translation>保存の確認</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>すべて置換</translation>
    </message>
    <message>
        <source>%1 items was Replaced.</source>
        <translation>%1 件を置換しました。</translation>
    </message>
    <message>
        <source>Marlo!Pad QT</source>
        <translation>Marlo!Pad QT</translation>
    </message>
    <message>
        <source>Marlo!Pad QT Ver1.76
            2005/07/04

</source>
        <translation>Marlo!Pad QT Ver1.76
            2005/07/04

</translation>
    </message>
    <message>
        <source>A japanese translation file is not found.</source>
        <translation>日本語の翻訳ファイルが見つかりません。</translation>
    </message>
    <message>
        <source>A french translation file not found.</source>
        <translation>フランス語の翻訳ファイルが見つかりません。</translation>
    </message>
    <message>
        <source>Go to it</source>
        <translation>そこへ移動</translation>
    </message>
    <message>
        <source>Save as UTF-8…</source>
        <translation>UTF-8 で保存…</translation>
    </message>
    <message>
        <source>%1 or more</source>
        <translation>%1 以上</translation>
    </message>
    <message>
        <source>Characters saved as &quot;%1&quot;: %2 (%3)</source>
        <translation>「%1」として保存された文字: %2 (%3)</translation>
    </message>
    <message>
        <source>Characters that %1 lacks: %2 (%3)</source>
        <translation>%1 にない文字: %2 (%3)</translation>
    </message>
    <message>
        <source>Open already, read as %1</source>
        <translation>すでに開いています (%1)</translation>
    </message>
    <message>
        <source>Reopen as %1</source>
        <translation>%1 で開き直す</translation>
    </message>
    <message>
        <source>Read as %1, but %2 reads it without a fault</source>
        <translation>%1 で読みましたが、%2 なら正しく読めます</translation>
    </message>
    <message>
        <source>Bytes that are not %1: %2</source>
        <translation>%1 ではないバイト: %2</translation>
    </message>
    <message>
        <source>Reopen as</source>
        <translation>コードを選ぶ</translation>
    </message>
    <message>
        <source>Replaced in part only: %1</source>
        <translation>一部だけ置き換えた箇所: %1</translation>
    </message>
    <message>
        <source>Undo all</source>
        <translation>すべて元に戻す</translation>
    </message>
    <message>
        <source>Saving will change: %1</source>
        <translation>保存すると変わります: %1</translation>
    </message>
    <message>
        <source>UTF-16 text, to be saved as UTF-8</source>
        <translation>UTF-16 の文書です。UTF-8 で保存されます</translation>
    </message>
    <message>
        <source>UTF-16 text, read byte by byte; saving will change it</source>
        <translation>UTF-16 の文書をバイト単位で読みました。保存すると変わります</translation>
    </message>
    <message>
        <source>UTF-16 text, read byte by byte</source>
        <translation>UTF-16 の文書をバイト単位で読みました</translation>
    </message>
    <message>
        <source>Read it as text</source>
        <translation>文字として読む</translation>
    </message>
    <message>
        <source>Keep UTF-16</source>
        <translation>UTF-16 のまま</translation>
    </message>
    <message>
        <source>Keep a copy</source>
        <translation>元のファイルを残す</translation>
    </message>
    <message>
        <source>Taken for binary, which cannot be saved</source>
        <translation>バイナリと見なされたので保存できません</translation>
    </message>
    <message>
        <source>Open it</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>The file as it was is kept as %1</source>
        <translation>元のファイルの控え: %1</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>キー</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>働き</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>使い方</translation>
    </message>
    <message>
        <source>To the notice above the text, and back</source>
        <translation>お知らせへ移動、戻る</translation>
    </message>
    <message>
        <source>Menu of the tab</source>
        <translation>タブのメニュー</translation>
    </message>
    <message>
        <source>Ctrl+Wheel</source>
        <translation>Ctrl+ホイール</translation>
    </message>
    <message>
        <source>Size of the text</source>
        <translation>文字の大きさ</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>文字を大きく</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>文字を小さく</translation>
    </message>
    <message>
        <source>Text as usual</source>
        <translation>文字を標準の大きさに</translation>
    </message>
    <message>
        <source>Close, or leave full screen</source>
        <translation>閉じる、全画面表示を終了</translation>
    </message>
    <message>
        <source>Indent the selected lines</source>
        <translation>選択した行を字下げ</translation>
    </message>
    <message>
        <source>Unindent the selected lines</source>
        <translation>選択した行の字下げを戻す</translation>
    </message>
    <message>
        <source>Overwrite, or insert</source>
        <translation>上書き、挿入の切り替え</translation>
    </message>
</context>
<context>
    <name>frmMoreOptions</name>
    <message>
        <source>On at first.</source>
        <translation>初期値: オン</translation>
    </message>
    <message>
        <source>Off at first.</source>
        <translation>初期値: オフ</translation>
    </message>
    <message>
        <source>More options</source>
        <translation>詳細設定</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>&amp;Status line</source>
        <translation>ステータス行(&amp;S)</translation>
    </message>
    <message>
        <source>Line and column, selection, code, line end and file name below the tabs.</source>
        <translation>タブの下に行と桁、選択、文字コード、改行コード、ファイル名を表示します。</translation>
    </message>
    <message>
        <source>&amp;Open what was open</source>
        <translation>前回のファイルを開く(&amp;O)</translation>
    </message>
    <message>
        <source>The files that were open at the end are open at the next start.</source>
        <translation>終了時に開いていたファイルを次の起動時に開きます。</translation>
    </message>
    <message>
        <source>&amp;Keys of other programs</source>
        <translation>一般的なキー(&amp;K)</translation>
    </message>
    <message>
        <source>Ctrl+F, Ctrl+W, F3 and the like. F1 shows them.</source>
        <translation>Ctrl+F、Ctrl+W、F3 など。F1 で一覧を表示します。</translation>
    </message>
    <message>
        <source>&amp;Tabs by mouse</source>
        <translation>マウスでタブを操作(&amp;T)</translation>
    </message>
    <message>
        <source>The middle button closes a tab, dragging moves it, the wheel scrolls them.</source>
        <translation>中ボタンで閉じ、ドラッグで移動し、ホイールでスクロールします。</translation>
    </message>
    <message>
        <source>Text size by &amp;wheel</source>
        <translation>ホイールで文字サイズ(&amp;W)</translation>
    </message>
    <message>
        <source>Ctrl and the wheel change the size of the text of all documents.</source>
        <translation>Ctrl とホイールですべての文書の文字サイズを変えます。</translation>
    </message>
    <message>
        <source>Notices of co&amp;des</source>
        <translation>文字コードの通知(&amp;D)</translation>
    </message>
    <message>
        <source>Characters that cannot be saved, bytes that do not fit the code.</source>
        <translation>保存できない文字、文字コードに合わないバイト。</translation>
    </message>
    <message>
        <source>Notices of &amp;files</source>
        <translation>ファイルの通知(&amp;F)</translation>
    </message>
    <message>
        <source>Another program has changed the file, or it cannot be written.</source>
        <translation>他のプログラムによる変更、書き込めないファイル。</translation>
    </message>
    <message>
        <source>&amp;Recovery</source>
        <translation>復元(&amp;R)</translation>
    </message>
    <message>
        <source>What is not saved comes back after a crash.</source>
        <translation>保存していない内容を異常終了後に復元します。</translation>
    </message>
    <message>
        <source>Size of the w&amp;indow</source>
        <translation>ウィンドウの大きさ(&amp;I)</translation>
    </message>
    <message>
        <source>The window has its last size again when it is no longer maximised.</source>
        <translation>最大化を解くと前回の大きさに戻ります。</translation>
    </message>
</context>
<context>
    <name>frmOption</name>
    <message>
        <source>Options</source>
        <translation>オプション</translation>
    </message>
    <message>
        <source>View&amp;1</source>
        <translation>表示1(&amp;1)</translation>
    </message>
    <message>
        <source>View&amp;2</source>
        <translation>表示2(&amp;2)</translation>
    </message>
    <message>
        <source>&amp;Detail</source>
        <translation>詳細(&amp;D)</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Clear Recent Files</source>
        <translation>最近使ったファイルの一覧を消去</translation>
    </message>
    <message>
        <source>Are you sure you want to clear the Recent Files?</source>
        <translation>最近使ったファイルの一覧を消去しますか？</translation>
    </message>
    <message>
        <source>The Wrap columns must be numeric.</source>
        <translation>折り返し桁数は数値で入力してください。</translation>
    </message>
    <message>
        <source>The Wrap columns must be more than 10 numbers.</source>
        <translation>折り返し桁数は 10 以上にしてください。</translation>
    </message>
    <message>
        <source>The Tab size must be numeric.</source>
        <translation>タブ幅は数値で入力してください。</translation>
    </message>
    <message>
        <source>The Tab size must be between 1 and 12.</source>
        <translation>タブ幅は 1 から 12 の範囲にしてください。</translation>
    </message>
    <message>
        <source>The Font size must be numeric.</source>
        <translation>フォントサイズは数値で入力してください。</translation>
    </message>
    <message>
        <source>The Font size must be between 1 and 99.</source>
        <translation>フォントサイズは 1 から 99 の範囲にしてください。</translation>
    </message>
    <message>
        <source>The Recent Files count must be numeric.</source>
        <translation>最近のファイル数は数値で入力してください。</translation>
    </message>
    <message>
        <source>The Recent Files count must be between 0 and 15.</source>
        <translation>最近のファイル数は 0 から 15 の範囲にしてください。</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>黒</translation>
    </message>
    <message>
        <source>White</source>
        <translation>白</translation>
    </message>
    <message>
        <source>DarkGray</source>
        <translation>暗い灰色</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>灰色</translation>
    </message>
    <message>
        <source>LightGray</source>
        <translation>明るい灰色</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>赤</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>緑</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>青</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>シアン</translation>
    </message>
    <message>
        <source>Magenta</source>
        <translation>マゼンタ</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄</translation>
    </message>
    <message>
        <source>DarkRed</source>
        <translation>暗い赤</translation>
    </message>
    <message>
        <source>DarkGreen</source>
        <translation>暗い緑</translation>
    </message>
    <message>
        <source>DarkBlue</source>
        <translation>暗い青</translation>
    </message>
    <message>
        <source>DarkCyan</source>
        <translation>暗いシアン</translation>
    </message>
    <message>
        <source>DarkMagenta</source>
        <translation>暗いマゼンタ</translation>
    </message>
    <message>
        <source>DarkYellow</source>
        <translation>暗い黄</translation>
    </message>
    <message>
        <source>&amp;Font :</source>
        <translation>フォント(&amp;F):</translation>
    </message>
    <message>
        <source>Font &amp;size :</source>
        <translation>サイズ(&amp;S):</translation>
    </message>
    <message>
        <source>F&amp;oreColor :</source>
        <translation>文字色(&amp;O):</translation>
    </message>
    <message>
        <source>&amp;BackColor :</source>
        <translation>背景色(&amp;B):</translation>
    </message>
    <message>
        <source>&amp;Wrap mode :</source>
        <translation>折り返し(&amp;W):</translation>
    </message>
    <message>
        <source>Mark display</source>
        <translation>記号の表示</translation>
    </message>
    <message>
        <source>&amp;Return code</source>
        <translation>改行(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Tab character</source>
        <translation>タブ(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Multi-byte space</source>
        <translation>全角空白(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;EOF</source>
        <translation>EOF(&amp;E)</translation>
    </message>
    <message>
        <source>None</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Fixed column</source>
        <translation>桁数指定</translation>
    </message>
    <message>
        <source>Wrap columns</source>
        <translation>折り返し桁数</translation>
    </message>
    <message>
        <source>Small size</source>
        <translation>小</translation>
    </message>
    <message>
        <source>Large size</source>
        <translation>大</translation>
    </message>
    <message>
        <source>&amp;Row No :</source>
        <translation>行番号(&amp;R):</translation>
    </message>
    <message>
        <source>(Same ForeColor)</source>
        <translation>(文字色と同じ)</translation>
    </message>
    <message>
        <source>Row No &amp;Color :</source>
        <translation>行番号の色(&amp;C):</translation>
    </message>
    <message>
        <source>&amp;Active Line :</source>
        <translation>現在行の線(&amp;A):</translation>
    </message>
    <message>
        <source>&amp;Tab size :</source>
        <translation>タブ幅(&amp;T):</translation>
    </message>
    <message>
        <source>A cursor &amp;position is restored when opens</source>
        <translation>開くときカーソル位置を復元(&amp;P)</translation>
    </message>
    <message>
        <source>Tab &amp; space</source>
        <translation>タブ・空白</translation>
    </message>
    <message>
        <source>Tab &amp; space &amp; MultiSpace</source>
        <translation>タブ・空白・全角空白</translation>
    </message>
    <message>
        <source>&amp;Auto indent :</source>
        <translation>自動字下げ(&amp;A):</translation>
    </message>
    <message>
        <source>&amp;Recent Files count:</source>
        <translation>最近のファイル数(&amp;R):</translation>
    </message>
    <message>
        <source>(0-15)</source>
        <translation>(0～15)</translation>
    </message>
    <message>
        <source>&amp;Clear Recent Files</source>
        <translation>最近使ったファイルの一覧を消去(&amp;C)</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>改行コード</translation>
    </message>
    <message>
        <source>Default c&amp;har code:</source>
        <translation>既定コード(&amp;H):</translation>
    </message>
</context>
<context>
    <name>frmRecovery</name>
    <message>
        <source>Texts That Were Not Saved</source>
        <translation>保存されていないテキスト</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>復元</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>後で</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>破棄</translation>
    </message>
    <message>
        <source>never saved</source>
        <translation>未保存</translation>
    </message>
    <message>
        <source>The chosen text was not saved anywhere else.
Delete it for ever?</source>
        <translation>選択したテキストは他に保存されていません。
完全に削除しますか？</translation>
    </message>
    <message numerus="yes">
        <source>The %n chosen texts were not saved anywhere else.
Delete them for ever?</source>
        <translation>
            <numerusform>選択した %n 件のテキストは他に保存されていません。
完全に削除しますか？</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Characters: %1</source>
        <translation>文字数: %1</translation>
    </message>
</context>
<context>
    <name>frmReplaceProgress</name>
    <message>
        <source>Speed up</source>
        <translation>高速化</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>すべて置換</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>replaced :   %1</source>
        <translation>置換数:   %1</translation>
    </message>
</context>
<context>
    <name>frmSearchDialog</name>
    <message>
        <source>Replace</source>
        <translation>置換</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Replace Next</source>
        <translation>次を置換</translation>
    </message>
    <message>
        <source>Search Next</source>
        <translation>次を検索</translation>
    </message>
    <message>
        <source>Case sensitive</source>
        <translation>大文字と小文字を区別</translation>
    </message>
    <message>
        <source>Search Prev</source>
        <translation>前を検索</translation>
    </message>
    <message>
        <source>Replace ALL</source>
        <translation>すべて置換</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Input the characters.</source>
        <translation>文字列を入力してください。</translation>
    </message>
</context>
</TS>
