// The drawing widget of every picture window.
#pragma once

#include "base/fault.h"
#include "draw/canvas.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kigumi {

class PainterCanvas;

// Paints a picture function on white. The function fits the picture into the client size that it
// is given, tells the canvas so (set_area) and draws; it is called again at every paint, so it
// refits on resize. The wheel zooms about the pointer, dragging with the middle button moves the
// picture, and the key F (or a menu entry connected to fit()) shows the whole again; these change
// only the window through which the picture is seen. What a picture has to say is shown once, after
// the paint; the widget then stays white until it is given a picture again, and a picture that has
// to say the same is silent, until one was painted without a word.
class PictureWidget : public QWidget {
    Q_OBJECT

  public:
    // Draws on the canvas; `area` comes with the client size and takes the fit.
    using Picture = std::function<void(Canvas& canvas, DrawArea& area)>;

    explicit PictureWidget(QWidget* parent = nullptr);

    // Sets what is painted (nothing leaves the widget white) and repaints.
    void set_picture(Picture picture);
    // Paints anew, also a picture that had something to say; all but `told`, which the person
    // knows.
    void paint_again(const std::string& told = {});
    // Sets what is painted over the finished picture and is no part of it: neither moved nor zoomed
    // with it, nor among its segments.
    void set_overlay(std::function<void(PainterCanvas& canvas)> overlay);
    // World window and viewport as last painted, zoom included: what a click is measured in.
    const DrawArea& area() const { return area_; }
    // The whole picture again.
    void fit();
    // The picture's lines as segments, and the fit that goes with them, as now shown without zoom.
    // Nothing, after its message, when the picture cannot be drawn.
    std::optional<SegmentCanvas> segments() const;

    QSize sizeHint() const override { return {1000, 700}; }

  signals:
    // A single click of the left button: where it was pressed, pixels, and the keys held then.
    void picked(QPoint at, Qt::KeyboardModifiers keys);
    // The pointer was moved here, pixels, without dragging the picture.
    void hovered(QPoint at);
    // The pointer has left the widget.
    void left();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    World zoomed(const World& fitted) const;
    // Draws the picture and returns what it had to say.
    std::vector<Fault> drawn_on(Canvas& canvas, DrawArea area) const;

    Picture picture_;
    std::function<void(PainterCanvas&)> overlay_;
    bool failed_ = false;     // the picture had a message
    std::vector<Fault> told_; // by the paint before
    DrawArea area_;
    // Shown part of the fitted world window: its size is 1 / zoom_, its centre moved by these
    // fractions of the fitted size.
    double zoom_ = 1.0, move_x_ = 0.0, move_y_ = 0.0;
    int buttons_ = 0; // presses since the last release: +1 left, +2 right
    QPoint press_at_;
    Qt::KeyboardModifiers press_keys_;
    QPoint drag_at_;
    bool dragging_ = false;

    friend class ZoomCanvas;
};

} // namespace kigumi
