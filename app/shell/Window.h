#pragma once

#include "app/shell/StartRequest.h"
#include "app/shell/WindowServices.h"

#include <QByteArray>
#include <QObject>

#include <memory>

namespace orvane {

// The window with everything that stands behind it.
class Window : public QObject {
  Q_OBJECT

 public:
  explicit Window(WindowServices services, QObject* parent = nullptr);
  ~Window() override;

  // False when the window cannot be made.
  [[nodiscard]] bool show();
  // Brings the window to the front and does what the request asks for.
  void raise(const QByteArray& request);

 private:
  struct Parts;
  void remember();
  void followRuns();
  void languageChanged();
  void carryOut(const StartRequest& request);

  std::unique_ptr<Parts> m_parts;
};

}  // namespace orvane
