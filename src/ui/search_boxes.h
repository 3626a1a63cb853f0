// Controls that the search windows share: ranges of levels, and the choice of a cross-section.
#pragma once

#include "model/select.h"

#include <QGroupBox>

#include <array>
#include <optional>

class QComboBox;

namespace kigumi {

// From and to for the levels of each direction (`XFromComboBox` ... `ZToComboBox`), the whole
// extent at first. The one follows where the other would pass it.
class LevelRangeBoxes : public QGroupBox {
    Q_OBJECT

  public:
    explicit LevelRangeBoxes(QWidget* parent = nullptr);

    struct Range {
        float low, high; // cm
    };
    // The levels chosen in direction 0 (x), 1 (y) or 2 (z); nothing while it is the whole extent.
    std::optional<Range> chosen(int axis) const;

  signals:
    void changed();

  private:
    std::array<QComboBox*, 3> from_{}, to_{};
};

// A box with "すべて" and every cross-section of the model (`DanmenComboBox`).
QComboBox* make_section_box();
// The cross-section chosen in it; nothing for all.
std::optional<CrossSection> chosen_section(const QComboBox& box);

} // namespace kigumi
