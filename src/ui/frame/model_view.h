// The four pictures of a model that the axis-data and the basic unit window switch among.
#pragma once

#include "ui/picture/picture_window.h"

namespace kigumi {

// What a window shows of the model.
enum class ModelMode {
    nothing = 0,
    wire_nodes = 1, // wires with node marks
    wire = 2,
    axis = 3,        // flagged edges of the solids
    perspective = 4, // from the viewpoint
};

// A picture window whose 表示 menu shows the model as wire, axis or viewpoint picture, with the
// angle and viewpoint dialogs turning it.
class ModelWindow : public PictureWindow {
    Q_OBJECT

  public:
    ModelWindow(Session& session, QWidget* parent, PictureWidget* picture = nullptr);

    // Paints this mode from now on.
    void show_mode(ModelMode mode);
    ModelMode mode() const { return mode_; }

  protected:
    // Adds 表示 with its four items. `marked` is what 節点付ワイヤモデル shows.
    void add_view_menu(ModelMode marked);
    void set_views_enabled(bool enabled);
    // Turns the views back to 30 and 30 degrees, shows the mode and opens the angle dialog.
    void turn_parallel(ModelMode mode);
    void show_axis_model();
    void show_viewpoint_model();
    // Draws the perspective picture anew after the lines where bars meet were switched.
    void follow_joints();
    // Has the status bar say this as soon as it has nothing to say of the perspective picture.
    void tell(const QString& text);

    QAction* viewpoint_item_ = nullptr;

  private:
    int rebuild_solids();
    // Makes the perspective picture of the stored viewpoint ready and repaints; -1 after a message.
    int prepare_viewpoint(QWidget* parent);
    // Has the status bar say this of the perspective picture; for null, what it said before.
    void tell_of_perspective(const char* text);

    std::vector<QAction*> view_items_;
    ModelMode mode_ = ModelMode::nothing;
    bool told_of_perspective_ = false;
    QString message_before_;
};

} // namespace kigumi
