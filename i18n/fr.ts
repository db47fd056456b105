<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>CommandLine</name>
    <message>
        <source>&apos;%1&apos; needs a file behind it</source>
        <translation>«&#xa0;%1&#xa0;» doit être suivi d’un fichier</translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a file</source>
        <translation>«&#xa0;%1&#xa0;» demande un fichier</translation>
    </message>
    <message>
        <source>there is no option &apos;%1&apos;</source>
        <translation>l’option «&#xa0;%1&#xa0;» n’existe pas</translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a name, as in &apos;--charset=UTF-8&apos;</source>
        <translation>«&#xa0;%1&#xa0;» demande un nom, comme dans «&#xa0;--charset=UTF-8&#xa0;»</translation>
    </message>
    <message>
        <source>there is no character code &apos;%1&apos;</source>
        <translation>le codage «&#xa0;%1&#xa0;» n’existe pas</translation>
    </message>
    <message>
        <source>there is no line &apos;%1&apos;</source>
        <translation>la ligne «&#xa0;%1&#xa0;» n’existe pas</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can be named only once</source>
        <translation>«&#xa0;%1&#xa0;» ne peut être donné qu’une fois</translation>
    </message>
    <message>
        <source>a file has a name</source>
        <translation>un fichier a un nom</translation>
    </message>
    <message>
        <source>marlopad: %1 (see marlopad --help)</source>
        <translation>marlopad&#xa0;: %1 (voir marlopad --help)</translation>
    </message>
    <message>
        <source>marlopad: the window that is open does not answer, and none can be shown here (try again, or end process %1)</source>
        <translation>marlopad&#xa0;: la fenêtre ouverte ne répond pas, et aucune ne peut être affichée ici (réessayer, ou terminer le processus %1)</translation>
    </message>
    <message>
        <source>marlopad: the platform &apos;%1&apos; is not installed (see QT_QPA_PLATFORM)</source>
        <translation>marlopad&#xa0;: la plate-forme «&#xa0;%1&#xa0;» n’est pas installée (voir QT_QPA_PLATFORM)</translation>
    </message>
    <message>
        <source>marlopad: there is no display to show a window on (see DISPLAY and WAYLAND_DISPLAY)</source>
        <translation>marlopad&#xa0;: il n’y a pas d’écran où afficher une fenêtre (voir DISPLAY et WAYLAND_DISPLAY)</translation>
    </message>
    <message>
        <source>Usage: marlopad [OPTION]... [FILE]...</source>
        <translation>Utilisation&#xa0;: marlopad [OPTION]… [FILE]…</translation>
    </message>
    <message>
        <source>open the file, or begin a new one of that name</source>
        <translation>ouvrir le fichier, ou en commencer un de ce nom</translation>
    </message>
    <message>
        <source>open it with the cursor there</source>
        <translation>l’ouvrir avec le curseur à cet endroit</translation>
    </message>
    <message>
        <source>the same, unless there is a file named so</source>
        <translation>de même, sauf si un fichier porte ce nom</translation>
    </message>
    <message>
        <source>a new document with what standard input brings</source>
        <translation>un nouveau document avec l’entrée standard</translation>
    </message>
    <message>
        <source>all that follow are names of files</source>
        <translation>tout ce qui suit est un nom de fichier</translation>
    </message>
    <message>
        <source>read them as UTF-8, Shift_JIS, EUC-JP or ISO-2022-JP</source>
        <translation>les lire en UTF-8, Shift_JIS, EUC-JP ou ISO-2022-JP</translation>
    </message>
    <message>
        <source>return when the documents have been closed</source>
        <translation>ne rendre la main qu’une fois les documents fermés</translation>
    </message>
    <message>
        <source>show this text</source>
        <translation>afficher ce texte</translation>
    </message>
    <message>
        <source>show the version</source>
        <translation>afficher la version</translation>
    </message>
    <message>
        <source>A window that is there already takes the files.</source>
        <translation>Une fenêtre déjà ouverte prend les fichiers.</translation>
    </message>
    <message>
        <source>begin a new document</source>
        <translation>commencer un nouveau document</translation>
    </message>
    <message>
        <source>show the files that were closed last</source>
        <translation>afficher les derniers fichiers fermés</translation>
    </message>
</context>
<context>
    <name>DiskNotices</name>
    <message>
        <source>Another program has added to this file.</source>
        <translation>Un autre programme a ajouté du texte à ce fichier.</translation>
    </message>
    <message>
        <source>Another program has made this file.</source>
        <translation>Un autre programme a créé ce fichier.</translation>
    </message>
    <message>
        <source>Another program has changed this file.</source>
        <translation>Un autre programme a modifié ce fichier.</translation>
    </message>
    <message>
        <source>Another program has replaced this file.</source>
        <translation>Un autre programme a remplacé ce fichier.</translation>
    </message>
    <message>
        <source>This file was deleted. Saving makes it again.</source>
        <translation>Ce fichier a été supprimé. L’enregistrement le recrée.</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>Suivre</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Recharger</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>Garder le mien</translation>
    </message>
    <message>
        <source>Show both</source>
        <translation>Afficher les deux</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>%1 on disk</source>
        <translation>%1 (disque)</translation>
    </message>
    <message>
        <source>What is added to this file comes into the text.</source>
        <translation>Ce qui est ajouté à ce fichier entre dans le texte.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>This file and its folder are gone.</source>
        <translation>Ce fichier et son dossier ont disparu.</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>Enregistrer sous…</translation>
    </message>
</context>
<context>
    <name>DocumentJournals</name>
    <message>
        <source>the disk is full</source>
        <translation>disque plein</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>écriture non autorisée</translation>
    </message>
    <message>
        <source>files cannot be locked there</source>
        <translation>verrouillage impossible</translation>
    </message>
    <message>
        <source>the disk cannot be written</source>
        <translation>écriture impossible</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Recovery is off: %1</source>
        <translation>Récupération désactivée&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>FirstOffers</name>
    <message>
        <source>New documents are in %1 with %2</source>
        <translation>Nouveaux documents en %1 avec %2</translation>
    </message>
    <message>
        <source>UTF-8 with LF</source>
        <translation>UTF-8 avec LF</translation>
    </message>
</context>
<context>
    <name>GuideBrowser</name>
    <message>
        <source>The guide is in English.</source>
        <translation>Le guide est en anglais.</translation>
    </message>
</context>
<context>
    <name>InterruptedSaves</name>
    <message>
        <source>Open both</source>
        <translation>Ouvrir les deux</translation>
    </message>
    <message>
        <source>Open it</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Delete the copy</source>
        <translation>Supprimer la copie</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>A save was interrupted. The old text of its file is kept.</source>
        <translation>Un enregistrement a été interrompu. L’ancien texte du fichier est conservé.</translation>
    </message>
    <message>
        <source>Saving %1 was interrupted. Its old text is kept.</source>
        <translation>L’enregistrement de %1 a été interrompu. L’ancien texte est conservé.</translation>
    </message>
    <message>
        <source>Old text</source>
        <translation>Ancien texte</translation>
    </message>
    <message>
        <source>%1 before</source>
        <translation>%1 (avant)</translation>
    </message>
</context>
<context>
    <name>LongEdit</name>
    <message>
        <source>There is not enough memory for this edit!</source>
        <translation>Mémoire insuffisante pour cette modification.</translation>
    </message>
</context>
<context>
    <name>NoticeStrip</name>
    <message>
        <source>Notices</source>
        <translation>Avis</translation>
    </message>
    <message>
        <source>More offers</source>
        <translation>Autres actions</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>&amp;More options</source>
        <translation>&amp;Plus d’options</translation>
    </message>
</context>
<context>
    <name>ObstacleNotices</name>
    <message>
        <source>You may not write this file.</source>
        <translation>Vous n’avez pas le droit d’écrire dans ce fichier.</translation>
    </message>
    <message>
        <source>The disk of this file can only be read.</source>
        <translation>Le disque de ce fichier est en lecture seule.</translation>
    </message>
    <message>
        <source>The disk of this file is full.</source>
        <translation>Le disque de ce fichier est plein.</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>Enregistrer sous…</translation>
    </message>
</context>
<context>
    <name>QMultiLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cou&amp;per</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>C&amp;oller</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>Vertical scroll bar</source>
        <translation>Barre de défilement verticale</translation>
    </message>
    <message>
        <source>Horizontal scroll bar</source>
        <translation>Barre de défilement horizontale</translation>
    </message>
</context>
<context>
    <name>Recovery</name>
    <message>
        <source>Parts are missing; a line with dots stands for each</source>
        <translation>Des parties manquent&#xa0;; une ligne de points remplace chacune</translation>
    </message>
    <message>
        <source>Nothing is missing; this text was saved already</source>
        <translation>Rien ne manque&#xa0;; ce texte était déjà enregistré</translation>
    </message>
    <message>
        <source>The file has changed; this text is in no file yet</source>
        <translation>Fichier modifié&#xa0;; ce texte n’est encore enregistré nulle part</translation>
    </message>
    <message>
        <source>The file is gone; this text is in no file yet</source>
        <translation>Fichier disparu&#xa0;; ce texte n’est encore enregistré nulle part</translation>
    </message>
    <message>
        <source>%1 (other edits)</source>
        <translation>%1 (autres modifications)</translation>
    </message>
    <message>
        <source>The file has other edits in its tab; these are in no file yet</source>
        <translation>Le fichier a d’autres modifications&#xa0;; celles-ci ne sont enregistrées nulle part</translation>
    </message>
    <message>
        <source>Open the file</source>
        <translation>Ouvrir le fichier</translation>
    </message>
    <message>
        <source>1 document was not saved</source>
        <translation>1 texte à restaurer</translation>
    </message>
    <message numerus="yes">
        <source>%n documents were not saved</source>
        <translation>
            <numerusform>%n texte à restaurer</numerusform>
            <numerusform>%n textes à restaurer</numerusform>
        </translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restaurer</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>There is not enough memory to restore these texts:
%1</source>
        <translation>Mémoire insuffisante pour restaurer ces textes&#xa0;:
%1</translation>
    </message>
    <message>
        <source>These texts could not be restored:
%1</source>
        <translation>Ces textes n’ont pas pu être restaurés&#xa0;:
%1</translation>
    </message>
</context>
<context>
    <name>RequestedFiles</name>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Only files of this computer can be opened. These are none:
%1</source>
        <translation>Seuls les fichiers de cet ordinateur peuvent être ouverts. Ceci n’en est pas&#xa0;:
%1</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Character code</source>
        <translation>Codage</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>Fin de ligne</translation>
    </message>
    <message>
        <source>OVR</source>
        <translation>RFP</translation>
    </message>
    <message>
        <source>INS</source>
        <translation>INS</translation>
    </message>
    <message>
        <source>Overwrite, or insert</source>
        <translation>Refrapper ou insérer</translation>
    </message>
    <message>
        <source>RO</source>
        <translation>LS</translation>
    </message>
    <message>
        <source>Read only</source>
        <translation>Lecture seule</translation>
    </message>
    <message>
        <source>Line %1, column %2</source>
        <translation>Ligne %1, colonne %2</translation>
    </message>
    <message>
        <source>Selected: %1</source>
        <translation>Sélection : %1</translation>
    </message>
    <message>
        <source>Selected lines: %1</source>
        <translation>Lignes sélectionnées : %1</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Ligne d’état</translation>
    </message>
    <message>
        <source>Line and column</source>
        <translation>Ligne et colonne</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Reopen as %1</source>
        <translation>Rouvrir en %1</translation>
    </message>
    <message>
        <source>Save as %1</source>
        <translation>Enregistrer en %1</translation>
    </message>
</context>
<context>
    <name>TabMenu</name>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Close &amp;others</source>
        <translation>Fermer les &amp;autres</translation>
    </message>
    <message>
        <source>Copy &amp;path</source>
        <translation>&amp;Copier le chemin</translation>
    </message>
    <message>
        <source>Open &amp;folder</source>
        <translation>&amp;Ouvrir le dossier</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Recharger</translation>
    </message>
    <message>
        <source>Reopen &amp;as</source>
        <translation>Rouvrir &amp;en</translation>
    </message>
    <message>
        <source>&amp;More options</source>
        <translation>&amp;Plus d’options</translation>
    </message>
</context>
<context>
    <name>WorkNotice</name>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Arrêt en cours</translation>
    </message>
    <message>
        <source>Restoring</source>
        <translation>Restauration</translation>
    </message>
    <message>
        <source>Not while it is being restored</source>
        <translation>Pas pendant la restauration</translation>
    </message>
    <message>
        <source>Restoring has ended</source>
        <translation>Restauration terminée</translation>
    </message>
    <message>
        <source>Loading has ended</source>
        <translation>Chargement terminé</translation>
    </message>
    <message>
        <source>Saving has ended</source>
        <translation>Enregistrement terminé</translation>
    </message>
    <message>
        <source>To be gone to when it is loaded</source>
        <translation>Le saut suivra le chargement</translation>
    </message>
    <message>
        <source>To be closed when it is done</source>
        <translation>Sera fermé ensuite</translation>
    </message>
    <message>
        <source>Not while it is loading</source>
        <translation>Impossible pendant le chargement</translation>
    </message>
    <message>
        <source>Not while it is being saved</source>
        <translation>Impossible pendant l’enregistrement</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Chargement</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>Enregistrement</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>Not while it is being searched</source>
        <translation>Impossible pendant la recherche</translation>
    </message>
    <message>
        <source>Searching has ended</source>
        <translation>Recherche terminée</translation>
    </message>
    <message>
        <source>Counting</source>
        <translation>Comptage</translation>
    </message>
    <message>
        <source>Not while it is being counted</source>
        <translation>Impossible pendant le comptage</translation>
    </message>
    <message>
        <source>Counting has ended</source>
        <translation>Comptage terminé</translation>
    </message>
    <message>
        <source>Opening files</source>
        <translation>Ouverture des fichiers</translation>
    </message>
    <message>
        <source>Not while files are being opened</source>
        <translation>Impossible pendant l’ouverture des fichiers</translation>
    </message>
    <message>
        <source>Opening files has ended</source>
        <translation>Ouverture des fichiers terminée</translation>
    </message>
    <message>
        <source>Indenting</source>
        <translation>Indentation</translation>
    </message>
    <message>
        <source>Not while it is being indented</source>
        <translation>Impossible pendant l’indentation</translation>
    </message>
    <message>
        <source>Indenting has ended</source>
        <translation>Indentation terminée</translation>
    </message>
    <message>
        <source>Pasting</source>
        <translation>Collage</translation>
    </message>
    <message>
        <source>Not while text is being pasted</source>
        <translation>Impossible pendant le collage</translation>
    </message>
    <message>
        <source>Pasting has ended</source>
        <translation>Collage terminé</translation>
    </message>
    <message>
        <source>Laying out</source>
        <translation>Mise en page</translation>
    </message>
    <message>
        <source>Laying out has ended</source>
        <translation>Mise en page terminée</translation>
    </message>
    <message>
        <source>%1: %2%</source>
        <translation>%1&#xa0;: %2&#xa0;%</translation>
    </message>
</context>
<context>
    <name>ctlEditer</name>
    <message>
        <source>(new document)</source>
        <translation>(sans titre)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>The binary file cannot be saved.</source>
        <translation>Un fichier binaire ne peut pas être enregistré.</translation>
    </message>
    <message>
        <source>File Write Error</source>
        <translation>Erreur d’écriture</translation>
    </message>
    <message>
        <source>Cannot write the file.
You do not have the permission or the file may be in use.</source>
        <translation>Impossible d’écrire le fichier.
Vous n’avez pas l’autorisation nécessaire ou le fichier est en cours d’utilisation.</translation>
    </message>
    <message>
        <source>The file may be damaged. Its old content is kept in the file
%1</source>
        <translation>Le fichier est peut-être endommagé. Son ancien contenu est conservé dans le fichier suivant&#xa0;:
%1</translation>
    </message>
    <message>
        <source>This file can only be written over when its old content is kept before, in the folder
%1
That was not possible. Save the text under another name, or see to it that this folder has room and can be written to.</source>
        <translation>Ce fichier ne peut être remplacé que si son ancien contenu est d’abord conservé dans le dossier
%1
Cela n’a pas été possible. Enregistrez le texte sous un autre nom, ou veillez à ce que ce dossier ait de la place et soit accessible en écriture.</translation>
    </message>
    <message>
        <source>Confirm File Save</source>
        <translation>Confirmer l’enregistrement</translation>
    </message>
    <message>
        <source>Another document was saved as this file since. Its old content is kept in the file
%1</source>
        <translation>Un autre document a été enregistré dans ce fichier entre-temps. Son ancien contenu est conservé dans le fichier suivant :
%1</translation>
    </message>
    <message>
        <source>The file could not be read before. Its old content is kept in the file
%1</source>
        <translation>Ce fichier n’avait pas pu être lu. Son ancien contenu est conservé dans le fichier suivant&#xa0;:
%1</translation>
    </message>
    <message>
        <source>This file is not exists!</source>
        <translation>Ce fichier n’existe pas.</translation>
    </message>
    <message>
        <source>This file was not opened!</source>
        <translation>Impossible d’ouvrir ce fichier.</translation>
    </message>
    <message>
        <source>This is a folder, not a file!</source>
        <translation>Il s’agit d’un dossier et non d’un fichier.</translation>
    </message>
    <message>
        <source>This is a device or a pipe, not a file!</source>
        <translation>Il s’agit d’un périphérique ou d’un tube et non d’un fichier.</translation>
    </message>
    <message>
        <source>There is not enough memory for this!</source>
        <translation>Mémoire insuffisante.</translation>
    </message>
    <message>
        <source>There is not enough memory for this file!</source>
        <translation>Mémoire insuffisante pour ouvrir ce fichier.</translation>
    </message>
    <message>
        <source>This file could not be read to its end!</source>
        <translation>Ce fichier n’a pas pu être lu jusqu’au bout.</translation>
    </message>
    <message>
        <source>File Load Error!</source>
        <translation>Erreur de lecture</translation>
    </message>
</context>
<context>
    <name>ctlFileListView</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Modifié le</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Lecture du dossier…</translation>
    </message>
    <message>
        <source>There is not enough memory to read this folder. Choose Refresh to try again.</source>
        <translation>Mémoire insuffisante pour lire ce dossier. Choisissez Actualiser pour réessayer.</translation>
    </message>
</context>
<context>
    <name>ctlFileListViewItem</name>
    <message>
        <source>%1 KB</source>
        <translation>%1&#xa0;Ko</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
</context>
<context>
    <name>ctlTabBar</name>
    <message>
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>Scroll Left</source>
        <translation>Défiler vers la gauche</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Défiler vers la droite</translation>
    </message>
</context>
<context>
    <name>frmFileDialog</name>
    <message>
        <source>text files (*.txt;..)</source>
        <translation>Fichiers texte (*.txt;..)</translation>
    </message>
    <message>
        <source>Qtopia files (*.conf;..)</source>
        <translation>Fichiers Qtopia (*.conf;..)</translation>
    </message>
    <message>
        <source>HTML files (*.htm;js;..)</source>
        <translation>Fichiers HTML (*.htm;js;..)</translation>
    </message>
    <message>
        <source>Web files (*.cgi;pl;..)</source>
        <translation>Fichiers Web (*.cgi;pl;..)</translation>
    </message>
    <message>
        <source>C language (*.h;c;cpp;..)</source>
        <translation>Langage C (*.h;c;cpp;..)</translation>
    </message>
    <message>
        <source>Java language (*.java;..)</source>
        <translation>Langage Java (*.java;..)</translation>
    </message>
    <message>
        <source>all files (*.*)</source>
        <translation>Tous les fichiers (*.*)</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Enregistrer sous</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>Fin de ligne</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>File Name:</source>
        <translation>Nom&#xa0;:</translation>
    </message>
    <message>
        <source>File Type:</source>
        <translation>Type&#xa0;:</translation>
    </message>
    <message>
        <source>Char code:</source>
        <translation>Codage&#xa0;:</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Enter the file name.</source>
        <translation>Saisissez le nom du fichier.</translation>
    </message>
    <message>
        <source>A file name cannot contain any of the following characters;
\ / : , ; * ? &quot; &lt; &gt; |</source>
        <translation>Un nom de fichier ne peut pas contenir les caractères suivants&#xa0;:
\ / : , ; * ? &quot; &lt; &gt; |</translation>
    </message>
    <message>
        <source>error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>%1
This file does not exists.</source>
        <translation>%1
Ce fichier n’existe pas.</translation>
    </message>
    <message>
        <source>%1
This file already exists.
Replace existing file?</source>
        <translation>%1
Ce fichier existe déjà.
Le remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>Replace confirm</source>
        <translation>Confirmer le remplacement</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>This folder is not there yet. It is made when you save.</source>
        <translation>Ce dossier n’existe pas encore. Il sera créé à l’enregistrement.</translation>
    </message>
    <message>
        <source>A file stands where this folder should be. Rename that file, or choose another folder.</source>
        <translation>Un fichier se trouve à la place de ce dossier. Renommez-le ou choisissez un autre dossier.</translation>
    </message>
    <message>
        <source>There is not enough memory to sort this folder.
Its files stay in the order that they had.</source>
        <translation>Mémoire insuffisante pour trier ce dossier.
Ses fichiers restent dans le même ordre.</translation>
    </message>
    <message>
        <source>There is no file of this type here. For others choose a File Type below.</source>
        <translation>Aucun fichier de ce type ici. Pour les autres, choisissez un Type ci-dessous.</translation>
    </message>
</context>
<context>
    <name>frmGuide</name>
    <message>
        <source>Guide</source>
        <translation>Guide</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>frmJumpTo</name>
    <message>
        <source>Jump to</source>
        <translation>Aller à la ligne</translation>
    </message>
    <message>
        <source>Line No:</source>
        <translation>Ligne n°&#xa0;:</translation>
    </message>
    <message>
        <source>Jump</source>
        <translation>Aller</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Input Error</source>
        <translation>Erreur de saisie</translation>
    </message>
    <message>
        <source>Input a number.</source>
        <translation>Saisissez un nombre.</translation>
    </message>
</context>
<context>
    <name>frmMain</name>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <source>&amp;Open  (Fn+O)</source>
        <translation>&amp;Ouvrir  (Fn+O)</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Recharger</translation>
    </message>
    <message>
        <source>&amp;Properties</source>
        <translation>&amp;Propriétés</translation>
    </message>
    <message>
        <source>&amp;Save  (Fn+S)</source>
        <translation>&amp;Enregistrer  (Fn+S)</translation>
    </message>
    <message>
        <source>Save &amp;As</source>
        <translation>Enregistrer &amp;sous</translation>
    </message>
    <message>
        <source>&amp;Close  (Cancel)</source>
        <translation>&amp;Fermer  (Cancel)</translation>
    </message>
    <message>
        <source>Save A&amp;ll</source>
        <translation>Enregistrer &amp;tout</translation>
    </message>
    <message>
        <source>Quit &amp;with Save</source>
        <translation>Enregistrer et &amp;quitter</translation>
    </message>
    <message>
        <source>&amp;Quit  (Fn+Q)</source>
        <translation>Q&amp;uitter  (Fn+Q)</translation>
    </message>
    <message>
        <source>R&amp;ecent Files</source>
        <translation>Fichiers ré&amp;cents</translation>
    </message>
    <message>
        <source>&amp;Undo  (Fn+Z)</source>
        <translation>&amp;Annuler  (Fn+Z)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t  (Fn+X)</source>
        <translation>Cou&amp;per  (Fn+X)</translation>
    </message>
    <message>
        <source>&amp;Copy  (Fn+C)</source>
        <translation>&amp;Copier  (Fn+C)</translation>
    </message>
    <message>
        <source>&amp;Paste  (Fn+V)</source>
        <translation>C&amp;oller  (Fn+V)</translation>
    </message>
    <message>
        <source>Select &amp;All  (Fn+A)</source>
        <translation>&amp;Tout sélectionner  (Fn+A)</translation>
    </message>
    <message>
        <source>&amp;Date and Time</source>
        <translation>&amp;Date et heure</translation>
    </message>
    <message>
        <source>&amp;Options...</source>
        <translation>Opt&amp;ions…</translation>
    </message>
    <message>
        <source>&amp;Prev Window</source>
        <translation>Fenêtre &amp;précédente</translation>
    </message>
    <message>
        <source>&amp;Next Window</source>
        <translation>Fenêtre sui&amp;vante</translation>
    </message>
    <message>
        <source>&amp;Search  (Fn+N)</source>
        <translation>&amp;Rechercher  (Fn+N)</translation>
    </message>
    <message>
        <source>Search &amp;Before  (Fn+1)</source>
        <translation>&amp;Occurrence précédente  (Fn+1)</translation>
    </message>
    <message>
        <source>Search &amp;Next  (Fn+2)</source>
        <translation>Occurrence s&amp;uivante  (Fn+2)</translation>
    </message>
    <message>
        <source>&amp;Replace  (Fn+M)</source>
        <translation>Re&amp;mplacer  (Fn+M)</translation>
    </message>
    <message>
        <source>Line &amp;Jump</source>
        <translation>&amp;Aller à la ligne</translation>
    </message>
    <message>
        <source>&amp;Last Edited Pos  (Fn+5)</source>
        <translation>&amp;Dernière modification  (Fn+5)</translation>
    </message>
    <message>
        <source>&amp;Full Screen</source>
        <translation>Plein é&amp;cran</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Langue</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;ide</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>À propo&amp;s</translation>
    </message>
    <message>
        <source>&amp;Japanese</source>
        <translation>&amp;Japonais</translation>
    </message>
    <message>
        <source>&amp;English</source>
        <translation>&amp;Anglais</translation>
    </message>
    <message>
        <source>&amp;French</source>
        <translation>&amp;Français</translation>
    </message>
    <message>
        <source>File named &apos;%1&apos; already opens.
Cancel edit and reload?</source>
        <translation>Le fichier «&#xa0;%1&#xa0;» est déjà ouvert.
Abandonner les modifications et le recharger&#xa0;?</translation>
    </message>
    <message>
        <source>Existing File</source>
        <translation>Fichier déjà ouvert</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Cancel edit and reload
&apos;%1&apos;?</source>
        <translation>Abandonner les modifications et recharger
«&#xa0;%1&#xa0;»&#xa0;?</translation>
    </message>
    <message>
        <source>Confirm Reload</source>
        <translation>Confirmer le rechargement</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menus</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>Barre d’outils</translation>
    </message>
    <message>
        <source>More buttons</source>
        <translation>Autres boutons</translation>
    </message>
    <message>
        <source>Document properties</source>
        <translation>Propriétés du document</translation>
    </message>
    <message>
        <source>Path : %1
Name : %2

Char code  : %3
Return code: %4
</source>
        <translation>Dossier&#xa0;: %1
Nom&#xa0;: %2

Codage&#xa0;: %3
Fin de ligne&#xa0;: %4
</translation>
    </message>
    <message>
        <source>File size  : %1 KB (%2 byte)

</source>
        <translation>Taille&#xa0;: %1&#xa0;Ko (%2&#xa0;octets)

</translation>
    </message>
    <message>
        <source>Char count : %1
Row count  : %2</source>
        <translation>Caractères&#xa0;: %1
Lignes&#xa0;: %2</translation>
    </message>
    <message>
        <source>(no item)</source>
        <translation>(aucun)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is edited.
 Would you want to save this file?</source>
        <translation>«&#xa0;%1&#xa0;» a été modifié.
Voulez-vous enregistrer ce fichier&#xa0;?</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Confirm File Save</source>
        <translation>Confirmer l’enregistrement</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Tout remplacer</translation>
    </message>
    <message>
        <source>%1 items was Replaced.</source>
        <translation>Remplacements effectués&#xa0;: %1</translation>
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
        <translation>Le fichier de traduction japonaise est introuvable.</translation>
    </message>
    <message>
        <source>A french translation file not found.</source>
        <translation>Le fichier de traduction française est introuvable.</translation>
    </message>
    <message>
        <source>Go to it</source>
        <translation>Y aller</translation>
    </message>
    <message>
        <source>Save as UTF-8…</source>
        <translation>Enregistrer en UTF-8…</translation>
    </message>
    <message>
        <source>%1 or more</source>
        <translation>%1 ou plus</translation>
    </message>
    <message>
        <source>Characters saved as &quot;%1&quot;: %2 (%3)</source>
        <translation>Caractères enregistrés comme «&#xa0;%1&#xa0;»&#xa0;: %2 (%3)</translation>
    </message>
    <message>
        <source>Characters that %1 lacks: %2 (%3)</source>
        <translation>Caractères absents de %1&#xa0;: %2 (%3)</translation>
    </message>
    <message>
        <source>Open already, read as %1</source>
        <translation>Déjà ouvert, lu en %1</translation>
    </message>
    <message>
        <source>Reopen as %1</source>
        <translation>Rouvrir en %1</translation>
    </message>
    <message>
        <source>Read as %1, but %2 reads it without a fault</source>
        <translation>Lu en %1, mais lisible sans faute en %2</translation>
    </message>
    <message>
        <source>Bytes that are not %1: %2</source>
        <translation>Octets qui ne sont pas du %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Reopen as</source>
        <translation>Rouvrir en</translation>
    </message>
    <message>
        <source>Replaced in part only: %1</source>
        <translation>Remplacés en partie seulement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Undo all</source>
        <translation>Tout annuler</translation>
    </message>
    <message>
        <source>Saving will change: %1</source>
        <translation>L’enregistrement changera&#xa0;: %1</translation>
    </message>
    <message>
        <source>UTF-16 text, to be saved as UTF-8</source>
        <translation>Texte UTF-16, qui sera enregistré en UTF-8</translation>
    </message>
    <message>
        <source>UTF-16 text, read byte by byte; saving will change it</source>
        <translation>Texte UTF-16, lu octet par octet&#xa0;; l’enregistrement le modifiera</translation>
    </message>
    <message>
        <source>UTF-16 text, read byte by byte</source>
        <translation>Texte UTF-16, lu octet par octet</translation>
    </message>
    <message>
        <source>Read it as text</source>
        <translation>Lire comme texte</translation>
    </message>
    <message>
        <source>Keep UTF-16</source>
        <translation>Garder UTF-16</translation>
    </message>
    <message>
        <source>Keep a copy</source>
        <translation>Garder une copie</translation>
    </message>
    <message>
        <source>Taken for binary, which cannot be saved</source>
        <translation>Pris pour du binaire, ne peut pas être enregistré</translation>
    </message>
    <message>
        <source>Open it</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>The file as it was is kept as %1</source>
        <translation>L’ancien fichier est gardé&#xa0;: %1</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Touche</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>Effet</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Guide</translation>
    </message>
    <message>
        <source>To the notice above the text, and back</source>
        <translation>Aller à l’avis et en revenir</translation>
    </message>
    <message>
        <source>Menu of the tab</source>
        <translation>Menu de l’onglet</translation>
    </message>
    <message>
        <source>Ctrl+Wheel</source>
        <translation>Ctrl+Molette</translation>
    </message>
    <message>
        <source>Size of the text</source>
        <translation>Taille du texte</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Texte plus grand</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>Texte plus petit</translation>
    </message>
    <message>
        <source>Text as usual</source>
        <translation>Taille de texte habituelle</translation>
    </message>
    <message>
        <source>Close, or leave full screen</source>
        <translation>Fermer, ou quitter le plein écran</translation>
    </message>
    <message>
        <source>Indent the selected lines</source>
        <translation>Décaler les lignes sélectionnées</translation>
    </message>
    <message>
        <source>Unindent the selected lines</source>
        <translation>Ramener les lignes sélectionnées</translation>
    </message>
    <message>
        <source>Overwrite, or insert</source>
        <translation>Remplacer, ou insérer</translation>
    </message>
</context>
<context>
    <name>frmMoreOptions</name>
    <message>
        <source>On at first.</source>
        <translation>Activé au départ.</translation>
    </message>
    <message>
        <source>Off at first.</source>
        <translation>Désactivé au départ.</translation>
    </message>
    <message>
        <source>More options</source>
        <translation>Plus d’options</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>&amp;Status line</source>
        <translation>&amp;Ligne d’état</translation>
    </message>
    <message>
        <source>Line and column, selection, code, line end and file name below the tabs.</source>
        <translation>Ligne et colonne, sélection, codage, fin de ligne et nom du fichier sous les onglets.</translation>
    </message>
    <message>
        <source>&amp;Open what was open</source>
        <translation>R&amp;ouvrir les fichiers</translation>
    </message>
    <message>
        <source>The files that were open at the end are open at the next start.</source>
        <translation>Les fichiers ouverts à la fin le sont de nouveau au prochain démarrage.</translation>
    </message>
    <message>
        <source>&amp;Keys of other programs</source>
        <translation>&amp;Touches usuelles</translation>
    </message>
    <message>
        <source>Ctrl+F, Ctrl+W, F3 and the like. F1 shows them.</source>
        <translation>Ctrl+F, Ctrl+W, F3 et d’autres. F1 les montre.</translation>
    </message>
    <message>
        <source>&amp;Tabs by mouse</source>
        <translation>Onglets à la &amp;souris</translation>
    </message>
    <message>
        <source>The middle button closes a tab, dragging moves it, the wheel scrolls them.</source>
        <translation>Le bouton du milieu ferme un onglet, glisser le déplace, la molette les fait défiler.</translation>
    </message>
    <message>
        <source>Text size by &amp;wheel</source>
        <translation>Taille à la &amp;molette</translation>
    </message>
    <message>
        <source>Ctrl and the wheel change the size of the text of all documents.</source>
        <translation>Ctrl et la molette changent la taille du texte de tous les documents.</translation>
    </message>
    <message>
        <source>Notices of co&amp;des</source>
        <translation>Avis sur les co&amp;dages</translation>
    </message>
    <message>
        <source>Characters that cannot be saved, bytes that do not fit the code.</source>
        <translation>Caractères impossibles à enregistrer, octets étrangers au codage.</translation>
    </message>
    <message>
        <source>Notices of &amp;files</source>
        <translation>Avis sur les &amp;fichiers</translation>
    </message>
    <message>
        <source>Another program has changed the file, or it cannot be written.</source>
        <translation>Un autre programme a changé le fichier, ou il ne peut être écrit.</translation>
    </message>
    <message>
        <source>&amp;Recovery</source>
        <translation>&amp;Récupération</translation>
    </message>
    <message>
        <source>What is not saved comes back after a crash.</source>
        <translation>Ce qui n’est pas enregistré revient après un arrêt brutal.</translation>
    </message>
    <message>
        <source>Size of the w&amp;indow</source>
        <translation>Taille de la fe&amp;nêtre</translation>
    </message>
    <message>
        <source>The window has its last size again when it is no longer maximised.</source>
        <translation>Hors plein écran, la fenêtre retrouve sa dernière taille.</translation>
    </message>
</context>
<context>
    <name>frmOption</name>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>View&amp;1</source>
        <translation>Affichage&#xa0;&amp;1</translation>
    </message>
    <message>
        <source>View&amp;2</source>
        <translation>Affichage&#xa0;&amp;2</translation>
    </message>
    <message>
        <source>&amp;Detail</source>
        <translation>&amp;Détails</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Clear Recent Files</source>
        <translation>Effacer la liste des fichiers récents</translation>
    </message>
    <message>
        <source>Are you sure you want to clear the Recent Files?</source>
        <translation>Voulez-vous vraiment effacer la liste des fichiers récents&#xa0;?</translation>
    </message>
    <message>
        <source>The Wrap columns must be numeric.</source>
        <translation>Le nombre de colonnes doit être numérique.</translation>
    </message>
    <message>
        <source>The Wrap columns must be more than 10 numbers.</source>
        <translation>Le nombre de colonnes doit être d’au moins 10.</translation>
    </message>
    <message>
        <source>The Tab size must be numeric.</source>
        <translation>La taille de tabulation doit être numérique.</translation>
    </message>
    <message>
        <source>The Tab size must be between 1 and 12.</source>
        <translation>La taille de tabulation doit être comprise entre 1 et 12.</translation>
    </message>
    <message>
        <source>The Font size must be numeric.</source>
        <translation>La taille de police doit être numérique.</translation>
    </message>
    <message>
        <source>The Font size must be between 1 and 99.</source>
        <translation>La taille de police doit être comprise entre 1 et 99.</translation>
    </message>
    <message>
        <source>The Recent Files count must be numeric.</source>
        <translation>Le nombre de fichiers récents doit être numérique.</translation>
    </message>
    <message>
        <source>The Recent Files count must be between 0 and 15.</source>
        <translation>Le nombre de fichiers récents doit être compris entre 0 et 15.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Noir</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
    <message>
        <source>DarkGray</source>
        <translation>Gris foncé</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>Gris</translation>
    </message>
    <message>
        <source>LightGray</source>
        <translation>Gris clair</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Vert</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>Cyan</translation>
    </message>
    <message>
        <source>Magenta</source>
        <translation>Magenta</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Jaune</translation>
    </message>
    <message>
        <source>DarkRed</source>
        <translation>Rouge foncé</translation>
    </message>
    <message>
        <source>DarkGreen</source>
        <translation>Vert foncé</translation>
    </message>
    <message>
        <source>DarkBlue</source>
        <translation>Bleu foncé</translation>
    </message>
    <message>
        <source>DarkCyan</source>
        <translation>Cyan foncé</translation>
    </message>
    <message>
        <source>DarkMagenta</source>
        <translation>Magenta foncé</translation>
    </message>
    <message>
        <source>DarkYellow</source>
        <translation>Jaune foncé</translation>
    </message>
    <message>
        <source>&amp;Font :</source>
        <translation>&amp;Police&#xa0;:</translation>
    </message>
    <message>
        <source>Font &amp;size :</source>
        <translation>Tai&amp;lle de police&#xa0;:</translation>
    </message>
    <message>
        <source>F&amp;oreColor :</source>
        <translation>Couleur du te&amp;xte&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;BackColor :</source>
        <translation>Couleur du f&amp;ond&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Wrap mode :</source>
        <translation>&amp;Retour à la ligne&#xa0;:</translation>
    </message>
    <message>
        <source>Mark display</source>
        <translation>Marques affichées</translation>
    </message>
    <message>
        <source>&amp;Return code</source>
        <translation>&amp;Fin de ligne</translation>
    </message>
    <message>
        <source>&amp;Tab character</source>
        <translation>&amp;Tabulation</translation>
    </message>
    <message>
        <source>&amp;Multi-byte space</source>
        <translation>Espace lar&amp;ge</translation>
    </message>
    <message>
        <source>&amp;EOF</source>
        <translation>Fin de fich&amp;ier</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Fixed column</source>
        <translation>Fixe</translation>
    </message>
    <message>
        <source>Wrap columns</source>
        <translation>Colonnes</translation>
    </message>
    <message>
        <source>Small size</source>
        <translation>Petits</translation>
    </message>
    <message>
        <source>Large size</source>
        <translation>Grands</translation>
    </message>
    <message>
        <source>&amp;Row No :</source>
        <translation>&amp;Numéros de ligne&#xa0;:</translation>
    </message>
    <message>
        <source>(Same ForeColor)</source>
        <translation>(celle du texte)</translation>
    </message>
    <message>
        <source>Row No &amp;Color :</source>
        <translation>&amp;Couleur des numéros&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Active Line :</source>
        <translation>Li&amp;gne active&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Tab size :</source>
        <translation>&amp;Taille de tabulation&#xa0;:</translation>
    </message>
    <message>
        <source>A cursor &amp;position is restored when opens</source>
        <translation>Restaurer le curseur à l’&amp;ouverture</translation>
    </message>
    <message>
        <source>Tab &amp; space</source>
        <translation>Tab., espaces</translation>
    </message>
    <message>
        <source>Tab &amp; space &amp; MultiSpace</source>
        <translation>Tab., esp., esp. larges</translation>
    </message>
    <message>
        <source>&amp;Auto indent :</source>
        <translation>Retrait &amp;auto&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Recent Files count:</source>
        <translation>&amp;Fichiers récents&#xa0;:</translation>
    </message>
    <message>
        <source>(0-15)</source>
        <translation>(0 à 15)</translation>
    </message>
    <message>
        <source>&amp;Clear Recent Files</source>
        <translation>&amp;Effacer la liste des récents</translation>
    </message>
    <message>
        <source>Line end</source>
        <translation>Fin de ligne</translation>
    </message>
    <message>
        <source>Default c&amp;har code:</source>
        <translation>&amp;Codage initial&#xa0;:</translation>
    </message>
</context>
<context>
    <name>frmRecovery</name>
    <message>
        <source>Texts That Were Not Saved</source>
        <translation>Textes non enregistrés</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restaurer</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Abandonner</translation>
    </message>
    <message>
        <source>never saved</source>
        <translation>jamais enregistré</translation>
    </message>
    <message>
        <source>The chosen text was not saved anywhere else.
Delete it for ever?</source>
        <translation>Le texte choisi n’est enregistré nulle part ailleurs.
Le supprimer définitivement&#xa0;?</translation>
    </message>
    <message numerus="yes">
        <source>The %n chosen texts were not saved anywhere else.
Delete them for ever?</source>
        <translation>
            <numerusform>Le texte choisi (%n) n’est enregistré nulle part ailleurs.
Le supprimer définitivement&#xa0;?</numerusform>
            <numerusform>Les %n textes choisis ne sont enregistrés nulle part ailleurs.
Les supprimer définitivement&#xa0;?</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Characters: %1</source>
        <translation>Caractères&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>frmReplaceProgress</name>
    <message>
        <source>Speed up</source>
        <translation>Accélérer</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Tout remplacer</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>replaced :   %1</source>
        <translation>Remplacements&#xa0;:   %1</translation>
    </message>
</context>
<context>
    <name>frmSearchDialog</name>
    <message>
        <source>Replace</source>
        <translation>Remplacement</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>Replace Next</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Search Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Case sensitive</source>
        <translation>Respecter la casse</translation>
    </message>
    <message>
        <source>Search Prev</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Replace ALL</source>
        <translation>Tout rempl.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Input the characters.</source>
        <translation>Saisissez le texte à rechercher.</translation>
    </message>
</context>
</TS>
