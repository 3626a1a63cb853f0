#include "ui/result/result_list_form.h"

#include "analysis/result_input.h"
#include "base/message.h"
#include "results/result_csv.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/print_pages.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace kigumi {

namespace {

// Entries of HaniComboBox.
enum Wanted { wanted_shown = 0, wanted_highlighted = 1 };

constexpr int most_upright_columns = 10; // a printed list with more lies on its side

QPushButton* make_button(const char* name, const QString& caption) {
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QLabel* make_label(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setWordWrap(true);
    return label;
}

} // namespace

ResultListForm::ResultListForm(Session& session, const ResultTable& table, const char* grid,
                               QWidget* parent)
    : QDialog(parent), Desk(session), model_(new ResultListModel(result, table, this)),
      proxy_(new ResultListProxy(*model_)), chosen_(new RowSelection(proxy_)) {
    setWindowTitle(table.title);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setModal(false);
    resize(960, 400);
    new QVBoxLayout(this);
    add_filter();
    add_list(table, grid);
    add_buttons();
    list_->setFocus();
}

void ResultListForm::add_filter() {
    auto* all = static_cast<QVBoxLayout*>(layout());
    age_ = make_label("KekkaAgeLabel");
    age_->setText(age_sentence(result_age(model, result)));
    age_->setVisible(!age_->text().isEmpty());
    all->addWidget(age_);
    note_ = make_label("SetumeiLabel");
    all->addWidget(note_);
    filter_ = new QLineEdit;
    filter_->setObjectName("KensakuEdit");
    filter_->setPlaceholderText("番号・節点名（* と ? も使えます）");
    filter_->setClearButtonEnabled(true);
    auto* caption = new QLabel("絞り込み(&F)");
    caption->setBuddy(filter_);
    counts_ = new QLabel;
    counts_->setObjectName("KensuuLabel");
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(filter_, 1);
    row->addWidget(counts_);
    all->addLayout(row);
    connect(filter_, &QLineEdit::textChanged, this, [this](const QString& words) {
        proxy_->set_filter(words);
        filtered();
        show_counts();
    });
}

void ResultListForm::add_list(const ResultTable& table, const char* grid) {
    auto* all = static_cast<QVBoxLayout*>(layout());
    list_ = new QTableView;
    list_->setObjectName(grid);
    list_->setAccessibleName(table.title);
    list_->setModel(proxy_);
    list_->setSelectionModel(chosen_);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setAlternatingRowColors(true);
    list_->setWordWrap(false);
    list_->setTabKeyNavigation(false);
    list_->verticalHeader()->hide();
    list_->verticalHeader()->setDefaultSectionSize(list_->fontMetrics().height() + 6);
    list_->horizontalHeader()->setHighlightSections(false);
    // Unsorted, as the results were read, until a heading is clicked.
    list_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    list_->setSortingEnabled(true);
    list_->installEventFilter(this);
    all->addWidget(list_, 1);
    summary_ = make_label("GoukeiLabel");
    summary_->hide();
    all->addWidget(summary_);
}

bool ResultListForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Delete)) {
        delete_pressed();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void ResultListForm::add_buttons() {
    own_buttons_ = new QHBoxLayout;
    wanted_ = new QComboBox;
    wanted_->setObjectName("HaniComboBox");
    wanted_->addItems({"表示している行", "選んだ行"});
    auto* caption = new QLabel("保存と印刷(&W)");
    caption->setBuddy(wanted_);
    QPushButton* csv = make_button("CsvButton", "CSV保存(&S)...");
    QPushButton* paper = make_button("InsatuButton", "印刷(&P)...");
    QPushButton* look = make_button("PreviewButton", "プレビュー(&V)...");
    QPushButton* pdf = make_button("PdfButton", "PDF保存(&D)...");
    QPushButton* leave = make_button("CloseButton", "閉じる(&C)");
    auto* row = new QHBoxLayout;
    row->addLayout(own_buttons_);
    row->addStretch(1);
    row->addWidget(caption);
    row->addWidget(wanted_);
    for (QPushButton* button : {csv, paper, look, pdf, leave}) {
        row->addWidget(button);
    }
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(csv, &QPushButton::clicked, this, [this] { save_csv(); });
    connect(paper, &QPushButton::clicked, this, [this] { print(); });
    connect(look, &QPushButton::clicked, this, [this] { preview(); });
    connect(pdf, &QPushButton::clicked, this, [this] { save_pdf(); });
    connect(leave, &QPushButton::clicked, this, &QDialog::close);
}

QPushButton* ResultListForm::add_button(const char* name, const QString& caption) {
    QPushButton* button = make_button(name, caption);
    own_buttons_->addWidget(button);
    return button;
}

void ResultListForm::show_rows(std::vector<int> rows, bool mark) {
    model_->set_rows(std::move(rows), mark);
    QFont bold = list_->font();
    bold.setBold(mark);
    const QFontMetrics letters(bold);
    constexpr int padding = 14; // of a cell's left and right edge together, with the grid line
    for (int column = 0; column < model_->columnCount(); ++column) {
        const int text = letters.horizontalAdvance(model_->longest_text(column)) + padding;
        list_->setColumnWidth(column,
                              std::max(text, list_->horizontalHeader()->sectionSizeHint(column)));
    }
    show_counts();
}

void ResultListForm::set_note(const QString& note, bool printed) {
    note_->setText(note);
    note_printed_ = printed;
}

void ResultListForm::set_summary(const QString& summary) {
    summary_->setText(summary);
    summary_->setVisible(!summary.isEmpty());
}

std::vector<int> ResultListForm::highlighted_rows() const {
    std::vector<bool> highlighted(static_cast<size_t>(proxy_->rowCount()), false);
    for (const QItemSelectionRange& range : chosen_->selection()) {
        std::fill(highlighted.begin() + range.top(), highlighted.begin() + range.bottom() + 1,
                  true);
    }
    std::vector<int> rows;
    for (size_t row = 0; row < highlighted.size(); ++row) {
        if (highlighted[row]) {
            rows.push_back(proxy_->result_row(static_cast<int>(row)));
        }
    }
    return rows;
}

void ResultListForm::show_counts() {
    counts_->setText(QString("%1 / %2 行　選択 %3")
                         .arg(proxy_->rowCount())
                         .arg(model_->rowCount())
                         .arg(highlighted_rows().size()));
}

std::vector<int> ResultListForm::wanted_rows() const {
    return wanted_->currentIndex() == wanted_highlighted ? highlighted_rows()
                                                         : proxy_->shown_rows();
}

QString ResultListForm::wanted_text(size_t rows) const {
    QString text = QString("%1 行").arg(rows);
    if (!filter_->text().isEmpty()) {
        text += QString("、絞り込み「%1」").arg(filter_->text());
    }
    if (wanted_->currentIndex() == wanted_highlighted) {
        text += "、選んだ行だけ";
    }
    const int column = proxy_->sortColumn();
    if (column >= 0) {
        text += QString("、%1の%2順")
                    .arg(model_->sheet().column(column).heading,
                         proxy_->sortOrder() == Qt::AscendingOrder ? "小さい" : "大きい");
    }
    return text;
}

TablePrinter ResultListForm::printed() const {
    TablePrinter pages(windowTitle(), qt_path(work_dir.filename()));
    const std::vector<int> rows = wanted_rows();
    PrintedTable table = printed_rows(model_->sheet(), rows);
    table.marked = [this, rows](int row, int column) {
        return model_->is_largest(rows[static_cast<size_t>(row)], column);
    };
    if (!age_->text().isEmpty()) {
        pages.add_text(age_->text());
    }
    if (note_printed_) {
        pages.add_text(note_->text());
    }
    pages.add_text(wanted_text(rows.size()));
    if (!summary_->text().isEmpty()) {
        pages.add_text(summary_->text());
    }
    pages.set_landscape(model_->columnCount() > most_upright_columns);
    pages.add_table(std::move(table));
    return pages;
}

void ResultListForm::save_csv() {
    const fs::path path =
        ask_save_file(work_dir, this, windowTitle() + "の保存", "CSVファイル(*.csv)|*.csv", "csv");
    if (path.empty()) {
        return;
    }
    int status = 0;
    {
        const BusyCursor busy;
        status = save_result_csv(result, path, model_->sheet().table(), wanted_rows());
    }
    if (status == 0) {
        show_message("CSVファイルを保存しました");
    }
}

void ResultListForm::save_pdf() {
    save_pages(work_dir, this, printed());
}

void ResultListForm::print() {
    print_pages(work_dir, this, printed());
}

void ResultListForm::preview() {
    preview_pages(this, printed());
}

} // namespace kigumi
