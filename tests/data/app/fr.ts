<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>frmMain</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Undo  (Fn+Z)</source>
        <translation>Ann&amp;uler  (Fn+Z)</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <source>(no item)</source>
        <translation>(aucun)</translation>
    </message>
</context>
</TS>
