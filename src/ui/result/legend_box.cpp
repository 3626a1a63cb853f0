#include "ui/result/legend_box.h"

#include "ui/kit/dialogs.h"
#include "ui/picture/painter_canvas.h"

#include <QFontMetricsF>

#include <algorithm>

namespace kigumi {

namespace {

// Pixels of the picture.
constexpr int corner = 12;
constexpr int padding = 8;
constexpr int sample = 34; // length of a sample line
constexpr int gap = 8;     // between a sample and its words
constexpr int letters = 13;
constexpr double row_height = 1.35; // of the letters' height

const QColor paper(255, 255, 255, 225);
const QColor edge(0xB0, 0xB0, 0xB0);

} // namespace

void paint_legend(PainterCanvas& canvas, int width, const std::vector<LegendLine>& lines,
                  double enlarged) {
    if (lines.empty()) {
        return;
    }
    QPainter& painter = canvas.painter();
    painter.save();
    painter.scale(enlarged, enlarged);
    QFont font = painter.font();
    font.setPixelSize(letters);
    painter.setFont(font);
    const QFontMetricsF metrics(font, painter.device());
    const double row = metrics.height() * row_height;
    double widest = 0.0;
    for (const LegendLine& line : lines) {
        const double indent = line.colour < 0 ? 0 : sample + gap;
        widest = std::max(widest, indent + metrics.horizontalAdvance(qt_text(line.words)));
    }
    const QRectF box(width / enlarged - corner - widest - 2 * padding, corner, widest + 2 * padding,
                     row * static_cast<double>(lines.size()) + 2 * padding);
    painter.setPen(edge);
    painter.setBrush(paper);
    painter.drawRect(box);
    double y = box.top() + padding;
    for (const LegendLine& line : lines) {
        double x = box.left() + padding;
        if (line.colour >= 0) {
            painter.setPen(QPen(colour_of(line.colour), line.width, Qt::SolidLine, Qt::FlatCap));
            painter.drawLine(QPointF(x, y + row / 2), QPointF(x + sample, y + row / 2));
            x += sample + gap;
        }
        painter.setPen(Qt::black);
        painter.drawText(QRectF(x, y, box.right() - x, row), Qt::AlignLeft | Qt::AlignVCenter,
                         qt_text(line.words));
        y += row;
    }
    painter.restore();
}

} // namespace kigumi
