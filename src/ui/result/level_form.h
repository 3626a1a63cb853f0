// The dialog of the band of percent (軸力表示境界値).
#pragma once

#include <QDialog>

namespace kigumi {
class NumberEdit;
struct ResultView;
} // namespace kigumi

// Asks for the bounds, percent of the largest force, between which members show their sign. OK
// stores them in `shown` and selects mode_band, also a lower bound above the upper one, between
// which no member lies; it refuses what is no number.
class TLevelForm : public QDialog {
    Q_OBJECT

  public:
    TLevelForm(kigumi::ResultView& shown, QWidget* parent);

  private:
    void take();

    kigumi::ResultView& shown_;
    kigumi::NumberEdit* high_;
    kigumi::NumberEdit* low_;
};
