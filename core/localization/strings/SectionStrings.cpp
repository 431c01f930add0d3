#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// A row a key, in the order of the languages.
constexpr std::array sectionRows{
    StringRow{"duplicates.subtitle",
              {"Identical files, byte for byte. One of each always stays.",
               "Fichiers identiques, octet par octet. Un exemplaire est toujours conservé.",
               "Byte für Byte identische Dateien. Von jeder bleibt immer eine.",
               "内容が完全に同一のファイル。必ず 1 つは残ります。", "바이트까지 동일한 파일. 하나는 항상 남습니다.",
               "逐字节相同的文件，始终保留一份。", "逐位元組相同的檔案，一定保留一份。",
               "Archivos idénticos byte a byte. Siempre se conserva uno."}},
    StringRow{
        "apps.subtitle",
        {"Installed applications with everything they leave behind.",
         "Applications installées et tout ce qu’elles laissent derrière elles.",
         "Installierte Programme mit allem, was sie hinterlassen.", "インストール済みのアプリと、その残存ファイル。",
         "설치된 앱과 앱이 남기는 모든 것.", "已安装的应用及其全部残留。", "已安裝的應用程式及其全部殘留。",
         "Aplicaciones instaladas con todo lo que dejan atrás."}},
    StringRow{"organize.subtitle",
              {"Proposes folders for what lies around. You see every move first.",
               "Propose des dossiers pour ce qui traîne. Vous voyez d’abord chaque déplacement.",
               "Schlägt Ordner für Herumliegendes vor. Du siehst vorher, was wohin kommt.",
               "散らかったファイルの移動先フォルダを提案。移動の前にすべて確認できます。",
               "흩어진 파일을 둘 폴더를 제안합니다. 옮기기 전에 모두 확인할 수 있습니다.",
               "为散乱的文件建议文件夹，移动前你会看到每一步。", "為散亂的檔案建議檔案夾，移動前你會看到每一步。",
               "Propone carpetas para lo que anda suelto. Antes ves cada movimiento."}},
    StringRow{"agent.subtitle",
              {"Say what you want. You see every file before anything moves.",
               "Dites ce que vous voulez. Vous voyez chaque fichier avant tout déplacement.",
               "Sag, was du willst. Du siehst jede Datei, bevor etwas verschoben wird.",
               "やりたいことを書くだけ。移動前にすべて確認できます。",
               "원하는 것을 말하세요. 옮기기 전에 모든 파일을 확인할 수 있습니다.",
               "说出你的需求，移动之前你会看到每个文件。", "說出你的需求，移動之前你會看到每個檔案。",
               "Di lo que quieres. Ves cada archivo antes de que se mueva nada."}},
    StringRow{"privacy.subtitle",
              {"What Orvane sees, and what it never sends.", "Ce qu’Orvane voit, et ce qu’il n’envoie jamais.",
               "Was Orvane sieht und was es niemals verschickt.", "Orvane が見るもの、決して送信しないもの。",
               "Orvane이 보는 것과 절대 보내지 않는 것.", "Orvane 能看到什么，以及绝不发送什么。",
               "Orvane 能看到什麼，以及絕不傳送什麼。", "Qué ve Orvane y qué no envía nunca."}},
    StringRow{
        "settings.subtitle",
        {"Language, folders, schedule and keys.", "Langue, dossiers, planification et clés.",
         "Sprache, Ordner, Zeitplan und Schlüssel.", "言語、フォルダ、スケジュール、キー。", "언어, 폴더, 일정, 키.",
         "语言、文件夹、定期清理和密钥。", "語言、檔案夾、排程和金鑰。", "Idioma, carpetas, programación y claves."}},
};

}  // namespace

std::span<const StringRow> sectionStrings() noexcept {
  return sectionRows;
}

}  // namespace orvane
