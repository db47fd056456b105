<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>frmMain</name>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Undo  (Fn+Z)</source>
        <translation>元に戻す(&amp;U)  (Fn+Z)</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>新規(&amp;N)</translation>
    </message>
    <message>
        <source>(no item)</source>
        <translation>(なし)</translation>
    </message>
</context>
</TS>
