#include "ui/picture/table_printer.h"

#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/painter_canvas.h"

#include <QBuffer>
#include <QDate>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace kigumi {

namespace {

constexpr double mm_an_inch = 25.4;

// Sizes on paper, mm.
constexpr double page_margin = 15.0;
constexpr double head_height = 9.0; // with the gap below it
constexpr double foot_height = 8.0;
constexpr double cell_padding = 1.2;
constexpr double rule_width = 0.1;
constexpr double gap = 3.0;             // after a table or a picture
constexpr double with_heading = 30.0;   // what has to fit below a heading on the same page
constexpr double row_height = 1.3;      // of the letters' height
constexpr double smallest_letter = 4.0; // points

// Letters, points.
constexpr double heading_size = 12.0;
constexpr double text_size = 9.5;
constexpr double table_size = 8.5;
constexpr double edge_size = 8.5; // head and foot of the page

const QColor heading_tint(0xE8, 0xEE, 0xF7);
const QColor mark_tint(0xFF, 0xE9, 0xA8);
const QColor rule_colour(0xB0, 0xB0, 0xB0);

// Letters beyond the Latin ones count as two: only the longest text of a column is measured.
int text_weight(const QString& text) {
    constexpr char16_t last_narrow = 0xFF;
    return static_cast<int>(text.size() + std::count_if(text.begin(), text.end(), [](QChar c) {
                                return c.unicode() > last_narrow;
                            }));
}

} // namespace

// One run over the pages: with a painter it paints those wanted, without one it only counts them.
class PageFlow {
  public:
    PageFlow(QPagedPaintDevice& device, const TablePrinter& printed)
        : device_(device), printed_(printed) {
        const int dpi = device.logicalDpiX();
        dots_a_mm_ = dpi / mm_an_inch;
        const QSize size = device.pageLayout().paintRectPixels(dpi).size();
        width_ = size.width();
        bottom_ = size.height() - mm(foot_height);
        height_ = size.height();
    }

    int count() {
        run();
        return page_;
    }
    int paint(int pages, int first, int last) {
        pages_ = pages;
        first_ = first;
        last_ = last;
        QPainter painter;
        if (!painter.begin(&device_)) {
            return refuse("印刷を始められません");
        }
        painter_ = &painter;
        run();
        return status_;
    }

  private:
    double mm(double length) const { return length * dots_a_mm_; }
    bool paints() const { return painter_ != nullptr && page_ >= first_ && page_ <= last_; }
    QFont font(double points, bool bold = false) const {
        QFont letters;
        letters.setPointSizeF(points);
        letters.setBold(bold);
        return letters;
    }
    QFontMetricsF metrics(const QFont& letters) const { return QFontMetricsF(letters, &device_); }

    void run();
    void start_page();
    // Goes on to a new page unless this much fits on the one begun.
    void require(double height);
    void draw_edges();
    void draw_text(const QRectF& place, int flags, const QString& text, const QFont& letters);
    void place(const TablePrinter::Heading& heading);
    void place(const TablePrinter::Text& text);
    void place(const PrintedTable& table);
    void place(const TablePrinter::Picture& picture);

    QPagedPaintDevice& device_;
    const TablePrinter& printed_;
    QPainter* painter_ = nullptr;
    double dots_a_mm_ = 1.0;
    double width_ = 0.0, height_ = 0.0;
    double bottom_ = 0.0; // of the part that is written on
    double y_ = 0.0;
    int page_ = 0;
    bool painted_ = false; // a page
    int pages_ = 0, first_ = 1, last_ = 0;
    int status_ = 0;

    friend class TableFlow;
};

// The measures of one table on the paper of a flow, and its rows.
class TableFlow {
  public:
    TableFlow(PageFlow& flow, const PrintedTable& table) : flow_(flow), table_(table) {
        double size = table_size;
        const double full = measure(size);
        if (full > flow.width_) {
            size = std::max(smallest_letter, size * flow.width_ / full);
            measure(size);
        }
        for (const PrintedTable::Column& column : table.columns) {
            heading_lines_ =
                std::max(heading_lines_, static_cast<int>(column.heading.count('\n')) + 1);
        }
        line_ = flow.metrics(letters_).height();
    }

    double row() const { return line_ * row_height; }
    double head() const { return line_ * (heading_lines_ + row_height - 1.0); }
    void draw_head();
    void draw_row(int row);

  private:
    // Sets the letters and column widths; returns the width of the whole.
    double measure(double points);
    void draw_cell(size_t column, double height, int aligned, const QString& text,
                   const QFont& letters);
    void draw_rule(double y);
    // Lines between the columns of a row of this height.
    void draw_columns(double height);

    PageFlow& flow_;
    const PrintedTable& table_;
    QFont letters_, bold_;
    std::vector<QString> longest_; // text of each column
    std::vector<double> left_;     // edges of the columns, one more than there are columns
    int heading_lines_ = 1;
    double line_ = 0.0;
};

double TableFlow::measure(double points) {
    letters_ = flow_.font(points);
    bold_ = flow_.font(points, true);
    if (longest_.empty()) {
        for (size_t i = 0; i < table_.columns.size(); ++i) {
            QString longest;
            for (int row = 0; row < table_.rows; ++row) {
                const QString text = table_.cell(row, static_cast<int>(i));
                longest = text_weight(text) > text_weight(longest) ? text : longest;
            }
            longest_.push_back(longest);
        }
    }
    const QFontMetricsF bold_metrics = flow_.metrics(bold_);
    const double padding = 2.0 * flow_.mm(cell_padding) * points / table_size;
    left_.assign(1, 0.0);
    for (size_t i = 0; i < table_.columns.size(); ++i) {
        double widest = bold_metrics.horizontalAdvance(longest_[i]);
        for (const QString& line : table_.columns[i].heading.split('\n')) {
            widest = std::max(widest, bold_metrics.horizontalAdvance(line));
        }
        left_.push_back(left_.back() + widest + padding);
    }
    return left_.back();
}

void TableFlow::draw_cell(size_t column, double height, int aligned, const QString& text,
                          const QFont& letters) {
    const double padding = flow_.mm(cell_padding) * letters_.pointSizeF() / table_size;
    const QRectF cell(left_[column] + padding, flow_.y_,
                      left_[column + 1] - left_[column] - 2.0 * padding, height);
    // A little room keeps a text that just fits from being cut by rounding.
    flow_.draw_text(cell.adjusted(-padding / 2, 0, padding / 2, 0), aligned | Qt::AlignVCenter,
                    text, letters);
}

void TableFlow::draw_rule(double y) {
    if (flow_.paints()) {
        flow_.painter_->setPen(QPen(rule_colour, flow_.mm(rule_width)));
        flow_.painter_->drawLine(QPointF(0, y), QPointF(left_.back(), y));
    }
}

void TableFlow::draw_columns(double height) {
    if (flow_.paints()) {
        flow_.painter_->setPen(QPen(rule_colour, flow_.mm(rule_width)));
        for (const double x : left_) {
            flow_.painter_->drawLine(QLineF(x, flow_.y_, x, flow_.y_ + height));
        }
    }
}

void TableFlow::draw_head() {
    if (flow_.paints()) {
        flow_.painter_->fillRect(QRectF(0, flow_.y_, left_.back(), head()), heading_tint);
    }
    draw_rule(flow_.y_);
    for (size_t i = 0; i < table_.columns.size(); ++i) {
        const PrintedTable::Column& column = table_.columns[i];
        draw_cell(i, head(), column.right ? Qt::AlignRight : Qt::AlignLeft, column.heading,
                  letters_);
    }
    draw_columns(head());
    flow_.y_ += head();
    draw_rule(flow_.y_);
}

void TableFlow::draw_row(int row_at) {
    for (size_t i = 0; i < table_.columns.size() && flow_.paints(); ++i) {
        const int column = static_cast<int>(i);
        const bool marked = table_.marked && table_.marked(row_at, column);
        if (marked) {
            flow_.painter_->fillRect(QRectF(left_[i], flow_.y_, left_[i + 1] - left_[i], row()),
                                     mark_tint);
        }
        draw_cell(i, row(), table_.columns[i].right ? Qt::AlignRight : Qt::AlignLeft,
                  table_.cell(row_at, column), marked ? bold_ : letters_);
    }
    draw_columns(row());
    flow_.y_ += row();
    draw_rule(flow_.y_);
}

void PageFlow::run() {
    page_ = 0;
    start_page();
    for (const TablePrinter::Item& item : printed_.items_) {
        std::visit([this](const auto& each) { place(each); }, item);
    }
}

void PageFlow::start_page() {
    ++page_;
    y_ = mm(head_height);
    if (!paints()) {
        return;
    }
    if (painted_ && !device_.newPage()) {
        status_ = refuse("次のページを印刷できません");
    }
    painted_ = true;
    draw_edges();
}

void PageFlow::require(double height) {
    if (y_ + height > bottom_ && y_ > mm(head_height)) {
        start_page();
    }
}

void PageFlow::draw_edges() {
    const QFont letters = font(edge_size);
    const QRectF head(0, 0, width_, mm(head_height - gap));
    draw_text(head, Qt::AlignLeft | Qt::AlignVCenter, printed_.title_, letters);
    draw_text(head, Qt::AlignRight | Qt::AlignVCenter, printed_date(), letters);
    const QRectF foot(0, bottom_ + mm(gap), width_, height_ - bottom_ - mm(gap));
    draw_text(foot, Qt::AlignLeft | Qt::AlignVCenter, printed_.foot_, letters);
    draw_text(foot, Qt::AlignHCenter | Qt::AlignVCenter, QString("%1 / %2").arg(page_).arg(pages_),
              letters);
    painter_->setPen(QPen(rule_colour, mm(rule_width)));
    painter_->drawLine(QLineF(0, head.bottom(), width_, head.bottom()));
    painter_->drawLine(QLineF(0, foot.top(), width_, foot.top()));
}

void PageFlow::draw_text(const QRectF& place, int flags, const QString& text,
                         const QFont& letters) {
    if (paints()) {
        painter_->setPen(Qt::black);
        painter_->setFont(letters);
        painter_->drawText(place, flags, text);
    }
}

void PageFlow::place(const TablePrinter::Heading& heading) {
    const QFont letters = font(heading_size, true);
    const double height = metrics(letters).height() * row_height;
    const double above = y_ > mm(head_height) ? mm(gap) : 0.0;
    require(above + height + mm(with_heading));
    y_ += y_ > mm(head_height) ? mm(gap) : 0.0;
    draw_text(QRectF(0, y_, width_, height), Qt::AlignLeft | Qt::AlignVCenter, heading.text,
              letters);
    y_ += height + mm(1.0);
}

void PageFlow::place(const TablePrinter::Text& text) {
    const QFont letters = font(text_size);
    const int flags = Qt::AlignLeft | Qt::TextWordWrap;
    const double height =
        metrics(letters).boundingRect(QRectF(0, 0, width_, height_), flags, text.text).height();
    require(height);
    draw_text(QRectF(0, y_, width_, height + 1.0), flags, text.text, letters);
    y_ += height + mm(1.0);
}

void PageFlow::place(const PrintedTable& table) {
    TableFlow rows(*this, table);
    require(rows.head() + rows.row());
    rows.draw_head();
    for (int row = 0; row < table.rows; ++row) {
        if (y_ + rows.row() > bottom_) {
            start_page();
            rows.draw_head();
        }
        rows.draw_row(row);
    }
    y_ += mm(gap);
}

void PageFlow::place(const TablePrinter::Picture& picture) {
    const double room = bottom_ - mm(head_height);
    const double scale = std::min(width_ / picture.size.width(), room / picture.size.height());
    const double height = picture.size.height() * scale;
    require(height);
    if (paints()) {
        painter_->save();
        painter_->translate((width_ - picture.size.width() * scale) / 2.0, y_);
        painter_->scale(scale, scale);
        painter_->setClipRect(QRect(QPoint(0, 0), picture.size));
        painter_->setFont(font(text_size));
        {
            PainterCanvas canvas(*painter_);
            status_ = std::min(status_, picture.draw(canvas));
        }
        painter_->restore();
    }
    y_ += height + mm(gap);
}

PrintedTable printed_rows(const ResultSheet& sheet, std::vector<int> rows, int columns) {
    PrintedTable table;
    const int all = columns < 0 ? sheet.columns() : columns;
    for (int i = 0; i < all; ++i) {
        const ResultColumn& column = sheet.column(i);
        const QString unit = *column.unit == '\0' ? QString() : QString("\n(%1)").arg(column.unit);
        table.columns.push_back({column.heading + unit, column.number != nullptr});
    }
    table.rows = static_cast<int>(rows.size());
    table.cell = [sheet, shown = std::move(rows)](int row, int column) {
        return qt_text(sheet.text(shown[static_cast<size_t>(row)], column));
    };
    return table;
}

TablePrinter::TablePrinter(const QString& title, const QString& foot)
    : title_(title), foot_(foot) {}

void TablePrinter::add_heading(const QString& text) {
    items_.emplace_back(Heading{text});
}

void TablePrinter::add_text(const QString& text) {
    items_.emplace_back(Text{text});
}

void TablePrinter::add_table(PrintedTable table) {
    items_.emplace_back(std::move(table));
}

void TablePrinter::add_picture(QSize size, PictureFunction draw) {
    items_.emplace_back(Picture{size, std::move(draw)});
}

QPageLayout TablePrinter::page_layout() const {
    return QPageLayout(
        QPageSize(QPageSize::A4), landscape_ ? QPageLayout::Landscape : QPageLayout::Portrait,
        QMarginsF(page_margin, page_margin, page_margin, page_margin), QPageLayout::Millimeter);
}

int TablePrinter::pages(QPagedPaintDevice& device) const {
    return PageFlow(device, *this).count();
}

int TablePrinter::print(QPagedPaintDevice& device, int first, int last) const {
    const int all = pages(device);
    return PageFlow(device, *this).paint(all, first, last < 0 ? all : last);
}

int TablePrinter::save_pdf(const fs::path& path) const {
    constexpr int dots_an_inch = 600;
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    {
        QPdfWriter pdf(&out);
        pdf.setTitle(title_);
        pdf.setCreator("kigumi " KIGUMI_VERSION);
        pdf.setResolution(dots_an_inch);
        pdf.setPageLayout(page_layout());
        if (print(pdf) < 0) {
            return -1;
        }
    }
    const QByteArray& bytes = out.data();
    std::string reason;
    return save_file(path, {bytes.constData(), static_cast<size_t>(bytes.size())}, &reason) < 0
               ? refuse(reason)
               : 0;
}

QString printed_date() {
    return QDate::currentDate().toString("yyyy年M月d日");
}

} // namespace kigumi
