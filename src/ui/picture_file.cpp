#include "ui/picture_file.h"

#include "base/format.h"
#include "base/message.h"
#include "ui/painter_canvas.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace kigumi {

namespace {

void paint(QPaintDevice& device, const PictureFunction& draw, bool smooth) {
    QPainter painter(&device);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    PainterCanvas canvas(painter);
    draw(canvas);
}

void paint_png(QBuffer& out, QSize size, const PictureFunction& draw) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    paint(image, draw, true);
    image.save(&out, "PNG");
}

void paint_svg(QBuffer& out, QSize size, const PictureFunction& draw) {
    QSvgGenerator svg;
    svg.setOutputDevice(&out);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    QPainter painter(&svg);
    painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
    PainterCanvas canvas(painter);
    draw(canvas);
}

void paint_pdf(QBuffer& out, QSize size, const PictureFunction& draw) {
    constexpr int pixels_an_inch = 96;
    constexpr double points_a_pixel = 72.0 / pixels_an_inch;
    QPdfWriter pdf(&out);
    pdf.setResolution(pixels_an_inch);
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setPageSize(QPageSize(QSizeF(size) * points_a_pixel, QPageSize::Point));
    paint(pdf, draw, false);
}

} // namespace

int save_picture(const fs::path& path, int width, int height, const PictureFunction& draw) {
    const std::string ending = ending_of(path);
    const QSize size(width, height);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    if (ending == ".png") {
        paint_png(out, size, draw);
    } else if (ending == ".svg") {
        paint_svg(out, size, draw);
    } else if (ending == ".pdf") {
        paint_pdf(out, size, draw);
    } else {
        show_message(text_format("%s: 図の形式は .png、.svg、.pdf です", utf8_of(path).c_str()));
        return -1;
    }
    const QByteArray& bytes = out.data();
    if (save_file(path, {bytes.constData(), static_cast<size_t>(bytes.size())}) < 0) {
        show_message(file_error());
        return -1;
    }
    return 0;
}

} // namespace kigumi
