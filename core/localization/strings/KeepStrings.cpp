#include "core/localization/strings/StringTables.h"

namespace orvane {
namespace {

// clang-format off: a text a line, in the order of the languages
constexpr std::array keepRows{
    StringRow{"keep.title",
              {"Keep List", "Liste à conserver", "Behalten-Liste", "残すもののリスト", "보관 목록", "保留列表",
               "保留列表", "Lista de conservados"}},
    StringRow{"keep.note",
              {"Never offered again, in no section and in no scheduled run.",
               "Plus jamais proposé, dans aucune section ni aucune opération planifiée.",
               "Wird nie wieder angeboten, in keinem Bereich und in keinem geplanten Durchgang.",
               "どのセクションでも、定期実行でも、二度と候補に出ません。",
               "어느 섹션에서도, 예약 실행에서도 다시 제안하지 않습니다.", "任何部分和定期运行都不会再提供。",
               "任何區段和排程執行都不會再提供。", "No se ofrece más, en ninguna sección ni operación programada."}},
    StringRow{"keep.empty",
              {"Nothing is kept yet.", "Rien n’est conservé pour l’instant.", "Noch wird nichts behalten.",
               "まだ何もありません。", "아직 없습니다.", "尚无内容。", "尚無內容。", "Aún no se conserva nada."}},
    StringRow{"keep.keep",
              {"Never Offer Again", "Ne plus jamais proposer", "Nie wieder anbieten", "二度と候補に出さない",
               "다시 제안하지 않기", "不再提供", "不再提供", "No ofrecer más"}},
    StringRow{"keep.remove",
              {"Take Off the List", "Retirer de cette liste", "Von dieser Liste nehmen", "このリストから外す",
               "이 목록에서 빼기", "移出此列表", "移出此列表", "Sacar de esta lista"}},
    StringRow{"keep.add_folder",
              {"Keep a Folder", "Conserver un dossier", "Einen Ordner behalten", "フォルダを残す", "폴더 보관",
               "保留文件夹", "保留檔案夾", "Conservar una carpeta"}},
    StringRow{"keep.kept",
              {"on the keep list", "dans la liste à conserver", "auf der Behalten-Liste", "残すもののリストにあります",
               "보관 목록에 있음", "在保留列表中", "在保留列表中", "en la lista de conservados"}},
    StringRow{"keep.held_back.one",
              {"%1 item, %2, is on the keep list.", "%1 élément, %2, est dans la liste à conserver.",
               "%1 Objekt, %2, steht auf der Behalten-Liste.", "%1 項目（%2）は残すもののリストにあります。",
               "항목 %1개(%2)가 보관 목록에 있습니다.", "%1 项（%2）在保留列表中。", "%1 項（%2）在保留列表中。",
               "%1 elemento, %2, está en la lista de conservados."}},
    StringRow{"keep.held_back.other",
              {"%1 items, %2, are on the keep list.", "%1 éléments, %2, sont dans la liste à conserver.",
               "%1 Objekte, %2, stehen auf der Behalten-Liste.", "%1 項目（%2）は残すもののリストにあります。",
               "항목 %1개(%2)가 보관 목록에 있습니다.", "%1 项（%2）在保留列表中。", "%1 項（%2）在保留列表中。",
               "%1 elementos, %2, están en la lista de conservados."}},
    StringRow{"keep.compare_with",
              {"Compare With a Folder...", "Comparer avec un dossier…", "Mit einem Ordner vergleichen\u00a0…",
               "フォルダと比較…", "폴더와 비교…", "与文件夹比较…", "與檔案夾比較…", "Comparar con una carpeta…"}},
    StringRow{"keep.compared",
              {"%1: only compared, never touched", "%1\u00a0: seulement comparé, jamais touché",
               "%1: nur verglichen, nie angerührt", "%1：比較のみ、変更なし", "%1: 비교만 하고 건드리지 않음",
               "%1：仅比较，绝不改动", "%1：僅比較，絕不更動", "%1: solo se compara, nunca se toca"}},
    StringRow{"keep.stays",
              {"This copy lies in a folder that is only compared with.",
               "Cet exemplaire se trouve dans un dossier seulement comparé.",
               "Diese Kopie liegt in einem Ordner, mit dem nur verglichen wird.",
               "このコピーは、比較するだけのフォルダにあります。", "이 사본은 비교만 하는 폴더에 있습니다.",
               "此副本位于仅用于比较的文件夹中。", "此副本位於僅用於比較的檔案夾中。",
               "Esta copia está en una carpeta que solo se compara."}},
};
// clang-format on

}  // namespace

std::span<const StringRow> keepStrings() noexcept {
  return keepRows;
}

}  // namespace orvane
