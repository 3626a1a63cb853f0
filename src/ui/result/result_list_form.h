// What the list windows of the results share: the list, the filter, CSV, print, preview and PDF.
#pragma once

#include "ui/kit/session.h"
#include "ui/picture/table_printer.h"
#include "ui/result/result_list_model.h"

#include <QDialog>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace kigumi {

// A window beside the results window that shows one result table, sortable by every column
// and filtered by words (`KensakuEdit`). What is saved and printed are the rows as
// shown, or the highlighted ones (`HaniComboBox`).
class ResultListForm : public QDialog, protected Desk {
    Q_OBJECT

  public:
    // `grid` is the name of the list.
    ResultListForm(Session& session, const ResultTable& table, const char* grid, QWidget* parent);

    // The pages that are printed.
    TablePrinter printed() const;

  public slots:
    // Follows the selection of results, which another window has changed.
    virtual void show_selection() = 0;

  signals:
    // This window has changed the selection of results.
    void selection_changed();

  protected:
    using Desk::result; // and not that of QDialog

    QTableView& list() const { return *list_; }
    ResultListModel& listed() const { return *model_; }
    ResultListProxy& proxy() const { return *proxy_; }
    RowSelection& chosen() const { return *chosen_; }

    // Shows these rows, with headings and columns as wide as they need.
    void show_rows(std::vector<int> rows, bool mark);
    // A line above the list (`SetumeiLabel`), also printed unless it speaks of the window only.
    void set_note(const QString& note, bool printed);
    // A line below it, also printed (`GoukeiLabel`).
    void set_summary(const QString& summary);
    // A button of the row below the list, before those of every list.
    QPushButton* add_button(const char* name, const QString& caption);
    // Rows of the result table that are highlighted, as shown from top to bottom.
    std::vector<int> highlighted_rows() const;
    // Shows how many rows there are, are shown and are highlighted.
    void show_counts();
    // Called once the filter has changed which rows are shown.
    virtual void filtered() {}
    // Delete was pressed in the list.
    virtual void delete_pressed() {}
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void add_filter();
    void add_list(const ResultTable& table, const char* grid);
    void add_buttons();
    std::vector<int> wanted_rows() const;
    // Which rows the pages hold, in words.
    QString wanted_text(size_t rows) const;
    void save_csv();
    void save_pdf();
    void print();
    void preview();

    ResultListModel* model_;
    ResultListProxy* proxy_;
    RowSelection* chosen_;
    QTableView* list_ = nullptr;
    QLineEdit* filter_ = nullptr;
    QLabel* age_ = nullptr; // says that the results are not of the present input
    QLabel* note_ = nullptr;
    bool note_printed_ = false;
    QLabel* summary_ = nullptr;
    QLabel* counts_ = nullptr;
    QComboBox* wanted_ = nullptr;
    QHBoxLayout* own_buttons_ = nullptr;
};

} // namespace kigumi
