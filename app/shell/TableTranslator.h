#pragma once

#include <QTranslator>

namespace orvane {

// Gives Qt the texts of the program's own table: what QML writes as qsTr("nav.overview") is looked up by that key in
// the current language. Any other text stays as it is.
class TableTranslator : public QTranslator {
 public:
  using QTranslator::QTranslator;

  [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation,
                                  int n) const override;
  [[nodiscard]] bool isEmpty() const override { return false; }
};

}  // namespace orvane
