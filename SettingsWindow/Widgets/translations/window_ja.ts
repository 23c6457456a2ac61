<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation>入力内容を表示</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>色を選択</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>選択…</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>ファイルを選択</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>その他…</translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation>ここから印刷したジョブ</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>ジョブをキャンセル</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation>%1（%3 のジョブ %2）：%4</translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation>%1 の既定値として(&amp;D)</translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation>印刷ダイアログに表示される名前を付けて(&amp;N)：</translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation>暗証番号とパスワードも保存(&amp;P)</translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation>設定の保存</translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation>設定の名前</translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation>confidential</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>保存(&amp;K)</translation>
    </message>
</context>
<context>
    <name>Keeping</name>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation>%1 の既定値として保存しました。</translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation>%1/%2 として保存しました。</translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation>設定の名前を変更</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>%1 の新しい名前：</translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation>%1 の名前を %2 に変更しました。</translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation>%1 の既定値を削除しますか？</translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation>設定 %1 を削除しますか？</translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation>設定を削除</translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation>削除しました。画面上の設定はそのままです。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation>印刷設定</translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation>プリンターを検索中…</translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation>保存(&amp;K)…</translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation>コマンドとしてコピー(&amp;Y)</translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation>今すぐ印刷(&amp;P)</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation>プリンター %1 は見つからなくなりました。設定した内容は、このウィンドウを開いている間は残ります。</translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation>jobfilter で動作するプリンターがありません。</translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation>（ほかの種類のプリンター：%L1）</translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation>プリンターの管理者に、このドライバーを使うキューを依頼するか、次のように追加してください：</translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation>jobfilter で動作するプリンター %1 はありません。</translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation>このプリンターには %1 という設定はありません。</translation>
    </message>
    <message>
        <source>This printer was changed on its server. What you had set was taken over.</source>
        <translation>このプリンターはサーバー上で変更されました。設定した内容は引き継がれました。</translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation>先に文書を開いてください</translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation>文書を開く</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation>PDF 文書 (*.pdf);;すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation>コマンドとしてコピー</translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation>暗証番号とパスワードをコマンドに入れますか？コマンドを見た人は読むことができます。</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>コマンドをクリップボードにコピーしました。</translation>
    </message>
    <message>
        <source>Reading the driver of %1 …</source>
        <translation>%1 のドライバーを読み込んでいます…</translation>
    </message>
    <message>
        <source>They count for every printer of the name %1, whatever server it is on.</source>
        <translation>%1 という名前のプリンターすべてに、サーバーに関係なく適用されます。</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation>ページを準備しています</translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation>透かしを付けられません</translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation>小冊子にできません</translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation>表紙を付けられません</translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation>文書を読み込めません：%1</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>文書が空です。</translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation>文書は PDF ではありません。</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>文書が壊れています。</translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation>文書を開くにはパスワードが必要です。</translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation>文書のページ数が多すぎるため、プレビューできません。</translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation>キューのプリンター記述を読み込めません：%1</translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation>ツールキットが正しくインストールされていません：%1</translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation>一時ファイルの場所がありません：%1</translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation>ページを描画できません。</translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation>プレビューのプログラムを起動できません：%1</translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation>文書のプレビューに必要なメモリーが多すぎます。</translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation>文書のプレビューに時間がかかりすぎます。</translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation>プレビューのプログラムが予期せず終了しました（%1）。</translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation>プレビューがありません：%1</translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation>表紙はジョブの用紙に印刷されます。PDF では給紙トレイを選べません。</translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation>このキューにはツールキットの指定がないため、透かし、小冊子、表紙なしで印刷されます。</translation>
    </message>
    <message>
        <source>Preparing the pages, step %L1</source>
        <translation>ページを準備しています（手順 %L1）</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation>文書を開く(&amp;O)…</translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation>前の用紙</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>次の用紙</translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation>表示中の用紙</translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation>裏返す(&amp;T)</translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation>用紙</translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation>停止しました。次に変更すると最初から始まります。</translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation>見本の文書</translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation>/ %L1</translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation>表表紙、表</translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation>表表紙、裏</translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation>裏表紙、表</translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation>裏表紙、裏</translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation>用紙 %L1、表</translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation>用紙 %L1、裏</translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation> · %1 から</translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation> · %1</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>停止(&amp;S)</translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation>待機中</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>印刷中</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>停止中</translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation>ジョブを受け付けません</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>プリンター</translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation>最初に使う設定</translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation>この設定の名前を変更(&amp;R)…</translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation>この設定を削除(&amp;M)…</translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation>プリンターを再検索(&amp;G)</translation>
    </message>
    <message>
        <source>More</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation>プリンター(&amp;R)：</translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation>最初の設定(&amp;G)：</translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation>プリンターの設定</translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation>自分の既定値</translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation>設定のページ</translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation>ここに修正が必要な項目があります</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation>jobfilter で動作するプリンターの機能を設定し、印刷結果のページを表示します。</translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation>最初に選ぶプリンターと、そのために保存した設定。</translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation>プリンター[/設定]</translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation>PDF ファイル。</translation>
    </message>
</context>
<context>
    <name>words</name>
    <message>
        <source>this computer</source>
        <translation>このコンピューター</translation>
    </message>
</context>
</TS>
