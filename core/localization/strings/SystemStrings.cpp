#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// Shown by systems of whose places and permissions the given rows do not speak.
// clang-format off: a text a line, in the order of the languages
constexpr std::array systemRows{
    StringRow{"system.tagline",
              {"Declutter your computer without the effort.", "Désencombrez votre ordinateur sans aucun effort.",
               "Bringt mühelos Ordnung auf deinen Rechner.", "手間をかけずにパソコンをすっきり。",
               "힘들이지 않고 컴퓨터를 깔끔하게.", "轻松整理你的电脑。", "輕鬆整理你的電腦。",
               "Despeja tu ordenador sin esfuerzo."}},
    StringRow{
        "system.privacy_statement",
        {"All file scanning and duplicate detection happens 100% locally on your computer. When using the AI "
         "cleanup agent, only file metadata (file names, sizes, dates) is evaluated. File contents are never "
         "opened, read, or transmitted to any server.",
         "L’analyse des fichiers et la recherche de doublons se font à 100\u00a0% localement sur votre "
         "ordinateur. Lorsque vous utilisez l’agent de nettoyage IA, seules les métadonnées des fichiers (noms, "
         "tailles, dates) sont évaluées. Le contenu des fichiers n’est jamais ouvert, lu ni transmis à un "
         "serveur.",
         "Das Scannen der Dateien und die Suche nach Duplikaten geschehen zu 100\u00a0% lokal auf deinem Rechner. "
         "Der KI-Agent zum Aufräumen wertet nur Metadaten der Dateien aus (Namen, Größen, Daten). Dateiinhalte "
         "werden niemals geöffnet, gelesen oder an einen Server übertragen.",
         "ファイルのスキャンと重複の検出は、すべてお使いのパソコンの中だけで行われます。AI "
         "クリーンアップエージェントが扱うのはファイルのメタデータ（名前、サイズ、日付）だけです。ファイルの内容"
         "が開かれたり、読み取られたり、サーバに送信されたりすることはありません。",
         "파일 스캔과 중복 검사는 100% 사용자의 컴퓨터에서만 이루어집니다. AI 정리 에이전트를 사용할 때는 파일 "
         "메타데이터(이름, 크기, 날짜)만 분석합니다. 파일 내용은 열거나 읽거나 서버로 전송하지 않습니다.",
         "所有文件扫描和重复项检测都 100% 在你的电脑本地完成。使用 AI "
         "清理助手时，只会分析文件元数据（文件名、大小、日期）。文件内容绝不会被打开、读取或传输到任何服务器。",
         "所有檔案掃描與重複項目偵測都 100% 在你的電腦本機完成。使用 AI "
         "清理助理時，只會分析檔案的中繼資料（檔名、大小、日期）。檔案內容絕不會被開啟、讀取或傳送到任何伺服器。",
         "El análisis de archivos y la búsqueda de duplicados se realizan al 100\u00a0% en tu ordenador. Al usar "
         "el agente de limpieza con IA solo se evalúan los metadatos de los archivos (nombres, tamaños, fechas). "
         "El contenido de los archivos nunca se abre, se lee ni se envía a ningún servidor."}},
    StringRow{"system.access_title",
              {"Access to Your Folders", "Accès à vos dossiers", "Zugriff auf deine Ordner", "フォルダへのアクセス",
               "폴더 접근", "文件夹访问", "檔案夾存取", "Acceso a tus carpetas"}},
    StringRow{"system.access_note",
              {"Orvane sees what your user account may see, and looks into the folders of the list below.",
               "Orvane voit ce que votre compte peut voir, et regarde dans les dossiers de la liste ci-dessous.",
               "Orvane sieht, was dein Benutzerkonto sehen darf, und schaut in die Ordner der Liste unten.",
               "Orvane に見えるのは、あなたのアカウントで見えるものだけです。調べるのは下のリストのフォルダです。",
               "Orvane은 사용자 계정이 볼 수 있는 것만 보며, 아래 목록의 폴더를 살펴봅니다.",
               "Orvane 只能看到你的用户账户可以看到的内容，并且只查看下方列表中的文件夹。",
               "Orvane 只看得到你的使用者帳號可以看到的內容，並且只檢視下方列表中的檔案夾。",
               "Orvane ve lo que puede ver tu cuenta de usuario y mira en las carpetas de la lista de abajo."}},
    StringRow{"system.all_readable",
              {"Every folder of the list can be read.", "Tous les dossiers de la liste peuvent être lus.",
               "Jeder Ordner der Liste kann gelesen werden.", "リストのフォルダはすべて読み取れます。",
               "목록의 모든 폴더를 읽을 수 있습니다.", "列表中的每个文件夹都可以读取。",
               "列表中的每個檔案夾都可以讀取。", "Se pueden leer todas las carpetas de la lista."}},
    StringRow{"system.unreadable.one",
              {"%1 folder of the list cannot be read and is left out.",
               "%1 dossier de la liste ne peut pas être lu et est exclu.",
               "%1 Ordner der Liste kann nicht gelesen werden und bleibt außen vor.",
               "リストのフォルダのうち %1 個は読み取れず、対象外になります。",
               "목록의 폴더 %1개를 읽을 수 없어 제외합니다.", "列表中有 %1 个文件夹无法读取，会被跳过。",
               "列表中有 %1 個檔案夾無法讀取，會被略過。", "%1 carpeta de la lista no se puede leer y queda fuera."}},
    StringRow{
        "system.unreadable.other",
        {"%1 folders of the list cannot be read and are left out.",
         "%1 dossiers de la liste ne peuvent pas être lus et sont exclus.",
         "%1 Ordner der Liste können nicht gelesen werden und bleiben außen vor.",
         "リストのフォルダのうち %1 個は読み取れず、対象外になります。", "목록의 폴더 %1개를 읽을 수 없어 제외합니다.",
         "列表中有 %1 个文件夹无法读取，会被跳过。", "列表中有 %1 個檔案夾無法讀取，會被略過。",
         "%1 carpetas de la lista no se pueden leer y quedan fuera."}},
    StringRow{"system.folder_unreadable",
              {"cannot be read", "illisible", "nicht lesbar", "読み取れません", "읽을 수 없음", "无法读取", "無法讀取",
               "no se puede leer"}},
    StringRow{"system.sandboxed",
              {"Orvane is confined to a sandbox (%1)", "Orvane s’exécute dans un bac à sable (%1)",
               "Orvane läuft in einer Sandbox (%1)", "Orvane はサンドボックス（%1）の中で動作しています",
               "Orvane이 샌드박스(%1)에서 실행 중입니다", "Orvane 在沙盒（%1）中运行", "Orvane 在沙箱（%1）中執行",
               "Orvane se ejecuta en un entorno aislado (%1)"}},
    StringRow{
        "system.sandboxed_note",
        {"It sees only the folders that the sandbox opens to it.",
         "Elle ne voit que les dossiers que le bac à sable lui ouvre.",
         "Zu sehen sind nur die Ordner, die die Sandbox öffnet.",
         "見えるのは、サンドボックスが開いたフォルダだけです。", "샌드박스가 열어 준 폴더만 볼 수 있습니다.",
         "只能看到沙盒开放的文件夹。", "只看得到沙箱開放的檔案夾。", "Solo ve las carpetas que ese entorno le abre."}},
    StringRow{"bare.title",
              {"None of the folders to scan is here", "Aucun des dossiers à analyser n’est là",
               "Keiner der zu scannenden Ordner ist da", "スキャンするフォルダがありません", "스캔할 폴더가 없습니다",
               "没有可扫描的文件夹", "沒有可掃描的檔案夾", "No está ninguna de las carpetas que se analizan"}},
    StringRow{"bare.text",
              {"These are the largest folders of your home. Add one, and Orvane scans it.",
               "Voici les plus gros dossiers de votre dossier personnel. Ajoutez-en un et Orvane l’analyse.",
               "Das sind die größten Ordner in deinem persönlichen Ordner. Füge einen hinzu, und Orvane scannt ihn.",
               "ホームフォルダの中で大きいフォルダです。追加すると Orvane がスキャンします。",
               "홈 폴더에서 가장 큰 폴더입니다. 추가하면 Orvane이 스캔합니다.",
               "这些是个人文件夹中最大的文件夹。添加一个，Orvane 就会扫描它。",
               "這些是個人檔案夾中最大的檔案夾。加入一個，Orvane 就會掃描它。",
               "Estas son las carpetas más grandes de tu carpeta personal. Añade una y Orvane la analiza."}},
    StringRow{"suggestion.title",
              {"Suggestions", "Suggestions", "Vorschläge", "おすすめ", "추천", "建议", "建議", "Sugerencias"}},
    StringRow{"suggestion.downloaded_packages",
              {"Old Packages in Downloads", "Anciens paquets dans Téléchargements", "Alte Pakete in Downloads",
               "ダウンロードにある古いパッケージ", "다운로드의 오래된 패키지", "“下载”中的旧软件包",
               "「下載項目」中的舊套件", "Paquetes antiguos en Descargas"}},
    StringRow{"suggestion.downloaded_packages.note",
              {"Moves packages (.deb, .rpm, .flatpak and the like) older than 14 days in Downloads to Trash.",
               "Met à la corbeille les paquets (.deb, .rpm, .flatpak, etc.) de plus de 14 jours dans Téléchargements.",
               "Legt Pakete (.deb, .rpm, .flatpak und dergleichen) in Downloads, die älter als 14 Tage sind, in den "
               "Papierkorb.",
               "ダウンロードにある 14 日より古いパッケージ（.deb、.rpm、.flatpak など）をゴミ箱に入れます。",
               "다운로드에서 14일이 지난 패키지(.deb, .rpm, .flatpak 등)를 휴지통으로 옮깁니다.",
               "将“下载”中超过 14 天的软件包（.deb、.rpm、.flatpak 等）移到废纸篓。",
               "將「下載項目」中超過 14 天的套件（.deb、.rpm、.flatpak 等）移到垃圾桶。",
               "Mueve a la papelera los paquetes (.deb, .rpm, .flatpak y similares) de más de 14 días de Descargas."}},
    StringRow{
        "suggestion.old_caches",
        {"Caches Unused for 60 Days", "Caches inutilisés depuis 60 jours", "Seit 60 Tagen ungenutzte Zwischenspeicher",
         "60 日間使われていないキャッシュ", "60일 동안 쓰지 않은 캐시", "60 天未使用的缓存", "60 天未使用的快取",
         "Cachés sin usar desde hace 60 días"}},
    StringRow{"suggestion.old_caches.note",
              {"Moves caches of programs that nothing changed for 60 days to Trash.",
               "Met à la corbeille les caches de programmes inchangés depuis 60 jours.",
               "Legt Zwischenspeicher von Programmen, die seit 60 Tagen unverändert sind, in den Papierkorb.",
               "60 日間変更されていないプログラムのキャッシュをゴミ箱に入れます。",
               "60일 동안 바뀌지 않은 프로그램의 캐시를 휴지통으로 옮깁니다.", "将 60 天未更改的程序缓存移到废纸篓。",
               "將 60 天未更動的程式快取移到垃圾桶。",
               "Mueve a la papelera las cachés de programas que llevan 60 días sin cambios."}},
    StringRow{"suggestion.idle_builds",
              {"Idle Build Folders", "Dossiers de compilation inactifs", "Ungenutzte Build-Ordner",
               "使われていないビルドフォルダ", "사용하지 않는 빌드 폴더", "闲置的构建文件夹", "閒置的建置檔案夾",
               "Carpetas de compilación inactivas"}},
    StringRow{"suggestion.idle_builds.note",
              {"Lists build folders of software projects that nobody changed for 60 days, and moves none: some take "
               "long to build again.",
               "Liste les dossiers de compilation de projets logiciels inchangés depuis 60 jours, sans en déplacer "
               "aucun\u00a0: certains sont longs à recréer.",
               "Listet Build-Ordner von Softwareprojekten auf, die seit 60 Tagen unverändert sind, und verschiebt "
               "keinen: Manche brauchen lange, bis sie neu gebaut sind.",
               "60 日間変更されていない、ソフトウェアプロジェクトのビルドフォルダを一覧にします。再ビルドに時間が"
               "かかるものもあるため、移動はしません。",
               "60일 동안 바뀌지 않은 소프트웨어 프로젝트의 빌드 폴더를 나열합니다. 다시 빌드하는 데 오래 걸리는 것도 "
               "있으므로 옮기지는 않습니다.",
               "列出 60 天未更改的软件项目构建文件夹，但不移动：有些重新构建需要很长时间。",
               "列出 60 天未更動的軟體專案建置檔案夾，但不移動：有些重新建置需要很長時間。",
               "Enumera las carpetas de compilación de proyectos de software que llevan 60 días sin cambios, sin mover "
               "ninguna: algunas tardan mucho en volver a compilarse."}},
};
// clang-format on

}  // namespace

std::span<const StringRow> systemStrings() noexcept {
  return systemRows;
}

}  // namespace orvane
