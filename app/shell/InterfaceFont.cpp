#include "app/shell/InterfaceFont.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

#include <array>
#include <string_view>

namespace orvane {
namespace {

struct FamilyRow {
  std::string_view language;
  std::string_view family;
};

constexpr std::array rows{
    FamilyRow{"ja", "Noto Sans CJK JP"},
    FamilyRow{"ja", "Noto Sans JP"},
    FamilyRow{"ja", "Source Han Sans JP"},
    FamilyRow{"ja", "IPAPGothic"},
    FamilyRow{"ja", "VL PGothic"},
    FamilyRow{"zh-Hans", "Noto Sans CJK SC"},
    FamilyRow{"zh-Hans", "Noto Sans SC"},
    FamilyRow{"zh-Hans", "Source Han Sans SC"},
    FamilyRow{"zh-Hans", "WenQuanYi Micro Hei"},
    FamilyRow{"zh-Hant", "Noto Sans CJK TC"},
    FamilyRow{"zh-Hant", "Noto Sans TC"},
    FamilyRow{"zh-Hant", "Source Han Sans TC"},
    FamilyRow{"ko", "Noto Sans CJK KR"},
    FamilyRow{"ko", "Noto Sans KR"},
    FamilyRow{"ko", "NanumGothic"},
};

QString textOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

QFont interfaceFont(const QFont& system, const QString& languageTag) {
  const auto installed = QFontDatabase::families();
  QStringList own;
  QStringList others;
  for (const auto& row : rows) {
    const auto family = textOf(row.family);
    if (!installed.contains(family)) continue;
    (textOf(row.language) == languageTag ? own : others).append(family);
  }
  auto font = system;
  // The desktop may name an alias; what it stands for is found by asking.
  font.setFamilies(own + QStringList{QFontInfo(system).family()} + others);
  return font;
}

}  // namespace orvane
