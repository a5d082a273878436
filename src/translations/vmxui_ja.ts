<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
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
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Driver version:</source>
        <translation>ドライバーのバージョン:</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Driver version</source>
        <translation>ドライバーのバージョン</translation>
    </message>
    <message>
        <source>Version information:</source>
        <translation>バージョン情報:</translation>
    </message>
    <message>
        <source>Version information</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Scanner:</source>
        <translation>スキャナー:</translation>
    </message>
    <message>
        <source>Scanner</source>
        <translation>スキャナー</translation>
    </message>
    <message>
        <source>Scanner version:</source>
        <translation>スキャナーのバージョン:</translation>
    </message>
    <message>
        <source>Scanner version</source>
        <translation>スキャナーのバージョン</translation>
    </message>
    <message>
        <source>Interface:</source>
        <translation>インターフェイス:</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>インターフェイス</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>著作権</translation>
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
        <translation>カスタマイズ</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>単位(&amp;U):</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>単位</translation>
    </message>
    <message>
        <source>Border removal</source>
        <translation>枠消し</translation>
    </message>
    <message>
        <source>&amp;Left:</source>
        <translation>左(&amp;L):</translation>
    </message>
    <message>
        <source>Border removal left</source>
        <translation>枠消し (左)</translation>
    </message>
    <message>
        <source>&amp;Top:</source>
        <translation>上(&amp;T):</translation>
    </message>
    <message>
        <source>Border removal top</source>
        <translation>枠消し (上)</translation>
    </message>
    <message>
        <source>&amp;Right:</source>
        <translation>右(&amp;R):</translation>
    </message>
    <message>
        <source>Border removal right</source>
        <translation>枠消し (右)</translation>
    </message>
    <message>
        <source>&amp;Bottom:</source>
        <translation>下(&amp;B):</translation>
    </message>
    <message>
        <source>Border removal bottom</source>
        <translation>枠消し (下)</translation>
    </message>
    <message>
        <source>Shadow removal</source>
        <translation>影の除去</translation>
    </message>
    <message>
        <source>L&amp;eft:</source>
        <translation>左(&amp;E):</translation>
    </message>
    <message>
        <source>Shadow removal left</source>
        <translation>影の除去 (左)</translation>
    </message>
    <message>
        <source>To&amp;p:</source>
        <translation>上(&amp;P):</translation>
    </message>
    <message>
        <source>Shadow removal top</source>
        <translation>影の除去 (上)</translation>
    </message>
    <message>
        <source>Ri&amp;ght:</source>
        <translation>右(&amp;G):</translation>
    </message>
    <message>
        <source>Shadow removal right</source>
        <translation>影の除去 (右)</translation>
    </message>
    <message>
        <source>Botto&amp;m:</source>
        <translation>下(&amp;M):</translation>
    </message>
    <message>
        <source>Shadow removal bottom</source>
        <translation>影の除去 (下)</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>カスタムガンマ</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>ガンマ(&amp;G):</translation>
    </message>
    <message>
        <source>Gamma name</source>
        <translation>ガンマ名</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>名前を付けて保存(&amp;A)...</translation>
    </message>
    <message>
        <source>Save gamma as</source>
        <translation>ガンマに名前を付けて保存</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>削除(&amp;D)</translation>
    </message>
    <message>
        <source>Delete gamma</source>
        <translation>ガンマを削除</translation>
    </message>
    <message>
        <source>Tone curves</source>
        <translation>トーンカーブ</translation>
    </message>
    <message>
        <source>Sample picture</source>
        <translation>サンプル画像</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>赤</translation>
    </message>
    <message>
        <source>Red gamma</source>
        <translation>赤のガンマ</translation>
    </message>
    <message>
        <source>Red gamma value</source>
        <translation>赤のガンマ値</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>緑</translation>
    </message>
    <message>
        <source>Green gamma</source>
        <translation>緑のガンマ</translation>
    </message>
    <message>
        <source>Green gamma value</source>
        <translation>緑のガンマ値</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>青</translation>
    </message>
    <message>
        <source>Blue gamma</source>
        <translation>青のガンマ</translation>
    </message>
    <message>
        <source>Blue gamma value</source>
        <translation>青のガンマ値</translation>
    </message>
    <message>
        <source>&amp;Link green and blue to red</source>
        <translation>緑と青を赤に連動(&amp;L)</translation>
    </message>
    <message>
        <source>Link green and blue to red</source>
        <translation>緑と青を赤に連動</translation>
    </message>
    <message>
        <source>Blac&amp;k point:</source>
        <translation>ブラックポイント(&amp;K):</translation>
    </message>
    <message>
        <source>Black point</source>
        <translation>ブラックポイント</translation>
    </message>
    <message>
        <source>Black point value</source>
        <translation>ブラックポイントの値</translation>
    </message>
    <message>
        <source>&amp;White point:</source>
        <translation>ホワイトポイント(&amp;W):</translation>
    </message>
    <message>
        <source>White point</source>
        <translation>ホワイトポイント</translation>
    </message>
    <message>
        <source>White point value</source>
        <translation>ホワイトポイントの値</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>TwDlgDoubleExposure</name>
    <message>
        <source>Double Exposure</source>
        <translation>表裏の結合</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>ページ順</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>左から右(&amp;L)</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>左から右</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>右から左(&amp;R)</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>右から左</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>上から下(&amp;T)</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>上から下</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>下から上(&amp;B)</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>下から上</translation>
    </message>
    <message>
        <source>&amp;Paper size:</source>
        <translation>用紙サイズ(&amp;P):</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>用紙サイズ</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>スキャン設定</translation>
    </message>
    <message>
        <source>Setting:</source>
        <translation>設定名:</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>設定名</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source>Save setting</source>
        <translation>設定を保存</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Delete setting</source>
        <translation>設定を削除</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>バージョン情報...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Customize...</source>
        <translation>カスタマイズ...</translation>
    </message>
    <message>
        <source>Customize</source>
        <translation>カスタマイズ</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>既定値</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>既定値に戻す</translation>
    </message>
    <message>
        <source>Prescan</source>
        <translation>プレスキャン</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>スキャン</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>ページ分割</translation>
    </message>
    <message>
        <source>Page order</source>
        <translation>ページ順</translation>
    </message>
    <message>
        <source>&amp;Left to right</source>
        <translation>左から右(&amp;L)</translation>
    </message>
    <message>
        <source>Left to right</source>
        <translation>左から右</translation>
    </message>
    <message>
        <source>&amp;Right to left</source>
        <translation>右から左(&amp;R)</translation>
    </message>
    <message>
        <source>Right to left</source>
        <translation>右から左</translation>
    </message>
    <message>
        <source>&amp;Top to bottom</source>
        <translation>上から下(&amp;T)</translation>
    </message>
    <message>
        <source>Top to bottom</source>
        <translation>上から下</translation>
    </message>
    <message>
        <source>&amp;Bottom to top</source>
        <translation>下から上(&amp;B)</translation>
    </message>
    <message>
        <source>Bottom to top</source>
        <translation>下から上</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>カスタム用紙サイズ</translation>
    </message>
    <message>
        <source>Custom paper sizes</source>
        <translation>カスタム用紙サイズの一覧</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>名前(&amp;N):</translation>
    </message>
    <message>
        <source>Paper name</source>
        <translation>用紙名</translation>
    </message>
    <message>
        <source>Si&amp;ze:</source>
        <translation>サイズ(&amp;Z):</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>幅</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>長さ</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>単位</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save paper size</source>
        <translation>用紙サイズを保存</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>削除(&amp;D)</translation>
    </message>
    <message>
        <source>Delete paper size</source>
        <translation>用紙サイズを削除</translation>
    </message>
    <message>
        <source>Paper the scanner takes (width × length)</source>
        <translation>スキャナーで使用できる用紙 (幅 × 長さ)</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>Largest</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Feeder:</source>
        <translation>フィーダー:</translation>
    </message>
    <message>
        <source>Flatbed:</source>
        <translation>フラットベッド:</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>TwDlgPreview</name>
    <message>
        <source>Preview</source>
        <translation>プレビュー</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>面</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>表面</translation>
    </message>
    <message>
        <source>Show the front page</source>
        <translation>表面のページを表示します。</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>裏面</translation>
    </message>
    <message>
        <source>Show the back page</source>
        <translation>裏面のページを表示します。</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>Mouse tool</source>
        <translation>マウスツール</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>Select, move and resize areas; drag outside an area to draw one</source>
        <translation>領域の選択、移動、サイズ変更を行います。領域の外をドラッグすると、新しい領域を作成します。</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>手のひら</translation>
    </message>
    <message>
        <source>Scroll the page by dragging it</source>
        <translation>ドラッグしてページをスクロールします。</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>拡大</translation>
    </message>
    <message>
        <source>Click to zoom in</source>
        <translation>クリックして拡大します。</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>Click to zoom out</source>
        <translation>クリックして縮小します。</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>全体表示</translation>
    </message>
    <message>
        <source>Fit the whole page into the window</source>
        <translation>ページ全体をウィンドウに合わせて表示します。</translation>
    </message>
    <message>
        <source>Find Page</source>
        <translation>原稿を検出</translation>
    </message>
    <message>
        <source>Set the main area to the document found on the prescan</source>
        <translation>プレスキャンで検出した原稿にメイン領域を合わせます。</translation>
    </message>
    <message>
        <source>Color ratio:</source>
        <translation>カラー比率:</translation>
    </message>
    <message>
        <source>-(%)</source>
        <translation>-(%)</translation>
    </message>
    <message>
        <source>Blank page ratio:</source>
        <translation>白紙比率:</translation>
    </message>
</context>
<context>
    <name>TwDlgSaveSetting</name>
    <message>
        <source>Save Setting</source>
        <translation>設定の保存</translation>
    </message>
    <message>
        <source>Setting name:</source>
        <translation>設定名:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>スキャン中</translation>
    </message>
    <message>
        <source>Scanning...</source>
        <translation>スキャンしています...</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>Stop scanning</source>
        <translation>スキャンを中止</translation>
    </message>
</context>
<context>
    <name>TwPaperSizeTableModel</name>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>サイズ</translation>
    </message>
</context>
<context>
    <name>TwainViewArea</name>
    <message>
        <source>Area</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>単位(&amp;U):</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>単位</translation>
    </message>
    <message>
        <source>Scan area</source>
        <translation>スキャン領域</translation>
    </message>
    <message>
        <source>&amp;X (front):</source>
        <translation>X (表面)(&amp;X):</translation>
    </message>
    <message>
        <source>X front</source>
        <translation>X (表面)</translation>
    </message>
    <message>
        <source>X (bac&amp;k):</source>
        <translation>X (裏面)(&amp;K):</translation>
    </message>
    <message>
        <source>X back</source>
        <translation>X (裏面)</translation>
    </message>
    <message>
        <source>&amp;Y:</source>
        <translation>Y(&amp;Y):</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>&amp;Width:</source>
        <translation>幅(&amp;W):</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>幅</translation>
    </message>
    <message>
        <source>Le&amp;ngth:</source>
        <translation>長さ(&amp;N):</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>長さ</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>面(&amp;D):</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>面</translation>
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
        <translation>表面</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>裏面</translation>
    </message>
    <message>
        <source>Sub-areas</source>
        <translation>サブ領域</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>ハーフトーン(&amp;H):</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>明るさ</translation>
    </message>
    <message>
        <source>Area &amp;1</source>
        <translation>領域1(&amp;1)</translation>
    </message>
    <message>
        <source>Front area 1</source>
        <translation>表面の領域1</translation>
    </message>
    <message>
        <source>Front area 1 X</source>
        <translation>表面の領域1のX</translation>
    </message>
    <message>
        <source>Front area 1 Y</source>
        <translation>表面の領域1のY</translation>
    </message>
    <message>
        <source>Front area 1 width</source>
        <translation>表面の領域1の幅</translation>
    </message>
    <message>
        <source>Front area 1 length</source>
        <translation>表面の領域1の長さ</translation>
    </message>
    <message>
        <source>Front area 1 brightness</source>
        <translation>表面の領域1の明るさ</translation>
    </message>
    <message>
        <source>Front area 1 brightness stepper</source>
        <translation>表面の領域1の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Area &amp;2</source>
        <translation>領域2(&amp;2)</translation>
    </message>
    <message>
        <source>Front area 2</source>
        <translation>表面の領域2</translation>
    </message>
    <message>
        <source>Front area 2 X</source>
        <translation>表面の領域2のX</translation>
    </message>
    <message>
        <source>Front area 2 Y</source>
        <translation>表面の領域2のY</translation>
    </message>
    <message>
        <source>Front area 2 width</source>
        <translation>表面の領域2の幅</translation>
    </message>
    <message>
        <source>Front area 2 length</source>
        <translation>表面の領域2の長さ</translation>
    </message>
    <message>
        <source>Front area 2 brightness</source>
        <translation>表面の領域2の明るさ</translation>
    </message>
    <message>
        <source>Front area 2 brightness stepper</source>
        <translation>表面の領域2の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Area &amp;3</source>
        <translation>領域3(&amp;3)</translation>
    </message>
    <message>
        <source>Front area 3</source>
        <translation>表面の領域3</translation>
    </message>
    <message>
        <source>Front area 3 X</source>
        <translation>表面の領域3のX</translation>
    </message>
    <message>
        <source>Front area 3 Y</source>
        <translation>表面の領域3のY</translation>
    </message>
    <message>
        <source>Front area 3 width</source>
        <translation>表面の領域3の幅</translation>
    </message>
    <message>
        <source>Front area 3 length</source>
        <translation>表面の領域3の長さ</translation>
    </message>
    <message>
        <source>Front area 3 brightness</source>
        <translation>表面の領域3の明るさ</translation>
    </message>
    <message>
        <source>Front area 3 brightness stepper</source>
        <translation>表面の領域3の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Front halftone</source>
        <translation>表面のハーフトーン</translation>
    </message>
    <message>
        <source>Area 1</source>
        <translation>領域1</translation>
    </message>
    <message>
        <source>Back area 1</source>
        <translation>裏面の領域1</translation>
    </message>
    <message>
        <source>Back area 1 X</source>
        <translation>裏面の領域1のX</translation>
    </message>
    <message>
        <source>Back area 1 Y</source>
        <translation>裏面の領域1のY</translation>
    </message>
    <message>
        <source>Back area 1 width</source>
        <translation>裏面の領域1の幅</translation>
    </message>
    <message>
        <source>Back area 1 length</source>
        <translation>裏面の領域1の長さ</translation>
    </message>
    <message>
        <source>Back area 1 brightness</source>
        <translation>裏面の領域1の明るさ</translation>
    </message>
    <message>
        <source>Back area 1 brightness stepper</source>
        <translation>裏面の領域1の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Area 2</source>
        <translation>領域2</translation>
    </message>
    <message>
        <source>Back area 2</source>
        <translation>裏面の領域2</translation>
    </message>
    <message>
        <source>Back area 2 X</source>
        <translation>裏面の領域2のX</translation>
    </message>
    <message>
        <source>Back area 2 Y</source>
        <translation>裏面の領域2のY</translation>
    </message>
    <message>
        <source>Back area 2 width</source>
        <translation>裏面の領域2の幅</translation>
    </message>
    <message>
        <source>Back area 2 length</source>
        <translation>裏面の領域2の長さ</translation>
    </message>
    <message>
        <source>Back area 2 brightness</source>
        <translation>裏面の領域2の明るさ</translation>
    </message>
    <message>
        <source>Back area 2 brightness stepper</source>
        <translation>裏面の領域2の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Area 3</source>
        <translation>領域3</translation>
    </message>
    <message>
        <source>Back area 3</source>
        <translation>裏面の領域3</translation>
    </message>
    <message>
        <source>Back area 3 X</source>
        <translation>裏面の領域3のX</translation>
    </message>
    <message>
        <source>Back area 3 Y</source>
        <translation>裏面の領域3のY</translation>
    </message>
    <message>
        <source>Back area 3 width</source>
        <translation>裏面の領域3の幅</translation>
    </message>
    <message>
        <source>Back area 3 length</source>
        <translation>裏面の領域3の長さ</translation>
    </message>
    <message>
        <source>Back area 3 brightness</source>
        <translation>裏面の領域3の明るさ</translation>
    </message>
    <message>
        <source>Back area 3 brightness stepper</source>
        <translation>裏面の領域3の明るさの増減ボタン</translation>
    </message>
    <message>
        <source>Back halftone</source>
        <translation>裏面のハーフトーン</translation>
    </message>
</context>
<context>
    <name>TwainViewBasic</name>
    <message>
        <source>Basic</source>
        <translation>基本</translation>
    </message>
    <message>
        <source>Paper &amp;source:</source>
        <translation>給紙方法(&amp;S):</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>給紙方法</translation>
    </message>
    <message>
        <source>Paper si&amp;ze:</source>
        <translation>用紙サイズ(&amp;Z):</translation>
    </message>
    <message>
        <source>Paper size</source>
        <translation>用紙サイズ</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>カスタム(&amp;U)...</translation>
    </message>
    <message>
        <source>Custom paper size</source>
        <translation>カスタム用紙サイズ</translation>
    </message>
    <message>
        <source>&amp;Landscape</source>
        <translation>横向き(&amp;L)</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>横向き</translation>
    </message>
    <message>
        <source>&amp;Image type:</source>
        <translation>画像タイプ(&amp;I):</translation>
    </message>
    <message>
        <source>Image type</source>
        <translation>画像タイプ</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>解像度(&amp;R):</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>解像度</translation>
    </message>
    <message>
        <source>dpi</source>
        <translation>dpi</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>自動切り出し(&amp;C)</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>自動切り出し</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>傾き補正(&amp;D)</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>傾き補正</translation>
    </message>
</context>
<context>
    <name>TwainViewBinaryImage</name>
    <message>
        <source>Black and White</source>
        <translation>白黒</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>面(&amp;D):</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>面</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>表面</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>裏面</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>両面</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>表示中の面:</translation>
    </message>
    <message>
        <source>&amp;Halftone:</source>
        <translation>ハーフトーン(&amp;H):</translation>
    </message>
    <message>
        <source>Halftone</source>
        <translation>ハーフトーン</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>明るさ(&amp;B):</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>明るさ</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>明るさの値</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>コントラスト(&amp;C):</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>コントラスト</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>コントラストの値</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>輪郭強調(&amp;E):</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>輪郭強調</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>ガンマ(&amp;G):</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>ガンマ</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>カスタム(&amp;U)...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>カスタムガンマ</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>ドロップアウト(&amp;O):</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>ドロップアウト</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>処理</translation>
    </message>
    <message>
        <source>D&amp;ynamic threshold:</source>
        <translation>ダイナミックしきい値(&amp;Y):</translation>
    </message>
    <message>
        <source>Dynamic threshold</source>
        <translation>ダイナミックしきい値</translation>
    </message>
    <message>
        <source>Dynamic threshold mode</source>
        <translation>ダイナミックしきい値のモード</translation>
    </message>
    <message>
        <source>&amp;Noise reduction:</source>
        <translation>ノイズ除去(&amp;N):</translation>
    </message>
    <message>
        <source>Noise reduction</source>
        <translation>ノイズ除去</translation>
    </message>
    <message>
        <source>Noise &amp;type:</source>
        <translation>ノイズの種類(&amp;T):</translation>
    </message>
    <message>
        <source>Noise type</source>
        <translation>ノイズの種類</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>白レベル(&amp;W):</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>白レベル</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>オプション</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>枠消し(&amp;V)</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>枠消し</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>影を除去(&amp;S)</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>影を除去</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>パンチ穴を除去(&amp;L)</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>パンチ穴を除去</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>ミラー反転(&amp;R)</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>ミラー反転</translation>
    </message>
    <message>
        <source>&amp;Invert image</source>
        <translation>白黒反転(&amp;I)</translation>
    </message>
    <message>
        <source>Invert image</source>
        <translation>白黒反転</translation>
    </message>
    <message>
        <source>Separate te&amp;xt and photos</source>
        <translation>文字と写真を分離(&amp;X)</translation>
    </message>
    <message>
        <source>Separate text and photos</source>
        <translation>文字と写真を分離</translation>
    </message>
</context>
<context>
    <name>TwainViewColorImage</name>
    <message>
        <source>Color</source>
        <translation>カラー</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>面(&amp;D):</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>面</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>表面</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>裏面</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>両面</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>表示中の面:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>明るさ(&amp;B):</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>明るさ</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>明るさの値</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>コントラスト(&amp;C):</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>コントラスト</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>コントラストの値</translation>
    </message>
    <message>
        <source>C&amp;hroma:</source>
        <translation>彩度(&amp;H):</translation>
    </message>
    <message>
        <source>Chroma</source>
        <translation>彩度</translation>
    </message>
    <message>
        <source>Chroma value</source>
        <translation>彩度の値</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>輪郭強調(&amp;E):</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>輪郭強調</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>ガンマ(&amp;G):</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>ガンマ</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>カスタム(&amp;U)...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>カスタムガンマ</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>処理</translation>
    </message>
    <message>
        <source>Color &amp;matching:</source>
        <translation>カラーマッチング(&amp;M):</translation>
    </message>
    <message>
        <source>Color matching</source>
        <translation>カラーマッチング</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>高速(&amp;P)</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>高速</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>オプション</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>枠消し(&amp;V)</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>枠消し</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>影を除去(&amp;S)</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>影を除去</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>パンチ穴を除去(&amp;L)</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>パンチ穴を除去</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>ミラー反転(&amp;R)</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>ミラー反転</translation>
    </message>
    <message>
        <source>Smoo&amp;th background</source>
        <translation>背景を平滑化(&amp;T)</translation>
    </message>
    <message>
        <source>Smooth background</source>
        <translation>背景を平滑化</translation>
    </message>
    <message>
        <source>Remove bac&amp;kground</source>
        <translation>背景を除去(&amp;K)</translation>
    </message>
    <message>
        <source>Remove background</source>
        <translation>背景を除去</translation>
    </message>
</context>
<context>
    <name>TwainViewCommon</name>
    <message>
        <source>Image Processing</source>
        <translation>画像処理</translation>
    </message>
    <message>
        <source>Cropping and deskew</source>
        <translation>切り出しと傾き補正</translation>
    </message>
    <message>
        <source>Automatic &amp;cropping</source>
        <translation>自動切り出し(&amp;C)</translation>
    </message>
    <message>
        <source>Automatic cropping</source>
        <translation>自動切り出し</translation>
    </message>
    <message>
        <source>Use the largest paper si&amp;ze</source>
        <translation>最大の用紙サイズを使用(&amp;Z)</translation>
    </message>
    <message>
        <source>Use the largest paper size</source>
        <translation>最大の用紙サイズを使用</translation>
    </message>
    <message>
        <source>&amp;Deskew</source>
        <translation>傾き補正(&amp;D)</translation>
    </message>
    <message>
        <source>Deskew</source>
        <translation>傾き補正</translation>
    </message>
    <message>
        <source>Smoot&amp;h edges</source>
        <translation>エッジを滑らかにする(&amp;H)</translation>
    </message>
    <message>
        <source>Smooth edges</source>
        <translation>エッジを滑らかにする</translation>
    </message>
    <message>
        <source>Automatic color detection</source>
        <translation>カラー自動判別</translation>
    </message>
    <message>
        <source>Color &amp;pixels:</source>
        <translation>カラー画素(&amp;P):</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0.01</translation>
    </message>
    <message>
        <source>Color pixel ratio</source>
        <translation>カラー画素の比率</translation>
    </message>
    <message>
        <source>50.0</source>
        <translation>50.0</translation>
    </message>
    <message>
        <source>Color pixel ratio value</source>
        <translation>カラー画素の比率の値</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>I&amp;gnore paper color</source>
        <translation>用紙の色を無視(&amp;G)</translation>
    </message>
    <message>
        <source>Ignore paper color</source>
        <translation>用紙の色を無視</translation>
    </message>
    <message>
        <source>Automatic resolution</source>
        <translation>自動判別時の解像度</translation>
    </message>
    <message>
        <source>Binary &amp;image:</source>
        <translation>白黒画像(&amp;I):</translation>
    </message>
    <message>
        <source>Binary image</source>
        <translation>白黒画像</translation>
    </message>
    <message>
        <source>Color:</source>
        <translation>カラー:</translation>
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
        <translation>ページ</translation>
    </message>
    <message>
        <source>Add &amp;margin</source>
        <translation>余白を追加(&amp;M)</translation>
    </message>
    <message>
        <source>Add margin</source>
        <translation>余白を追加</translation>
    </message>
    <message>
        <source>&amp;Fit to page</source>
        <translation>ページに合わせる(&amp;F)</translation>
    </message>
    <message>
        <source>Fit to page</source>
        <translation>ページに合わせる</translation>
    </message>
    <message>
        <source>Page le&amp;ngth control</source>
        <translation>ページ長の制御(&amp;N)</translation>
    </message>
    <message>
        <source>Page length control</source>
        <translation>ページ長の制御</translation>
    </message>
    <message>
        <source>Bac&amp;kground:</source>
        <translation>背景(&amp;K):</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>White</source>
        <translation>白</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>黒</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>クリーンアップ</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>枠消し(&amp;V)</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>枠消し</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>影を除去(&amp;S)</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>影を除去</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>パンチ穴を除去(&amp;L)</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>パンチ穴を除去</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>ミラー反転(&amp;R)</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>ミラー反転</translation>
    </message>
</context>
<context>
    <name>TwainViewControlSheet</name>
    <message>
        <source>Control Sheet</source>
        <translation>コントロールシート</translation>
    </message>
    <message>
        <source>Separation sheets</source>
        <translation>区切りシート</translation>
    </message>
    <message>
        <source>&amp;Detect separation sheets</source>
        <translation>区切りシートを検出(&amp;D)</translation>
    </message>
    <message>
        <source>Detect separation sheets</source>
        <translation>区切りシートを検出</translation>
    </message>
    <message>
        <source>&amp;Skip separation sheet images</source>
        <translation>区切りシートの画像をスキップ(&amp;S)</translation>
    </message>
    <message>
        <source>Skip separation sheet images</source>
        <translation>区切りシートの画像をスキップ</translation>
    </message>
</context>
<context>
    <name>TwainViewFeed</name>
    <message>
        <source>Feed</source>
        <translation>給紙</translation>
    </message>
    <message>
        <source>Manual feed</source>
        <translation>手差し給紙</translation>
    </message>
    <message>
        <source>&amp;Manual feed:</source>
        <translation>手差し給紙(&amp;M):</translation>
    </message>
    <message>
        <source>&amp;Timeout:</source>
        <translation>タイムアウト(&amp;T):</translation>
    </message>
    <message>
        <source>Timeout</source>
        <translation>タイムアウト</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>秒</translation>
    </message>
    <message>
        <source>&amp;Unlimited</source>
        <translation>無制限(&amp;U)</translation>
    </message>
    <message>
        <source>Unlimited timeout</source>
        <translation>タイムアウトなし</translation>
    </message>
    <message>
        <source>Double feed</source>
        <translation>重送</translation>
    </message>
    <message>
        <source>&amp;Detect double feed</source>
        <translation>重送を検出(&amp;D)</translation>
    </message>
    <message>
        <source>Detect double feed</source>
        <translation>重送を検出</translation>
    </message>
    <message>
        <source>&amp;Sensitivity:</source>
        <translation>感度(&amp;S):</translation>
    </message>
    <message>
        <source>Double feed sensitivity</source>
        <translation>重送検出の感度</translation>
    </message>
    <message>
        <source>Feeding</source>
        <translation>給紙動作</translation>
    </message>
    <message>
        <source>&amp;Pages:</source>
        <translation>ページ数(&amp;P):</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>ページ数</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>すべて(&amp;A)</translation>
    </message>
    <message>
        <source>All</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>&amp;Limit to</source>
        <translation>上限(&amp;L)</translation>
    </message>
    <message>
        <source>Limit to</source>
        <translation>上限</translation>
    </message>
    <message>
        <source>Page limit</source>
        <translation>ページ数の上限</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>Look-a&amp;head:</source>
        <translation>先読み給紙(&amp;H):</translation>
    </message>
    <message>
        <source>Look-ahead feeding</source>
        <translation>先読み給紙</translation>
    </message>
    <message>
        <source>On</source>
        <translation>オン</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
</context>
<context>
    <name>TwainViewGrayImage</name>
    <message>
        <source>Grayscale</source>
        <translation>グレースケール</translation>
    </message>
    <message>
        <source>Si&amp;de:</source>
        <translation>面(&amp;D):</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>面</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>表面</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>裏面</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>両面</translation>
    </message>
    <message>
        <source>Values of:</source>
        <translation>表示中の面:</translation>
    </message>
    <message>
        <source>&amp;Brightness:</source>
        <translation>明るさ(&amp;B):</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>明るさ</translation>
    </message>
    <message>
        <source>Brightness value</source>
        <translation>明るさの値</translation>
    </message>
    <message>
        <source>&amp;Contrast:</source>
        <translation>コントラスト(&amp;C):</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>コントラスト</translation>
    </message>
    <message>
        <source>Contrast value</source>
        <translation>コントラストの値</translation>
    </message>
    <message>
        <source>&amp;Emphasis:</source>
        <translation>輪郭強調(&amp;E):</translation>
    </message>
    <message>
        <source>Emphasis</source>
        <translation>輪郭強調</translation>
    </message>
    <message>
        <source>&amp;Gamma:</source>
        <translation>ガンマ(&amp;G):</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>ガンマ</translation>
    </message>
    <message>
        <source>C&amp;ustom...</source>
        <translation>カスタム(&amp;U)...</translation>
    </message>
    <message>
        <source>Custom gamma</source>
        <translation>カスタムガンマ</translation>
    </message>
    <message>
        <source>Drop&amp;out:</source>
        <translation>ドロップアウト(&amp;O):</translation>
    </message>
    <message>
        <source>Dropout</source>
        <translation>ドロップアウト</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>処理</translation>
    </message>
    <message>
        <source>High s&amp;peed</source>
        <translation>高速(&amp;P)</translation>
    </message>
    <message>
        <source>High speed</source>
        <translation>高速</translation>
    </message>
    <message>
        <source>&amp;White level:</source>
        <translation>白レベル(&amp;W):</translation>
    </message>
    <message>
        <source>White level</source>
        <translation>白レベル</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>オプション</translation>
    </message>
    <message>
        <source>Remo&amp;ve borders</source>
        <translation>枠消し(&amp;V)</translation>
    </message>
    <message>
        <source>Remove borders</source>
        <translation>枠消し</translation>
    </message>
    <message>
        <source>Remove &amp;shadows</source>
        <translation>影を除去(&amp;S)</translation>
    </message>
    <message>
        <source>Remove shadows</source>
        <translation>影を除去</translation>
    </message>
    <message>
        <source>Remove punch ho&amp;les</source>
        <translation>パンチ穴を除去(&amp;L)</translation>
    </message>
    <message>
        <source>Remove punch holes</source>
        <translation>パンチ穴を除去</translation>
    </message>
    <message>
        <source>Mi&amp;rror image</source>
        <translation>ミラー反転(&amp;R)</translation>
    </message>
    <message>
        <source>Mirror image</source>
        <translation>ミラー反転</translation>
    </message>
</context>
<context>
    <name>TwainViewImprinter</name>
    <message>
        <source>Imprinter</source>
        <translation>インプリンター</translation>
    </message>
    <message>
        <source>No imprinter settings.</source>
        <translation>インプリンターの設定はありません。</translation>
    </message>
</context>
<context>
    <name>TwainViewLayout</name>
    <message>
        <source>Layout</source>
        <translation>レイアウト</translation>
    </message>
    <message>
        <source>R&amp;otation:</source>
        <translation>回転(&amp;O):</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>回転</translation>
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
        <translation>両面の綴じ方向(&amp;U):</translation>
    </message>
    <message>
        <source>Duplex binding</source>
        <translation>両面の綴じ方向</translation>
    </message>
    <message>
        <source>Book (left/right)</source>
        <translation>ブック (左右開き)</translation>
    </message>
    <message>
        <source>Calendar (top/bottom)</source>
        <translation>カレンダー (上下開き)</translation>
    </message>
    <message>
        <source>Double exposure</source>
        <translation>表裏の結合</translation>
    </message>
    <message>
        <source>Combine front and back into one &amp;image</source>
        <translation>表面と裏面を1つの画像に結合(&amp;I)</translation>
    </message>
    <message>
        <source>Combine front and back into one image</source>
        <translation>表面と裏面を1つの画像に結合</translation>
    </message>
    <message>
        <source>Double exposure page order</source>
        <translation>表裏の結合のページ順</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>設定(&amp;S)...</translation>
    </message>
    <message>
        <source>Double exposure settings</source>
        <translation>表裏の結合の設定</translation>
    </message>
    <message>
        <source>Page separation</source>
        <translation>ページ分割</translation>
    </message>
    <message>
        <source>S&amp;plit each page in two</source>
        <translation>各ページを2つに分割(&amp;P)</translation>
    </message>
    <message>
        <source>Split each page in two</source>
        <translation>各ページを2つに分割</translation>
    </message>
    <message>
        <source>Page separation page order</source>
        <translation>ページ分割のページ順</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>設定(&amp;T)...</translation>
    </message>
    <message>
        <source>Page separation settings</source>
        <translation>ページ分割の設定</translation>
    </message>
    <message>
        <source>Blank pages</source>
        <translation>白紙ページ</translation>
    </message>
    <message>
        <source>Remove &amp;blank pages</source>
        <translation>白紙ページを削除(&amp;B)</translation>
    </message>
    <message>
        <source>Remove blank pages</source>
        <translation>白紙ページを削除</translation>
    </message>
    <message>
        <source>Pixel r&amp;atio:</source>
        <translation>画素比率(&amp;A):</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0.01</translation>
    </message>
    <message>
        <source>Blank page pixel ratio</source>
        <translation>白紙判定の画素比率</translation>
    </message>
    <message>
        <source>5.0</source>
        <translation>5.0</translation>
    </message>
    <message>
        <source>Blank page pixel ratio value</source>
        <translation>白紙判定の画素比率の値</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>S&amp;how result</source>
        <translation>結果を表示(&amp;H)</translation>
    </message>
    <message>
        <source>Show result</source>
        <translation>結果を表示</translation>
    </message>
</context>
<context>
    <name>TwainViewPatchCode</name>
    <message>
        <source>Patch Code</source>
        <translation>パッチコード</translation>
    </message>
    <message>
        <source>No patch code settings.</source>
        <translation>パッチコードの設定はありません。</translation>
    </message>
</context>
</TS>
