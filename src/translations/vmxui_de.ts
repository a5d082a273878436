<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>QMessageBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgAbout</name>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Driver version:</source>
        <translation>Treiberversion:</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Driver version</source>
        <translation>Treiberversion</translation>
    </message>
    <message>
        <source>Version information:</source>
        <translation>Versionsinformationen:</translation>
    </message>
    <message>
        <source>Version information</source>
        <translation>Versionsinformationen</translation>
    </message>
    <message>
        <source>Scanner:</source>
        <translation>Scanner:</translation>
    </message>
    <message>
        <source>Scanner</source>
        <translation>Scanner</translation>
    </message>
    <message>
        <source>Scanner version:</source>
        <translation>Scannerversion:</translation>
    </message>
    <message>
        <source>Scanner version</source>
        <translation>Scannerversion</translation>
    </message>
    <message>
        <source>Interface:</source>
        <translation>Schnittstelle:</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>Schnittstelle</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgCustom</name>
    <message>
        <source>Customize</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>&amp;Einheit:</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Border removal</source>
        <translation>Randentfernung</translation>
    </message>
    <message>
        <source>&amp;Left:</source>
        <translation>&amp;Links:</translation>
    </message>
    <message>
        <source>Border removal left</source>
        <translation>Randentfernung links</translation>
    </message>
    <message>
        <source>&amp;Top:</source>
        <translation>&amp;Oben:</translation>
    </message>
    <message>
        <source>Border removal top</source>
        <translation>Randentfernung oben</translation>
    </message>
    <message>
        <source>&amp;Right:</source>
        <translation>&amp;Rechts:</translation>
    </message>
    <message>
        <source>Border removal right</source>
        <translation>Randentfernung rechts</translation>
    </message>
    <message>
        <source>&amp;Bottom:</source>
        <translation>&amp;Unten:</translation>
    </message>
    <message>
        <source>Border removal bottom</source>
        <translation>Randentfernung unten</translation>
    </message>
    <message>
        <source>Shadow removal</source>
        <translation>Schattenentfernung</translation>
    </message>
    <message>
        <source>L&amp;eft:</source>
        <translation>Li&amp;nks:</translation>
    </message>
    <message>
        <source>Shadow removal left</source>
        <translation>Schattenentfernung links</translation>
    </message>
    <message>
        <source>To&amp;p:</source>
        <translation>O&amp;ben:</translation>
    </message>
    <message>
        <source>Shadow removal top</source>
        <translation>Schattenentfernung oben</translation>
    </message>
    <message>
        <source>Ri&amp;ght:</source>
        <translation>Re&amp;chts:</translation>
    </message>
    <message>
        <source>Shadow removal right</source>
        <translation>Schattenentfernung rechts</translation>
    </message>
    <message>
        <source>Botto&amp;m:</source>
        <translation>Un&amp;ten:</translation>
    </message>
    <message>
        <source>Shadow removal bottom</source>
        <translation>Schattenentfernung unten</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgCustomGamma</name>
    <message>
        <source>Custom Gamma</source>
        <translation>Benutzerdefiniertes Gamma</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma:</translation>
    </message>
    <message>
        <source>Gamma name</source>
        <translation>Gammaname</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Save gamma as</source>
        <translation>Gamma speichern unter</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete gamma</source>
        <translation>Gamma löschen</translation>
    </message>
    <message>
        <source>Tone curves</source>
        <translation>Tonwertkurven</translation>
    </message>
    <message>
        <source>Sample picture</source>
        <translation>Beispielbild</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Red gamma</source>
        <translation>Gamma Rot</translation>
    </message>
    <message>
        <source>Red gamma value</source>
        <translation>Gammawert Rot</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Green gamma</source>
        <translation>Gamma Grün</translation>
    </message>
    <message>
        <source>Green gamma value</source>
        <translation>Gammawert Grün</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Blue gamma</source>
        <translation>Gamma Blau</translation>
    </message>
    <message>
        <source>Blue gamma value</source>
        <translation>Gammawert Blau</translation>
    </message>
    <message>
        <source>&amp;Link green and blue to red</source>
        <translation>Grün und Blau an Rot &amp;koppeln</translation>
    </message>
    <message>
        <source>Link green and blue to red</source>
        <translation>Grün und Blau an Rot koppeln</translation>
    </message>
    <message>
        <source>Blac&amp;k point:</source>
        <translation>Schwar&amp;zpunkt:</translation>
    </message>
    <message>
        <source>Black point</source>
        <translation>Schwarzpunkt</translation>
    </message>
    <message>
        <source>Black point value</source>
        <translation>Schwarzpunktwert</translation>
    </message>
    <message>
        <source>&amp;White point:</source>
        <translation>&amp;Weißpunkt:</translation>
    </message>
    <message>
        <source>White point</source>
        <translation>Weißpunkt</translation>
    </message>
    <message>
        <source>White point value</source>
        <translation>Weißpunktwert</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>TwDlgDoubleExposure</name>
    <message>
        <source>Double Exposure</source>
        <translation>Seiten zusammenführen</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>Seitenreihenfolge</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>&amp;Links nach rechts</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>Links nach rechts</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>&amp;Rechts nach links</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>Rechts nach links</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>&amp;Oben nach unten</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>Oben nach unten</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>&amp;Unten nach oben</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>Unten nach oben</translation>
    </message>
    <message>
        <source>&amp;Paper size:</source>
        <translation>&amp;Papierformat:</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>Papierformat</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgMain</name>
    <message>
        <source>Scan Settings</source>
        <translation>Scaneinstellungen</translation>
    </message>
    <message>
        <source>Setting:</source>
        <translation>Einstellung:</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellung</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Save setting</source>
        <translation>Einstellung speichern</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete setting</source>
        <translation>Einstellung löschen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>Info...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Customize...</source>
        <translation>Anpassen...</translation>
    </message>
    <message>
        <source>Customize</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>Standardwerte wiederherstellen</translation>
    </message>
    <message>
        <source>Prescan</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Scannen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgPageSeparation</name>
    <message>
        <source>Page Separation</source>
        <translation>Seitentrennung</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>Seitenreihenfolge</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>&amp;Links nach rechts</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>Links nach rechts</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>&amp;Rechts nach links</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>Rechts nach links</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>&amp;Oben nach unten</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>Oben nach unten</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>&amp;Unten nach oben</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>Unten nach oben</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgPaperSize</name>
    <message>
        <source>Custom Paper Size</source>
        <translation>Benutzerdefiniertes Papierformat</translation>
    </message>
    <message>
        <source>Custom paper sizes</source>
        <translation>Benutzerdefinierte Papierformate</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Paper name</source>
        <translation>Name des Papierformats</translation>
    </message>
    <message>
        <source>Si&amp;ze:</source>
        <translation>&amp;Größe:</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save paper size</source>
        <translation>Papierformat speichern</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete paper size</source>
        <translation>Papierformat löschen</translation>
    </message>
    <message>
        <source>Paper the scanner takes (width × length)</source>
        <translation>Zulässiges Papier (Breite × Länge)</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Largest</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Feeder:</source>
        <translation>Einzug:</translation>
    </message>
    <message>
        <source>Flatbed:</source>
        <translation>Flachbett:</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>TwDlgPreview</name>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorderseite</translation>
    </message>
    <message>
        <source>Show the front page</source>
        <translation>Vorderseite anzeigen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Rückseite</translation>
    </message>
    <message>
        <source>Show the back page</source>
        <translation>Rückseite anzeigen</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Mouse tool</source>
        <translation>Mauswerkzeug</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Select, move and resize areas; drag outside an area to draw one</source>
        <translation>Bereiche auswählen, verschieben und in der Größe ändern; außerhalb eines Bereichs ziehen, um einen neuen aufzuziehen</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Hand</translation>
    </message>
    <message>
        <source>Scroll the page by dragging it</source>
        <translation>Seite durch Ziehen verschieben</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Click to zoom in</source>
        <translation>Zum Vergrößern klicken</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Click to zoom out</source>
        <translation>Zum Verkleinern klicken</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Fit the whole page into the window</source>
        <translation>Ganze Seite in das Fenster einpassen</translation>
    </message>
    <message>
        <source>Find Page</source>
        <translation>Seite finden</translation>
    </message>
    <message>
        <source>Set the main area to the document found on the prescan</source>
        <translation>Hauptbereich auf das im Vorschauscan gefundene Dokument setzen</translation>
    </message>
    <message>
        <source>Color ratio:</source>
        <translation>Farbanteil:</translation>
    </message>
    <message>
        <source>-(%)</source>
        <translation>-(%)</translation>
    </message>
    <message>
        <source>Blank page ratio:</source>
        <translation>Leerseitenanteil:</translation>
    </message>
</context>
<context>
    <name>TwDlgSaveSetting</name>
    <message>
        <source>Save Setting</source>
        <translation>Einstellung speichern</translation>
    </message>
    <message>
        <source>Setting name:</source>
        <translation>Einstellungsname:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>TwDlgScanning</name>
    <message>
        <source>Scanning</source>
        <translation>Scannen</translation>
    </message>
    <message>
        <source>Scanning...</source>
        <translation>Wird gescannt...</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Stop scanning</source>
        <translation>Scannen stoppen</translation>
    </message>
</context>
<context>
    <name>TwPaperSizeTableModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
</context>
<context>
    <name>TwainViewArea</name>
    <message>
        <source>Area</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>&amp;Einheit:</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Scan area</source>
        <translation>Scanbereich</translation>
    </message>
    <message>
        <source>&amp;X (front):</source>
        <translation>&amp;X (vorne):</translation>
    </message>
    <message>
        <source>X front</source>
        <translation>X vorne</translation>
    </message>
    <message>
        <source>X (bac&amp;k):</source>
        <translation>X (&amp;hinten):</translation>
    </message>
    <message>
        <source>X back</source>
        <translation>X hinten</translation>
    </message>
    <message>
        <source>&amp;Y:</source>
        <translation>&amp;Y:</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>&amp;Width:</source>
        <translation>&amp;Breite:</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Le&amp;ngth:</source>
        <translation>&amp;Länge:</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Seite:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorderseite</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Rückseite</translation>
    </message>
    <message>
        <source>Sub-areas</source>
        <translation>Teilbereiche</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>&amp;Rasterung:</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Area &amp;1</source>
        <translation>Bereich &amp;1</translation>
    </message>
    <message>
        <source>Front area 1</source>
        <translation>Bereich 1 vorne</translation>
    </message>
    <message>
        <source>Front area 1 X</source>
        <translation>Bereich 1 vorne, X</translation>
    </message>
    <message>
        <source>Front area 1 Y</source>
        <translation>Bereich 1 vorne, Y</translation>
    </message>
    <message>
        <source>Front area 1 width</source>
        <translation>Bereich 1 vorne, Breite</translation>
    </message>
    <message>
        <source>Front area 1 length</source>
        <translation>Bereich 1 vorne, Länge</translation>
    </message>
    <message>
        <source>Front area 1 brightness</source>
        <translation>Bereich 1 vorne, Helligkeit</translation>
    </message>
    <message>
        <source>Front area 1 brightness stepper</source>
        <translation>Bereich 1 vorne, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Area &amp;2</source>
        <translation>Bereich &amp;2</translation>
    </message>
    <message>
        <source>Front area 2</source>
        <translation>Bereich 2 vorne</translation>
    </message>
    <message>
        <source>Front area 2 X</source>
        <translation>Bereich 2 vorne, X</translation>
    </message>
    <message>
        <source>Front area 2 Y</source>
        <translation>Bereich 2 vorne, Y</translation>
    </message>
    <message>
        <source>Front area 2 width</source>
        <translation>Bereich 2 vorne, Breite</translation>
    </message>
    <message>
        <source>Front area 2 length</source>
        <translation>Bereich 2 vorne, Länge</translation>
    </message>
    <message>
        <source>Front area 2 brightness</source>
        <translation>Bereich 2 vorne, Helligkeit</translation>
    </message>
    <message>
        <source>Front area 2 brightness stepper</source>
        <translation>Bereich 2 vorne, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Area &amp;3</source>
        <translation>Bereich &amp;3</translation>
    </message>
    <message>
        <source>Front area 3</source>
        <translation>Bereich 3 vorne</translation>
    </message>
    <message>
        <source>Front area 3 X</source>
        <translation>Bereich 3 vorne, X</translation>
    </message>
    <message>
        <source>Front area 3 Y</source>
        <translation>Bereich 3 vorne, Y</translation>
    </message>
    <message>
        <source>Front area 3 width</source>
        <translation>Bereich 3 vorne, Breite</translation>
    </message>
    <message>
        <source>Front area 3 length</source>
        <translation>Bereich 3 vorne, Länge</translation>
    </message>
    <message>
        <source>Front area 3 brightness</source>
        <translation>Bereich 3 vorne, Helligkeit</translation>
    </message>
    <message>
        <source>Front area 3 brightness stepper</source>
        <translation>Bereich 3 vorne, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Front halftone</source>
        <translation>Rasterung vorne</translation>
    </message>
    <message>
        <source>Area 1</source>
        <translation>Bereich 1</translation>
    </message>
    <message>
        <source>Back area 1</source>
        <translation>Bereich 1 hinten</translation>
    </message>
    <message>
        <source>Back area 1 X</source>
        <translation>Bereich 1 hinten, X</translation>
    </message>
    <message>
        <source>Back area 1 Y</source>
        <translation>Bereich 1 hinten, Y</translation>
    </message>
    <message>
        <source>Back area 1 width</source>
        <translation>Bereich 1 hinten, Breite</translation>
    </message>
    <message>
        <source>Back area 1 length</source>
        <translation>Bereich 1 hinten, Länge</translation>
    </message>
    <message>
        <source>Back area 1 brightness</source>
        <translation>Bereich 1 hinten, Helligkeit</translation>
    </message>
    <message>
        <source>Back area 1 brightness stepper</source>
        <translation>Bereich 1 hinten, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Area 2</source>
        <translation>Bereich 2</translation>
    </message>
    <message>
        <source>Back area 2</source>
        <translation>Bereich 2 hinten</translation>
    </message>
    <message>
        <source>Back area 2 X</source>
        <translation>Bereich 2 hinten, X</translation>
    </message>
    <message>
        <source>Back area 2 Y</source>
        <translation>Bereich 2 hinten, Y</translation>
    </message>
    <message>
        <source>Back area 2 width</source>
        <translation>Bereich 2 hinten, Breite</translation>
    </message>
    <message>
        <source>Back area 2 length</source>
        <translation>Bereich 2 hinten, Länge</translation>
    </message>
    <message>
        <source>Back area 2 brightness</source>
        <translation>Bereich 2 hinten, Helligkeit</translation>
    </message>
    <message>
        <source>Back area 2 brightness stepper</source>
        <translation>Bereich 2 hinten, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Area 3</source>
        <translation>Bereich 3</translation>
    </message>
    <message>
        <source>Back area 3</source>
        <translation>Bereich 3 hinten</translation>
    </message>
    <message>
        <source>Back area 3 X</source>
        <translation>Bereich 3 hinten, X</translation>
    </message>
    <message>
        <source>Back area 3 Y</source>
        <translation>Bereich 3 hinten, Y</translation>
    </message>
    <message>
        <source>Back area 3 width</source>
        <translation>Bereich 3 hinten, Breite</translation>
    </message>
    <message>
        <source>Back area 3 length</source>
        <translation>Bereich 3 hinten, Länge</translation>
    </message>
    <message>
        <source>Back area 3 brightness</source>
        <translation>Bereich 3 hinten, Helligkeit</translation>
    </message>
    <message>
        <source>Back area 3 brightness stepper</source>
        <translation>Bereich 3 hinten, Helligkeit (Drehfeld)</translation>
    </message>
    <message>
        <source>Back halftone</source>
        <translation>Rasterung hinten</translation>
    </message>
</context>
<context>
    <name>TwainViewBasic</name>
    <message>
        <source>Basic</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Paper &amp;source:</source>
        <translation>&amp;Papierquelle:</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>Papierquelle</translation>
    </message>
    <message>
        <source>Paper si&amp;ze:</source>
        <translation>Papier&amp;format:</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>Papierformat</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Benutzerdefiniert...</translation>
    </message>
    <message>
        <source>Custom paper size</source>
        <translation>Benutzerdefiniertes Papierformat</translation>
    </message>
    <message>
        <source>&amp;Landscape</source>
        <translation>&amp;Querformat</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>Querformat</translation>
    </message>
    <message>
        <source>&amp;Image type:</source>
        <translation>Bild&amp;typ:</translation>
    </message>
    <message>
        <source>Image type</source>
        <translation>Bildtyp</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>&amp;Auflösung:</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>dpi</source>
        <translation>dpi</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>Automatisch &amp;zuschneiden</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>Automatisch zuschneiden</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>&amp;Schräglage korrigieren</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>Schräglage korrigieren</translation>
    </message>
</context>
<context>
    <name>TwainViewBinaryImage</name>
    <message>
        <source>Black and White</source>
        <translation>Schwarzweiß</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Seite:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorderseite</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Rückseite</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Werte für:</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>&amp;Rasterung:</translation>
    </message>
    <message>
        <source>Halftone</source>
        <translation>Rasterung</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Helligkeit:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Helligkeitswert</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Kontrast:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Kontrastwert</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>K&amp;antenbetonung:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Kantenbetonung</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Benutzerdefiniert...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Benutzerdefiniertes Gamma</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>B&amp;lindfarbe:</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>Blindfarbe</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Verarbeitung</translation>
    </message>
    <message>
        <source>D&amp;ynamic threshold:</source>
        <translation>&amp;Dynamischer Schwellenwert:</translation>
    </message>
    <message>
        <source>Dynamic threshold</source>
        <translation>Dynamischer Schwellenwert</translation>
    </message>
    <message>
        <source>Dynamic threshold mode</source>
        <translation>Modus für dynamischen Schwellenwert</translation>
    </message>
    <message>
        <source>&amp;Noise reduction:</source>
        <translation>Rausch&amp;unterdrückung:</translation>
    </message>
    <message>
        <source>Noise reduction</source>
        <translation>Rauschunterdrückung</translation>
    </message>
    <message>
        <source>Noise &amp;type:</source>
        <translation>Rausch&amp;typ:</translation>
    </message>
    <message>
        <source>Noise type</source>
        <translation>Rauschtyp</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>&amp;Weißwert:</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>Weißwert</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Rä&amp;nder entfernen</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Ränder entfernen</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>S&amp;chatten entfernen</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Schatten entfernen</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>L&amp;ochungen entfernen</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Lochungen entfernen</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>Bild s&amp;piegeln</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Bild spiegeln</translation>
    </message>
    <message>
        <source>&amp;Invert image</source>
        <translation>Bild &amp;invertieren</translation>
    </message>
    <message>
        <source>Invert image</source>
        <translation>Bild invertieren</translation>
    </message>
    <message>
        <source>Separate te&amp;xt and photos</source>
        <translation>Text und &amp;Fotos trennen</translation>
    </message>
    <message>
        <source>Separate text and photos</source>
        <translation>Text und Fotos trennen</translation>
    </message>
</context>
<context>
    <name>TwainViewColorImage</name>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Seite:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorderseite</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Rückseite</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Werte für:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Helligkeit:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Helligkeitswert</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Kontrast:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Kontrastwert</translation>
    </message>
    <message>
        <source>C&amp;hroma:</source>
        <translation>Sä&amp;ttigung:</translation>
    </message>
    <message>
        <source>Chroma</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Chroma value</source>
        <translation>Sättigungswert</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>K&amp;antenbetonung:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Kantenbetonung</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Benutzerdefiniert...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Benutzerdefiniertes Gamma</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Verarbeitung</translation>
    </message>
    <message>
        <source>Color &amp;matching:</source>
        <translation>&amp;Farbabgleich:</translation>
    </message>
    <message>
        <source>Color matching</source>
        <translation>Farbabgleich</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>Hohe Geschw&amp;indigkeit</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>Hohe Geschwindigkeit</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Rä&amp;nder entfernen</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Ränder entfernen</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>S&amp;chatten entfernen</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Schatten entfernen</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>L&amp;ochungen entfernen</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Lochungen entfernen</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>Bild s&amp;piegeln</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Bild spiegeln</translation>
    </message>
    <message>
        <source>Smoo&amp;th background</source>
        <translation>Hintergrund g&amp;lätten</translation>
    </message>
    <message>
        <source>Smooth background</source>
        <translation>Hintergrund glätten</translation>
    </message>
    <message>
        <source>Remove bac&amp;kground</source>
        <translation>Hintergrund &amp;entfernen</translation>
    </message>
    <message>
        <source>Remove background</source>
        <translation>Hintergrund entfernen</translation>
    </message>
</context>
<context>
    <name>TwainViewCommon</name>
    <message>
        <source>Image Processing</source>
        <translation>Bildverarbeitung</translation>
    </message>
    <message>
        <source>Cropping and deskew</source>
        <translation>Zuschneiden und Schräglage</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>Automatisch &amp;zuschneiden</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>Automatisch zuschneiden</translation>
    </message>
    <message>
        <source>Use the largest paper si&amp;ze</source>
        <translation>Größtes Papierformat &amp;verwenden</translation>
    </message>
    <message>
        <source>Use the largest paper size</source>
        <translation>Größtes Papierformat verwenden</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>&amp;Schräglage korrigieren</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>Schräglage korrigieren</translation>
    </message>
    <message>
        <source>Smoot&amp;h edges</source>
        <translation>&amp;Kanten glätten</translation>
    </message>
    <message>
        <source>Smooth edges</source>
        <translation>Kanten glätten</translation>
    </message>
    <message>
        <source>Automatic color detection</source>
        <translation>Automatische Farberkennung</translation>
    </message>
    <message>
        <source>Color &amp;pixels:</source>
        <translation>&amp;Farbpixel:</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0,01</translation>
    </message>
    <message>
        <source>Color pixel ratio</source>
        <translation>Farbpixelanteil</translation>
    </message>
    <message>
        <source>50.0</source>
        <translation>50,0</translation>
    </message>
    <message>
        <source>Color pixel ratio value</source>
        <translation>Farbpixelanteil, Wert</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>I&amp;gnore paper color</source>
        <translation>Papierfarbe &amp;ignorieren</translation>
    </message>
    <message>
        <source>Ignore paper color</source>
        <translation>Papierfarbe ignorieren</translation>
    </message>
    <message>
        <source>Automatic resolution</source>
        <translation>Automatische Auflösung</translation>
    </message>
    <message>
        <source>Binary &amp;image:</source>
        <translation>Schwarzweiß&amp;bild:</translation>
    </message>
    <message>
        <source>Binary image</source>
        <translation>Schwarzweißbild</translation>
    </message>
    <message>
        <source>Color:</source>
        <translation>Farbe:</translation>
    </message>
    <message>
        <source>300</source>
        <translation>300</translation>
    </message>
    <message>
        <source>dpi</source>
        <translation>dpi</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Add &amp;margin</source>
        <translation>&amp;Rand hinzufügen</translation>
    </message>
    <message>
        <source>Add margin</source>
        <translation>Rand hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Fit to page</source>
        <translation>An Seite &amp;anpassen</translation>
    </message>
    <message>
        <source>Fit to page</source>
        <translation>An Seite anpassen</translation>
    </message>
    <message>
        <source>Page le&amp;ngth control</source>
        <translation>Seiten&amp;längenkontrolle</translation>
    </message>
    <message>
        <source>Page length control</source>
        <translation>Seitenlängenkontrolle</translation>
    </message>
    <message>
        <source>Bac&amp;kground:</source>
        <translation>&amp;Hintergrund:</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>Bereinigung</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Rä&amp;nder entfernen</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Ränder entfernen</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>S&amp;chatten entfernen</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Schatten entfernen</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>L&amp;ochungen entfernen</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Lochungen entfernen</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>Bild s&amp;piegeln</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Bild spiegeln</translation>
    </message>
</context>
<context>
    <name>TwainViewControlSheet</name>
    <message>
        <source>Control Sheet</source>
        <translation>Steuerblatt</translation>
    </message>
    <message>
        <source>Separation sheets</source>
        <translation>Trennblätter</translation>
    </message>
    <message>
        <source>&amp;Detect separation sheets</source>
        <translation>Trennblätter &amp;erkennen</translation>
    </message>
    <message>
        <source>Detect separation sheets</source>
        <translation>Trennblätter erkennen</translation>
    </message>
    <message>
        <source>&amp;Skip separation sheet images</source>
        <translation>Trennblattbilder &amp;auslassen</translation>
    </message>
    <message>
        <source>Skip separation sheet images</source>
        <translation>Trennblattbilder auslassen</translation>
    </message>
</context>
<context>
    <name>TwainViewFeed</name>
    <message>
        <source>Feed</source>
        <translation>Einzug</translation>
    </message>
    <message>
        <source>Manual feed</source>
        <translation>Manueller Einzug</translation>
    </message>
    <message>
        <source>&amp;Manual feed:</source>
        <translation>&amp;Manueller Einzug:</translation>
    </message>
    <message>
        <source>&amp;Timeout:</source>
        <translation>&amp;Zeitlimit:</translation>
    </message>
    <message>
        <source>Timeout</source>
        <translation>Zeitlimit</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>&amp;Unlimited</source>
        <translation>&amp;Unbegrenzt</translation>
    </message>
    <message>
        <source>Unlimited timeout</source>
        <translation>Kein Zeitlimit</translation>
    </message>
    <message>
        <source>Double feed</source>
        <translation>Doppeleinzug</translation>
    </message>
    <message>
        <source>&amp;Detect double feed</source>
        <translation>&amp;Doppeleinzug erkennen</translation>
    </message>
    <message>
        <source>Detect double feed</source>
        <translation>Doppeleinzug erkennen</translation>
    </message>
    <message>
        <source>&amp;Sensitivity:</source>
        <translation>&amp;Empfindlichkeit:</translation>
    </message>
    <message>
        <source>Double feed sensitivity</source>
        <translation>Empfindlichkeit für Doppeleinzug</translation>
    </message>
    <message>
        <source>Feeding</source>
        <translation>Papierzufuhr</translation>
    </message>
    <message>
        <source>&amp;Pages:</source>
        <translation>&amp;Seiten:</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Alle</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>&amp;Limit to</source>
        <translation>&amp;Begrenzen auf</translation>
    </message>
    <message>
        <source>Limit to</source>
        <translation>Begrenzen auf</translation>
    </message>
    <message>
        <source>Page limit</source>
        <translation>Maximale Seitenzahl</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Look-a&amp;head:</source>
        <translation>&amp;Vorabeinzug:</translation>
    </message>
    <message>
        <source>Look-ahead feeding</source>
        <translation>Vorabeinzug</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
</context>
<context>
    <name>TwainViewGrayImage</name>
    <message>
        <source>Grayscale</source>
        <translation>Graustufen</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Seite:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorderseite</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Rückseite</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Werte für:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Helligkeit:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Helligkeitswert</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Kontrast:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Kontrastwert</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>K&amp;antenbetonung:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Kantenbetonung</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Benutzerdefiniert...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Benutzerdefiniertes Gamma</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>B&amp;lindfarbe:</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>Blindfarbe</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Verarbeitung</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>Hohe Geschw&amp;indigkeit</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>Hohe Geschwindigkeit</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>&amp;Weißwert:</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>Weißwert</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Rä&amp;nder entfernen</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Ränder entfernen</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>S&amp;chatten entfernen</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Schatten entfernen</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>L&amp;ochungen entfernen</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Lochungen entfernen</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>Bild s&amp;piegeln</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Bild spiegeln</translation>
    </message>
</context>
<context>
    <name>TwainViewImprinter</name>
    <message>
        <source>Imprinter</source>
        <translation>Imprinter</translation>
    </message>
    <message>
        <source>No imprinter settings.</source>
        <translation>Keine Imprinter-Einstellungen.</translation>
    </message>
</context>
<context>
    <name>TwainViewLayout</name>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>R&amp;otation:</source>
        <translation>&amp;Drehung:</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>0°</source>
        <translation>0°</translation>
    </message>
    <message>
        <source>90°</source>
        <translation>90°</translation>
    </message>
    <message>
        <source>180°</source>
        <translation>180°</translation>
    </message>
    <message>
        <source>270°</source>
        <translation>270°</translation>
    </message>
    <message>
        <source>D&amp;uplex binding:</source>
        <translation>D&amp;uplexbindung:</translation>
    </message>
    <message>
        <source>Duplex binding</source>
        <translation>Duplexbindung</translation>
    </message>
    <message>
        <source>Book (left/right)</source>
        <translation>Buch (links/rechts)</translation>
    </message>
    <message>
        <source>Calendar (top/bottom)</source>
        <translation>Kalender (oben/unten)</translation>
    </message>
    <message>
        <source>Double exposure</source>
        <translation>Seiten zusammenführen</translation>
    </message>
    <message>
        <source>Combine front and back into one &amp;image</source>
        <translation>Vorder- und Rückseite zu einem &amp;Bild zusammenführen</translation>
    </message>
    <message>
        <source>Combine front and back into one image</source>
        <translation>Vorder- und Rückseite zu einem Bild zusammenführen</translation>
    </message>
    <message>
        <source>Double exposure page order</source>
        <translation>Seitenreihenfolge beim Zusammenführen</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>Double exposure settings</source>
        <translation>Einstellungen zum Zusammenführen</translation>
    </message>
    <message>
        <source>Page separation</source>
        <translation>Seitentrennung</translation>
    </message>
    <message>
        <source>S&amp;plit each page in two</source>
        <translation>Jede Seite &amp;halbieren</translation>
    </message>
    <message>
        <source>Split each page in two</source>
        <translation>Jede Seite halbieren</translation>
    </message>
    <message>
        <source>Page separation page order</source>
        <translation>Seitenreihenfolge bei der Seitentrennung</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>Ei&amp;nstellungen...</translation>
    </message>
    <message>
        <source>Page separation settings</source>
        <translation>Einstellungen zur Seitentrennung</translation>
    </message>
    <message>
        <source>Blank pages</source>
        <translation>Leerseiten</translation>
    </message>
    <message>
        <source>Remove &amp;blank pages</source>
        <translation>&amp;Leerseiten entfernen</translation>
    </message>
    <message>
        <source>Remove blank pages</source>
        <translation>Leerseiten entfernen</translation>
    </message>
    <message>
        <source>Pixel r&amp;atio:</source>
        <translation>Pixel&amp;anteil:</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0,01</translation>
    </message>
    <message>
        <source>Blank page pixel ratio</source>
        <translation>Pixelanteil für Leerseiten</translation>
    </message>
    <message>
        <source>5.0</source>
        <translation>5,0</translation>
    </message>
    <message>
        <source>Blank page pixel ratio value</source>
        <translation>Pixelanteil für Leerseiten, Wert</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>S&amp;how result</source>
        <translation>Ergebnis an&amp;zeigen</translation>
    </message>
    <message>
        <source>Show result</source>
        <translation>Ergebnis anzeigen</translation>
    </message>
</context>
<context>
    <name>TwainViewPatchCode</name>
    <message>
        <source>Patch Code</source>
        <translation>Patchcode</translation>
    </message>
    <message>
        <source>No patch code settings.</source>
        <translation>Keine Patchcode-Einstellungen.</translation>
    </message>
</context>
</TS>
