#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// What is asked before much moves, and what is said about what moved. A row a key, in the order of the languages.
constexpr std::array rows{
    StringRow{"folder.choose",
              {"Choose This Folder", "Choisir ce dossier", "Diesen Ordner wählen", "このフォルダを選択", "이 폴더 선택",
               "选择此文件夹", "選擇此檔案夾", "Elegir esta carpeta"}},
    StringRow{"folder.parent",
              {"Enclosing Folder", "Dossier parent", "Übergeordneter Ordner", "上のフォルダ", "상위 폴더", "上层文件夹",
               "上層檔案夾", "Carpeta superior"}},
};

}  // namespace

std::span<const StringRow> consentStrings() noexcept {
  return rows;
}

}  // namespace orvane
