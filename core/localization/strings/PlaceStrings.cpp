#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// Why a place of a program can go. "%1" is the program.
constexpr std::array placeRows{
    StringRow{"place.rebuilt",
              {"Rebuilt by %1 when needed", "Recréé par %1 au besoin", "Wird von %1 bei Bedarf neu angelegt",
               "必要なときに %1 が再作成します", "필요할 때 %1에서 다시 만듦", "需要时由 %1 重新生成",
               "需要時由 %1 重新產生", "%1 lo vuelve a crear si hace falta"}},
    StringRow{"place.file_manager",
              {"Rebuilt by the file manager when needed", "Recréé par le gestionnaire de fichiers au besoin",
               "Wird vom Dateimanager bei Bedarf neu angelegt", "必要なときにファイルマネージャが再作成します",
               "필요할 때 파일 관리자에서 다시 만듦", "需要时由文件管理器重新生成", "需要時由檔案管理程式重新產生",
               "El gestor de archivos lo vuelve a crear si hace falta"}},
    StringRow{"place.graphics_driver",
              {"Rebuilt by the graphics driver when needed", "Recréé par le pilote graphique au besoin",
               "Wird vom Grafiktreiber bei Bedarf neu angelegt", "必要なときにグラフィックスドライバが再作成します",
               "필요할 때 그래픽 드라이버에서 다시 만듦", "需要时由显卡驱动程序重新生成",
               "需要時由顯示卡驅動程式重新產生", "El controlador gráfico lo vuelve a crear si hace falta"}},
    StringRow{"place.desktop",
              {"Rebuilt by the desktop when needed", "Recréé par l’environnement de bureau au besoin",
               "Wird von der Desktopumgebung bei Bedarf neu angelegt", "必要なときにデスクトップ環境が再作成します",
               "필요할 때 데스크톱 환경에서 다시 만듦", "需要时由桌面环境重新生成", "需要時由桌面環境重新產生",
               "El entorno de escritorio lo vuelve a crear si hace falta"}},
    StringRow{"place.desktop_search",
              {"Rebuilt by the desktop's search when needed", "Recréé par la recherche du bureau au besoin",
               "Wird von der Suche des Desktops bei Bedarf neu angelegt", "必要なときにデスクトップ検索が再作成します",
               "필요할 때 데스크톱 검색에서 다시 만듦", "需要时由桌面搜索重新生成", "需要時由桌面搜尋重新產生",
               "La búsqueda del escritorio lo vuelve a crear si hace falta"}},
    StringRow{
        "place.downloaded",
        {"Downloaded again by %1 when needed", "Téléchargé à nouveau par %1 au besoin",
         "Wird von %1 bei Bedarf neu geladen", "必要なときに %1 が再ダウンロードします", "필요할 때 %1에서 다시 받음",
         "需要时由 %1 重新下载", "需要時由 %1 重新下載", "%1 lo vuelve a descargar si hace falta"}},
    StringRow{"place.long_download",
              {"Downloaded again by %1, which takes long", "Long à télécharger à nouveau pour %1",
               "Für %1 nur mit langem Download wieder zu haben", "%1 での再ダウンロードに時間がかかります",
               "%1에서 다시 받는 데 오래 걸림", "%1 重新下载需要很久", "%1 重新下載需要很久",
               "%1 tarda mucho en volver a descargarlo"}},
    StringRow{"place.slow_index",
              {"Rebuilt by %1, which takes long", "Long à reconstruire pour %1", "Für %1 nur langsam wieder aufzubauen",
               "%1 での再構築に時間がかかります", "%1에서 다시 만드는 데 오래 걸림", "%1 重新生成需要很久",
               "%1 重新產生需要很久", "%1 tarda mucho en volver a crearlo"}},
    StringRow{
        "place.own_builds",
        {"Downloaded again by %1, but for what was built here",
         "Téléchargé à nouveau par %1, sauf ce qui a été compilé ici", "Wird von %1 neu geladen, bis auf hier Gebautes",
         "%1 が再ダウンロードします（ここでビルドしたものは除く）", "%1에서 다시 받음. 여기서 빌드한 것은 제외",
         "由 %1 重新下载，在此构建的内容除外", "由 %1 重新下載，在此建置的內容除外",
         "%1 lo vuelve a descargar, salvo lo compilado aquí"}},
    StringRow{
        "place.offline_pages",
        {"Web pages keep data for offline use here (%1)", "Données hors ligne de pages web (%1)",
         "Offline-Daten von Webseiten (%1)", "ウェブページのオフラインデータ (%1)", "웹 페이지의 오프라인 데이터(%1)",
         "网页的离线数据（%1）", "網頁的離線資料（%1）", "Datos sin conexión de páginas web (%1)"}},
    StringRow{
        "place.server",
        {"Loaded again from the servers of %1", "Rechargé depuis les serveurs de %1",
         "Wird von den Servern von %1 neu geladen", "%1 のサーバから再取得されます", "%1 서버에서 다시 받아옴",
         "会从 %1 的服务器重新获取", "會從 %1 的伺服器重新取得", "Se vuelve a cargar desde los servidores de %1"}},
    StringRow{"place.unsaved",
              {"May hold unsaved work in %1", "Peut contenir du travail non enregistré dans %1",
               "Vielleicht mit ungesicherter Arbeit in %1", "%1 の未保存の作業を含む可能性があります",
               "%1의 저장하지 않은 작업이 있을 수 있음", "可能含有 %1 中未保存的内容", "可能含有 %1 中未儲存的內容",
               "Puede contener trabajo sin guardar en %1"}},
    StringRow{"place.offline_media",
              {"May hold music kept offline in %1", "Peut contenir la musique hors ligne de %1",
               "Vielleicht mit Offline-Musik von %1", "%1 のオフライン音楽を含む可能性があります",
               "%1의 오프라인 음악이 있을 수 있음", "可能含有 %1 的离线音乐", "可能含有 %1 的離線音樂",
               "Puede contener música sin conexión de %1"}},
    StringRow{"place.disposable",
              {"Kept by %1 where programs put what they can make again",
               "Gardé par %1 à l’endroit prévu pour ce que les programmes savent recréer",
               "Von %1 am Ort für das abgelegt, was Programme neu anlegen können",
               "%1 のデータ。プログラムが再作成できるものの場所にあります",
               "%1의 데이터. 프로그램이 다시 만들 수 있는 것을 두는 곳에 있음",
               "来自 %1，位于存放程序可重新生成内容的位置", "來自 %1，位於存放程式可重新產生內容的位置",
               "De %1, en el lugar de lo que los programas pueden volver a crear"}},
    StringRow{"place.unfinished",
              {"An unfinished download of %1", "Téléchargement inachevé de %1", "Unfertiger Download von %1",
               "%1 の未完了のダウンロード", "%1의 끝나지 않은 다운로드", "%1 未完成的下载", "%1 未完成的下載",
               "Descarga sin terminar de %1"}},
    StringRow{
        "place.old_log",
        {"An old record of %1 that nothing writes to any more", "Ancien journal de %1, dans lequel plus rien n’écrit",
         "Alte Aufzeichnung von %1, in die nichts mehr schreibt", "%1 の古い記録。もう書き込まれません",
         "%1의 오래된 기록. 더 이상 쓰이지 않음", "%1 的旧记录，不再写入", "%1 的舊記錄，不再寫入",
         "Registro antiguo de %1 en el que ya no se escribe"}},
    StringRow{
        "place.build.one",
        {"Built again from its project, which changed %1 day ago", "Recréé depuis son projet, modifié il y a %1 jour",
         "Wird aus seinem Projekt neu gebaut, das sich vor %1 Tag geändert hat",
         "プロジェクトから再ビルドされます。最終変更は %1 日前", "프로젝트에서 다시 빌드됨. %1일 전에 변경됨",
         "可从项目重新构建，项目于 %1 天前更改", "可從專案重新建置，專案於 %1 天前更改",
         "Se vuelve a compilar desde su proyecto, que cambió hace %1 día"}},
    StringRow{
        "place.build.other",
        {"Built again from its project, which changed %1 days ago", "Recréé depuis son projet, modifié il y a %1 jours",
         "Wird aus seinem Projekt neu gebaut, das sich vor %1 Tagen geändert hat",
         "プロジェクトから再ビルドされます。最終変更は %1 日前", "프로젝트에서 다시 빌드됨. %1일 전에 변경됨",
         "可从项目重新构建，项目于 %1 天前更改", "可從專案重新建置，專案於 %1 天前更改",
         "Se vuelve a compilar desde su proyecto, que cambió hace %1 días"}},
    StringRow{"place.busy",
              {"%1 is open and uses it", "%1 est ouvert et l’utilise", "%1 ist geöffnet und benutzt es",
               "%1 が開いていて使用中です", "%1이(가) 열려 있어 사용 중", "%1 已打开，正在使用", "%1 已開啟，正在使用",
               "%1 está abierto y lo usa"}},
};

}  // namespace

std::span<const StringRow> placeStrings() noexcept {
  return placeRows;
}

}  // namespace orvane
