#include "core/plans/glossary/Glossary.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array japaneseRows{
    GlossaryRow{"以上|超え|を超え|超の|超|より大きい|経過|経った", "over"},
    GlossaryRow{"少なくとも|最低", "at least"},
    GlossaryRow{"未満|以下|以内|より小さい|新しい|最近", "under"},
    GlossaryRow{"前の|前", "ago"},
    GlossaryRow{"削除|消去|消し|消す|消せ|消そ|消した|捨て|すて|取り除|除去|破棄|けす|けして", "delete"},
    GlossaryRow{"ゴミ箱に入れ|ゴミ箱へ移動|ゴミ箱に移動|ごみ箱に入れ|ごみ箱へ移動|ごみ箱に移動|ゴミ箱に捨て|"
                "ごみ箱に捨て|ゴミ箱へ",
                "delete"},
    GlossaryRow{"クリーンアップ|クリーン|掃除|クリア", "clean"},
    GlossaryRow{"空にし|空にする|空に|からにし|からにする", emptyOrClear},
    GlossaryRow{"解放|空け|空き", "free"},
    GlossaryRow{"片付け|片づけ|かたづけ", tidyOrClean},
    GlossaryRow{"整理|並べ替え|分類|仕分け|ソート|整頓", "sort"},
    GlossaryRow{"探し|探す|見つけ|検索|さがし|さがす", "find"},
    GlossaryRow{"見せ|表示|見たい|みせ", "show"},
    GlossaryRow{"一覧|リスト", "list"},
    GlossaryRow{"アンインストール", "uninstall"},
    GlossaryRow{"元に戻|復元|元へ戻|戻し|戻す|復旧", "restore"},
    GlossaryRow{"取り消|取消|やり直", "undo"},
    GlossaryRow{"スケジュール|予約|定期的", "schedule"},
    GlossaryRow{"毎日", "every day"},
    GlossaryRow{"毎週|週ごと", "every week"},
    GlossaryRow{"毎月|月ごと", "every month"},
    GlossaryRow{"自動", "automatically"},
    GlossaryRow{"残し|残す|取ってお|とってお|保存し|保持|守っ", "keep"},
    GlossaryRow{"しないで|しないように|さないで|さないように|てないで|するな|消すな|捨てるな|触らないで|触るな|"
                "ないでください|ないで|いけない|だめ|ダメ|駄目|禁止",
                "don't"},
    GlossaryRow{"消さないで|消さないように|消すな|削除しないで|削除するな|捨てないで|片付けないで", "don't delete"},
    GlossaryRow{"使わない|使っていない|使ってない|使われていない|未使用|不要な|いらない|要らない", "unused"},
    GlossaryRow{"以外|を除い|のぞい", "except"},
    GlossaryRow{"安全に|大丈夫", "safely"},
    GlossaryRow{"何が|何を|なにを|なにが|何|なに", "what"},
    GlossaryRow{"どの|どれ|どんな", "which"},
    GlossaryRow{"どう|どうやって|どのくらい|どれくらい|いくつ|いくら", "how"},
    GlossaryRow{"どこ|なぜ|どうして", "where"},
    GlossaryRow{"ですか|ますか|でしょうか|いいですか|できますか|か?", "?"},
    GlossaryRow{"スクリーンショット|スクショ|スクリーン ショット|画面キャプチャ|キャプチャ|画面写真", "screenshots"},
    GlossaryRow{"インストーラー|インストーラ|インストールファイル|ディスクイメージ|インストール用", "installers"},
    GlossaryRow{"キャッシュファイル|キャッシュ|一時ファイル", "caches"},
    GlossaryRow{"ログファイル|ログ|記録ファイル", "logs"},
    GlossaryRow{"ログイン", "login"},
    GlossaryRow{"ダウンロードフォルダ|ダウンロード", "downloads"},
    GlossaryRow{"デスクトップ|机の上", "desktop"},
    GlossaryRow{"書類|ドキュメント|文書", "documents"},
    GlossaryRow{"写真|画像|ピクチャ|ピクチャー|フォト", "pictures"},
    GlossaryRow{"動画|ビデオ|映画", "videos"},
    GlossaryRow{"音楽|ミュージック", "music"},
    GlossaryRow{"重複ファイル|重複|同じファイル|ダブり", "duplicates"},
    GlossaryRow{"ゴミ箱|ごみ箱", "trash"},
    GlossaryRow{"アプリケーション|アプリ|ソフト|プログラム", "app"},
    GlossaryRow{"ファイル", "files"},
    GlossaryRow{"フォルダー|フォルダ|ディレクトリ", "folder"},
    GlossaryRow{"ディスク", "disk"},
    GlossaryRow{"容量|スペース|空き容量|空き領域", "space"},
    GlossaryRow{"すべて|全て|全部|ぜんぶ|全", "all"},
    GlossaryRow{"古い|古く|昔の|ふるい", "old"},
    GlossaryRow{"以上前|より前|以前|以上経った|以上経過した|以上たった|以上経過|より古い", "older"},
    GlossaryRow{"名前|午前", ""},
    GlossaryRow{"大きな|大きい|大きく|巨大|でかい|一番大きい|大容量|重い", "large"},
    GlossaryRow{"日間|日", "day"},
    GlossaryRow{"週間|週", "week"},
    GlossaryRow{"か月|ヶ月|カ月|ケ月|箇月|個月|ヵ月", "month"},
    GlossaryRow{"年間|年", "year"},
    GlossaryRow{"今日|本日", "today"},
    GlossaryRow{"昨日|きのう", "yesterday"},
    GlossaryRow{"毎年", "every"},
    GlossaryRow{"先週|先月|去年|昨年", "last"},
    GlossaryRow{"半年|はんとし", "6 month"},
    GlossaryRow{"半月", "15 day"},
    GlossaryRow{"一年半", "18 month"},
    GlossaryRow{"gb|ギガバイト|ギガ", "gb"},
    GlossaryRow{"mb|メガバイト|メガ", "mb"},
    GlossaryRow{"いち", "1"},
    GlossaryRow{"数", "few"},
    GlossaryRow{
        "を|の|が|は|に|で|と|も|へ|や|から|より|まで|にある|ある|あった|して|する|した|し|て|た|い|る|ください|下さい|"
        "くれ|ほしい|欲しい|お願い|おねがい|します|ます|です|たい|もの|こと|など|ても|でも|いい|良い|よい|か|ね|よ|上|"
        "中|内|私|自分|mac|マック|パソコン|コンピュータ|中身|サイズ|とても|さ|ず|入れ|移動|移",
        ""},
};

}  // namespace

const GlossaryRows japaneseGlossary = japaneseRows;

}  // namespace orvane
