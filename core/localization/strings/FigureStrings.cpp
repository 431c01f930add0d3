#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// clang-format off: a text a line, in the order of the languages
constexpr std::array figureRows{
    StringRow{"risk.safe", {"Safe", "Sans risque", "Unbedenklich", "安全", "안전", "安全", "安全", "Seguro"}},
    StringRow{"risk.review", {"Review", "À vérifier", "Prüfen", "要確認", "검토", "需检查", "需檢查", "Revisar"}},
    StringRow{"risk.manual", {"Manual", "Manuel", "Manuell", "手動", "수동", "手动", "手動", "Manual"}},
    StringRow{"risk.safe.desc",
              {"Safe to remove. Temporary caches, logs, or redundant installers.",
               "Suppression sans risque. Caches temporaires, journaux ou programmes d’installation superflus.",
               "Kann gefahrlos entfernt werden. Temporäre Zwischenspeicher, Protokolle oder überflüssige "
               "Installationsdateien.",
               "削除しても安全です。一時キャッシュ、ログ、不要なインストーラなど。",
               "삭제해도 안전합니다. 임시 캐시, 로그 또는 불필요한 설치 파일입니다.",
               "可放心移除。临时缓存、日志或多余的安装程序。", "可放心移除。暫存快取、記錄檔或多餘的安裝程式。",
               "Se puede quitar sin riesgo. Cachés temporales, registros o instaladores sobrantes."}},
    StringRow{
        "risk.review.desc",
        {"Look at it first. A large, old, or downloaded item that you may still need.",
         "À regarder d’abord. Un élément volumineux, ancien ou téléchargé dont vous avez peut-être encore besoin.",
         "Erst ansehen. Ein großes, altes oder heruntergeladenes Objekt, das du vielleicht noch brauchst.",
         "先に確認してください。大きい、古い、またはダウンロードした項目で、まだ必要かもしれません。",
         "먼저 확인하세요. 크거나 오래되었거나 다운로드한 항목으로 아직 필요할 수 있습니다.",
         "请先查看。较大、较旧或下载的项目，你可能仍然需要。", "請先查看。較大、較舊或下載的項目，你可能仍然需要。",
         "Míralo antes. Un elemento grande, antiguo o descargado que quizá aún necesites."}},
    StringRow{"risk.manual.desc",
              {"Information only. Protected or sensitive item that Orvane will never remove.",
               "À titre d’information. Élément protégé ou sensible qu’Orvane ne supprimera jamais.",
               "Nur zur Information. Ein geschütztes oder heikles Objekt, das Orvane niemals entfernt.",
               "情報の表示のみです。保護された、または慎重に扱うべき項目で、Orvane が削除することはありません。",
               "정보로만 표시됩니다. 보호되거나 민감한 항목으로 Orvane이 절대 삭제하지 않습니다.",
               "仅供参考。受保护或敏感的项目，Orvane 绝不会移除。", "僅供參考。受保護或敏感的項目，Orvane 絕不會移除。",
               "Solo informativo. Elemento protegido o sensible que Orvane nunca quitará."}},
    StringRow{"preview.current_free",
              {"Current Free Space", "Espace libre actuel", "Derzeit frei", "現在の空き容量", "현재 여유 공간",
               "当前可用空间", "目前可用空間", "Espacio libre actual"}},
    StringRow{"preview.selected_size",
              {"Selected Size", "Taille de la sélection", "Ausgewählt", "選択した容量", "선택한 크기", "所选大小",
               "所選大小", "Tamaño seleccionado"}},
    StringRow{"preview.projected_free",
              {"Projected Free Space", "Espace libre prévu", "Voraussichtlich frei", "クリーンアップ後の空き容量",
               "예상 여유 공간", "预计可用空间", "預計可用空間", "Espacio libre previsto"}},
    StringRow{"dashboard.reclaimable_now",
              {"Reclaimable Now", "Récupérable maintenant", "Jetzt freigebbar", "今すぐ解放可能", "지금 확보 가능",
               "现在可回收", "現在可回收", "Recuperable ahora"}},
    StringRow{"dashboard.lifetime_reclaimed",
              {"Lifetime Reclaimed", "Récupéré à ce jour", "Bisher freigegeben", "これまでに解放した容量",
               "지금까지 확보", "累计已回收", "累計已回收", "Recuperado hasta ahora"}},
    StringRow{"dashboard.disk_usage",
              {"Disk Usage", "Utilisation du disque", "Speicherbelegung", "ディスク使用量", "디스크 사용량",
               "磁盘使用情况", "磁碟使用量", "Uso del disco"}},
};
// clang-format on

}  // namespace

std::span<const StringRow> figureStrings() noexcept {
  return figureRows;
}

}  // namespace orvane
