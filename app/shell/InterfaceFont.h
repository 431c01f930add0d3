#pragma once

#include <QFont>
#include <QString>

namespace orvane {

// The desktop's font. Where `languageTag` is Chinese, Japanese or Korean a family for it comes first: the same
// ideograph is drawn differently in each, and a family that is only found by fallback looks heavier than the rest of
// the line.
[[nodiscard]] QFont interfaceFont(const QFont& system, const QString& languageTag);

}  // namespace orvane
