// Controls that the search windows share: ranges of levels, and the choice of a cross-section.
#pragma once

#include "model/model.h"
#include "model/roles.h"
#include "model/select.h"
#include "ui/kit/session.h"

#include <QGroupBox>

#include <array>
#include <optional>

class QComboBox;

namespace kigumi {

// From and to for the levels of each direction (`XFromComboBox` ... `ZToComboBox`), the whole
// extent at first; `from` never lies behind `to`.
class LevelRangeBox : public QGroupBox, protected Desk {
    Q_OBJECT

  public:
    // `numbered` puts the level's number, as in the names of nodes, before its coordinate.
    explicit LevelRangeBox(Session& session, bool numbered = false, QWidget* parent = nullptr);

    // Takes the levels from the model anew and chooses the whole extent, without a signal.
    void reset();
    // The numbers of the chosen levels.
    LevelRanges levels() const;

    struct Range {
        float low, high; // cm
    };
    // The levels chosen in direction 0 (x), 1 (y) or 2 (z); nothing while it is the whole extent.
    std::optional<Range> chosen(int axis) const;

  signals:
    void changed();

  private:
    void fill(QComboBox* box, int axis);

    bool numbered_;
    std::array<QComboBox*, 3> from_{}, to_{};
};

// A box with "すべて" and every cross-section of the model (`DanmenComboBox`).
QComboBox* make_section_box(const Model& model);
// The cross-section chosen in it; nothing for all.
std::optional<CrossSection> chosen_section(const QComboBox& box);

} // namespace kigumi
