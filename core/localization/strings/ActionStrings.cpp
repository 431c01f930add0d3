#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// clang-format off: a text a line, in the order of the languages
constexpr std::array actionRows{
    StringRow{"action.scan",
              {"Scan Now", "Analyser", "Jetzt scannen", "今すぐスキャン", "지금 스캔", "立即扫描", "立即掃描",
               "Analizar ahora"}},
    StringRow{"action.scanning",
              {"Scanning...", "Analyse en cours…", "Scan läuft\u00a0…", "スキャン中…", "스캔 중…", "正在扫描…",
               "正在掃描…", "Analizando…"}},
    StringRow{"action.clean",
              {"Clean Selected", "Nettoyer la sélection", "Auswahl aufräumen", "選択項目をクリーンアップ",
               "선택 항목 정리", "清理所选项", "清理所選項目", "Limpiar lo seleccionado"}},
    StringRow{"action.cleaning",
              {"Cleaning...", "Nettoyage en cours…", "Wird aufgeräumt\u00a0…", "クリーンアップ中…", "정리 중…",
               "正在清理…", "正在清理…", "Limpiando…"}},
    StringRow{"action.select_recommended",
              {"Select Recommended", "Sélectionner les éléments recommandés", "Empfohlenes auswählen", "推奨項目を選択",
               "추천 항목 선택", "选择推荐项", "選取建議項目", "Seleccionar lo recomendado"}},
    StringRow{"action.deselect_all",
              {"Deselect All", "Tout désélectionner", "Auswahl aufheben", "すべての選択を解除", "모두 선택 해제",
               "取消全选", "取消全選", "Deseleccionar todo"}},
    StringRow{"action.reveal_in_finder",
              {"Show in Folder", "Afficher dans le dossier", "Im Ordner anzeigen", "フォルダ内に表示", "폴더에서 보기",
               "在文件夹中显示", "在檔案夾中顯示", "Mostrar en la carpeta"}},
    StringRow{"action.undo",
              {"Undo Clean", "Annuler le nettoyage", "Aufräumen rückgängig machen", "クリーンアップを元に戻す",
               "정리 되돌리기", "撤销清理", "復原清理", "Deshacer la limpieza"}},
    StringRow{"action.restoring",
              {"Restoring...", "Restauration en cours…", "Wird wiederhergestellt\u00a0…", "復元中…", "복원 중…",
               "正在还原…", "正在還原…", "Restaurando…"}},
    StringRow{"action.cancel", {"Cancel", "Annuler", "Abbrechen", "キャンセル", "취소", "取消", "取消", "Cancelar"}},
    StringRow{"action.dry_run",
              {"Run Dry Run", "Lancer une simulation", "Probelauf ausführen", "テスト実行する", "모의 실행", "试运行",
               "試執行", "Ejecutar una simulación"}},
    StringRow{"action.confirm",
              {"Confirm & Apply", "Confirmer et appliquer", "Bestätigen und anwenden", "確認して適用", "확인 및 적용",
               "确认并应用", "確認並套用", "Confirmar y aplicar"}},
    StringRow{"action.grant_permissions",
              {"Grant Full Disk Access", "Autoriser l’accès complet au disque", "Festplattenvollzugriff erlauben",
               "フルディスクアクセスを許可", "전체 디스크 접근 허용", "授予完全磁盘访问权限", "授予完整磁碟存取權限",
               "Conceder acceso total al disco"}},
};
// clang-format on

}  // namespace

std::span<const StringRow> actionStrings() noexcept {
  return actionRows;
}

}  // namespace orvane
