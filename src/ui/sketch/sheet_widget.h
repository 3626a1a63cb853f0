// The drawing sheet of the hand-drawn editor as a widget.
#pragma once

#include "model/sketch.h"
#include "ui/kit/session.h"
#include "ui/picture/picture_widget.h"

namespace kigumi {

// A picture widget that is drawn on while it shows the sheet, and a mere picture of the model while
// it shows something else. The wheel, the middle button and F zoom, move and fit the sheet as any
// picture. Without a mouse the arrow keys move the pointer and the space bar is its left button.
class SheetWidget : public PictureWidget, protected Desk {
    Q_OBJECT

  public:
    explicit SheetWidget(Session& session, QWidget* parent = nullptr);

    // Shows the sheet, all of it, from now on.
    void show_sheet();
    // The window is about to show another picture.
    void leave_sheet();
    bool shows_sheet() const { return shows_sheet_; }
    // Widens the sheet to hold every node, and shows all of it.
    void show_whole();

    TegakiSheet& sheet() { return sheet_; }
    void set_mode(SheetMode mode);
    // Gives up a half-drawn member or a press that was not released.
    bool give_up();

    void set_grid(bool shown);
    void set_node_numbers(bool shown);
    void set_beam_numbers(bool shown);
    // Rings the node at this position; none for -1.
    void set_current_node(int node);

    // Place of the pointer on the sheet, while it is over it.
    std::optional<SheetPoint> pointer() const;

  signals:
    // A release of the mouse, or Esc, did something.
    void acted(kigumi::SheetOutcome outcome);
    // The pointer was moved, or has left.
    void pointed();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    void press(Qt::MouseButton button, QPoint at);
    void release(QPoint at);
    void follow(QPoint at);
    bool step_pointer(int key, bool small);
    QPoint pixel(SheetPoint at) const;
    void paint_grid(QPainter& painter) const;
    void paint_numbers(QPainter& painter) const;
    void paint_band(QPainter& painter) const;
    void paint_ring(QPainter& painter) const;

    TegakiSheet sheet_;
    World paper_; // the sheet without zoom
    bool shows_sheet_ = false;
    bool grid_ = false;
    bool node_numbers_ = true;
    bool beam_numbers_ = false;
    int current_node_ = -1;
    std::optional<QPoint> pointer_; // pixels
};

} // namespace kigumi
