// The basic unit window (QZ基本ユニット): a frame is generated, looked at and handed on.
#pragma once

#include "ui/frame/model_view.h"

class TKihonUnitForm : public kigumi::ModelWindow {
    Q_OBJECT

  public:
    // Sets the parameters to their defaults; the basic data dialog opens once the window is shown.
    TKihonUnitForm(kigumi::Session& session, QWidget* parent);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void ask_basic_data();
    void generate();
    void save_axis_data(bool move);
    void save_selection();
    void set_frame_exists(bool exists);

    std::vector<QAction*> frame_items_;
    bool asked_ = false;
};
