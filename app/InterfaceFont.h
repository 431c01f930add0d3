#pragma once

#include <QFont>
#include <QString>

namespace orvane {

// The desktop's font, with families for Chinese, Japanese and Korean named after it, those of `languageTag` first:
// the same ideograph is drawn differently in each, and a family that is only found by fallback may come in a weight
// that was not asked for.
[[nodiscard]] QFont interfaceFont(const QFont& system, const QString& languageTag);

}  // namespace orvane
