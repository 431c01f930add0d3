#include "app/shell/TableTranslator.h"

#include "app/common/Text.h"
#include "core/localization/LocalizedStrings.h"

namespace orvane {

QString TableTranslator::translate(const char* /*context*/, const char* sourceText, const char* /*disambiguation*/,
                                   int /*n*/) const {
  if (sourceText == nullptr || !LocalizedStrings::translation(AppLanguage::en, sourceText)) return {};
  return localizedText(sourceText);
}

}  // namespace orvane
