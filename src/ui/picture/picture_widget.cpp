#include "ui/picture/picture_widget.h"

#include "base/message.h"
#include "ui/picture/painter_canvas.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace kigumi {

// Shows a picture through the widget's zoomed window instead of the picture's own fit.
class ZoomCanvas : public PainterCanvas {
  public:
    ZoomCanvas(QPainter& painter, PictureWidget& widget)
        : PainterCanvas(painter), widget_(widget) {}

    void set_area(const DrawArea& area) override {
        DrawArea shown = area;
        shown.world = widget_.zoomed(area.world);
        widget_.area_ = shown;
        PainterCanvas::set_area(shown);
    }
    float zoom() const override { return static_cast<float>(widget_.zoom_); }
    bool shows(float X, float Y) const override {
        constexpr int longest_label = 300; // pixels
        int px = 0;
        int py = 0;
        return to_screen(area_, X, Y, px, py) && px > -longest_label && py > -longest_label &&
               px < widget_.width() + longest_label && py < widget_.height() + longest_label;
    }

  private:
    PictureWidget& widget_;
};

namespace {

constexpr double zoom_a_step = 1.25;
constexpr double largest_zoom = 400.0;
constexpr double smallest_zoom = 0.1;
constexpr int left_press = 1;
constexpr int right_press = 2;

} // namespace

PictureWidget::PictureWidget(QWidget* parent) : QWidget(parent) {
    setObjectName("Picture");
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setMinimumSize(200, 150);
}

void PictureWidget::set_picture(Picture picture) {
    picture_ = std::move(picture);
    failed_ = false;
    update();
}

void PictureWidget::paint_again(const std::string& told) {
    failed_ = false;
    told_ = told.empty() ? std::vector<Fault>() : std::vector{Fault{told, {}}};
    update();
}

void PictureWidget::set_overlay(std::function<void(PainterCanvas& canvas)> overlay) {
    overlay_ = std::move(overlay);
    update();
}

void PictureWidget::fit() {
    zoom_ = 1.0;
    move_x_ = move_y_ = 0.0;
    update();
}

std::optional<SegmentCanvas> PictureWidget::segments() const {
    SegmentCanvas canvas;
    DrawArea area;
    area.xScreen = width();
    area.yScreen = height();
    const std::vector<Fault> messages = drawn_on(canvas, area);
    for (const Fault& message : messages) {
        show_message(message);
    }
    return messages.empty() ? std::optional(canvas) : std::nullopt;
}

std::vector<Fault> PictureWidget::drawn_on(Canvas& canvas, DrawArea area) const {
    CollectedMessages messages;
    if (picture_) {
        picture_(canvas, area);
    }
    return std::move(messages.faults);
}

World PictureWidget::zoomed(const World& fitted) const {
    const double w = static_cast<double>(fitted.xmax) - fitted.xmin;
    const double h = static_cast<double>(fitted.ymax) - fitted.ymin;
    if (zoom_ > 0.999 && zoom_ < 1.001 && std::fabs(move_x_) + std::fabs(move_y_) < 1e-9) {
        return fitted;
    }
    const double cx = 0.5 * (static_cast<double>(fitted.xmin) + fitted.xmax) + move_x_ * w;
    const double cy = 0.5 * (static_cast<double>(fitted.ymin) + fitted.ymax) + move_y_ * h;
    const double half_w = 0.5 * w / zoom_;
    const double half_h = 0.5 * h / zoom_;
    return {static_cast<float>(cx - half_w), static_cast<float>(cy - half_h),
            static_cast<float>(cx + half_w), static_cast<float>(cy + half_h)};
}

void PictureWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    area_ = DrawArea{};
    area_.xScreen = width();
    area_.yScreen = height();
    if (failed_) {
        return;
    }
    ZoomCanvas canvas(painter, *this);
    std::vector<Fault> messages = drawn_on(canvas, area_);
    if (overlay_) {
        overlay_(canvas);
    }
    failed_ = !messages.empty();
    const bool is_news = failed_ && messages != told_;
    told_ = messages;
    if (is_news) {
        // A box opened while painting would have the window painted anew, and so open without end.
        QTimer::singleShot(0, this, [messages = std::move(messages)] {
            for (const Fault& message : messages) {
                show_message(message);
            }
        });
    }
}

void PictureWidget::wheelEvent(QWheelEvent* event) {
    constexpr double degrees_a_step = 120.0;
    const double steps = event->angleDelta().y() / degrees_a_step;
    const double zoom =
        std::clamp(zoom_ * std::pow(zoom_a_step, steps), smallest_zoom, largest_zoom);
    const Viewport& crt = area_.crt;
    if (crt.right == crt.left || crt.bottom == crt.top) {
        return;
    }
    // The plane point under the pointer stays under it.
    const double across = (event->position().x() - crt.left) / (crt.right - crt.left) - 0.5;
    const double up = (crt.bottom - event->position().y()) / (crt.bottom - crt.top) - 0.5;
    move_x_ += across * (1.0 / zoom_ - 1.0 / zoom);
    move_y_ += up * (1.0 / zoom_ - 1.0 / zoom);
    zoom_ = zoom;
    update();
    event->accept();
}

void PictureWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        dragging_ = true;
        drag_at_ = event->pos();
        setCursor(Qt::ClosedHandCursor);
        return;
    }
    buttons_ += event->button() == Qt::LeftButton    ? left_press
                : event->button() == Qt::RightButton ? right_press
                                                     : 0;
    press_at_ = event->pos();
    press_keys_ = event->modifiers();
}

void PictureWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) {
        emit hovered(event->pos());
        return;
    }
    const Viewport& crt = area_.crt;
    if (crt.right == crt.left || crt.bottom == crt.top) {
        return;
    }
    const QPoint by = event->pos() - drag_at_;
    drag_at_ = event->pos();
    move_x_ -= static_cast<double>(by.x()) / (crt.right - crt.left) / zoom_;
    move_y_ += static_cast<double>(by.y()) / (crt.bottom - crt.top) / zoom_;
    update();
}

void PictureWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        dragging_ = false;
        unsetCursor();
        return;
    }
    const bool single = buttons_ == left_press;
    buttons_ = 0;
    if (single) {
        emit picked(press_at_, press_keys_);
    }
}

void PictureWidget::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    emit left();
}

void PictureWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F && event->modifiers() == Qt::NoModifier) {
        fit();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace kigumi
