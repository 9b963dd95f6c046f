<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ClientWindow</name>
    <message>
        <source>Client</source>
        <translation>Client</translation>
    </message>
    <message>
        <source>Dis&amp;miss</source>
        <translation>Aus&amp;blenden</translation>
    </message>
    <message>
        <source>Takes this message away</source>
        <translation>Nimmt diese Meldung weg</translation>
    </message>
    <message>
        <source>&amp;Servers and databases:</source>
        <translation>&amp;Server und Datenbanken:</translation>
    </message>
    <message>
        <source>Servers and databases</source>
        <translation>Server und Datenbanken</translation>
    </message>
    <message>
        <source>Double click or Enter opens a database</source>
        <translation>Doppelklick oder Eingabetaste öffnet eine Datenbank</translation>
    </message>
    <message>
        <source>No database is open: choose one on the left</source>
        <translation>Keine Datenbank ist offen: Wählen Sie links eine aus</translation>
    </message>
    <message>
        <source>Vie&amp;ws:</source>
        <translation>A&amp;nsichten:</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>Ansichten</translation>
    </message>
    <message>
        <source>The documents of the current view stand beside it</source>
        <translation>Die Dokumente der aktuellen Ansicht stehen daneben</translation>
    </message>
    <message>
        <source>Doc&amp;uments:</source>
        <translation>Doku&amp;mente:</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Mark documents with Ctrl or Shift; double click or Enter opens one</source>
        <translation>Strg oder Umschalt markiert Dokumente; Doppelklick oder Eingabetaste öffnet eines</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Document</source>
        <translation>Do&amp;kument</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Open database</source>
        <translation>Datenbank ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Opens the database that is current on the left</source>
        <translation>Öffnet die Datenbank, die links aktuell ist</translation>
    </message>
    <message>
        <source>Open data&amp;base file...</source>
        <translation>D&amp;atenbankdatei öffnen...</translation>
    </message>
    <message>
        <source>Opens a real database of the platform, wherever it lies, to be read only</source>
        <translation>Öffnet eine echte Datenbank der Plattform, wo immer sie liegt, nur zum Lesen</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>&amp;New database...</source>
        <translation>&amp;Neue Datenbank...</translation>
    </message>
    <message>
        <source>Makes an empty database on the server that is current on the left</source>
        <translation>Legt auf dem Server, der links aktuell ist, eine leere Datenbank an</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>&amp;Close database</source>
        <translation>Datenbank s&amp;chließen</translation>
    </message>
    <message>
        <source>No database is on top afterwards</source>
        <translation>Danach ist keine Datenbank mehr offen</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>&amp;Import DXL...</source>
        <translation>DXL &amp;importieren...</translation>
    </message>
    <message>
        <source>Ctrl+I</source>
        <translation>Ctrl+I</translation>
    </message>
    <message>
        <source>Import DXL &amp;folder...</source>
        <translation>DXL-&amp;Ordner importieren...</translation>
    </message>
    <message>
        <source>Import DXL into n&amp;ew database...</source>
        <translation>DXL in n&amp;eue Datenbank importieren...</translation>
    </message>
    <message>
        <source>Reads DXL files into a database that is made for them</source>
        <translation>Liest DXL-Dateien in eine Datenbank, die für sie angelegt wird</translation>
    </message>
    <message>
        <source>E&amp;xport DXL...</source>
        <translation>DXL e&amp;xportieren...</translation>
    </message>
    <message>
        <source>Writes the open database with all its notes to a DXL file</source>
        <translation>Schreibt die offene Datenbank mit allen Notizen in eine DXL-Datei</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>Export &amp;view as DXL...</source>
        <translation>An&amp;sicht als DXL exportieren...</translation>
    </message>
    <message>
        <source>Writes the documents of the current view to a DXL file</source>
        <translation>Schreibt die Dokumente der aktuellen Ansicht in eine DXL-Datei</translation>
    </message>
    <message>
        <source>Export &amp;marked documents as DXL...</source>
        <translation>&amp;Markierte Dokumente als DXL exportieren...</translation>
    </message>
    <message>
        <source>Writes the marked documents, or the open one, to a DXL file</source>
        <translation>Schreibt die markierten Dokumente oder das offene in eine DXL-Datei</translation>
    </message>
    <message>
        <source>Create full-text in&amp;dex</source>
        <translation>Volltextin&amp;dex anlegen</translation>
    </message>
    <message>
        <source>Makes the open database searchable by words</source>
        <translation>Macht die offene Datenbank nach Wörtern durchsuchbar</translation>
    </message>
    <message>
        <source>&amp;Update full-text index</source>
        <translation>Volltextindex akt&amp;ualisieren</translation>
    </message>
    <message>
        <source>Takes what changed in the open database into its index; searches do so themselves</source>
        <translation>Nimmt auf, was sich in der offenen Datenbank geändert hat; Suchen tun es von selbst</translation>
    </message>
    <message>
        <source>&amp;Hide window</source>
        <translation>Fenster verber&amp;gen</translation>
    </message>
    <message>
        <source>What is open stays open for the tool</source>
        <translation>Was offen ist, bleibt für das Werkzeug offen</translation>
    </message>
    <message>
        <source>&amp;Open document</source>
        <translation>D&amp;okument öffnen</translation>
    </message>
    <message>
        <source>Opens the document under the cursor</source>
        <translation>Öffnet das Dokument unter dem Cursor</translation>
    </message>
    <message>
        <source>&amp;Close document</source>
        <translation>Dokument s&amp;chließen</translation>
    </message>
    <message>
        <source>Goes back to the view</source>
        <translation>Geht zurück zur Ansicht</translation>
    </message>
    <message>
        <source>&amp;Select all</source>
        <translation>&amp;Alles markieren</translation>
    </message>
    <message>
        <source>Marks all documents of the view</source>
        <translation>Markiert alle Dokumente der Ansicht</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>Reads databases, view and open document again</source>
        <translation>Liest Datenbanken, Ansicht und offenes Dokument neu</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Readin&amp;g report...</source>
        <translation>Lesebe&amp;richt...</translation>
    </message>
    <message>
        <source>Tells what was found in the open real database, and what of it cannot be read and why</source>
        <translation>Sagt, was in der offenen echten Datenbank gefunden wurde, und was davon warum nicht lesbar ist</translation>
    </message>
    <message>
        <source>Show &amp;formula</source>
        <translation>&amp;Formel zeigen</translation>
    </message>
    <message>
        <source>Shows the formulas of the open note, or of the one under the cursor, with their source</source>
        <translation>Zeigt die Formeln der offenen Notiz, oder der unter dem Cursor, mit ihrem Quelltext</translation>
    </message>
    <message>
        <source>Show &amp;formulas of the view</source>
        <translation>&amp;Formeln der Ansicht zeigen</translation>
    </message>
    <message>
        <source>Shows selection and columns of the current view with their source</source>
        <translation>Zeigt Auswahl und Spalten der aktuellen Ansicht mit ihrem Quelltext</translation>
    </message>
    <message>
        <source>Sea&amp;rch for:</source>
        <translation>S&amp;uchen nach:</translation>
    </message>
    <message>
        <source>Search for</source>
        <translation>Suchen nach</translation>
    </message>
    <message>
        <source>Words, or a query: pump AND FIELD Subject CONTAINS house</source>
        <translation>Wörter oder eine Abfrage: Pumpe AND FIELD Subject CONTAINS Haus</translation>
    </message>
    <message>
        <source>Words side by side, AND, OR, NOT, ACCRUE, * and ?, FIELD name CONTAINS words; Enter searches the whole database</source>
        <translation>Wörter nebeneinander, AND, OR, NOT, ACCRUE, * und ?, FIELD Name CONTAINS Wörter; die Eingabetaste durchsucht die ganze Datenbank</translation>
    </message>
    <message>
        <source>S&amp;earch</source>
        <translation>Such&amp;en</translation>
    </message>
    <message>
        <source>Lists the documents that hold the words, by the full-text index</source>
        <translation>Listet mit dem Volltextindex die Dokumente auf, in denen die Wörter stehen</translation>
    </message>
    <message>
        <source>Fi&amp;lter:</source>
        <translation>Fi&amp;lter:</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Only rows with these words</source>
        <translation>Nur Zeilen mit diesen Wörtern</translation>
    </message>
    <message>
        <source>Shows only the rows of this list in which all the words occur, in any column; Esc empties it</source>
        <translation>Zeigt nur die Zeilen dieser Liste, in denen alle Wörter vorkommen, in welcher Spalte auch immer; Esc leert den Filter</translation>
    </message>
    <message>
        <source>Reads DXL files into the open database or a new one, as you choose</source>
        <translation>Liest DXL-Dateien in die offene oder eine neue Datenbank, wie Sie es wählen</translation>
    </message>
    <message>
        <source>Reads all DXL files of a folder into the open database or a new one, as you choose</source>
        <translation>Liest alle DXL-Dateien eines Ordners in die offene oder eine neue Datenbank, wie Sie es wählen</translation>
    </message>
    <message>
        <source>Undo impor&amp;t</source>
        <translation>Impor&amp;t rückgängig machen</translation>
    </message>
    <message>
        <source>Takes the last import into the open database back; what somebody has changed since stays</source>
        <translation>Nimmt den letzten Import in die offene Datenbank zurück; was seither jemand geändert hat, bleibt</translation>
    </message>
    <message>
        <source>Ren&amp;ame database...</source>
        <translation>Datenbank um&amp;benennen...</translation>
    </message>
    <message>
        <source>Gives the database that is current on the left another file name</source>
        <translation>Gibt der links gewählten Datenbank einen anderen Dateinamen</translation>
    </message>
    <message>
        <source>Cop&amp;y database...</source>
        <translation>Datenbank &amp;kopieren...</translation>
    </message>
    <message>
        <source>Copies the database that is current on the left, under a replica ID of its own</source>
        <translation>Kopiert die links gewählte Datenbank, mit einer eigenen Replik-ID</translation>
    </message>
    <message>
        <source>De&amp;lete database...</source>
        <translation>Datenbank &amp;löschen...</translation>
    </message>
    <message>
        <source>Deletes the database that is current on the left with all its documents</source>
        <translation>Löscht die links gewählte Datenbank mit allen Dokumenten</translation>
    </message>
    <message>
        <source>&amp;Search...</source>
        <translation>&amp;Suchen...</translation>
    </message>
    <message>
        <source>Goes to the search box</source>
        <translation>Geht zum Suchfeld</translation>
    </message>
    <message>
        <source>Ctrl+F</source>
        <translation>Ctrl+F</translation>
    </message>
    <message>
        <source>Filter &amp;rows...</source>
        <translation>&amp;Zeilen filtern...</translation>
    </message>
    <message>
        <source>Goes to the filter of the list</source>
        <translation>Geht zum Filter der Liste</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Fit col&amp;umns</source>
        <translation>Spalten a&amp;npassen</translation>
    </message>
    <message>
        <source>Makes the columns as wide as what is in sight of them</source>
        <translation>Macht die Spalten so breit wie das, was von ihnen zu sehen ist</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>An import is running: wait for its end or cancel it first</source>
        <translation>Ein Import läuft: Warten Sie sein Ende ab oder brechen Sie ihn zuerst ab</translation>
    </message>
    <message>
        <source>An export is running: wait for its end or cancel it first</source>
        <translation>Ein Export läuft: Warten Sie sein Ende ab oder brechen Sie ihn zuerst ab</translation>
    </message>
    <message>
        <source>A comparison is running: wait for its end or cancel it first</source>
        <translation>Ein Vergleich läuft: Warten Sie sein Ende ab oder brechen Sie ihn zuerst ab</translation>
    </message>
    <message>
        <source>An index is being made: wait for its end or cancel it first</source>
        <translation>Ein Index wird angelegt: Warten Sie das Ende ab oder brechen Sie zuerst ab</translation>
    </message>
    <message>
        <source>the file cannot be written (%1)</source>
        <translation>die Datei kann nicht geschrieben werden (%1)</translation>
    </message>
    <message>
        <source>Import DXL</source>
        <translation>DXL importieren</translation>
    </message>
    <message>
        <source>DXL files (*.dxl *.xml);;All files (*)</source>
        <translation>DXL-Dateien (*.dxl *.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Open database file</source>
        <translation>Datenbankdatei öffnen</translation>
    </message>
    <message>
        <source>Databases (*.nsf *.ntf *.NSF *.NTF);;All files (*)</source>
        <translation>Datenbanken (*.nsf *.ntf *.NSF *.NTF);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Import all DXL files of a folder</source>
        <translation>Alle DXL-Dateien eines Ordners importieren</translation>
    </message>
    <message>
        <source>Export %1</source>
        <translation>%1 exportieren</translation>
    </message>
    <message>
        <source>%1 files (*.%2)</source>
        <translation>%1-Dateien (*.%2)</translation>
    </message>
    <message>
        <source>New database</source>
        <translation>Neue Datenbank</translation>
    </message>
    <message>
        <source>File name on %1, folders included:</source>
        <translation>Dateiname auf %1, mit Ordnern:</translation>
    </message>
    <message>
        <source>A database is being read: wait for its end or cancel it first</source>
        <translation>Eine Datenbank wird gelesen: Warten Sie das Ende ab oder brechen Sie zuerst ab</translation>
    </message>
    <message>
        <source>Save report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>Text (*.txt);;JSON (*.json)</source>
        <translation>Text (*.txt);;JSON (*.json)</translation>
    </message>
    <message>
        <source>The reading was cancelled; nothing of it is kept</source>
        <translation>Das Lesen wurde abgebrochen; nichts davon bleibt</translation>
    </message>
    <message>
        <source>read-only copy of %1, %2 of %3 notes read</source>
        <translation>schreibgeschützte Kopie von %1, %2 von %3 Notizen gelesen</translation>
    </message>
    <message>
        <source>%1 (formula not readable)</source>
        <translation>%1 (Formel nicht lesbar)</translation>
    </message>
    <message>
        <source>An import is being undone: wait for its end or cancel it first</source>
        <translation>Ein Import wird rückgängig gemacht: Warten Sie das Ende ab, oder brechen Sie es vorher ab</translation>
    </message>
    <message>
        <source>A search is running: wait for its end or cancel it first</source>
        <translation>Eine Suche läuft: Warten Sie das Ende ab, oder brechen Sie sie vorher ab</translation>
    </message>
    <message>
        <source>Files are being looked into: wait for the end of that</source>
        <translation>Dateien werden durchgesehen: Warten Sie das Ende ab</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>New file name, folders included:</source>
        <translation>Neuer Dateiname, mit Ordnern:</translation>
    </message>
    <message>
        <source>Client</source>
        <translation>Client</translation>
    </message>
    <message>
        <source>%1 and others</source>
        <translation>%1 und andere</translation>
    </message>
    <message>
        <source>All DXL files of the folder %1</source>
        <translation>Alle DXL-Dateien des Ordners %1</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n other(s)</source>
        <translation>
            <numerusform>%1 und %n andere</numerusform>
            <numerusform>%1 und %n andere</numerusform>
        </translation>
    </message>
    <message>
        <source>somebody has changed it since</source>
        <translation>jemand hat sie seither geändert</translation>
    </message>
    <message>
        <source>somebody has deleted it since</source>
        <translation>jemand hat sie seither gelöscht</translation>
    </message>
    <message>
        <source>another note has its place by now</source>
        <translation>eine andere Notiz hat inzwischen ihren Platz</translation>
    </message>
    <message>
        <source>its attachment is no longer in the database</source>
        <translation>ihr Anhang ist nicht mehr in der Datenbank</translation>
    </message>
    <message>
        <source>as it was before it was damaged</source>
        <translation>wie sie vorher war, war sie beschädigt</translation>
    </message>
    <message>
        <source>Note ID %1</source>
        <translation>Notiz-ID %1</translation>
    </message>
    <message>
        <source>%1 (Note ID %2)</source>
        <translation>%1 (Notiz-ID %2)</translation>
    </message>
    <message>
        <source>%1 notes removed that the import had brought, %2 put back as they were.</source>
        <translation>%1 Notizen entfernt, die der Import gebracht hatte, %2 wiederhergestellt, wie sie waren.</translation>
    </message>
    <message>
        <source>Left as they are now: %1</source>
        <translation>So gelassen, wie sie jetzt sind: %1</translation>
    </message>
    <message>
        <source>  and %1 more</source>
        <translation>  und %1 weitere</translation>
    </message>
    <message>
        <source>Make a new workspace</source>
        <translation>Neuen Arbeitsbereich anlegen</translation>
    </message>
    <message>
        <source>Make</source>
        <translation>Anlegen</translation>
    </message>
    <message>
        <source>new workspace</source>
        <translation>neuer Arbeitsbereich</translation>
    </message>
    <message>
        <source>Workspace</source>
        <translation>Arbeitsbereich</translation>
    </message>
    <message>
        <source>The program can work on another workspace.</source>
        <translation>Das Programm kann mit einem anderen Arbeitsbereich arbeiten.</translation>
    </message>
    <message>
        <source>&amp;Open another...</source>
        <translation>Anderen ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Make a new one...</source>
        <translation>&amp;Neuen anlegen...</translation>
    </message>
    <message>
        <source>&amp;Go on without</source>
        <translation>&amp;Ohne weiter</translation>
    </message>
    <message>
        <source>Open a workspace</source>
        <translation>Arbeitsbereich öffnen</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
    <message>
        <source>Access control list</source>
        <translation>Zugriffskontrollliste</translation>
    </message>
    <message>
        <source>Shared actions</source>
        <translation>Gemeinsame Aktionen</translation>
    </message>
    <message>
        <source>Agent</source>
        <translation>Agent</translation>
    </message>
    <message>
        <source>Database script</source>
        <translation>Datenbankskript</translation>
    </message>
    <message>
        <source>Data connection</source>
        <translation>Datenverbindung</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Maske</translation>
    </message>
    <message>
        <source>Frameset</source>
        <translation>Rahmengruppe</translation>
    </message>
    <message>
        <source>About document</source>
        <translation>Über diese Datenbank</translation>
    </message>
    <message>
        <source>Help index</source>
        <translation>Hilfeindex</translation>
    </message>
    <message>
        <source>Using document</source>
        <translation>Benutzen dieser Datenbank</translation>
    </message>
    <message>
        <source>Icon</source>
        <translation>Symbol</translation>
    </message>
    <message>
        <source>Image resource</source>
        <translation>Bildressource</translation>
    </message>
    <message>
        <source>Applet resource</source>
        <translation>Applet-Ressource</translation>
    </message>
    <message>
        <source>Navigator</source>
        <translation>Navigator</translation>
    </message>
    <message>
        <source>Outline</source>
        <translation>Gliederung</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Replication formula</source>
        <translation>Replizierformel</translation>
    </message>
    <message>
        <source>Script library</source>
        <translation>Skriptbibliothek</translation>
    </message>
    <message>
        <source>Shared field</source>
        <translation>Gemeinsames Feld</translation>
    </message>
    <message>
        <source>Style sheet</source>
        <translation>Stylesheet</translation>
    </message>
    <message>
        <source>Subform</source>
        <translation>Teilmaske</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Agent or script</source>
        <translation>Agent oder Skript</translation>
    </message>
    <message>
        <source>Design collection</source>
        <translation>Gestaltungssammlung</translation>
    </message>
    <message>
        <source>File resource</source>
        <translation>Dateiressource</translation>
    </message>
    <message>
        <source>Shared column</source>
        <translation>Gemeinsame Spalte</translation>
    </message>
    <message>
        <source>Class %1</source>
        <translation>Klasse %1</translation>
    </message>
    <message>
        <source>(%1 bytes)</source>
        <translation>(%1 Byte)</translation>
    </message>
    <message>
        <source>%1 (damaged)</source>
        <translation>%1 (beschädigt)</translation>
    </message>
    <message>
        <source>%1 (without a title)</source>
        <translation>%1 (ohne Titel)</translation>
    </message>
    <message>
        <source>All documents</source>
        <translation>Alle Dokumente</translation>
    </message>
    <message>
        <source>Design notes</source>
        <translation>Gestaltungsnotizen</translation>
    </message>
    <message>
        <source>%1: the view &quot;%2&quot; is no longer there</source>
        <translation>%1: die Ansicht „%2“ gibt es nicht mehr</translation>
    </message>
    <message>
        <source>(not categorized)</source>
        <translation>(nicht kategorisiert)</translation>
    </message>
    <message>
        <source>A database is being copied: wait for its end or cancel it first</source>
        <translation>Eine Datenbank wird kopiert: Warten Sie das Ende ab, oder brechen Sie es vorher ab</translation>
    </message>
</context>
<context>
    <name>lens::AboutDialog</name>
    <message>
        <source>release</source>
        <translation>Freigabe</translation>
    </message>
    <message>
        <source>debug</source>
        <translation>Entwicklung</translation>
    </message>
    <message>
        <source>Tessaly Lens %1</source>
        <translation>Tessaly Lens %1</translation>
    </message>
    <message>
        <source>Build: %1, %2, %3</source>
        <translation>Gebaut mit: %1, %2, %3</translation>
    </message>
    <message>
        <source>Qt %1 (built with %2)</source>
        <translation>Qt %1 (gebaut mit %2)</translation>
    </message>
    <message>
        <source>System: %1</source>
        <translation>System: %1</translation>
    </message>
    <message>
        <source>About Tessaly Lens</source>
        <translation>Über Tessaly Lens</translation>
    </message>
    <message>
        <source>A document under a lens</source>
        <translation>Ein Dokument unter einer Lupe</translation>
    </message>
    <message>
        <source>Inspects and repairs Notes and Domino databases.
Free software under the MIT licence; its libraries keep their own.</source>
        <translation>Untersucht und repariert Notes- und Domino-Datenbanken.
Freie Software unter der MIT-Lizenz; ihre Bibliotheken behalten die eigenen.</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>Versionen</translation>
    </message>
    <message>
        <source>&amp;Licence</source>
        <translation>&amp;Lizenz</translation>
    </message>
    <message>
        <source>The licence of the program</source>
        <translation>Die Lizenz des Programms</translation>
    </message>
    <message>
        <source>Li&amp;braries</source>
        <translation>&amp;Bibliotheken</translation>
    </message>
    <message>
        <source>The libraries of others and their licences</source>
        <translation>Die Bibliotheken anderer und ihre Lizenzen</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Puts the versions on the clipboard, for a report</source>
        <translation>Legt die Versionen in die Zwischenablage, für eine Fehlermeldung</translation>
    </message>
</context>
<context>
    <name>lens::CommandText</name>
    <message>
        <source>%1: there is no such directory</source>
        <translation>%1: dieses Verzeichnis gibt es nicht</translation>
    </message>
    <message>
        <source>%1: no file can be made in this directory</source>
        <translation>%1: in diesem Verzeichnis kann keine Datei angelegt werden</translation>
    </message>
    <message>
        <source>another attachment of the document has the same name</source>
        <translation>ein anderer Anhang des Dokuments hat denselben Namen</translation>
    </message>
    <message>
        <source>%1: written under another name: %2</source>
        <translation>%1: unter anderem Namen geschrieben: %2</translation>
    </message>
    <message>
        <source>%1: %2 not extracted; the first: %3</source>
        <translation>%1: %2 nicht herausgeschrieben; der erste: %3</translation>
    </message>
    <message>
        <source>attachment was</source>
        <translation>Anhang wurde</translation>
    </message>
    <message>
        <source>attachments were</source>
        <translation>Anhänge wurden</translation>
    </message>
    <message>
        <source>it cannot be found</source>
        <translation>er wird nicht gefunden</translation>
    </message>
    <message>
        <source>Replace %1?</source>
        <translation>%1 ersetzen?</translation>
    </message>
    <message>
        <source>note %1, &quot;%2&quot;: %3</source>
        <translation>Notiz %1, „%2“: %3</translation>
    </message>
    <message>
        <source>nothing was changed: give --yes where nobody can be asked (%1)</source>
        <translation>nichts wurde geändert: geben Sie --yes an, wo niemand gefragt werden kann (%1)</translation>
    </message>
    <message>
        <source>nothing was changed</source>
        <translation>nichts wurde geändert</translation>
    </message>
    <message>
        <source>standard output</source>
        <translation>Standardausgabe</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Shows this help, or that of a command</source>
        <translation>Zeigt diese Hilfe oder die eines Befehls</translation>
    </message>
    <message>
        <source>Shows the version of the program</source>
        <translation>Zeigt die Version des Programms</translation>
    </message>
    <message>
        <source>The workspace to work on, instead of TESSALY_WORKSPACE or the user&apos;s own</source>
        <translation>Der Arbeitsbereich, statt TESSALY_WORKSPACE oder dem eigenen des Benutzers</translation>
    </message>
    <message>
        <source>Writes one JSON object a line (docs/command.schema.json)</source>
        <translation>Schreibt ein JSON-Objekt je Zeile (docs/command.schema.json)</translation>
    </message>
    <message>
        <source>Changes databases and replaces files without asking</source>
        <translation>Ändert Datenbanken und ersetzt Dateien ohne Frage</translation>
    </message>
    <message>
        <source>Lists this server only</source>
        <translation>Zeigt nur diesen Server</translation>
    </message>
    <message>
        <source>The documents of this view or folder, in its order</source>
        <translation>Die Dokumente dieser Ansicht oder dieses Ordners, in deren Reihenfolge</translation>
    </message>
    <message>
        <source>The documents that this formula selects</source>
        <translation>Die Dokumente, die diese Formel auswählt</translation>
    </message>
    <message>
        <source>The documents that answer this full-text query, the best first</source>
        <translation>Die Dokumente zu dieser Volltextabfrage, die besten zuerst</translation>
    </message>
    <message>
        <source>The database that takes the notes</source>
        <translation>Die Datenbank, die die Notizen aufnimmt</translation>
    </message>
    <message>
        <source>Makes the database where there is none</source>
        <translation>Legt die Datenbank an, wo es keine gibt</translation>
    </message>
    <message>
        <source>DXL, with the design where no documents are chosen (the default)</source>
        <translation>DXL, mit der Gestaltung, wo keine Dokumente gewählt sind (Vorgabe)</translation>
    </message>
    <message>
        <source>CSV, a row for each document and a column for each item</source>
        <translation>CSV, eine Zeile je Dokument und eine Spalte je Element</translation>
    </message>
    <message>
        <source>The columns of CSV: the items of these names, instead of all</source>
        <translation>Die Spalten der CSV: die Elemente dieser Namen statt aller</translation>
    </message>
    <message>
        <source>Writes to this file, whole or not at all, instead of standard output</source>
        <translation>Schreibt in diese Datei, ganz oder gar nicht, statt auf die Standardausgabe</translation>
    </message>
    <message>
        <source>text, number or date; otherwise the item&apos;s own, text for a new item</source>
        <translation>text, number oder date; sonst der eigene Typ des Elements, Text für ein neues</translation>
    </message>
    <message>
        <source>Writes the files into this directory</source>
        <translation>Schreibt die Dateien in dieses Verzeichnis</translation>
    </message>
    <message>
        <source>Lists the databases of this machine and of the servers</source>
        <translation>Zeigt die Datenbanken dieses Rechners und der Server</translation>
    </message>
    <message>
        <source>Lists documents: note ID, form, subject</source>
        <translation>Zeigt Dokumente: Notiz-ID, Maske, Betreff</translation>
    </message>
    <message>
        <source>Shows the items of a document with their values</source>
        <translation>Zeigt die Elemente eines Dokuments mit ihren Werten</translation>
    </message>
    <message>
        <source>Lists the items of a document, or the item names of a database and how often</source>
        <translation>Zeigt die Elemente eines Dokuments, oder die Elementnamen einer Datenbank und wie oft</translation>
    </message>
    <message>
        <source>Imports DXL files, and folders of them, into a database</source>
        <translation>Importiert DXL-Dateien und Ordner davon in eine Datenbank</translation>
    </message>
    <message>
        <source>Writes documents as DXL, JSON or CSV</source>
        <translation>Schreibt Dokumente als DXL, JSON oder CSV</translation>
    </message>
    <message>
        <source>Sets an item of a document; several values make a list</source>
        <translation>Setzt ein Element eines Dokuments; mehrere Werte ergeben eine Liste</translation>
    </message>
    <message>
        <source>Evaluates a formula on a document; nothing is saved</source>
        <translation>Berechnet eine Formel über einem Dokument; nichts wird gespeichert</translation>
    </message>
    <message>
        <source>Tells whether a formula is correct, and where its first mistake is</source>
        <translation>Sagt, ob eine Formel richtig ist, und wo ihr erster Fehler steht</translation>
    </message>
    <message>
        <source>Lists notes and items that two databases differ in, both ways</source>
        <translation>Zeigt Notizen und Elemente, in denen sich zwei Datenbanken unterscheiden, in beiden Richtungen</translation>
    </message>
    <message>
        <source>Lists the attachments of the documents, or extracts them</source>
        <translation>Zeigt die Anhänge der Dokumente oder schreibt sie heraus</translation>
    </message>
    <message>
        <source>Checks the file, every note and every attachment</source>
        <translation>Prüft die Datei, jede Notiz und jeden Anhang</translation>
    </message>
    <message>
        <source>Tells what a real database holds, or lists its notes and items</source>
        <translation>Sagt, was eine echte Datenbank enthält, oder zeigt ihre Notizen und Elemente</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>Without a command the program opens its windows.</source>
        <translation>Ohne Befehl öffnet das Programm seine Fenster.</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Befehle:</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Optionen:</translation>
    </message>
    <message>
        <source>DB is a path below the directory of databases, or &quot;SERVER!!PATH&quot;. NOTE is a note ID or universal ID in
hexadecimal digits. What begins with a dash and is no option stands behind &quot;--&quot;.
Exit code: 0 done, 1 a difference, fault or mistake was found, 2 wrong use, 3 failed, 130 interrupted.
</source>
        <translation>DB ist ein Pfad unter dem Verzeichnis der Datenbanken oder „SERVER!!PFAD“. NOTE ist eine Notiz-ID oder
Universal-ID in Hexadezimalziffern. Was mit einem Strich beginnt und keine Option ist, steht hinter „--“.
Rückgabewert: 0 getan, 1 Unterschied oder Fehler gefunden, 2 falscher Aufruf, 3 gescheitert, 130 unterbrochen.
</translation>
    </message>
    <message>
        <source>%1 only in %2, %3 only in %4, %5 changed</source>
        <translation>%1 nur in %2, %3 nur in %4, %5 geändert</translation>
    </message>
    <message>
        <source>(cannot be read)</source>
        <translation>(nicht lesbar)</translation>
    </message>
    <message>
        <source>%1: there is no view &quot;%2&quot;</source>
        <translation>%1: es gibt keine Ansicht „%2“</translation>
    </message>
    <message>
        <source>%1: %2 damaged and left out (&quot;integrity&quot; tells more)</source>
        <translation>%1: %2 beschädigt und ausgelassen („integrity“ sagt mehr)</translation>
    </message>
    <message>
        <source>note is</source>
        <translation>Notiz ist</translation>
    </message>
    <message>
        <source>notes are</source>
        <translation>Notizen sind</translation>
    </message>
    <message>
        <source>--view, --formula and --search exclude each other</source>
        <translation>--view, --formula und --search schließen einander aus</translation>
    </message>
    <message>
        <source>%1: there is no such workspace</source>
        <translation>%1: diesen Arbeitsbereich gibt es nicht</translation>
    </message>
    <message>
        <source>%1: the directory is no workspace (it has no notes.ini)</source>
        <translation>%1: das Verzeichnis ist kein Arbeitsbereich (es hat keine notes.ini)</translation>
    </message>
    <message>
        <source>%1: the database cannot be opened</source>
        <translation>%1: die Datenbank kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>%1: note &quot;%2&quot; was deleted or cannot be read</source>
        <translation>%1: Notiz „%2“ wurde gelöscht oder ist nicht lesbar</translation>
    </message>
    <message>
        <source>&quot;%1&quot; works on databases of the embedded engine only, and the Notes client is in use</source>
        <translation>„%1“ arbeitet nur auf Datenbanken des eingebauten Speichers, und der Notes-Client wird benutzt</translation>
    </message>
    <message>
        <source>--dxl, --json and --csv exclude each other</source>
        <translation>--dxl, --json und --csv schließen einander aus</translation>
    </message>
    <message>
        <source>--items goes with --csv</source>
        <translation>--items gehört zu --csv</translation>
    </message>
    <message>
        <source>%1: %2 began with a character that spreadsheets take for a formula and got an apostrophe</source>
        <translation>%1: %2 begannen wie eine Formel einer Tabellenkalkulation und bekamen einen Apostroph</translation>
    </message>
    <message>
        <source>cell</source>
        <translation>Zelle</translation>
    </message>
    <message>
        <source>cells</source>
        <translation>Zellen</translation>
    </message>
    <message>
        <source>%1, note %2: %3</source>
        <translation>%1, Notiz %2: %3</translation>
    </message>
    <message>
        <source>The formula is correct.</source>
        <translation>Die Formel ist richtig.</translation>
    </message>
    <message>
        <source>the formula has characters that the code page of the system lacks</source>
        <translation>die Formel hat Zeichen, die der Zeichensatz des Systems nicht kennt</translation>
    </message>
    <message>
        <source>the formula is longer than %1 bytes</source>
        <translation>die Formel ist länger als %1 Bytes</translation>
    </message>
    <message>
        <source>error %1</source>
        <translation>Fehler %1</translation>
    </message>
    <message>
        <source>%1 (line %2, character %3)</source>
        <translation>%1 (Zeile %2, Zeichen %3)</translation>
    </message>
    <message>
        <source>the formula is broken: %1</source>
        <translation>die Formel ist fehlerhaft: %1</translation>
    </message>
    <message>
        <source>%1: there is no such file</source>
        <translation>%1: diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>wants --into DB, the database that takes the notes</source>
        <translation>verlangt --into DB, die Datenbank, die die Notizen aufnimmt</translation>
    </message>
    <message>
        <source>Import %1 into %2%3?</source>
        <translation>%1 in %2 importieren%3?</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>, a new database</source>
        <translation>, eine neue Datenbank</translation>
    </message>
    <message>
        <source>, replacing notes of the same universal ID</source>
        <translation>, Notizen mit gleicher Universal-ID ersetzend</translation>
    </message>
    <message>
        <source>%1 not imported into %2; the first: %3</source>
        <translation>%1 nicht in %2 importiert; die erste: %3</translation>
    </message>
    <message>
        <source>file was</source>
        <translation>Datei wurde</translation>
    </message>
    <message>
        <source>files were</source>
        <translation>Dateien wurden</translation>
    </message>
    <message>
        <source>note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>attachment</source>
        <translation>Anhang</translation>
    </message>
    <message>
        <source>attachments</source>
        <translation>Anhänge</translation>
    </message>
    <message>
        <source>fault</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>faults</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>%1: %2 (%3 tells more)</source>
        <translation>%1: %2 (%3 sagt mehr)</translation>
    </message>
    <message>
        <source>there is no command &quot;%1&quot;</source>
        <translation>es gibt keinen Befehl „%1“</translation>
    </message>
    <message>
        <source>no command is given in &quot;%1&quot;</source>
        <translation>in „%1“ steht kein Befehl</translation>
    </message>
    <message>
        <source>takes no arguments</source>
        <translation>nimmt keine Argumente</translation>
    </message>
    <message>
        <source>%1: %2: %3 (&quot;nsf info&quot; tells what and why)</source>
        <translation>%1: %2: %3 („nsf info“ sagt, was und warum)</translation>
    </message>
    <message>
        <source>wants the arguments &quot;%1&quot;</source>
        <translation>verlangt die Argumente „%1“</translation>
    </message>
    <message>
        <source>the item &quot;%1&quot; %2</source>
        <translation>das Element „%1“ %2</translation>
    </message>
    <message>
        <source>is of type %1, which this command does not write</source>
        <translation>ist vom Typ %1, den dieser Befehl nicht schreibt</translation>
    </message>
    <message>
        <source>--type is text, number or date, not &quot;%1&quot;</source>
        <translation>--type ist text, number oder date, nicht „%1“</translation>
    </message>
    <message>
        <source>takes no value &quot;%1&quot;: it is no %2</source>
        <translation>nimmt den Wert „%1“ nicht an: er ist kein(e) %2</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Set &quot;%1&quot; of note %2 in %3?</source>
        <translation>„%1“ der Notiz %2 in %3 setzen?</translation>
    </message>
    <message>
        <source>interrupted</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>TessalyAndDocContent: standard output is closed
</source>
        <translation>TessalyAndDocContent: die Standardausgabe ist geschlossen
</translation>
    </message>
    <message>
        <source>%1: the file cannot be read (%2)</source>
        <translation>%1: die Datei kann nicht gelesen werden (%2)</translation>
    </message>
    <message>
        <source>%1: %2: the file was written while it was read: what is told may be of two states</source>
        <translation>%1: %2: die Datei wurde geschrieben, während sie gelesen wurde: was gezeigt wird, kann aus zwei Zuständen stammen</translation>
    </message>
    <message>
        <source>%1: %2: not all of it can be read; &quot;nsf info&quot; tells what and why</source>
        <translation>%1: %2: nicht alles davon ist lesbar; „nsf info“ sagt, was und warum</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither &quot;info&quot; nor &quot;dump&quot;</source>
        <translation>„%1“ ist weder „info“ noch „dump“</translation>
    </message>
    <message>
        <source>the formula is hidden</source>
        <translation>die Formel ist verborgen</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>nicht lesbar: %1</translation>
    </message>
    <message>
        <source>read with names that are not proven: %1</source>
        <translation>gelesen mit Namen, die nicht belegt sind: %1</translation>
    </message>
    <message>
        <source>a date in it says less than the code does</source>
        <translation>ein Datum darin sagt weniger als der Code</translation>
    </message>
    <message>
        <source>Looks for notes without the tables: deleted and outdated ones may be among them</source>
        <translation>Sucht Notizen ohne die Tabellen: gelöschte und überholte können darunter sein</translation>
    </message>
    <message>
        <source>Lists every formula, of the design and in documents, with its source</source>
        <translation>Zeigt jede Formel, der Gestaltung und in Dokumenten, mit ihrem Quelltext</translation>
    </message>
</context>
<context>
    <name>lens::CompareController</name>
    <message>
        <source>Com&amp;pare databases...</source>
        <translation>Datenbanken &amp;vergleichen...</translation>
    </message>
    <message>
        <source>Lists what two databases differ in, note by note and item by item</source>
        <translation>Zeigt, worin sich zwei Datenbanken unterscheiden, Notiz für Notiz und Element für Element</translation>
    </message>
    <message>
        <source>Com&amp;pare marked documents</source>
        <translation>Markierte Dokumente &amp;vergleichen</translation>
    </message>
    <message>
        <source>Shows the two marked documents side by side</source>
        <translation>Zeigt die beiden markierten Dokumente nebeneinander</translation>
    </message>
    <message>
        <source>Mark the two documents that are to be compared</source>
        <translation>Markieren Sie die beiden Dokumente, die verglichen werden sollen</translation>
    </message>
    <message>
        <source>differences</source>
        <translation>Unterschiede</translation>
    </message>
</context>
<context>
    <name>lens::CompareWindow</name>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>&amp;First:</source>
        <translation>&amp;Erste:</translation>
    </message>
    <message>
        <source>&amp;Second:</source>
        <translation>&amp;Zweite:</translation>
    </message>
    <message>
        <source>Co&amp;mpare</source>
        <translation>&amp;Vergleichen</translation>
    </message>
    <message>
        <source>Lists every note and item that the two databases differ in</source>
        <translation>Zeigt jede Notiz und jedes Element, in denen sich die beiden Datenbanken unterscheiden</translation>
    </message>
    <message>
        <source>The items of the current note stand below; Enter opens it in the client window</source>
        <translation>Die Elemente der aktuellen Notiz stehen darunter; die Eingabetaste öffnet sie im Client-Fenster</translation>
    </message>
    <message>
        <source>-: only in the first, +: only in the second, ~: changed</source>
        <translation>-: nur in der ersten, +: nur in der zweiten, ~: geändert</translation>
    </message>
    <message>
        <source>Value in the fi&amp;rst:</source>
        <translation>Wert in der e&amp;rsten:</translation>
    </message>
    <message>
        <source>Value in the s&amp;econd:</source>
        <translation>Wert in der z&amp;weiten:</translation>
    </message>
    <message>
        <source>&amp;Differences:</source>
        <translation>&amp;Unterschiede:</translation>
    </message>
    <message>
        <source>&amp;Items:</source>
        <translation>E&amp;lemente:</translation>
    </message>
    <message>
        <source>&amp;CSV...</source>
        <translation>&amp;CSV...</translation>
    </message>
    <message>
        <source>Writes the list that the keyboard was in to a CSV file</source>
        <translation>Schreibt die Liste, in der die Tastatur war, in eine CSV-Datei</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Puts that list, or its marked rows, on the clipboard</source>
        <translation>Legt diese Liste oder ihre markierten Zeilen in die Zwischenablage</translation>
    </message>
    <message>
        <source>Compare databases</source>
        <translation>Datenbanken vergleichen</translation>
    </message>
    <message>
        <source>The two databases hold the same</source>
        <translation>Die beiden Datenbanken enthalten dasselbe</translation>
    </message>
    <message>
        <source>%1 only in the first, %2 only in the second, %3 changed</source>
        <translation>%1 nur in der ersten, %2 nur in der zweiten, %3 geändert</translation>
    </message>
    <message>
        <source>; the comparison was cancelled</source>
        <translation>; der Vergleich wurde abgebrochen</translation>
    </message>
    <message>
        <source>%1: there is no note %2 any more</source>
        <translation>%1: die Notiz %2 gibt es nicht mehr</translation>
    </message>
    <message>
        <source>Compare documents</source>
        <translation>Dokumente vergleichen</translation>
    </message>
    <message>
        <source>Note %1</source>
        <translation>Notiz %1</translation>
    </message>
    <message>
        <source>The two documents hold the same items</source>
        <translation>Die beiden Dokumente enthalten dieselben Elemente</translation>
    </message>
    <message>
        <source>%1 of %2 items differ</source>
        <translation>%1 von %2 Elementen unterscheiden sich</translation>
    </message>
</context>
<context>
    <name>lens::DatabaseCommands</name>
    <message>
        <source>No database is chosen on the left</source>
        <translation>Links ist keine Datenbank gewählt</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message numerus="yes">
        <source>Delete the database %1 with its %n document(s)? Nothing brings it back.</source>
        <translation>
            <numerusform>Die Datenbank %1 mit ihrem %n Dokument löschen? Nichts bringt sie zurück.</numerusform>
            <numerusform>Die Datenbank %1 mit ihren %n Dokumenten löschen? Nichts bringt sie zurück.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Rename database</source>
        <translation>Datenbank umbenennen</translation>
    </message>
    <message>
        <source>Copy database</source>
        <translation>Datenbank kopieren</translation>
    </message>
    <message>
        <source>%1 copy</source>
        <translation>%1 Kopie</translation>
    </message>
    <message>
        <source>The copy was cancelled; no file was written</source>
        <translation>Das Kopieren wurde abgebrochen; keine Datei wurde geschrieben</translation>
    </message>
</context>
<context>
    <name>lens::DatabaseController</name>
    <message>
        <source>%1: the database is no longer there</source>
        <translation>%1: die Datenbank ist nicht mehr da</translation>
    </message>
    <message>
        <source>Client</source>
        <translation>Client</translation>
    </message>
    <message>
        <source> (%1)</source>
        <translation> (%1)</translation>
    </message>
    <message>
        <source>Client: %1</source>
        <translation>Client: %1</translation>
    </message>
    <message>
        <source>No database is open</source>
        <translation>Keine Datenbank ist offen</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>    %1</source>
        <translation>    %1</translation>
    </message>
    <message>
        <source>    %1 marked</source>
        <translation>    %1 markiert</translation>
    </message>
    <message>
        <source>    Documents have changed: F5 refreshes</source>
        <translation>    Dokumente haben sich geändert: F5 aktualisiert</translation>
    </message>
</context>
<context>
    <name>lens::DatabaseTree</name>
    <message>
        <source>No databases here yet</source>
        <translation>Hier sind noch keine Datenbanken</translation>
    </message>
    <message>
        <source>%1 is no database that can be opened here. Where it can be opened, export it as DXL and import that.</source>
        <translation>%1 ist keine Datenbank, die sich hier öffnen lässt. Exportieren Sie sie dort, wo sie sich öffnen lässt, als DXL, und importieren Sie das.</translation>
    </message>
    <message>
        <source>%1 (cannot be opened)</source>
        <translation>%1 (lässt sich nicht öffnen)</translation>
    </message>
    <message>
        <source>Local</source>
        <translation>Lokal</translation>
    </message>
</context>
<context>
    <name>lens::DifferenceModel</name>
    <message>
        <source>Difference</source>
        <translation>Unterschied</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>First ID</source>
        <translation>Erste ID</translation>
    </message>
    <message>
        <source>Second ID</source>
        <translation>Zweite ID</translation>
    </message>
    <message>
        <source>UNID</source>
        <translation>UNID</translation>
    </message>
    <message>
        <source>only in the first</source>
        <translation>nur in der ersten</translation>
    </message>
    <message>
        <source>only in the second</source>
        <translation>nur in der zweiten</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>(class)</source>
        <translation>(Klasse)</translation>
    </message>
    <message>
        <source>(parent)</source>
        <translation>(Hauptdokument)</translation>
    </message>
</context>
<context>
    <name>lens::DocumentModel</name>
    <message>
        <source>Form</source>
        <translation>Maske</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>Betreff</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Note ID</source>
        <translation>Notiz-ID</translation>
    </message>
    <message>
        <source>(deleted since the view was read)</source>
        <translation>(gelöscht, seit die Ansicht gelesen wurde)</translation>
    </message>
    <message>
        <source>(damaged) %1</source>
        <translation>(beschädigt) %1</translation>
    </message>
</context>
<context>
    <name>lens::DocumentPane</name>
    <message>
        <source>%1: there is no note %2 any more; F5 refreshes the view</source>
        <translation>%1: die Notiz %2 gibt es nicht mehr; F5 aktualisiert die Ansicht</translation>
    </message>
</context>
<context>
    <name>lens::DocumentReader</name>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Closes the document and goes back to the view (Esc)</source>
        <translation>Schließt das Dokument und geht zurück zur Ansicht (Esc)</translation>
    </message>
    <message>
        <source>The items of the document; the value of the current one stands below</source>
        <translation>Die Elemente des Dokuments; der Wert des aktuellen steht darunter</translation>
    </message>
    <message>
        <source>&amp;Items:</source>
        <translation>E&amp;lemente:</translation>
    </message>
    <message>
        <source>The value of the current item, for reading and copying</source>
        <translation>Der Wert des aktuellen Elements, zum Lesen und Kopieren</translation>
    </message>
    <message>
        <source>Con&amp;tent:</source>
        <translation>Inhal&amp;t:</translation>
    </message>
    <message>
        <source>(no subject)</source>
        <translation>(kein Betreff)</translation>
    </message>
    <message>
        <source>%1    Note ID %2    Modified %3</source>
        <translation>%1    Notiz-ID %2    Geändert %3</translation>
    </message>
    <message>
        <source>(no form)</source>
        <translation>(keine Maske)</translation>
    </message>
    <message>
        <source>(unknown)</source>
        <translation>(unbekannt)</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>Inhalt</translation>
    </message>
</context>
<context>
    <name>lens::ExportController</name>
    <message>
        <source>There are no documents to export</source>
        <translation>Es gibt keine Dokumente zu exportieren</translation>
    </message>
    <message>
        <source>%1 was not written: %2</source>
        <translation>%1 wurde nicht geschrieben: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n note(s) exported to %1</source>
        <translation>
            <numerusform>%n Notiz nach %1 exportiert</numerusform>
            <numerusform>%n Notizen nach %1 exportiert</numerusform>
        </translation>
    </message>
    <message>
        <source>The export was cancelled; no file was written</source>
        <translation>Der Export wurde abgebrochen; keine Datei wurde geschrieben</translation>
    </message>
</context>
<context>
    <name>lens::FileOpening</name>
    <message>
        <source>%1: there is no such file</source>
        <translation>%1: diese Datei gibt es nicht</translation>
    </message>
</context>
<context>
    <name>lens::FormulaController</name>
    <message>
        <source>%1: there is no note %2 any more; F5 refreshes the view</source>
        <translation>%1: die Notiz %2 gibt es nicht mehr; F5 aktualisiert die Ansicht</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot;, note ID %3,</source>
        <translation>%1 „%2“, Notiz-ID %3,</translation>
    </message>
    <message>
        <source>(no title)</source>
        <translation>(kein Titel)</translation>
    </message>
</context>
<context>
    <name>lens::FormulaModel</name>
    <message>
        <source>hidden</source>
        <translation>verborgen</translation>
    </message>
    <message>
        <source>unreadable</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>kept as source</source>
        <translation>als Quelltext</translation>
    </message>
    <message>
        <source>proven</source>
        <translation>bewiesen</translation>
    </message>
    <message>
        <source>names from context</source>
        <translation>Namen aus dem Zusammenhang</translation>
    </message>
    <message>
        <source>names guessed</source>
        <translation>Namen geraten</translation>
    </message>
    <message>
        <source>names missing</source>
        <translation>Namen fehlen</translation>
    </message>
    <message>
        <source>The formula is hidden: its source cannot be read by anybody</source>
        <translation>Die Formel ist verborgen: Niemand kann ihren Quelltext lesen</translation>
    </message>
    <message>
        <source>It cannot be read: %1</source>
        <translation>Sie ist nicht lesbar: %1</translation>
    </message>
    <message>
        <source>It was stored as source, as it stands here</source>
        <translation>Sie war als Quelltext gespeichert, wie er hier steht</translation>
    </message>
    <message>
        <source>It was stored as source, and cannot run: %1 (character %2)</source>
        <translation>Sie war als Quelltext gespeichert und kann nicht laufen: %1 (Zeichen %2)</translation>
    </message>
    <message>
        <source>It was read from the compiled form, and every name in it is proven</source>
        <translation>Sie wurde aus der übersetzten Form gelesen, und jeder Name darin ist bewiesen</translation>
    </message>
    <message>
        <source>It cannot run: %1</source>
        <translation>Sie kann nicht laufen: %1</translation>
    </message>
    <message>
        <source>It was read from the compiled form with names that are not proven: %1</source>
        <translation>Sie wurde aus der übersetzten Form gelesen, mit Namen, die nicht bewiesen sind: %1</translation>
    </message>
    <message>
        <source>. A date in it says less than the code does</source>
        <translation>. Ein Datum darin sagt weniger als der Code</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Formula</source>
        <translation>Formel</translation>
    </message>
</context>
<context>
    <name>lens::FormulaWindow</name>
    <message>
        <source>Formulas</source>
        <translation>Formeln</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Puts the source of the formula on the clipboard</source>
        <translation>Legt den Quelltext der Formel in die Zwischenablage</translation>
    </message>
    <message>
        <source>The formulas of the note; the source of the current one stands below</source>
        <translation>Die Formeln der Notiz; der Quelltext der aktuellen steht darunter</translation>
    </message>
    <message>
        <source>&amp;Formulas:</source>
        <translation>&amp;Formeln:</translation>
    </message>
    <message>
        <source>The source of the current formula, for reading and copying</source>
        <translation>Der Quelltext der aktuellen Formel, zum Lesen und Kopieren</translation>
    </message>
    <message>
        <source>&amp;Source:</source>
        <translation>&amp;Quelltext:</translation>
    </message>
    <message>
        <source>%1 has no formulas</source>
        <translation>%1 hat keine Formeln</translation>
    </message>
    <message>
        <source>%1 has one formula</source>
        <translation>%1 hat eine Formel</translation>
    </message>
    <message>
        <source>%1 has %2 formulas</source>
        <translation>%1 hat %2 Formeln</translation>
    </message>
</context>
<context>
    <name>lens::GuidePage</name>
    <message>
        <source>%1 is not shipped with the program</source>
        <translation>%1 liegt dem Programm nicht bei</translation>
    </message>
</context>
<context>
    <name>lens::GuideWindow</name>
    <message>
        <source>Guide</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>The page before this one (Alt+Left)</source>
        <translation>Die Seite vor dieser (Alt+Links)</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Handbuch</translation>
    </message>
    <message>
        <source>The first page of the guide</source>
        <translation>Die erste Seite des Handbuchs</translation>
    </message>
    <message>
        <source>Words to be found on the page; Enter or F3 finds the next place</source>
        <translation>Wörter, die auf der Seite gesucht werden; Eingabetaste oder F3 findet die nächste Stelle</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <translation>&amp;Suchen:</translation>
    </message>
</context>
<context>
    <name>lens::HelpController</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Handbuch</translation>
    </message>
    <message>
        <source>&amp;Tour of five minutes</source>
        <translation>&amp;Rundgang von fünf Minuten</translation>
    </message>
    <message>
        <source>&amp;Formula language</source>
        <translation>&amp;Formelsprache</translation>
    </message>
    <message>
        <source>&amp;Command line</source>
        <translation>&amp;Befehlszeile</translation>
    </message>
    <message>
        <source>&amp;Real databases</source>
        <translation>&amp;Echte Datenbanken</translation>
    </message>
    <message>
        <source>What is &amp;new</source>
        <translation>Was ist &amp;neu</translation>
    </message>
    <message>
        <source>&amp;About Tessaly Lens</source>
        <translation>Über &amp;Tessaly Lens</translation>
    </message>
</context>
<context>
    <name>lens::ImportController</name>
    <message>
        <source>Import into %1 on %2</source>
        <translation>Import in %1 auf %2</translation>
    </message>
    <message>
        <source>: nothing was imported, so the new database was removed again</source>
        <translation>: nichts wurde importiert, darum wurde die neue Datenbank wieder entfernt</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>The open database can only be read.</source>
        <translation>Die offene Datenbank kann nur gelesen werden.</translation>
    </message>
    <message>
        <source>Nothing was imported: the database is no longer the open one</source>
        <translation>Nichts wurde importiert: Die Datenbank ist nicht mehr die offene</translation>
    </message>
    <message>
        <source>The import cannot be undone: %1</source>
        <translation>Der Import kann nicht rückgängig gemacht werden: %1</translation>
    </message>
    <message>
        <source>Import report</source>
        <translation>Importbericht</translation>
    </message>
    <message>
        <source>Replaced:</source>
        <translation>Ersetzt:</translation>
    </message>
    <message>
        <source>  and more</source>
        <translation>  und weitere</translation>
    </message>
    <message>
        <source>  %1 (%2, Note ID %3)</source>
        <translation>  %1 (%2, Notiz-ID %3)</translation>
    </message>
</context>
<context>
    <name>lens::ImportDialog</name>
    <message>
        <source>Into the &amp;open database</source>
        <translation>In die &amp;offene Datenbank</translation>
    </message>
    <message>
        <source>Into a &amp;new database on %1:</source>
        <translation>In eine &amp;neue Datenbank auf %1:</translation>
    </message>
    <message>
        <source>Import DXL</source>
        <translation>DXL importieren</translation>
    </message>
    <message>
        <source>File name of the new database, folders included</source>
        <translation>Dateiname der neuen Datenbank, mit Ordnern</translation>
    </message>
    <message>
        <source>Into the &amp;open database %1</source>
        <translation>In die &amp;offene Datenbank %1</translation>
    </message>
    <message>
        <source>Notes that would be replaced</source>
        <translation>Notizen, die ersetzt würden</translation>
    </message>
    <message>
        <source>&amp;Import</source>
        <translation>&amp;Importieren</translation>
    </message>
    <message>
        <source>An import can be undone until its database is closed.</source>
        <translation>Ein Import kann rückgängig gemacht werden, bis seine Datenbank geschlossen wird.</translation>
    </message>
    <message>
        <source>Nothing is replaced in a new database</source>
        <translation>In einer neuen Datenbank wird nichts ersetzt</translation>
    </message>
    <message>
        <source>Looking which notes would be replaced...</source>
        <translation>Es wird nachgesehen, welche Notizen ersetzt würden...</translation>
    </message>
    <message>
        <source>What would be replaced cannot be told: %1</source>
        <translation>Was ersetzt würde, lässt sich nicht sagen: %1</translation>
    </message>
    <message>
        <source>Notes of the same universal ID will be replaced; nobody has looked which</source>
        <translation>Notizen mit derselben Universal-ID werden ersetzt; niemand hat nachgesehen, welche</translation>
    </message>
    <message>
        <source>No note of the open database would be replaced</source>
        <translation>Keine Notiz der offenen Datenbank würde ersetzt</translation>
    </message>
    <message numerus="yes">
        <source>%n note(s) of the open database would be &amp;replaced:</source>
        <translation>
            <numerusform>%n Notiz der offenen Datenbank würde e&amp;rsetzt:</numerusform>
            <numerusform>%n Notizen der offenen Datenbank würden e&amp;rsetzt:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>lens::ImportReport</name>
    <message>
        <source>%1 (%2 files)</source>
        <translation>%1 (%2 Dateien)</translation>
    </message>
    <message>
        <source>%1 (%2 files, %3 times)</source>
        <translation>%1 (%2 Dateien, %3-mal)</translation>
    </message>
    <message>
        <source>%1 notes imported, %2 of them replaced.</source>
        <translation>%1 Notizen importiert, %2 davon ersetzt.</translation>
    </message>
    <message>
        <source>Cancelled; the file at hand was undone.</source>
        <translation>Abgebrochen; die Datei, die gerade gelesen wurde, ist zurückgenommen.</translation>
    </message>
    <message>
        <source>Not imported</source>
        <translation>Nicht importiert</translation>
    </message>
    <message>
        <source>Kept as it came</source>
        <translation>Behalten, wie es kam</translation>
    </message>
    <message>
        <source>where the files come from: attributes %1</source>
        <translation>woher die Dateien kommen: Attribute %1</translation>
    </message>
    <message>
        <source>Left out by design</source>
        <translation>Mit Absicht weggelassen</translation>
    </message>
</context>
<context>
    <name>lens::ImportUndo</name>
    <message>
        <source>Undo impor&amp;t</source>
        <translation>Impor&amp;t rückgängig machen</translation>
    </message>
    <message>
        <source>Undo impor&amp;t of %1</source>
        <translation>Impor&amp;t von %1 rückgängig machen</translation>
    </message>
    <message>
        <source>Cancelled: everything is as it was imported</source>
        <translation>Abgebrochen: Alles ist, wie es importiert wurde</translation>
    </message>
    <message>
        <source>Import undone</source>
        <translation>Import rückgängig gemacht</translation>
    </message>
    <message>
        <source>The import of %1 into %2 on %3 was undone</source>
        <translation>Der Import von %1 in %2 auf %3 wurde rückgängig gemacht</translation>
    </message>
</context>
<context>
    <name>lens::IndexController</name>
    <message>
        <source>Full-text index of %1 on %2</source>
        <translation>Volltextindex von %1 auf %2</translation>
    </message>
    <message>
        <source>The index holds the words of all documents as they are now</source>
        <translation>Der Index enthält die Wörter aller Dokumente, wie sie jetzt sind</translation>
    </message>
    <message>
        <source>Cancelled. The copy stays without an index</source>
        <translation>Abgebrochen. Die Kopie bleibt ohne Index</translation>
    </message>
    <message>
        <source>Cancelled. What is done of the index is kept: the next time it goes on from there</source>
        <translation>Abgebrochen. Was vom Index fertig ist, bleibt: Beim nächsten Mal geht es von da weiter</translation>
    </message>
    <message>
        <source>Full-text index</source>
        <translation>Volltextindex</translation>
    </message>
</context>
<context>
    <name>lens::ItemModel</name>
    <message>
        <source>(unreadable) %1</source>
        <translation>(nicht lesbar) %1</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>lens::ItemPairModel</name>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>(unreadable) %1</source>
        <translation>(nicht lesbar) %1</translation>
    </message>
</context>
<context>
    <name>lens::ListExport</name>
    <message>
        <source>Export li&amp;st as CSV...</source>
        <translation>Liste als CSV ex&amp;portieren...</translation>
    </message>
    <message>
        <source>Writes the list that the keyboard is in to a CSV file</source>
        <translation>Schreibt die Liste, in der die Tastatur ist, in eine CSV-Datei</translation>
    </message>
    <message>
        <source>Export documents as &amp;JSON...</source>
        <translation>Dokumente als &amp;JSON exportieren...</translation>
    </message>
    <message>
        <source>Writes the open document, or the marked ones, with all items to a JSON file</source>
        <translation>Schreibt das offene Dokument oder die markierten mit allen Elementen in eine JSON-Datei</translation>
    </message>
    <message>
        <source>Copy as &amp;table</source>
        <translation>Als &amp;Tabelle kopieren</translation>
    </message>
    <message>
        <source>Puts the marked rows, or all, on the clipboard as a table</source>
        <translation>Legt die markierten Zeilen, oder alle, als Tabelle in die Zwischenablage</translation>
    </message>
    <message>
        <source>%1 was not written: %2</source>
        <translation>%1 wurde nicht geschrieben: %2</translation>
    </message>
    <message>
        <source>The export was cancelled; no file was written</source>
        <translation>Der Export wurde abgebrochen; keine Datei wurde geschrieben</translation>
    </message>
    <message>
        <source>the list has changed meanwhile</source>
        <translation>die Liste hat sich inzwischen geändert</translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) exported to %1</source>
        <translation>
            <numerusform>%n Zeile nach %1 exportiert</numerusform>
            <numerusform>%n Zeilen nach %1 exportiert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n cell(s) that a spreadsheet would run got an apostrophe</source>
        <translation>
            <numerusform>; %n Zelle, die eine Tabellenkalkulation ausführen würde, bekam einen Apostroph</numerusform>
            <numerusform>; %n Zellen, die eine Tabellenkalkulation ausführen würde, bekamen einen Apostroph</numerusform>
        </translation>
    </message>
    <message>
        <source>There are no documents to export</source>
        <translation>Es gibt keine Dokumente zu exportieren</translation>
    </message>
    <message>
        <source>note %1 was deleted or cannot be read</source>
        <translation>Notiz %1 wurde gelöscht oder ist nicht lesbar</translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) exported to %1</source>
        <translation>
            <numerusform>%n Dokument nach %1 exportiert</numerusform>
            <numerusform>%n Dokumente nach %1 exportiert</numerusform>
        </translation>
    </message>
    <message>
        <source>These are %1 rows: mark some of them, or export the list as CSV</source>
        <translation>Das sind %1 Zeilen: Markieren Sie einige davon oder exportieren Sie die Liste als CSV</translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) copied</source>
        <translation>
            <numerusform>%n Zeile kopiert</numerusform>
            <numerusform>%n Zeilen kopiert</numerusform>
        </translation>
    </message>
    <message>
        <source>list</source>
        <translation>Liste</translation>
    </message>
</context>
<context>
    <name>lens::ListTable</name>
    <message>
        <source>&amp;Copy rows</source>
        <translation>Zeilen &amp;kopieren</translation>
    </message>
    <message>
        <source>Puts the marked rows with all their columns on the clipboard</source>
        <translation>Legt die markierten Zeilen mit allen Spalten in die Zwischenablage</translation>
    </message>
</context>
<context>
    <name>lens::RealReport</name>
    <message>
        <source>Reading report</source>
        <translation>Lesebericht</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>Writes the report to a file, as JSON where it is called so</source>
        <translation>Schreibt den Bericht in eine Datei, als JSON, wo sie so heißt</translation>
    </message>
    <message>
        <source>The report was written to %1</source>
        <translation>Der Bericht wurde nach %1 geschrieben</translation>
    </message>
    <message>
        <source>%1 was not written: %2</source>
        <translation>%1 wurde nicht geschrieben: %2</translation>
    </message>
    <message>
        <source>%1: %2 of %3 notes read: not all that the file holds can be shown. The reading report in the menu File tells what and why</source>
        <translation>%1: %2 von %3 Notizen gelesen: Nicht alles, was die Datei enthält, kann gezeigt werden. Der Lesebericht im Menü Datei sagt, was und warum</translation>
    </message>
    <message>
        <source>%1 report</source>
        <translation>%1 Bericht</translation>
    </message>
</context>
<context>
    <name>lens::ReportDialog</name>
    <message>
        <source>Import report</source>
        <translation>Importbericht</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Puts the whole report on the clipboard</source>
        <translation>Legt den ganzen Bericht in die Zwischenablage</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
</context>
<context>
    <name>lens::SearchController</name>
    <message>
        <source>%1 has no full-text index, and only with one can it be searched. Make one now?</source>
        <translation>%1 hat keinen Volltextindex, und nur mit einem lässt sie sich durchsuchen. Jetzt einen anlegen?</translation>
    </message>
    <message>
        <source>&amp;Create index</source>
        <translation>&amp;Index anlegen</translation>
    </message>
</context>
<context>
    <name>lens::ViewPane</name>
    <message>
        <source>Doc&amp;uments: %1</source>
        <translation>Doku&amp;mente: %1</translation>
    </message>
    <message>
        <source>Doc&amp;uments: none (what lies in a folder is found under &quot;All documents&quot;)</source>
        <translation>Doku&amp;mente: keine (was in einem Ordner liegt, findet sich unter „Alle Dokumente“)</translation>
    </message>
    <message>
        <source>Doc&amp;uments: none in this view</source>
        <translation>Doku&amp;mente: keine in dieser Ansicht</translation>
    </message>
    <message>
        <source>%1 (folder)</source>
        <translation>%1 (Ordner)</translation>
    </message>
    <message>
        <source>Doc&amp;uments: %1, all there are: formula not readable (%2)</source>
        <translation>Doku&amp;mente: %1, alle, die es gibt: Formel nicht lesbar (%2)</translation>
    </message>
    <message>
        <source>&amp;Empty the filter</source>
        <translation>Filter &amp;leeren</translation>
    </message>
    <message>
        <source>Doc&amp;uments: %1 found</source>
        <translation>Doku&amp;mente: %1 gefunden</translation>
    </message>
    <message>
        <source>Doc&amp;uments: %1 of %2</source>
        <translation>Doku&amp;mente: %1 von %2</translation>
    </message>
    <message>
        <source>Found: %1</source>
        <translation>Gefunden: %1</translation>
    </message>
</context>
<context>
    <name>lens::WindowState</name>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>&amp;Forget these</source>
        <translation>Diese &amp;vergessen</translation>
    </message>
</context>
<context>
    <name>lens::WorkBar</name>
    <message>
        <source>Progress of the file</source>
        <translation>Fortschritt der Datei</translation>
    </message>
    <message>
        <source>Importing %1</source>
        <translation>Importiert %1</translation>
    </message>
    <message>
        <source>C&amp;ancel import</source>
        <translation>Import abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the import; the file at hand leaves nothing in the database</source>
        <translation>Beendet den Import; die Datei, die gerade gelesen wird, hinterlässt nichts in der Datenbank</translation>
    </message>
    <message>
        <source>Exporting to %1</source>
        <translation>Exportiert nach %1</translation>
    </message>
    <message>
        <source>C&amp;ancel export</source>
        <translation>Export abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the export; no file is written</source>
        <translation>Beendet den Export; keine Datei wird geschrieben</translation>
    </message>
    <message>
        <source>Indexing %1</source>
        <translation>Indiziert %1</translation>
    </message>
    <message>
        <source>C&amp;ancel index</source>
        <translation>Index abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the work; what is done of the index is kept</source>
        <translation>Beendet die Arbeit; was vom Index fertig ist, bleibt</translation>
    </message>
    <message>
        <source>Comparing with %1</source>
        <translation>Vergleicht mit %1</translation>
    </message>
    <message>
        <source>C&amp;ancel comparison</source>
        <translation>Vergleich abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the comparison; what was found until then is listed</source>
        <translation>Beendet den Vergleich; was bis dahin gefunden wurde, wird gezeigt</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>Liest %1</translation>
    </message>
    <message>
        <source>C&amp;ancel reading</source>
        <translation>Lesen abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the reading; nothing of it is kept</source>
        <translation>Beendet das Lesen; nichts davon bleibt</translation>
    </message>
    <message>
        <source>Looking into %1</source>
        <translation>%1 wird durchgesehen</translation>
    </message>
    <message>
        <source>Stop loo&amp;king</source>
        <translation>Nicht &amp;weiter nachsehen</translation>
    </message>
    <message>
        <source>Leaves it open what would be replaced</source>
        <translation>Lässt offen, was ersetzt würde</translation>
    </message>
    <message>
        <source>Undoing the import into %1</source>
        <translation>Der Import in %1 wird rückgängig gemacht</translation>
    </message>
    <message>
        <source>C&amp;ancel undo</source>
        <translation>Rückgängigmachen abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the work; everything stays as it was imported</source>
        <translation>Beendet die Arbeit; alles bleibt, wie es importiert wurde</translation>
    </message>
    <message>
        <source>Searching %1</source>
        <translation>%1 wird durchsucht</translation>
    </message>
    <message>
        <source>C&amp;ancel search</source>
        <translation>Suche abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the search; what was found before stays in the list</source>
        <translation>Beendet die Suche; was vorher gefunden wurde, bleibt in der Liste</translation>
    </message>
    <message>
        <source>Copying %1</source>
        <translation>%1 wird kopiert</translation>
    </message>
    <message>
        <source>C&amp;ancel copy</source>
        <translation>Kopieren abb&amp;rechen</translation>
    </message>
    <message>
        <source>Ends the copy; no file is written</source>
        <translation>Beendet das Kopieren; keine Datei wird geschrieben</translation>
    </message>
</context>
</TS>
