#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// clang-format off: a text a line, in the order of the languages
constexpr std::array shellRows{
    StringRow{"app.name", {"Orvane", "Orvane", "Orvane", "Orvane", "Orvane", "Orvane", "Orvane", "Orvane"}},
    StringRow{
        "app.tagline",
        {"Declutter your Mac without the effort.", "Désencombrez votre Mac sans aucun effort.",
         "Bringt mühelos Ordnung auf deinen Mac.", "手間をかけずに Mac をすっきり。", "힘들이지 않고 Mac을 깔끔하게.",
         "轻松整理你的 Mac。", "輕鬆整理你的 Mac。", "Despeja tu Mac sin esfuerzo."}},
    StringRow{"nav.overview", {"Overview", "Aperçu", "Übersicht", "概要", "개요", "概览", "概覽", "Resumen"}},
    StringRow{"nav.cleanup",
              {"Cleanup", "Nettoyage", "Aufräumen", "クリーンアップ", "정리", "清理", "清理", "Limpieza"}},
    StringRow{
        "nav.duplicates",
        {"Duplicates", "Doublons", "Duplikate", "重複ファイル", "중복 파일", "重复文件", "重複檔案", "Duplicados"}},
    StringRow{"nav.apps",
              {"Applications", "Applications", "Programme", "アプリ", "앱", "应用", "應用程式", "Aplicaciones"}},
    StringRow{"nav.organize", {"Organize", "Rangement", "Ordnen", "整理", "정돈", "整理", "整理", "Organizar"}},
    StringRow{"nav.rules", {"Rules", "Règles", "Regeln", "ルール", "규칙", "规则", "規則", "Reglas"}},
    StringRow{
        "nav.agent",
        {"AI Agent", "Agent IA", "KI-Agent", "AI エージェント", "AI 에이전트", "AI 助手", "AI 助理", "Agente de IA"}},
    StringRow{"nav.history", {"History", "Historique", "Verlauf", "履歴", "기록", "历史记录", "歷史記錄", "Historial"}},
    StringRow{
        "nav.privacy",
        {"Privacy", "Confidentialité", "Datenschutz", "プライバシー", "개인정보 보호", "隐私", "隱私", "Privacidad"}},
    StringRow{"nav.settings", {"Settings", "Réglages", "Einstellungen", "設定", "설정", "设置", "設定", "Ajustes"}},
    StringRow{"privacy.title",
              {"Your Files Stay Yours", "Vos fichiers restent à vous", "Deine Dateien bleiben bei dir",
               "ファイルは手元から離れません", "파일은 내 기기에만 머뭅니다", "文件始终由你掌控", "檔案始終由你掌控",
               "Tus archivos siguen siendo tuyos"}},
    StringRow{"privacy.statement",
              {"All file scanning and duplicate detection happens 100% locally on your Mac. When using the AI cleanup "
               "agent, only file metadata (file names, sizes, dates) is evaluated. File contents are never opened, "
               "read, or transmitted to any server.",
               "L’analyse des fichiers et la recherche de doublons se font à 100\u00a0% localement sur votre Mac. "
               "Lorsque vous utilisez l’agent de nettoyage IA, seules les métadonnées des fichiers (noms, tailles, "
               "dates) sont évaluées. Le contenu des fichiers n’est jamais ouvert, lu ni transmis à un serveur.",
               "Das Scannen der Dateien und die Suche nach Duplikaten geschehen zu 100\u00a0% lokal auf deinem Mac. "
               "Der KI-Agent zum Aufräumen wertet nur Metadaten der Dateien aus (Namen, Größen, Daten). Dateiinhalte "
               "werden niemals geöffnet, gelesen oder an einen Server übertragen.",
               "ファイルのスキャンと重複の検出は、すべてお使いの Mac の中だけで行われます。AI "
               "クリーンアップエージェントが扱うのはファイルのメタデータ（名前、サイズ、日付）だけです。ファイルの内容"
               "が開かれたり、読み取られたり、サーバに送信されたりすることはありません。",
               "파일 스캔과 중복 검사는 100% 사용자의 Mac에서만 이루어집니다. AI 정리 에이전트를 사용할 때는 파일 "
               "메타데이터(이름, 크기, 날짜)만 분석합니다. 파일 내용은 열거나 읽거나 서버로 전송하지 않습니다.",
               "所有文件扫描和重复项检测都 100% 在你的 Mac 本地完成。使用 AI "
               "清理助手时，只会分析文件元数据（文件名、大小、日期）。文件内容绝不会被打开、读取或传输到任何服务器。",
               "所有檔案掃描與重複項目偵測都 100% 在你的 Mac 本機完成。使用 AI "
               "清理助理時，只會分析檔案的中繼資料（檔名、大小、日期）。檔案內容絕不會被開啟、讀取或傳送到任何伺服器。",
               "El análisis de archivos y la búsqueda de duplicados se realizan al 100\u00a0% en tu Mac. Al usar el "
               "agente de limpieza con IA solo se evalúan los metadatos de los archivos (nombres, tamaños, fechas). El "
               "contenido de los archivos nunca se abre, se lee ni se envía a ningún servidor."}},
    StringRow{"permission.fda_title",
              {"Full Disk Access", "Accès complet au disque", "Festplattenvollzugriff", "フルディスクアクセス",
               "전체 디스크 접근 권한", "完全磁盘访问权限", "完整磁碟存取權限", "Acceso total al disco"}},
    StringRow{
        "permission.fda_desc",
        {"Orvane needs it to look into protected folders. Without it these folders are left out of every scan.",
         "Orvane en a besoin pour examiner les dossiers protégés. Sans cet accès, ces dossiers sont exclus de chaque "
         "analyse.",
         "Orvane braucht ihn, um in geschützte Ordner zu sehen. Ohne ihn bleiben diese Ordner bei jedem Scan außen "
         "vor.",
         "保護されたフォルダを調べるために必要です。許可しない場合、これらのフォルダはスキャンの対象から外れます。",
         "보호된 폴더를 확인하려면 필요합니다. 허용하지 않으면 이 폴더들은 스캔에서 제외됩니다.",
         "Orvane 需要此权限才能查看受保护的文件夹。没有此权限时，扫描会跳过这些文件夹。",
         "Orvane 需要此權限才能查看受保護的檔案夾。沒有此權限時，掃描會略過這些檔案夾。",
         "Orvane lo necesita para examinar las carpetas protegidas. Sin él, esas carpetas quedan fuera de todos los "
         "análisis."}},
    StringRow{
        "permission.open_settings",
        {"Open System Settings", "Ouvrir les réglages système", "Systemeinstellungen öffnen", "システム設定を開く",
         "시스템 설정 열기", "打开系统设置", "打開系統設定", "Abrir los ajustes del sistema"}},
    StringRow{"agent.placeholder",
              {"e.g., 'Delete screenshots older than 30 days' or 'Sort Downloads'",
               "p.\u00a0ex. «\u00a0Supprime les captures d’écran de plus de 30 jours\u00a0» ou «\u00a0Range "
               "Téléchargements\u00a0»",
               "z.\u00a0B. „Lösche Bildschirmfotos, die älter als 30 Tage sind“ oder „Ordne Downloads“",
               "例：「30日以上前のスクリーンショットを削除」「ダウンロードを整理」",
               "예: '30일 지난 스크린샷 삭제' 또는 '다운로드 정돈'", "例如“删除 30 天以前的屏幕截图”或“整理下载”",
               "例如「刪除 30 天以前的螢幕截圖」或「整理下載項目」",
               "p.\u00a0ej., «Elimina capturas de pantalla de más de 30 días» u «Ordena Descargas»"}},
    StringRow{
        "agent.dry_run_title",
        {"Dry Run Preview (No files changed)", "Aperçu de la simulation (aucun fichier modifié)",
         "Vorschau des Probelaufs (keine Datei geändert)", "テスト実行のプレビュー（ファイルは変更されていません）",
         "모의 실행 미리보기(변경된 파일 없음)", "试运行预览（未更改任何文件）", "試執行預覽（未更動任何檔案）",
         "Vista previa de la simulación (ningún archivo modificado)"}},
    StringRow{"agent.offline_badge",
              {"Offline Heuristic Engine Active", "Moteur heuristique hors ligne actif", "Offline-Heuristik aktiv",
               "オフラインのヒューリスティックエンジンを使用中", "오프라인 휴리스틱 엔진 사용 중",
               "离线启发式引擎已启用", "離線啟發式引擎已啟用", "Motor heurístico sin conexión activo"}},
};
// clang-format on

}  // namespace

std::span<const StringRow> shellStrings() noexcept {
  return shellRows;
}

}  // namespace orvane
