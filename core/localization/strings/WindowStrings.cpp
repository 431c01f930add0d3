#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// A row a key, in the order of the languages.
constexpr std::array rows{
    StringRow{"nav.language", {"Language", "Langue", "Sprache", "言語", "언어", "语言", "語言", "Idioma"}},
    StringRow{"sidebar.disk",
              {"Disk · %1 free of %2", "Libre : %1 sur %2", "Frei: %1 von %2", "空き容量 %1 / %2", "여유 공간 %1 / %2",
               "磁盘 · 共 %2，可用 %1", "磁碟 · 共 %2，可用 %1", "Libre: %1 de %2"}},
    StringRow{
        "sidebar.trash_frees_later",
        {"Moving to the Trash frees space once you empty it.", "La corbeille ne libère de l’espace qu’une fois vidée.",
         "Der Papierkorb gibt erst beim Leeren Platz frei.", "空き容量が増えるのは、ゴミ箱を空にしたときです。",
         "휴지통을 비워야 공간이 확보됩니다.", "清空废纸篓后才会释放空间。", "清空垃圾桶後才會釋出空間。",
         "La papelera libera espacio cuando la vacías."}},
    StringRow{"action.search", {"Search", "Rechercher", "Suchen", "検索", "검색", "搜索", "搜尋", "Buscar"}},
    StringRow{"action.clear_search",
              {"Clear Search", "Effacer la recherche", "Suche löschen", "検索を消去", "검색 지우기", "清除搜索",
               "清除搜尋", "Borrar la búsqueda"}},
    StringRow{"action.dismiss", {"Dismiss", "Fermer", "Ausblenden", "閉じる", "닫기", "关闭", "關閉", "Cerrar"}},
    StringRow{"action.ok", {"OK", "OK", "OK", "OK", "확인", "好", "好", "OK"}},
    StringRow{"action.open_trash",
              {"Open Trash", "Ouvrir la corbeille", "Papierkorb öffnen", "ゴミ箱を開く", "휴지통 열기", "打开废纸篓",
               "打開垃圾桶", "Abrir la papelera"}},
    StringRow{"tray.keep_tidy",
              {"Keep Folders Tidy Automatically", "Ranger les dossiers automatiquement",
               "Ordner automatisch aufgeräumt halten", "フォルダを自動で整頓する", "폴더 자동으로 정돈하기",
               "自动保持文件夹整洁", "自動保持檔案夾整潔", "Mantener ordenadas las carpetas automáticamente"}},
    StringRow{"tray.organize_now",
              {"Organize Now", "Ranger maintenant", "Jetzt ordnen", "今すぐ整頓", "지금 정돈", "立即整理", "立即整理",
               "Organizar ahora"}},
    StringRow{"tray.open",
              {"Open Orvane", "Ouvrir Orvane", "Orvane öffnen", "Orvane を開く", "Orvane 열기", "打开 Orvane",
               "打開 Orvane", "Abrir Orvane"}},
    StringRow{"tray.quit", {"Quit", "Quitter", "Beenden", "終了", "종료", "退出", "結束", "Salir"}},
    StringRow{"tidy.moved.one",
              {"Moved %1 new item to Recents and sorted %2. Undo anytime in History.",
               "%1 nouvel élément placé dans Recents, %2 classés. Annulation possible à tout moment dans l’historique.",
               "%1 neues Objekt nach Recents verschoben und %2 einsortiert. Im Verlauf jederzeit rückgängig zu machen.",
               "新しい項目 %1 個を Recents に移動し、%2 個を分類しました。履歴からいつでも元に戻せます。",
               "새 항목 %1개를 Recents로 옮기고 %2개를 분류했습니다. 기록에서 언제든지 되돌릴 수 있습니다.",
               "已将 %1 个新项目移到 Recents，并归类 %2 个。可随时在历史记录中撤销。",
               "已將 %1 個新項目移到 Recents，並歸類 %2 個。可隨時在歷史記錄中還原。",
               "%1 elemento nuevo movido a Recents y %2 clasificados. Puedes deshacerlo cuando quieras en Historial."}},
    StringRow{
        "tidy.moved.other",
        {"Moved %1 new items to Recents and sorted %2. Undo anytime in History.",
         "%1 nouveaux éléments placés dans Recents, %2 classés. Annulation possible à tout moment dans l’historique.",
         "%1 neue Objekte nach Recents verschoben und %2 einsortiert. Im Verlauf jederzeit rückgängig zu machen.",
         "新しい項目 %1 個を Recents に移動し、%2 個を分類しました。履歴からいつでも元に戻せます。",
         "새 항목 %1개를 Recents로 옮기고 %2개를 분류했습니다. 기록에서 언제든지 되돌릴 수 있습니다.",
         "已将 %1 个新项目移到 Recents，并归类 %2 个。可随时在历史记录中撤销。",
         "已將 %1 個新項目移到 Recents，並歸類 %2 個。可隨時在歷史記錄中還原。",
         "%1 elementos nuevos movidos a Recents y %2 clasificados. Puedes deshacerlo cuando quieras en Historial."}},
    StringRow{"tidy.nothing",
              {"Everything is tidy.", "Tout est rangé.", "Alles ist aufgeräumt.", "すべて片付いています。",
               "모두 정돈되어 있습니다.", "一切井然有序。", "一切井然有序。", "Todo está en orden."}},
    StringRow{"unit.zero", {"Zero KB", "Zéro ko", "Null KB", "0 KB", "0KB", "0 KB", "0 KB", "Cero KB"}},
    StringRow{"unit.byte.one",
              {"%1 byte", "%1 octet", "%1 Byte", "%1 バイト", "%1바이트", "%1 字节", "%1 位元組", "%1 byte"}},
    StringRow{"unit.byte.other",
              {"%1 bytes", "%1 octets", "%1 Byte", "%1 バイト", "%1바이트", "%1 字节", "%1 位元組", "%1 bytes"}},
    StringRow{"unit.KB", {"KB", "ko", "KB", "KB", "KB", "KB", "KB", "KB"}},
    StringRow{"unit.MB", {"MB", "Mo", "MB", "MB", "MB", "MB", "MB", "MB"}},
    StringRow{"unit.GB", {"GB", "Go", "GB", "GB", "GB", "GB", "GB", "GB"}},
    StringRow{"unit.TB", {"TB", "To", "TB", "TB", "TB", "TB", "TB", "TB"}},
    StringRow{"unit.PB", {"PB", "Po", "PB", "PB", "PB", "PB", "PB", "PB"}},
    StringRow{"unit.EB", {"EB", "Eo", "EB", "EB", "EB", "EB", "EB", "EB"}},
    StringRow{"count.zero_is_singular", {"no", "yes", "no", "no", "no", "no", "no", "no"}},
    StringRow{"count.items.one",
              {"%1 item", "%1 élément", "%1 Objekt", "%1 項目", "항목 %1개", "%1 个项目", "%1 個項目", "%1 elemento"}},
    StringRow{
        "count.items.other",
        {"%1 items", "%1 éléments", "%1 Objekte", "%1 項目", "항목 %1개", "%1 个项目", "%1 個項目", "%1 elementos"}},
    StringRow{
        "count.files.one",
        {"%1 file", "%1 fichier", "%1 Datei", "%1 ファイル", "파일 %1개", "%1 个文件", "%1 個檔案", "%1 archivo"}},
    StringRow{
        "count.files.other",
        {"%1 files", "%1 fichiers", "%1 Dateien", "%1 ファイル", "파일 %1개", "%1 个文件", "%1 個檔案", "%1 archivos"}},
    StringRow{"count.in_folders.one",
              {"%1 folder", "%1 dossier", "%1 Ordner", "%1 個のフォルダ", "폴더 %1개", "%1 个文件夹", "%1 個檔案夾",
               "%1 carpeta"}},
    StringRow{"count.in_folders.other",
              {"%1 folders", "%1 dossiers", "%1 Ordnern", "%1 個のフォルダ", "폴더 %1개", "%1 个文件夹", "%1 個檔案夾",
               "%1 carpetas"}},
    StringRow{"count.runs.one",
              {"%1 run", "%1 opération", "%1 Durchgang", "%1 回の実行", "%1회 실행", "%1 次运行", "%1 次執行",
               "%1 operación"}},
    StringRow{"count.runs.other",
              {"%1 runs", "%1 opérations", "%1 Durchgänge", "%1 回の実行", "%1회 실행", "%1 次运行", "%1 次執行",
               "%1 operaciones"}},
    StringRow{"count.rules.one",
              {"%1 rule", "%1 règle", "%1 Regel", "%1 件のルール", "규칙 %1개", "%1 条规则", "%1 條規則", "%1 regla"}},
    StringRow{
        "count.rules.other",
        {"%1 rules", "%1 règles", "%1 Regeln", "%1 件のルール", "규칙 %1개", "%1 条规则", "%1 條規則", "%1 reglas"}},
    StringRow{"count.of",
              {"%1 of %2", "%1 sur %2", "%1 von %2", "%2 中 %1", "%2 중 %1", "%1 / %2", "%1 / %2", "%1 de %2"}},
    StringRow{
        "onboarding.title",
        {"Welcome to Orvane", "Bienvenue dans Orvane", "Willkommen bei Orvane", "Orvane へようこそ",
         "Orvane에 오신 것을 환영합니다", "欢迎使用 Orvane", "歡迎使用 Orvane", "Te damos la bienvenida a Orvane"}},
    StringRow{"onboarding.finds_title",
              {"It finds what takes up space", "Il trouve ce qui prend de la place", "Findet, was Platz braucht",
               "容量を使っているものを見つけます", "공간을 차지하는 항목을 찾습니다", "找出占用空间的内容",
               "找出佔用空間的內容", "Encuentra lo que ocupa espacio"}},
    StringRow{"onboarding.finds_text",
              {"Caches, old installers, duplicates and large unused files, each with a label that says how safe it is "
               "to let go.",
               "Caches, anciens installateurs, doublons et gros fichiers inutilisés, chacun avec une mention qui "
               "indique s’il est sans risque de s’en séparer.",
               "Zwischenspeicher, alte Installationsdateien, Duplikate und große ungenutzte Dateien, jeweils mit dem "
               "Hinweis, wie unbedenklich sie sind.",
               "キャッシュ、古いインストーラ、重複、使われていない大きなファイルを、手放しても安全かどうかの表示ととも"
               "に一覧にします。",
               "캐시, 오래된 설치 파일, 중복 파일, 쓰지 않는 큰 파일을 찾아 지워도 안전한지 함께 표시합니다.",
               "缓存、旧安装程序、重复文件和长期不用的大文件，每一项都标明移除是否安全。",
               "快取、舊安裝程式、重複檔案和長期不用的大檔案，每一項都標明移除是否安全。",
               "Cachés, instaladores antiguos, duplicados y archivos grandes sin usar, cada uno con una etiqueta que "
               "indica si se puede quitar sin riesgo."}},
    StringRow{"onboarding.undo_title",
              {"Everything can be undone", "Tout peut être annulé", "Alles lässt sich rückgängig machen",
               "すべて元に戻せます", "모든 작업을 되돌릴 수 있습니다", "一切均可撤销", "一切皆可還原",
               "Todo se puede deshacer"}},
    StringRow{"onboarding.undo_text",
              {"What you approve goes to the Trash and is written to the history. One click brings it all back.",
               "Ce que vous approuvez va à la corbeille et est inscrit dans l’historique. Un clic suffit pour tout "
               "récupérer.",
               "Was du freigibst, kommt in den Papierkorb und wird im Verlauf vermerkt. Ein Klick holt alles zurück.",
               "承認したものはゴミ箱に移され、履歴に記録されます。ワンクリックですべて元に戻せます。",
               "승인한 항목은 휴지통으로 이동하고 기록에 남습니다. 한 번의 클릭으로 모두 되돌릴 수 있습니다.",
               "你确认的项目会移到废纸篓并写入历史记录，一键即可全部恢复。",
               "你確認的項目會移到垃圾桶並寫入歷史記錄，一鍵即可全部復原。",
               "Lo que apruebas va a la papelera y queda anotado en el historial. Con un clic lo recuperas todo."}},
    StringRow{"onboarding.never_title",
              {"It never deletes and never sends", "Il ne supprime et n’envoie jamais rien",
               "Löscht nie und verschickt nie etwas", "削除も送信もしません", "삭제하지도 전송하지도 않습니다",
               "绝不删除，绝不发送", "絕不刪除，絕不傳送", "Nunca borra ni envía nada"}},
    StringRow{"onboarding.never_text",
              {"Nothing is removed for good, nothing moves without your approval, and the contents of your files never "
               "leave this computer.",
               "Rien n’est effacé définitivement, rien ne bouge sans votre accord et le contenu de vos fichiers ne "
               "quitte jamais cet ordinateur.",
               "Nichts wird endgültig gelöscht, nichts wird ohne deine Zustimmung verschoben, und der Inhalt deiner "
               "Dateien verlässt diesen Rechner nie.",
               "完全に消去されるものはなく、承認なしに移動されるものもありません。ファイルの内容がこのコンピュータの外"
               "に出ることもありません。",
               "영구히 삭제되는 것도, 승인 없이 이동되는 것도 없으며 파일 내용은 이 컴퓨터를 벗어나지 않습니다.",
               "不会彻底删除任何内容，未经你同意不会移动任何内容，文件内容也绝不会离开这台电脑。",
               "不會徹底刪除任何內容，未經你同意不會移動任何內容，檔案內容也絕不會離開這台電腦。",
               "Nada se elimina para siempre, nada se mueve sin tu aprobación y el contenido de tus archivos nunca "
               "sale de este equipo."}},
    StringRow{"onboarding.start",
              {"Get Started", "Commencer", "Los geht’s", "はじめる", "시작하기", "开始使用", "開始使用", "Empezar"}},
};

}  // namespace

std::span<const StringRow> windowStrings() noexcept {
  return rows;
}

}  // namespace orvane
