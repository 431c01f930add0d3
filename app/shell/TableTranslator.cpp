#include "app/shell/TableTranslator.h"

#include "app/common/Text.h"
#include "core/localization/LocalizedStrings.h"
#include "core/localization/ThreadSafeLanguageStore.h"

namespace orvane {

QString TableTranslator::translate(const char* /*context*/, const char* sourceText, const char* /*disambiguation*/,
                                   int /*n*/) const {
  if (sourceText == nullptr || !LocalizedStrings::translation(AppLanguage::en, sourceText)) return {};
  return textFrom(LocalizedStrings::lookup(ThreadSafeLanguageStore::shared().currentLanguage(), sourceText));
}

}  // namespace orvane
