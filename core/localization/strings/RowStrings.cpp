#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// Actions on one row of a list, and the words of a run that is under way. A row a key, in the order of the
// languages.
constexpr std::array rowRows{
    StringRow{"look.preview",
              {"Quick Look", "Coup d’œil", "Kurzansicht", "クイックルック", "훑어보기", "快速查看", "快速查看",
               "Vistazo rápido"}},
    StringRow{"look.none",
              {"This kind of file has no preview.", "Ce type de fichier n’a pas d’aperçu.",
               "Diese Art von Datei hat keine Vorschau.", "この種類のファイルはプレビューできません。",
               "이 종류의 파일은 미리 볼 수 없습니다.", "此类文件没有预览。", "此類檔案沒有預覽。",
               "Este tipo de archivo no tiene vista previa."}},
    StringRow{"look.empty",
              {"This folder is empty.", "Ce dossier est vide.", "Dieser Ordner ist leer.", "このフォルダは空です。",
               "이 폴더는 비어 있습니다.", "此文件夹为空。", "此檔案夾為空。", "Esta carpeta está vacía."}},
    StringRow{"look.cut",
              {"Only the beginning is shown.", "Seul le début est affiché.", "Nur der Anfang ist zu sehen.",
               "先頭だけを表示しています。", "처음 부분만 표시됩니다.", "只显示开头部分。", "只顯示開頭部分。",
               "Solo se muestra el comienzo."}},
    StringRow{"shortcuts.look",
              {"Look at the item", "Voir l’élément", "Objekt ansehen", "項目を見る", "항목 보기", "查看项目",
               "檢視項目", "Ver el elemento"}},
    StringRow{"run.pause", {"Pause", "Suspendre", "Anhalten", "一時停止", "일시 정지", "暂停", "暫停", "Pausar"}},
    StringRow{"run.resume", {"Resume", "Reprendre", "Fortsetzen", "再開", "계속", "继续", "繼續", "Reanudar"}},
    StringRow{"run.paused",
              {"Paused", "En pause", "Angehalten", "一時停止中", "일시 정지됨", "已暂停", "已暫停", "En pausa"}},
    StringRow{"run.pausing",
              {"Pausing…", "Mise en pause…", "Wird angehalten\u00a0…", "一時停止しています…", "일시 정지하는 중…",
               "正在暂停…", "正在暫停…", "Pausando…"}},
    StringRow{"run.speed", {"%1/s", "%1/s", "%1/s", "%1/秒", "%1/초", "%1/秒", "%1/秒", "%1/s"}},
    StringRow{"run.seconds_left.one",
              {"%1 second left", "encore %1 seconde", "noch %1 Sekunde", "残り %1 秒", "%1초 남음", "还剩 %1 秒",
               "還剩 %1 秒", "queda %1 segundo"}},
    StringRow{"run.seconds_left.other",
              {"%1 seconds left", "encore %1 secondes", "noch %1 Sekunden", "残り %1 秒", "%1초 남음", "还剩 %1 秒",
               "還剩 %1 秒", "quedan %1 segundos"}},
    StringRow{"run.minutes_left.one",
              {"%1 minute left", "encore %1 minute", "noch %1 Minute", "残り %1 分", "%1분 남음", "还剩 %1 分钟",
               "還剩 %1 分鐘", "queda %1 minuto"}},
    StringRow{"run.minutes_left.other",
              {"%1 minutes left", "encore %1 minutes", "noch %1 Minuten", "残り %1 分", "%1분 남음", "还剩 %1 分钟",
               "還剩 %1 分鐘", "quedan %1 minutos"}},
    StringRow{"sort.reversed",
              {"reversed", "ordre inverse", "umgekehrt", "逆順", "역순", "倒序", "倒序", "orden inverso"}},
    StringRow{
        "dashboard.last_sums",
        {"The last scan, %1, found %2 that can go. Scan again to see it.",
         "La dernière analyse, %1, a trouvé %2 qui peuvent partir. Analysez à nouveau pour les voir.",
         "Der letzte Scan, %1, fand %2, die weg können. Ein neuer Scan zeigt sie.",
         "前回のスキャン（%1）で %2 が手放せると分かりました。もう一度スキャンすると表示されます。",
         "마지막 스캔(%1)에서 %2을(를) 비울 수 있었습니다. 다시 스캔하면 볼 수 있습니다.",
         "上次扫描（%1）发现 %2 可以移除。重新扫描即可查看。", "上次掃描（%1）發現 %2 可以移除。重新掃描即可檢視。",
         "El último análisis, %1, encontró %2 que pueden irse. Analiza de nuevo para verlo."}},
    StringRow{"duplicates.compare",
              {"Compare Side by Side", "Comparer côte à côte", "Nebeneinander vergleichen", "並べて比べる",
               "나란히 비교", "并排比较", "並排比較", "Comparar lado a lado"}},
    StringRow{"duplicates.modified",
              {"changed %1", "modifié le %1", "geändert %1", "変更：%1", "변경: %1", "修改于 %1", "修改於 %1",
               "modificado el %1"}},
    StringRow{
        "duplicates.same_content",
        {"The content is the same, byte for byte. The copies differ in name, place and dates.",
         "Le contenu est identique, octet par octet. Les copies diffèrent par le nom, l’emplacement et les dates.",
         "Der Inhalt ist Byte für Byte gleich. Die Kopien unterscheiden sich in Name, Ort und Daten.",
         "内容はバイト単位で同じです。名前、場所、日付だけが異なります。",
         "내용은 바이트 단위로 같습니다. 이름, 위치, 날짜만 다릅니다.", "内容逐字节相同，只有名称、位置和日期不同。",
         "內容逐位元組相同，只有名稱、位置和日期不同。",
         "El contenido es idéntico, byte a byte. Las copias difieren en nombre, lugar y fechas."}},
    StringRow{"duplicates.nothing_matches",
              {"No copy matches the search.", "Aucune copie ne correspond à la recherche.",
               "Keine Kopie passt zur Suche.", "検索に一致するコピーがありません。", "검색에 맞는 사본이 없습니다.",
               "没有符合搜索条件的副本。", "沒有符合搜尋條件的副本。", "Ninguna copia coincide con la búsqueda."}},
};

}  // namespace

std::span<const StringRow> rowStrings() noexcept {
  return rowRows;
}

}  // namespace orvane
