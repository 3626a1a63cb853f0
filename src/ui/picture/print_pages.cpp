#include "ui/picture/print_pages.h"

#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/table_printer.h"

#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace kigumi {

void print_pages(const fs::path& work_dir, QWidget* parent, const TablePrinter& pages) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(pages.title());
    printer.setPageLayout(pages.page_layout());
    if (QPrinterInfo::availablePrinters().isEmpty()) { // only a file can be printed to
        printer.setOutputFileName(qt_path(work_dir) + "/" + pages.title() + ".pdf");
    }
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle("印刷");
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    dialog.setMinMax(1, pages.pages(printer));
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const BusyCursor busy;
    const bool some = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    pages.print(printer, some ? printer.fromPage() : 1, some ? printer.toPage() : -1);
}

void preview_pages(QWidget* parent, const TablePrinter& pages) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(pages.title());
    printer.setPageLayout(pages.page_layout());
    QPrintPreviewDialog dialog(&printer, parent, Qt::Window);
    dialog.setWindowTitle("印刷プレビュー");
    dialog.resize(900, 700);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&pages](QPrinter* paper) {
                         const BusyCursor busy;
                         pages.print(*paper);
                     });
    dialog.exec();
}

void save_pages(const fs::path& work_dir, QWidget* parent, const TablePrinter& pages) {
    const fs::path path =
        ask_save_file(work_dir, parent, "PDF保存", "PDFファイル(*.pdf)|*.pdf", "pdf");
    if (path.empty()) {
        return;
    }
    int status = 0;
    {
        const BusyCursor busy;
        status = pages.save_pdf(path);
    }
    if (status == 0) {
        show_message("PDFファイルを保存しました");
    }
}

} // namespace kigumi
