// Paper: headings, texts, tables and pictures one below the other, on as many pages as it takes.
#pragma once

#include "results/result_table.h"
#include "ui/picture/picture_file.h"

#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QString>
#include <QStringList>

#include <functional>
#include <variant>
#include <vector>

namespace kigumi {

// A table on paper. Its columns are as wide as their longest text; where they do not fit beside
// each other the letters become smaller.
struct PrintedTable {
    struct Column {
        QString heading;    // may have several lines
        bool right = false; // numbers
    };
    std::vector<Column> columns;
    int rows = 0;
    std::function<QString(int row, int column)> cell;
    std::function<bool(int row, int column)> marked; // in bold letters on a tint; none when empty
};

// Rows of a sheet, of the result table's first columns (-1: all), as a table on paper.
PrintedTable printed_rows(const ResultSheet& sheet, std::vector<int> rows, int columns = -1);

// Collects what is to be printed, then lays it out for a paper. Every page has the title and the
// date at its head and a name and "n / m" at its foot; a table that goes on repeats its headings.
class TablePrinter {
  public:
    // `foot` stands in the lower left corner of each page.
    TablePrinter(const QString& title, const QString& foot);

    void add_heading(const QString& text);
    void add_text(const QString& text);
    void add_table(PrintedTable table);
    // A picture drawn for this many pixels, shown over the width of the page.
    void add_picture(QSize size, PictureFunction draw);
    void set_landscape(bool on) { landscape_ = on; }

    const QString& title() const { return title_; }
    // A4 upright or lying, with margins.
    QPageLayout page_layout() const;
    // Pages that it takes on the paper of this device.
    int pages(QPagedPaintDevice& device) const;
    // Paints the pages from `first` to `last` (1-based; -1: to the end). 0, or -1 after a message.
    int print(QPagedPaintDevice& device, int first = 1, int last = -1) const;
    // A PDF file. 0, or -1 after a message; an old file stays whole then.
    int save_pdf(const fs::path& path) const;

  private:
    struct Heading {
        QString text;
    };
    struct Text {
        QString text;
    };
    struct Picture {
        QSize size;
        PictureFunction draw;
    };
    using Item = std::variant<Heading, Text, PrintedTable, Picture>;

    QString title_, foot_;
    bool landscape_ = false;
    std::vector<Item> items_;

    friend class PageFlow;
};

// Today as the pages show it: 2026年11月21日.
QString printed_date();

} // namespace kigumi
