#pragma once

#include <QObject>

namespace settings {

/// Lets nothing stay under the mouse where a finger has been. The toolkit makes a mouse of a finger for what knows no
/// touch, and would leave it at the place where the finger was lifted. An event filter for windows. GUI thread.
class LiftedFinger : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace settings
