#include "ui/picture/picture_file.h"

#include "base/format.h"
#include "base/message.h"
#include "ui/picture/table_printer.h"

#include <QBuffer>
#include <QImage>
#include <QSvgGenerator>

namespace kigumi {

namespace {

int paint(QPaintDevice& device, const PictureFunction& draw, bool smooth) {
    QPainter painter(&device);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    PainterCanvas canvas(painter);
    return draw(canvas);
}

int paint_png(QBuffer& out, QSize size, const PictureFunction& draw) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    if (paint(image, draw, true) < 0) {
        return -1;
    }
    if (!image.save(&out, "PNG")) { // too large for the memory
        show_message(text_format("%d × %d の図を作れません", size.width(), size.height()));
        return -1;
    }
    return 0;
}

int paint_svg(QBuffer& out, QSize size, const PictureFunction& draw) {
    QSvgGenerator svg;
    svg.setOutputDevice(&out);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    QPainter painter(&svg);
    painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
    PainterCanvas canvas(painter);
    return draw(canvas);
}

int save_page(const fs::path& path, QSize size, const PictureFunction& draw, const QString& title) {
    TablePrinter page(title, "kigumi");
    page.set_landscape(size.width() >= size.height());
    page.add_picture(size, draw);
    return page.save_pdf(path);
}

} // namespace

bool is_picture_file(const fs::path& path) {
    const std::string ending = ending_of(path);
    return ending == ".png" || ending == ".svg" || ending == ".pdf";
}

std::string other_picture_format(const fs::path& path) {
    return text_format("%s: 図の形式は .png、.svg、.pdf です", utf8_of(path).c_str());
}

int save_picture(const fs::path& path, int width, int height, const PictureFunction& draw,
                 const QString& title) {
    const std::string ending = ending_of(path);
    const QSize size(width, height);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    int status = 0;
    if (ending == ".png") {
        status = paint_png(out, size, draw);
    } else if (ending == ".svg") {
        status = paint_svg(out, size, draw);
    } else if (ending == ".pdf") {
        return save_page(path, size, draw, title);
    } else {
        show_message(other_picture_format(path));
        return -1;
    }
    if (status < 0) {
        return -1;
    }
    const QByteArray& bytes = out.data();
    std::string reason;
    return save_file(path, {bytes.constData(), static_cast<size_t>(bytes.size())}, &reason) < 0
               ? refuse(reason)
               : 0;
}

} // namespace kigumi
