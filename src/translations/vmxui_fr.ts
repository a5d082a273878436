<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
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
        <translation>À propos</translation>
    </message>
    <message>
        <source>Driver version:</source>
        <translation>Version du pilote&#xa0;:</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Driver version</source>
        <translation>Version du pilote</translation>
    </message>
    <message>
        <source>Version information:</source>
        <translation>Informations de version&#xa0;:</translation>
    </message>
    <message>
        <source>Version information</source>
        <translation>Informations de version</translation>
    </message>
    <message>
        <source>Scanner:</source>
        <translation>Scanner&#xa0;:</translation>
    </message>
    <message>
        <source>Scanner</source>
        <translation>Scanner</translation>
    </message>
    <message>
        <source>Scanner version:</source>
        <translation>Version du scanner&#xa0;:</translation>
    </message>
    <message>
        <source>Scanner version</source>
        <translation>Version du scanner</translation>
    </message>
    <message>
        <source>Interface:</source>
        <translation>Interface&#xa0;:</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>Interface</translation>
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
        <translation>Personnaliser</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>&amp;Unité&#xa0;:</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unité</translation>
    </message>
    <message>
        <source>Border removal</source>
        <translation>Suppression des bords</translation>
    </message>
    <message>
        <source>&amp;Left:</source>
        <translation>&amp;Gauche&#xa0;:</translation>
    </message>
    <message>
        <source>Border removal left</source>
        <translation>Suppression des bords à gauche</translation>
    </message>
    <message>
        <source>&amp;Top:</source>
        <translation>&amp;Haut&#xa0;:</translation>
    </message>
    <message>
        <source>Border removal top</source>
        <translation>Suppression des bords en haut</translation>
    </message>
    <message>
        <source>&amp;Right:</source>
        <translation>&amp;Droite&#xa0;:</translation>
    </message>
    <message>
        <source>Border removal right</source>
        <translation>Suppression des bords à droite</translation>
    </message>
    <message>
        <source>&amp;Bottom:</source>
        <translation>&amp;Bas&#xa0;:</translation>
    </message>
    <message>
        <source>Border removal bottom</source>
        <translation>Suppression des bords en bas</translation>
    </message>
    <message>
        <source>Shadow removal</source>
        <translation>Suppression des ombres</translation>
    </message>
    <message>
        <source>L&amp;eft:</source>
        <translation>G&amp;auche&#xa0;:</translation>
    </message>
    <message>
        <source>Shadow removal left</source>
        <translation>Suppression des ombres à gauche</translation>
    </message>
    <message>
        <source>To&amp;p:</source>
        <translation>Hau&amp;t&#xa0;:</translation>
    </message>
    <message>
        <source>Shadow removal top</source>
        <translation>Suppression des ombres en haut</translation>
    </message>
    <message>
        <source>Ri&amp;ght:</source>
        <translation>Dr&amp;oite&#xa0;:</translation>
    </message>
    <message>
        <source>Shadow removal right</source>
        <translation>Suppression des ombres à droite</translation>
    </message>
    <message>
        <source>Botto&amp;m:</source>
        <translation>Ba&amp;s&#xa0;:</translation>
    </message>
    <message>
        <source>Shadow removal bottom</source>
        <translation>Suppression des ombres en bas</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Gamma personnalisé</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma&#xa0;:</translation>
    </message>
    <message>
        <source>Gamma name</source>
        <translation>Nom du gamma</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Enregistrer s&amp;ous...</translation>
    </message>
    <message>
        <source>Save gamma as</source>
        <translation>Enregistrer le gamma sous</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Delete gamma</source>
        <translation>Supprimer le gamma</translation>
    </message>
    <message>
        <source>Tone curves</source>
        <translation>Courbes de tonalité</translation>
    </message>
    <message>
        <source>Sample picture</source>
        <translation>Image d’exemple</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <source>Red gamma</source>
        <translation>Gamma rouge</translation>
    </message>
    <message>
        <source>Red gamma value</source>
        <translation>Valeur du gamma rouge</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Vert</translation>
    </message>
    <message>
        <source>Green gamma</source>
        <translation>Gamma vert</translation>
    </message>
    <message>
        <source>Green gamma value</source>
        <translation>Valeur du gamma vert</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>Blue gamma</source>
        <translation>Gamma bleu</translation>
    </message>
    <message>
        <source>Blue gamma value</source>
        <translation>Valeur du gamma bleu</translation>
    </message>
    <message>
        <source>&amp;Link green and blue to red</source>
        <translation>&amp;Lier le vert et le bleu au rouge</translation>
    </message>
    <message>
        <source>Link green and blue to red</source>
        <translation>Lier le vert et le bleu au rouge</translation>
    </message>
    <message>
        <source>Blac&amp;k point:</source>
        <translation>Point &amp;noir&#xa0;:</translation>
    </message>
    <message>
        <source>Black point</source>
        <translation>Point noir</translation>
    </message>
    <message>
        <source>Black point value</source>
        <translation>Valeur du point noir</translation>
    </message>
    <message>
        <source>&amp;White point:</source>
        <translation>Point &amp;blanc&#xa0;:</translation>
    </message>
    <message>
        <source>White point</source>
        <translation>Point blanc</translation>
    </message>
    <message>
        <source>White point value</source>
        <translation>Valeur du point blanc</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>TwDlgDoubleExposure</name>
    <message>
        <source>Double Exposure</source>
        <translation>Fusion recto verso</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>Ordre des pages</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>De &amp;gauche à droite</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>De gauche à droite</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>De &amp;droite à gauche</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>De droite à gauche</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>De &amp;haut en bas</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>De haut en bas</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>De &amp;bas en haut</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>De bas en haut</translation>
    </message>
    <message>
        <source>&amp;Paper size:</source>
        <translation>&amp;Format du papier&#xa0;:</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>Format du papier</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Paramètres de numérisation</translation>
    </message>
    <message>
        <source>Setting:</source>
        <translation>Réglage&#xa0;:</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Réglage</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Enregistrer...</translation>
    </message>
    <message>
        <source>Save setting</source>
        <translation>Enregistrer le réglage</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Delete setting</source>
        <translation>Supprimer le réglage</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>À propos...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Customize...</source>
        <translation>Personnaliser...</translation>
    </message>
    <message>
        <source>Customize</source>
        <translation>Personnaliser</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Par défaut</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>Rétablir les valeurs par défaut</translation>
    </message>
    <message>
        <source>Prescan</source>
        <translation>Prénumériser</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Numériser</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Séparation des pages</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>Ordre des pages</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>De &amp;gauche à droite</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>De gauche à droite</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>De &amp;droite à gauche</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>De droite à gauche</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>De &amp;haut en bas</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>De haut en bas</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>De &amp;bas en haut</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>De bas en haut</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Format de papier personnalisé</translation>
    </message>
    <message>
        <source>Custom paper sizes</source>
        <translation>Formats de papier personnalisés</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nom&#xa0;:</translation>
    </message>
    <message>
        <source>Paper name</source>
        <translation>Nom du format</translation>
    </message>
    <message>
        <source>Si&amp;ze:</source>
        <translation>&amp;Dimensions&#xa0;:</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Largeur</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Longueur</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unité</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save paper size</source>
        <translation>Enregistrer le format</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Delete paper size</source>
        <translation>Supprimer le format</translation>
    </message>
    <message>
        <source>Paper the scanner takes (width × length)</source>
        <translation>Papier accepté par le scanner (largeur × longueur)</translation>
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
        <translation>Chargeur&#xa0;:</translation>
    </message>
    <message>
        <source>Flatbed:</source>
        <translation>Vitre&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>TwDlgPreview</name>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Face</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Recto</translation>
    </message>
    <message>
        <source>Show the front page</source>
        <translation>Afficher le recto</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Verso</translation>
    </message>
    <message>
        <source>Show the back page</source>
        <translation>Afficher le verso</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>Mouse tool</source>
        <translation>Outil de la souris</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Sélection</translation>
    </message>
    <message>
        <source>Select, move and resize areas; drag outside an area to draw one</source>
        <translation>Sélectionnez, déplacez et redimensionnez les zones&#xa0;; faites glisser hors d’une zone pour en tracer une</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Main</translation>
    </message>
    <message>
        <source>Scroll the page by dragging it</source>
        <translation>Faites glisser la page pour la faire défiler</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Click to zoom in</source>
        <translation>Cliquez pour effectuer un zoom avant</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Click to zoom out</source>
        <translation>Cliquez pour effectuer un zoom arrière</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Ajuster</translation>
    </message>
    <message>
        <source>Fit the whole page into the window</source>
        <translation>Afficher toute la page dans la fenêtre</translation>
    </message>
    <message>
        <source>Find Page</source>
        <translation>Détecter la page</translation>
    </message>
    <message>
        <source>Set the main area to the document found on the prescan</source>
        <translation>Ajuster la zone principale au document détecté lors de la prénumérisation</translation>
    </message>
    <message>
        <source>Color ratio:</source>
        <translation>Taux de couleur&#xa0;:</translation>
    </message>
    <message>
        <source>-(%)</source>
        <translation>-(%)</translation>
    </message>
    <message>
        <source>Blank page ratio:</source>
        <translation>Taux de page blanche&#xa0;:</translation>
    </message>
</context>
<context>
    <name>TwDlgSaveSetting</name>
    <message>
        <source>Save Setting</source>
        <translation>Enregistrer le réglage</translation>
    </message>
    <message>
        <source>Setting name:</source>
        <translation>Nom du réglage&#xa0;:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Numérisation</translation>
    </message>
    <message>
        <source>Scanning...</source>
        <translation>Numérisation...</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Stop scanning</source>
        <translation>Arrêter la numérisation</translation>
    </message>
</context>
<context>
    <name>TwPaperSizeTableModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Dimensions</translation>
    </message>
</context>
<context>
    <name>TwainViewArea</name>
    <message>
        <source>Area</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>&amp;Unité&#xa0;:</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unité</translation>
    </message>
    <message>
        <source>Scan area</source>
        <translation>Zone de numérisation</translation>
    </message>
    <message>
        <source>&amp;X (front):</source>
        <translation>&amp;X (recto)&#xa0;:</translation>
    </message>
    <message>
        <source>X front</source>
        <translation>X recto</translation>
    </message>
    <message>
        <source>X (bac&amp;k):</source>
        <translation>X (&amp;verso)&#xa0;:</translation>
    </message>
    <message>
        <source>X back</source>
        <translation>X verso</translation>
    </message>
    <message>
        <source>&amp;Y:</source>
        <translation>&amp;Y&#xa0;:</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>&amp;Width:</source>
        <translation>&amp;Largeur&#xa0;:</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Largeur</translation>
    </message>
    <message>
        <source>Le&amp;ngth:</source>
        <translation>L&amp;ongueur&#xa0;:</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Longueur</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Face&#xa0;:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Face</translation>
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
        <translation>Recto</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Verso</translation>
    </message>
    <message>
        <source>Sub-areas</source>
        <translation>Sous-zones</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>&amp;Tramage&#xa0;:</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Area &amp;1</source>
        <translation>Zone &amp;1</translation>
    </message>
    <message>
        <source>Front area 1</source>
        <translation>Zone 1 du recto</translation>
    </message>
    <message>
        <source>Front area 1 X</source>
        <translation>Zone 1 du recto, X</translation>
    </message>
    <message>
        <source>Front area 1 Y</source>
        <translation>Zone 1 du recto, Y</translation>
    </message>
    <message>
        <source>Front area 1 width</source>
        <translation>Zone 1 du recto, largeur</translation>
    </message>
    <message>
        <source>Front area 1 length</source>
        <translation>Zone 1 du recto, longueur</translation>
    </message>
    <message>
        <source>Front area 1 brightness</source>
        <translation>Zone 1 du recto, luminosité</translation>
    </message>
    <message>
        <source>Front area 1 brightness stepper</source>
        <translation>Zone 1 du recto, flèches de luminosité</translation>
    </message>
    <message>
        <source>Area &amp;2</source>
        <translation>Zone &amp;2</translation>
    </message>
    <message>
        <source>Front area 2</source>
        <translation>Zone 2 du recto</translation>
    </message>
    <message>
        <source>Front area 2 X</source>
        <translation>Zone 2 du recto, X</translation>
    </message>
    <message>
        <source>Front area 2 Y</source>
        <translation>Zone 2 du recto, Y</translation>
    </message>
    <message>
        <source>Front area 2 width</source>
        <translation>Zone 2 du recto, largeur</translation>
    </message>
    <message>
        <source>Front area 2 length</source>
        <translation>Zone 2 du recto, longueur</translation>
    </message>
    <message>
        <source>Front area 2 brightness</source>
        <translation>Zone 2 du recto, luminosité</translation>
    </message>
    <message>
        <source>Front area 2 brightness stepper</source>
        <translation>Zone 2 du recto, flèches de luminosité</translation>
    </message>
    <message>
        <source>Area &amp;3</source>
        <translation>Zone &amp;3</translation>
    </message>
    <message>
        <source>Front area 3</source>
        <translation>Zone 3 du recto</translation>
    </message>
    <message>
        <source>Front area 3 X</source>
        <translation>Zone 3 du recto, X</translation>
    </message>
    <message>
        <source>Front area 3 Y</source>
        <translation>Zone 3 du recto, Y</translation>
    </message>
    <message>
        <source>Front area 3 width</source>
        <translation>Zone 3 du recto, largeur</translation>
    </message>
    <message>
        <source>Front area 3 length</source>
        <translation>Zone 3 du recto, longueur</translation>
    </message>
    <message>
        <source>Front area 3 brightness</source>
        <translation>Zone 3 du recto, luminosité</translation>
    </message>
    <message>
        <source>Front area 3 brightness stepper</source>
        <translation>Zone 3 du recto, flèches de luminosité</translation>
    </message>
    <message>
        <source>Front halftone</source>
        <translation>Tramage du recto</translation>
    </message>
    <message>
        <source>Area 1</source>
        <translation>Zone 1</translation>
    </message>
    <message>
        <source>Back area 1</source>
        <translation>Zone 1 du verso</translation>
    </message>
    <message>
        <source>Back area 1 X</source>
        <translation>Zone 1 du verso, X</translation>
    </message>
    <message>
        <source>Back area 1 Y</source>
        <translation>Zone 1 du verso, Y</translation>
    </message>
    <message>
        <source>Back area 1 width</source>
        <translation>Zone 1 du verso, largeur</translation>
    </message>
    <message>
        <source>Back area 1 length</source>
        <translation>Zone 1 du verso, longueur</translation>
    </message>
    <message>
        <source>Back area 1 brightness</source>
        <translation>Zone 1 du verso, luminosité</translation>
    </message>
    <message>
        <source>Back area 1 brightness stepper</source>
        <translation>Zone 1 du verso, flèches de luminosité</translation>
    </message>
    <message>
        <source>Area 2</source>
        <translation>Zone 2</translation>
    </message>
    <message>
        <source>Back area 2</source>
        <translation>Zone 2 du verso</translation>
    </message>
    <message>
        <source>Back area 2 X</source>
        <translation>Zone 2 du verso, X</translation>
    </message>
    <message>
        <source>Back area 2 Y</source>
        <translation>Zone 2 du verso, Y</translation>
    </message>
    <message>
        <source>Back area 2 width</source>
        <translation>Zone 2 du verso, largeur</translation>
    </message>
    <message>
        <source>Back area 2 length</source>
        <translation>Zone 2 du verso, longueur</translation>
    </message>
    <message>
        <source>Back area 2 brightness</source>
        <translation>Zone 2 du verso, luminosité</translation>
    </message>
    <message>
        <source>Back area 2 brightness stepper</source>
        <translation>Zone 2 du verso, flèches de luminosité</translation>
    </message>
    <message>
        <source>Area 3</source>
        <translation>Zone 3</translation>
    </message>
    <message>
        <source>Back area 3</source>
        <translation>Zone 3 du verso</translation>
    </message>
    <message>
        <source>Back area 3 X</source>
        <translation>Zone 3 du verso, X</translation>
    </message>
    <message>
        <source>Back area 3 Y</source>
        <translation>Zone 3 du verso, Y</translation>
    </message>
    <message>
        <source>Back area 3 width</source>
        <translation>Zone 3 du verso, largeur</translation>
    </message>
    <message>
        <source>Back area 3 length</source>
        <translation>Zone 3 du verso, longueur</translation>
    </message>
    <message>
        <source>Back area 3 brightness</source>
        <translation>Zone 3 du verso, luminosité</translation>
    </message>
    <message>
        <source>Back area 3 brightness stepper</source>
        <translation>Zone 3 du verso, flèches de luminosité</translation>
    </message>
    <message>
        <source>Back halftone</source>
        <translation>Tramage du verso</translation>
    </message>
</context>
<context>
    <name>TwainViewBasic</name>
    <message>
        <source>Basic</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Paper &amp;source:</source>
        <translation>&amp;Source du papier&#xa0;:</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>Source du papier</translation>
    </message>
    <message>
        <source>Paper si&amp;ze:</source>
        <translation>&amp;Format du papier&#xa0;:</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>Format du papier</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Personnaliser...</translation>
    </message>
    <message>
        <source>Custom paper size</source>
        <translation>Format de papier personnalisé</translation>
    </message>
    <message>
        <source>&amp;Landscape</source>
        <translation>P&amp;aysage</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>Paysage</translation>
    </message>
    <message>
        <source>&amp;Image type:</source>
        <translation>&amp;Type d’image&#xa0;:</translation>
    </message>
    <message>
        <source>Image type</source>
        <translation>Type d’image</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>&amp;Résolution&#xa0;:</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Résolution</translation>
    </message>
    <message>
        <source>dpi</source>
        <translation>dpi</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>Re&amp;cadrage automatique</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>Recadrage automatique</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>Re&amp;dresser</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>Redresser</translation>
    </message>
</context>
<context>
    <name>TwainViewBinaryImage</name>
    <message>
        <source>Black and White</source>
        <translation>Noir et blanc</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Face&#xa0;:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Face</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Recto</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Verso</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Recto verso</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Valeurs pour&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>&amp;Tramage&#xa0;:</translation>
    </message>
    <message>
        <source>Halftone</source>
        <translation>Tramage</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Luminosité&#xa0;:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Valeur de luminosité</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Contraste&#xa0;:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Valeur de contraste</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>&amp;Accentuation&#xa0;:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Accentuation</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma&#xa0;:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Personnaliser...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Gamma personnalisé</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>Suppression de co&amp;uleur&#xa0;:</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>Suppression de couleur</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>D&amp;ynamic threshold:</source>
        <translation>&amp;Seuil dynamique&#xa0;:</translation>
    </message>
    <message>
        <source>Dynamic threshold</source>
        <translation>Seuil dynamique</translation>
    </message>
    <message>
        <source>Dynamic threshold mode</source>
        <translation>Mode du seuil dynamique</translation>
    </message>
    <message>
        <source>&amp;Noise reduction:</source>
        <translation>&amp;Réduction du bruit&#xa0;:</translation>
    </message>
    <message>
        <source>Noise reduction</source>
        <translation>Réduction du bruit</translation>
    </message>
    <message>
        <source>Noise &amp;type:</source>
        <translation>T&amp;ype de bruit&#xa0;:</translation>
    </message>
    <message>
        <source>Noise type</source>
        <translation>Type de bruit</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>&amp;Niveau de blanc&#xa0;:</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>Niveau de blanc</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Supprimer les &amp;bords</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Supprimer les bords</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>Supprimer les &amp;ombres</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Supprimer les ombres</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>Supprimer les p&amp;erforations</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Supprimer les perforations</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>&amp;Image miroir</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Image miroir</translation>
    </message>
    <message>
        <source>&amp;Invert image</source>
        <translation>In&amp;verser l’image</translation>
    </message>
    <message>
        <source>Invert image</source>
        <translation>Inverser l’image</translation>
    </message>
    <message>
        <source>Separate te&amp;xt and photos</source>
        <translation>Séparer te&amp;xte et photos</translation>
    </message>
    <message>
        <source>Separate text and photos</source>
        <translation>Séparer texte et photos</translation>
    </message>
</context>
<context>
    <name>TwainViewColorImage</name>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Face&#xa0;:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Face</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Recto</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Verso</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Recto verso</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Valeurs pour&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Luminosité&#xa0;:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Valeur de luminosité</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Contraste&#xa0;:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Valeur de contraste</translation>
    </message>
    <message>
        <source>C&amp;hroma:</source>
        <translation>&amp;Saturation&#xa0;:</translation>
    </message>
    <message>
        <source>Chroma</source>
        <translation>Saturation</translation>
    </message>
    <message>
        <source>Chroma value</source>
        <translation>Valeur de saturation</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>&amp;Accentuation&#xa0;:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Accentuation</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma&#xa0;:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Personnaliser...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Gamma personnalisé</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>Color &amp;matching:</source>
        <translation>Correspondance des co&amp;uleurs&#xa0;:</translation>
    </message>
    <message>
        <source>Color matching</source>
        <translation>Correspondance des couleurs</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>&amp;Haute vitesse</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>Haute vitesse</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Supprimer les &amp;bords</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Supprimer les bords</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>Supprimer les &amp;ombres</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Supprimer les ombres</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>Supprimer les p&amp;erforations</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Supprimer les perforations</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>&amp;Image miroir</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Image miroir</translation>
    </message>
    <message>
        <source>Smoo&amp;th background</source>
        <translation>Lisser le fon&amp;d</translation>
    </message>
    <message>
        <source>Smooth background</source>
        <translation>Lisser le fond</translation>
    </message>
    <message>
        <source>Remove bac&amp;kground</source>
        <translation>Supprimer le fo&amp;nd</translation>
    </message>
    <message>
        <source>Remove background</source>
        <translation>Supprimer le fond</translation>
    </message>
</context>
<context>
    <name>TwainViewCommon</name>
    <message>
        <source>Image Processing</source>
        <translation>Traitement d’image</translation>
    </message>
    <message>
        <source>Cropping and deskew</source>
        <translation>Recadrage et redressement</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>Re&amp;cadrage automatique</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>Recadrage automatique</translation>
    </message>
    <message>
        <source>Use the largest paper si&amp;ze</source>
        <translation>Utiliser le plus grand &amp;format de papier</translation>
    </message>
    <message>
        <source>Use the largest paper size</source>
        <translation>Utiliser le plus grand format de papier</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>Re&amp;dresser</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>Redresser</translation>
    </message>
    <message>
        <source>Smoot&amp;h edges</source>
        <translation>&amp;Lisser les contours</translation>
    </message>
    <message>
        <source>Smooth edges</source>
        <translation>Lisser les contours</translation>
    </message>
    <message>
        <source>Automatic color detection</source>
        <translation>Détection automatique de la couleur</translation>
    </message>
    <message>
        <source>Color &amp;pixels:</source>
        <translation>&amp;Pixels de couleur&#xa0;:</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0,01</translation>
    </message>
    <message>
        <source>Color pixel ratio</source>
        <translation>Taux de pixels de couleur</translation>
    </message>
    <message>
        <source>50.0</source>
        <translation>50,0</translation>
    </message>
    <message>
        <source>Color pixel ratio value</source>
        <translation>Valeur du taux de pixels de couleur</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>I&amp;gnore paper color</source>
        <translation>I&amp;gnorer la couleur du papier</translation>
    </message>
    <message>
        <source>Ignore paper color</source>
        <translation>Ignorer la couleur du papier</translation>
    </message>
    <message>
        <source>Automatic resolution</source>
        <translation>Résolution automatique</translation>
    </message>
    <message>
        <source>Binary &amp;image:</source>
        <translation>&amp;Noir et blanc&#xa0;:</translation>
    </message>
    <message>
        <source>Binary image</source>
        <translation>Image noir et blanc</translation>
    </message>
    <message>
        <source>Color:</source>
        <translation>Couleur&#xa0;:</translation>
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
        <translation>Page</translation>
    </message>
    <message>
        <source>Add &amp;margin</source>
        <translation>Ajouter une &amp;marge</translation>
    </message>
    <message>
        <source>Add margin</source>
        <translation>Ajouter une marge</translation>
    </message>
    <message>
        <source>&amp;Fit to page</source>
        <translation>&amp;Ajuster à la page</translation>
    </message>
    <message>
        <source>Fit to page</source>
        <translation>Ajuster à la page</translation>
    </message>
    <message>
        <source>Page le&amp;ngth control</source>
        <translation>Contrôle de la long&amp;ueur de page</translation>
    </message>
    <message>
        <source>Page length control</source>
        <translation>Contrôle de la longueur de page</translation>
    </message>
    <message>
        <source>Bac&amp;kground:</source>
        <translation>A&amp;rrière-plan&#xa0;:</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Arrière-plan</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Noir</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>Nettoyage</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Supprimer les &amp;bords</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Supprimer les bords</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>Supprimer les &amp;ombres</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Supprimer les ombres</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>Supprimer les p&amp;erforations</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Supprimer les perforations</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>&amp;Image miroir</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Image miroir</translation>
    </message>
</context>
<context>
    <name>TwainViewControlSheet</name>
    <message>
        <source>Control Sheet</source>
        <translation>Feuille de contrôle</translation>
    </message>
    <message>
        <source>Separation sheets</source>
        <translation>Feuilles de séparation</translation>
    </message>
    <message>
        <source>&amp;Detect separation sheets</source>
        <translation>&amp;Détecter les feuilles de séparation</translation>
    </message>
    <message>
        <source>Detect separation sheets</source>
        <translation>Détecter les feuilles de séparation</translation>
    </message>
    <message>
        <source>&amp;Skip separation sheet images</source>
        <translation>&amp;Ignorer les images des feuilles de séparation</translation>
    </message>
    <message>
        <source>Skip separation sheet images</source>
        <translation>Ignorer les images des feuilles de séparation</translation>
    </message>
</context>
<context>
    <name>TwainViewFeed</name>
    <message>
        <source>Feed</source>
        <translation>Alimentation</translation>
    </message>
    <message>
        <source>Manual feed</source>
        <translation>Alimentation manuelle</translation>
    </message>
    <message>
        <source>&amp;Manual feed:</source>
        <translation>Alimentation &amp;manuelle&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Timeout:</source>
        <translation>&amp;Délai d’attente&#xa0;:</translation>
    </message>
    <message>
        <source>Timeout</source>
        <translation>Délai d’attente</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>secondes</translation>
    </message>
    <message>
        <source>&amp;Unlimited</source>
        <translation>&amp;Illimité</translation>
    </message>
    <message>
        <source>Unlimited timeout</source>
        <translation>Délai illimité</translation>
    </message>
    <message>
        <source>Double feed</source>
        <translation>Double alimentation</translation>
    </message>
    <message>
        <source>&amp;Detect double feed</source>
        <translation>Détecter la dou&amp;ble alimentation</translation>
    </message>
    <message>
        <source>Detect double feed</source>
        <translation>Détecter la double alimentation</translation>
    </message>
    <message>
        <source>&amp;Sensitivity:</source>
        <translation>&amp;Sensibilité&#xa0;:</translation>
    </message>
    <message>
        <source>Double feed sensitivity</source>
        <translation>Sensibilité de détection de double alimentation</translation>
    </message>
    <message>
        <source>Feeding</source>
        <translation>Chargement</translation>
    </message>
    <message>
        <source>&amp;Pages:</source>
        <translation>&amp;Pages&#xa0;:</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Toutes</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Toutes</translation>
    </message>
    <message>
        <source>&amp;Limit to</source>
        <translation>&amp;Limiter à</translation>
    </message>
    <message>
        <source>Limit to</source>
        <translation>Limiter à</translation>
    </message>
    <message>
        <source>Page limit</source>
        <translation>Nombre maximal de pages</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>pages</translation>
    </message>
    <message>
        <source>Look-a&amp;head:</source>
        <translation>Préc&amp;hargement&#xa0;:</translation>
    </message>
    <message>
        <source>Look-ahead feeding</source>
        <translation>Préchargement du papier</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Activé</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
</context>
<context>
    <name>TwainViewGrayImage</name>
    <message>
        <source>Grayscale</source>
        <translation>Niveaux de gris</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>&amp;Face&#xa0;:</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Face</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Recto</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Verso</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Recto verso</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>Valeurs pour&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>&amp;Luminosité&#xa0;:</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>Valeur de luminosité</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>&amp;Contraste&#xa0;:</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>Valeur de contraste</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>&amp;Accentuation&#xa0;:</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>Accentuation</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>&amp;Gamma&#xa0;:</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>&amp;Personnaliser...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>Gamma personnalisé</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>Suppression de co&amp;uleur&#xa0;:</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>Suppression de couleur</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>&amp;Haute vitesse</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>Haute vitesse</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>&amp;Niveau de blanc&#xa0;:</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>Niveau de blanc</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>Supprimer les &amp;bords</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>Supprimer les bords</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>Supprimer les &amp;ombres</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>Supprimer les ombres</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>Supprimer les p&amp;erforations</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>Supprimer les perforations</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>&amp;Image miroir</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>Image miroir</translation>
    </message>
</context>
<context>
    <name>TwainViewImprinter</name>
    <message>
        <source>Imprinter</source>
        <translation>Endosseur</translation>
    </message>
    <message>
        <source>No imprinter settings.</source>
        <translation>Aucun paramètre d’endosseur.</translation>
    </message>
</context>
<context>
    <name>TwainViewLayout</name>
    <message>
        <source>Layout</source>
        <translation>Mise en page</translation>
    </message>
    <message>
        <source>R&amp;otation:</source>
        <translation>R&amp;otation&#xa0;:</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Rotation</translation>
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
        <translation>&amp;Reliure&#xa0;:</translation>
    </message>
    <message>
        <source>Duplex binding</source>
        <translation>Reliure recto verso</translation>
    </message>
    <message>
        <source>Book (left/right)</source>
        <translation>Livre (gauche/droite)</translation>
    </message>
    <message>
        <source>Calendar (top/bottom)</source>
        <translation>Calendrier (haut/bas)</translation>
    </message>
    <message>
        <source>Double exposure</source>
        <translation>Fusion recto verso</translation>
    </message>
    <message>
        <source>Combine front and back into one &amp;image</source>
        <translation>Combiner recto et verso en une &amp;image</translation>
    </message>
    <message>
        <source>Combine front and back into one image</source>
        <translation>Combiner recto et verso en une image</translation>
    </message>
    <message>
        <source>Double exposure page order</source>
        <translation>Ordre des pages de la fusion recto verso</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>&amp;Paramètres...</translation>
    </message>
    <message>
        <source>Double exposure settings</source>
        <translation>Paramètres de la fusion recto verso</translation>
    </message>
    <message>
        <source>Page separation</source>
        <translation>Séparation des pages</translation>
    </message>
    <message>
        <source>S&amp;plit each page in two</source>
        <translation>&amp;Diviser chaque page en deux</translation>
    </message>
    <message>
        <source>Split each page in two</source>
        <translation>Diviser chaque page en deux</translation>
    </message>
    <message>
        <source>Page separation page order</source>
        <translation>Ordre des pages de la séparation des pages</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>Paramè&amp;tres...</translation>
    </message>
    <message>
        <source>Page separation settings</source>
        <translation>Paramètres de la séparation des pages</translation>
    </message>
    <message>
        <source>Blank pages</source>
        <translation>Pages blanches</translation>
    </message>
    <message>
        <source>Remove &amp;blank pages</source>
        <translation>Supprimer les pages &amp;blanches</translation>
    </message>
    <message>
        <source>Remove blank pages</source>
        <translation>Supprimer les pages blanches</translation>
    </message>
    <message>
        <source>Pixel r&amp;atio:</source>
        <translation>T&amp;aux de pixels&#xa0;:</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0,01</translation>
    </message>
    <message>
        <source>Blank page pixel ratio</source>
        <translation>Taux de pixels des pages blanches</translation>
    </message>
    <message>
        <source>5.0</source>
        <translation>5,0</translation>
    </message>
    <message>
        <source>Blank page pixel ratio value</source>
        <translation>Valeur du taux de pixels des pages blanches</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>S&amp;how result</source>
        <translation>Affic&amp;her le résultat</translation>
    </message>
    <message>
        <source>Show result</source>
        <translation>Afficher le résultat</translation>
    </message>
</context>
<context>
    <name>TwainViewPatchCode</name>
    <message>
        <source>Patch Code</source>
        <translation>Code patch</translation>
    </message>
    <message>
        <source>No patch code settings.</source>
        <translation>Aucun paramètre de code patch.</translation>
    </message>
</context>
</TS>
