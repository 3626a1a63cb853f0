// Pages to a printer, to the screen and to a PDF file, each through its dialog.
#pragma once

#include "base/files.h"

class QWidget;

namespace kigumi {

class TablePrinter;

// Asks for the printer and prints the pages chosen there.
void print_pages(const fs::path& work_dir, QWidget* parent, const TablePrinter& pages);
// Shows the pages as they would be printed (印刷プレビュー).
void preview_pages(QWidget* parent, const TablePrinter& pages);
// Asks for a file and writes the pages into it.
void save_pages(const fs::path& work_dir, QWidget* parent, const TablePrinter& pages);

} // namespace kigumi
