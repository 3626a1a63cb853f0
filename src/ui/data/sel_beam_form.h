// The member data window (部材データ): members, sections and materials.
#pragma once

#include "model/sections.h"
#include "ui/kit/session.h"

#include <QDialog>

namespace kigumi {
class RecordGrid;
}

// Lists the three tables of the model and opens the dialogs that change a section or a material and
// show a member. The chosen row of each grid is what its button works on.
class TSelBeamForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TSelBeamForm(kigumi::Session& session, QWidget* parent);

  private:
    void fill_grids();
    void change_section();
    void change_material();
    void show_member();

    kigumi::RecordGrid* members_;
    kigumi::RecordGrid* sections_;
    kigumi::RecordGrid* materials_;
};
