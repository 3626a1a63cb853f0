#include "ui/picture/painter_canvas.h"

#include <QPolygon>

namespace kigumi {

QColor colour_of(int index) {
    const std::uint32_t value = pen_colour(index);
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF));
}

namespace {

Qt::PenStyle style_of(int style) {
    switch (style) {
    case pen_dotted:
        return Qt::DotLine;
    case pen_dashed:
        return Qt::DashLine;
    case pen_dash_dot:
        return Qt::DashDotLine;
    case pen_dash_dot_dot:
        return Qt::DashDotDotLine;
    case pen_invisible:
        return Qt::NoPen;
    default:
        return Qt::SolidLine;
    }
}

// Lines collected before they are drawn, so that a large picture needs little memory.
constexpr int batch = 4096;

} // namespace

void PainterCanvas::set_pen(int style, int width, int colour) {
    if (style == style_ && width == width_ && colour == colour_) {
        return;
    }
    flush();
    style_ = style;
    width_ = width;
    colour_ = colour;
}

void PainterCanvas::use_pen(bool filled) {
    painter_.setPen(QPen(colour_of(colour_), width_, style_of(style_), Qt::RoundCap));
    painter_.setBrush(filled ? QBrush(colour_of(colour_)) : QBrush(Qt::NoBrush));
}

void PainterCanvas::flush() {
    if (!lines_.isEmpty()) {
        use_pen(false);
        painter_.drawLines(lines_);
        lines_.clear();
    }
}

void PainterCanvas::draw_line(Pixel from, Pixel to) {
    lines_.append(QLine(from.x, from.y, to.x, to.y));
    if (lines_.size() >= batch) {
        flush();
    }
}

void PainterCanvas::draw_circle(Pixel centre, int half, bool filled) {
    flush();
    use_pen(filled);
    painter_.drawEllipse(centre.x - half, centre.y - half, 2 * half, 2 * half);
}

void PainterCanvas::draw_square(Pixel centre, int half, bool filled) {
    flush();
    use_pen(filled);
    painter_.drawRect(centre.x - half, centre.y - half, 2 * half, 2 * half);
}

void PainterCanvas::draw_polygon(std::span<const Pixel> points) {
    flush();
    use_pen(true);
    QPolygon polygon;
    for (const Pixel& p : points) {
        polygon.append(QPoint(p.x, p.y));
    }
    painter_.drawPolygon(polygon);
}

} // namespace kigumi
