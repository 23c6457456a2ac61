<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Model</name>
    <message>
        <source>A name is needed</source>
        <translation>名前が必要です</translation>
    </message>
    <message>
        <source>A name must not have blanks, quotes or any of / # \</source>
        <translation>名前に空白、引用符、/ # \ は使えません</translation>
    </message>
    <message>
        <source>A name must not have more than 127 letters</source>
        <translation>名前は 127 文字以内にしてください</translation>
    </message>
    <message>
        <source>A3</source>
        <translation>A3</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Above what is on the page</source>
        <translation>ページの内容の上</translation>
    </message>
    <message>
        <source>Absolute colorimetric</source>
        <translation>絶対的な色域を維持</translation>
    </message>
    <message>
        <source>Across the page, in percent from the left</source>
        <translation>ページの横位置（左からのパーセント）</translation>
    </message>
    <message>
        <source>Advanced colour settings</source>
        <translation>詳細な色設定</translation>
    </message>
    <message>
        <source>All colours</source>
        <translation>すべての色</translation>
    </message>
    <message>
        <source>All over the page</source>
        <translation>ページ全体</translation>
    </message>
    <message>
        <source>Along the page, in percent from below</source>
        <translation>ページの縦位置（下からのパーセント）</translation>
    </message>
    <message>
        <source>Angle in degrees, clockwise</source>
        <translation>角度（度、時計回り）</translation>
    </message>
    <message>
        <source>Another value</source>
        <translation>別の値</translation>
    </message>
    <message>
        <source>As given across and along the page</source>
        <translation>横位置と縦位置の指定どおり</translation>
    </message>
    <message>
        <source>As set at the printer</source>
        <translation>プリンターの設定どおり</translation>
    </message>
    <message>
        <source>As the job</source>
        <translation>ジョブと同じ</translation>
    </message>
    <message>
        <source>As wide as the page</source>
        <translation>ページの幅に合わせる</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>B4</source>
        <translation>B4</translation>
    </message>
    <message>
        <source>Back cover</source>
        <translation>裏表紙</translation>
    </message>
    <message>
        <source>Below what is on the page</source>
        <translation>ページの内容の下</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>白紙</translation>
    </message>
    <message>
        <source>Booklet</source>
        <translation>小冊子</translation>
    </message>
    <message>
        <source>Booklet of sheets</source>
        <translation>小冊子の用紙サイズ</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>下</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>Box name</source>
        <translation>ボックス名</translation>
    </message>
    <message>
        <source>Box number</source>
        <translation>ボックス番号</translation>
    </message>
    <message>
        <source>Box password</source>
        <translation>ボックスのパスワード</translation>
    </message>
    <message>
        <source>By a profile of one's own</source>
        <translation>独自のプロファイルで</translation>
    </message>
    <message>
        <source>By single profiles</source>
        <translation>個別のプロファイルで</translation>
    </message>
    <message>
        <source>By the chosen profile</source>
        <translation>選択したプロファイルで</translation>
    </message>
    <message>
        <source>By the printer</source>
        <translation>プリンターで</translation>
    </message>
    <message>
        <source>CMYK source profile</source>
        <translation>CMYK ソースプロファイル</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>キャンセルされました</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>中央</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>カラー</translation>
    </message>
    <message>
        <source>Colour matching</source>
        <translation>カラーマッチング</translation>
    </message>
    <message>
        <source>Colour matching, as told by programs</source>
        <translation>カラーマッチング（プログラムの指定）</translation>
    </message>
    <message>
        <source>Colour profile of the document, a file on the server</source>
        <translation>文書のカラープロファイル（サーバー上のファイル）</translation>
    </message>
    <message>
        <source>Colours that profiles apply to</source>
        <translation>プロファイルを適用する色</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>部数</translation>
    </message>
    <message>
        <source>Courier</source>
        <translation>Courier</translation>
    </message>
    <message>
        <source>Courier Bold</source>
        <translation>Courier Bold</translation>
    </message>
    <message>
        <source>Cover pages</source>
        <translation>表紙</translation>
    </message>
    <message>
        <source>Covers from the tray of the job</source>
        <translation>表紙をジョブの給紙元から給紙</translation>
    </message>
    <message>
        <source>Department code</source>
        <translation>部門コード</translation>
    </message>
    <message>
        <source>Device colours only</source>
        <translation>デバイスカラーのみ</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>対角線</translation>
    </message>
    <message>
        <source>Distance from the edges</source>
        <translation>端からの距離</translation>
    </message>
    <message>
        <source>Extended box password</source>
        <translation>拡張ボックスパスワード</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>サイズの調整</translation>
    </message>
    <message>
        <source>Folder in the box</source>
        <translation>ボックス内のフォルダー</translation>
    </message>
    <message>
        <source>Follows from “%1”</source>
        <translation>「%1」によって決まります</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>フォント</translation>
    </message>
    <message>
        <source>Front cover</source>
        <translation>表表紙</translation>
    </message>
    <message>
        <source>General</source>
        <translation>全般</translation>
    </message>
    <message>
        <source>Held</source>
        <translation>保留中</translation>
    </message>
    <message>
        <source>Helvetica</source>
        <translation>Helvetica</translation>
    </message>
    <message>
        <source>Helvetica Bold</source>
        <translation>Helvetica Bold</translation>
    </message>
    <message>
        <source>How far each folded sheet sticks out</source>
        <translation>折った用紙 1 枚ごとのずれ</translation>
    </message>
    <message>
        <source>In its own size</source>
        <translation>元のサイズ</translation>
    </message>
    <message>
        <source>Is too long</source>
        <translation>長すぎます</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左</translation>
    </message>
    <message>
        <source>Look the user's domain up in the directory</source>
        <translation>ユーザーのドメインをディレクトリで検索</translation>
    </message>
    <message>
        <source>Margin along the fold</source>
        <translation>折り目の余白</translation>
    </message>
    <message>
        <source>Margin at the other edges</source>
        <translation>ほかの端の余白</translation>
    </message>
    <message>
        <source>Media type</source>
        <translation>用紙の種類</translation>
    </message>
    <message>
        <source>Media type of the back cover</source>
        <translation>裏表紙の用紙の種類</translation>
    </message>
    <message>
        <source>Media type of the front cover</source>
        <translation>表表紙の用紙の種類</translation>
    </message>
    <message>
        <source>Must be %1 digits, and nothing else</source>
        <translation>数字 %1 桁だけにしてください</translation>
    </message>
    <message>
        <source>Must be %1 to %2 digits, and nothing else</source>
        <translation>数字 %1 ～ %2 桁だけにしてください</translation>
    </message>
    <message>
        <source>Must be 1, 3 or 4 numbers from 0 to 1 with commas between them</source>
        <translation>0 から 1 までの数を 1、3 または 4 個、コンマで区切ってください</translation>
    </message>
    <message>
        <source>Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)</source>
        <translation>10mm や 0.5in のような長さ、またはポイント数（1/72 インチ）にしてください</translation>
    </message>
    <message>
        <source>Must be a list of pages, as 2-5,8,10-</source>
        <translation>2-5,8,10- のようなページの一覧にしてください</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>数にしてください</translation>
    </message>
    <message>
        <source>Must be a number above 0</source>
        <translation>0 より大きい数にしてください</translation>
    </message>
    <message>
        <source>Must be a number from %1 to %2</source>
        <translation>%1 から %2 までの数にしてください</translation>
    </message>
    <message>
        <source>Must be a size, as 100x200mm</source>
        <translation>100x200mm のようなサイズにしてください</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>整数にしてください</translation>
    </message>
    <message>
        <source>Must be digits, and nothing else</source>
        <translation>数字だけにしてください</translation>
    </message>
    <message>
        <source>Must be the full path of a file</source>
        <translation>ファイルの絶対パスにしてください</translation>
    </message>
    <message>
        <source>Must have %1 characters</source>
        <translation>%1 文字にしてください</translation>
    </message>
    <message>
        <source>Must have %1 to %2 characters</source>
        <translation>%1 ～ %2 文字にしてください</translation>
    </message>
    <message>
        <source>Must not have tabs, line breaks or the like</source>
        <translation>タブや改行などは使えません</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>No booklet</source>
        <translation>小冊子にしない</translation>
    </message>
    <message>
        <source>No cover</source>
        <translation>表紙なし</translation>
    </message>
    <message>
        <source>No temporary file can be made: %1</source>
        <translation>一時ファイルを作成できません：%1</translation>
    </message>
    <message>
        <source>Not specified</source>
        <translation>指定なし</translation>
    </message>
    <message>
        <source>Not together with “%1”</source>
        <translation>「%1」とは併用できません</translation>
    </message>
    <message>
        <source>Not together with “%1”: %2</source>
        <translation>「%1」（%2）とは併用できません</translation>
    </message>
    <message>
        <source>On one side</source>
        <translation>片面</translation>
    </message>
    <message>
        <source>On the pages</source>
        <translation>対象ページ</translation>
    </message>
    <message>
        <source>Only with “%1”</source>
        <translation>「%1」がある場合のみ</translation>
    </message>
    <message>
        <source>Only with “%1”: %2</source>
        <translation>「%1」が %2 の場合のみ</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>出力プロファイル</translation>
    </message>
    <message>
        <source>PIN for private printing</source>
        <translation>機密印刷の暗証番号</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>用紙サイズ</translation>
    </message>
    <message>
        <source>Paper and printer</source>
        <translation>用紙とプリンター</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>給紙元</translation>
    </message>
    <message>
        <source>Paper source of the back cover</source>
        <translation>裏表紙の給紙元</translation>
    </message>
    <message>
        <source>Paper source of the front cover</source>
        <translation>表表紙の給紙元</translation>
    </message>
    <message>
        <source>Perceptual</source>
        <translation>知覚的</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>Print mode</source>
        <translation>印刷モード</translation>
    </message>
    <message>
        <source>Print when storing in a document box</source>
        <translation>文書ボックスへの保存時にも印刷</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>印刷中</translation>
    </message>
    <message>
        <source>Printing of the back cover</source>
        <translation>裏表紙の印刷</translation>
    </message>
    <message>
        <source>Printing of the front cover</source>
        <translation>表表紙の印刷</translation>
    </message>
    <message>
        <source>Private printing and document box</source>
        <translation>機密印刷と文書ボックス</translation>
    </message>
    <message>
        <source>Profile of one's own</source>
        <translation>独自のプロファイル</translation>
    </message>
    <message>
        <source>RGB source profile</source>
        <translation>RGB ソースプロファイル</translation>
    </message>
    <message>
        <source>Reads from left to right</source>
        <translation>左から右へ読む</translation>
    </message>
    <message>
        <source>Relative colorimetric</source>
        <translation>相対的な色域を維持</translation>
    </message>
    <message>
        <source>Rendering intent</source>
        <translation>レンダリングインテント</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>彩度</translation>
    </message>
    <message>
        <source>See-through</source>
        <translation>半透明</translation>
    </message>
    <message>
        <source>Sheets folded together, 0 for all</source>
        <translation>まとめて折る用紙の枚数（0 はすべて）</translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation>サイズ（ポイント）</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>停止中</translation>
    </message>
    <message>
        <source>Store in a document box</source>
        <translation>文書ボックスに保存</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>タブロイド</translation>
    </message>
    <message>
        <source>The document was not sent: %1</source>
        <translation>文書は送信されませんでした：%1</translation>
    </message>
    <message>
        <source>The driver of the printer %1 cannot be read: %2</source>
        <translation>プリンター %1 のドライバーを読み込めません：%2</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2</source>
        <translation>ファイル %1 を読み込めません：%2</translation>
    </message>
    <message>
        <source>The printer %1 has another driver now, one without this filter</source>
        <translation>プリンター %1 のドライバーは、このフィルターを使わない別のものになっています</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more</source>
        <translation>プリンター %1 は見つからなくなりました</translation>
    </message>
    <message>
        <source>The printer has it</source>
        <translation>プリンターに届きました</translation>
    </message>
    <message>
        <source>The server %1 does not answer</source>
        <translation>サーバー %1 が応答しません</translation>
    </message>
    <message>
        <source>The server %1 refuses: %2</source>
        <translation>サーバー %1 に拒否されました：%2</translation>
    </message>
    <message>
        <source>The server does not know the job any more</source>
        <translation>サーバーにこのジョブはもうありません</translation>
    </message>
    <message>
        <source>The settings cannot be kept in the file %1: %2. It is as it was</source>
        <translation>設定をファイル %1 に保存できません：%2。ファイルは元のままです</translation>
    </message>
    <message>
        <source>The user's domain</source>
        <translation>ユーザーのドメイン</translation>
    </message>
    <message>
        <source>There are no settings of the name %1</source>
        <translation>%1 という名前の設定はありません</translation>
    </message>
    <message>
        <source>There are settings of the name %1 already</source>
        <translation>%1 という名前の設定は既にあります</translation>
    </message>
    <message>
        <source>There is no home folder to keep settings in</source>
        <translation>設定を保存するホームフォルダーがありません</translation>
    </message>
    <message>
        <source>There is no such choice</source>
        <translation>そのような選択肢はありません</translation>
    </message>
    <message>
        <source>These settings are too long to be kept; a shorter text would do</source>
        <translation>設定が長すぎて保存できません。文字列を短くしてください</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; everybody on this computer can read it</source>
        <translation>ファイル %1 にそのまま保存され、このコンピューターの全員が読めます</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you and the administrator can read it</source>
        <translation>ファイル %1 にそのまま保存され、本人と管理者が読めます</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you, the administrator and the group %2 can read it</source>
        <translation>ファイル %1 にそのまま保存され、本人、管理者、グループ %2 が読めます</translation>
    </message>
    <message>
        <source>Times Bold</source>
        <translation>Times Bold</translation>
    </message>
    <message>
        <source>Times Roman</source>
        <translation>Times Roman</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>上</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>Turn landscape pages</source>
        <translation>横向きのページを回転</translation>
    </message>
    <message>
        <source>Two-sided</source>
        <translation>両面</translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation>US リーガル</translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation>US レター</translation>
    </message>
    <message>
        <source>User, where it is not you</source>
        <translation>ユーザー（本人でない場合）</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>待機中</translation>
    </message>
    <message>
        <source>Was not printed</source>
        <translation>印刷されませんでした</translation>
    </message>
    <message>
        <source>Was set with another program, under a name that this printer's driver has no choice for</source>
        <translation>このプリンターのドライバーに選択肢がない名前で、別のプログラムによって設定されています</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>透かし</translation>
    </message>
    <message>
        <source>Watermark and page</source>
        <translation>透かしの重ね順</translation>
    </message>
    <message>
        <source>Who prints</source>
        <translation>印刷する人</translation>
    </message>
    <message>
        <source>With [user], [title], [date], [time], [page], [pages] and [job-id] put in</source>
        <translation>[user]、[title]、[date]、[time]、[page]、[pages]、[job-id] を置き換える</translation>
    </message>
    <message>
        <source>Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]</source>
        <translation>角括弧の語は [user]、[title]、[job-id]、[date]、[time]、[page]、[pages] のいずれかにしてください</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>大きすぎます</translation>
    </message>
</context>
</TS>
