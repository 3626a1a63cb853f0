#include "ui/frame/kihon_sketch.h"

#include <QFontMetrics>
#include <QPainter>

#include <vector>

namespace kigumi {

namespace {

// A length up the drawing: its name and, in units of the drawing, how high it is.
struct Rise {
    QString name;
    double height;
    enum Part { ground, columns, floor, posts, roof } part;
};

constexpr int cells = 4;
constexpr double pitch = 1.0;
constexpr double eaves = 0.5;

std::vector<Rise> rises_of(const KihonChoice& choice) {
    std::vector<Rise> rises{{"最低レベル", 0.7, Rise::ground}};
    if (choice.hashira < 1) {
        rises.push_back({"束高", 0.6, Rise::floor});
        return rises;
    }
    const QString heights[] = {"１層柱高", "２層柱高", "３層柱高"};
    const int storeys = choice.kaisou < 0 ? 1 : choice.kaisou + 1;
    for (int i = 0; i < storeys; ++i) {
        rises.push_back({heights[i], 1.4, Rise::columns});
        rises.push_back({"束高", 0.6, Rise::floor});
    }
    if (choice.yane == 1 && storeys < 3) {
        rises.push_back({"屋根柱高", 0.9, Rise::posts});
        rises.push_back({"屋根高さ", 1.0, Rise::roof});
    }
    return rises;
}

// Paints in units of the drawing, with x from the left column and y up from the ground.
class SketchPainter {
  public:
    SketchPainter(QPainter& painter, const QPalette& palette, const QString& marked)
        : painter_(painter), ink_(palette.color(QPalette::Text)),
          thin_(palette.color(QPalette::Disabled, QPalette::Text)),
          marked_ink_(palette.color(QPalette::Highlight)), marked_(marked) {}

    // Fits the drawing and its dimensions into `size`.
    void fit(QSize size, double height);
    void line(double x1, double y1, double x2, double y2);
    void frame(const std::vector<Rise>& rises, bool with_eaves);
    void dimensions(const std::vector<Rise>& rises);

  private:
    QPointF at(double x, double y) const { return {left_ + x * unit_, bottom_ - y * unit_}; }
    void floor(double y, double depth);
    void rise(double x, double from, double to, const QString& name, bool name_on_left);
    void use_ink(const QString& name);

    QPainter& painter_;
    QColor ink_, thin_, marked_ink_;
    QString marked_;
    double unit_ = 1.0, left_ = 0.0, bottom_ = 0.0;
};

void SketchPainter::fit(QSize size, double height) {
    const QFontMetrics metrics = painter_.fontMetrics();
    const double text = metrics.horizontalAdvance("最低レベル");
    const double sides = metrics.horizontalAdvance("高さ") + text + 4 * metrics.height();
    const double ends = 3.5 * metrics.height();
    const double width = cells * pitch + 2 * eaves;
    unit_ = std::min((size.width() - sides) / width, (size.height() - ends) / height);
    left_ = (size.width() - sides - unit_ * width) / 2 + eaves * unit_ +
            metrics.horizontalAdvance("高さ") + 1.5 * metrics.height();
    bottom_ = size.height() - 2.5 * metrics.height() - (size.height() - ends - unit_ * height) / 2;
}

void SketchPainter::line(double x1, double y1, double x2, double y2) {
    painter_.drawLine(at(x1, y1), at(x2, y2));
}

void SketchPainter::floor(double y, double depth) {
    const double width = cells * pitch;
    line(0, y, width, y);
    line(0, y + depth, width, y + depth);
    line(0, y, 0, y + depth);
    line(width, y, width, y + depth);
    for (int i = 0; i < cells; ++i) {
        const double x = i * pitch;
        line(x, y, x + pitch / 2, y + depth);
        line(x + pitch / 2, y + depth, x + pitch, y);
    }
}

void SketchPainter::frame(const std::vector<Rise>& rises, bool with_eaves) {
    const double width = cells * pitch;
    painter_.setPen(QPen(thin_, 1));
    line(-eaves, 0, width + eaves, 0);
    painter_.setPen(QPen(ink_, 1.5));
    double y = 0;
    for (const Rise& rise : rises) {
        const double top = y + rise.height;
        switch (rise.part) {
        case Rise::ground:
            break;
        case Rise::columns:
        case Rise::posts:
            for (const double x : {0.0, pitch, width - pitch, width}) {
                line(x, y, x, top);
            }
            break;
        case Rise::floor:
            floor(y, rise.height);
            break;
        case Rise::roof:
            line(0, y, width, y);
            line(0, y, width / 2, top);
            line(width / 2, top, width, y);
            break;
        }
        y = top;
    }
    if (with_eaves) {
        line(-eaves, y, width + eaves, y);
    }
}

void SketchPainter::use_ink(const QString& name) {
    const bool is_marked = name == marked_;
    painter_.setPen(QPen(is_marked ? marked_ink_ : thin_, is_marked ? 2 : 1));
}

void SketchPainter::rise(double x, double from, double to, const QString& name, bool name_on_left) {
    use_ink(name);
    line(x, from, x, to);
    const QPointF tick(painter_.fontMetrics().height() / 4.0, 0);
    for (const double y : {from, to}) {
        painter_.drawLine(at(x, y) - tick, at(x, y) + tick);
    }
    const QRectF box = painter_.fontMetrics().boundingRect(name);
    const double gap = painter_.fontMetrics().height() / 2.0;
    const QPointF middle = at(x, (from + to) / 2);
    const double width = painter_.fontMetrics().horizontalAdvance(name);
    const double text_left = name_on_left ? middle.x() - gap - width : middle.x() + gap;
    painter_.setPen(name == marked_ ? marked_ink_ : ink_);
    painter_.drawText(QPointF(text_left, middle.y() - box.center().y()), name);
}

void SketchPainter::dimensions(const std::vector<Rise>& rises) {
    double y = 0;
    for (const Rise& rise_here : rises) {
        rise(cells * pitch + eaves + 0.2, y, y + rise_here.height, rise_here.name, false);
        y += rise_here.height;
    }
    rise(-eaves - 0.2, 0, y, "高さ", true);
    const QString pitch_name = "束巾";
    const double down = painter_.fontMetrics().height();
    const QPointF from = at(0, 0) + QPointF(0, down);
    const QPointF to = at(pitch, 0) + QPointF(0, down);
    use_ink(pitch_name);
    painter_.drawLine(from, to);
    const QPointF tick(0, down / 4);
    painter_.drawLine(from - tick, from + tick);
    painter_.drawLine(to - tick, to + tick);
    painter_.setPen(pitch_name == marked_ ? marked_ink_ : ink_);
    const double text = painter_.fontMetrics().horizontalAdvance(pitch_name);
    painter_.drawText((from + to) / 2 + QPointF(-text / 2, 1.2 * down), pitch_name);
}

} // namespace

KihonSketch::KihonSketch(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void KihonSketch::show_frame(const KihonChoice& choice) {
    choice_ = choice;
    update();
}

void KihonSketch::mark(const QString& length) {
    marked_ = length;
    update();
}

QSize KihonSketch::sizeHint() const {
    return {fontMetrics().height() * 25, fontMetrics().height() * 22};
}

QSize KihonSketch::minimumSizeHint() const {
    return sizeHint() * 0.9;
}

void KihonSketch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const std::vector<Rise> rises = rises_of(choice_);
    double height = 0;
    for (const Rise& rise : rises) {
        height += rise.height;
    }
    SketchPainter sketch(painter, palette(), marked_);
    sketch.fit(size(), height);
    sketch.frame(rises, choice_.hashira >= 1 && choice_.yane == 2);
    sketch.dimensions(rises);
}

} // namespace kigumi
