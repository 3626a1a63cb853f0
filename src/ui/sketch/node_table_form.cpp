#include "ui/sketch/node_table_form.h"

#include "base/float.h"
#include "base/message.h"
#include "model/members.h"
#include "model/names.h"
#include "model/sketch.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"
#include "ui/kit/undo_menu.h"
#include "ui/sketch/sketch_change.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace kigumi;

namespace {

enum Column { number_column, name_column, x_column, state_column = x_column + 3, columns };

// Rows and cells of what a spreadsheet or a CSV file puts on the clipboard.
std::vector<QStringList> cells_of(QString text) {
    text.remove('\r');
    while (text.endsWith('\n')) {
        text.chop(1);
    }
    const QChar between = text.contains('\t') ? '\t' : ',';
    std::vector<QStringList> cells;
    for (const QString& line : text.split('\n')) {
        cells.push_back(line.split(between));
    }
    return cells;
}

} // namespace

PlaceGrid::PlaceGrid(QWidget* parent) : QTableWidget(0, columns, parent) {
    setObjectName("SetutenStringGrid");
    setHorizontalHeaderLabels({"節点", "名称", "X(cm)", "Y(cm)", "Z(cm)", "状態"});
    setEditTriggers(AnyKeyPressed | EditKeyPressed | DoubleClicked);
    setTabKeyNavigation(true);
    setAlternatingRowColors(true);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

QSize PlaceGrid::sizeHint() const {
    constexpr int shown_characters = 60;
    constexpr int shown_rows = 18;
    return {fontMetrics().horizontalAdvance('0') * shown_characters,
            verticalHeader()->defaultSectionSize() * shown_rows};
}

void PlaceGrid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        emit copy_wanted();
    } else if (event->matches(QKeySequence::Paste)) {
        emit paste_wanted();
    } else {
        QTableWidget::keyPressEvent(event);
    }
}

void PlaceGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTableWidget::closeEditor(editor, hint);
    if (hint == QAbstractItemDelegate::SubmitModelCache && currentRow() + 1 < rowCount()) {
        setCurrentCell(currentRow() + 1, currentColumn());
    }
}

TNodeTableForm::TNodeTableForm(Session& session, QWidget* parent, std::uint64_t since)
    : QDialog(parent), Desk(session), grid_(new PlaceGrid(this)) {
    setObjectName("NodeTableForm");
    setWindowTitle("節点座標の表");
    auto* all = new QVBoxLayout(this);
    all->addWidget(new QLabel("座標を入力します。表計算ソフトの X・Y・Z の列を Ctrl+V で"
                              "貼り付けることもできます。\n"
                              "選んだ節点は図面に青い輪で示されます。"));
    all->addWidget(grid_);
    auto* buttons = new QDialogButtonBox;
    QPushButton* close = buttons->addButton("閉じる(&C)", QDialogButtonBox::AcceptRole);
    close->setObjectName("OKButton");
    QPushButton* put = buttons->addButton("貼り付け(&V)", QDialogButtonBox::ActionRole);
    put->setObjectName("HaritukeButton");
    for (QPushButton* button : {close, put}) {
        button->setAutoDefault(false); // Enter belongs to the table
    }
    all->addWidget(buttons);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(put, &QPushButton::clicked, this, &TNodeTableForm::paste);
    connect(grid_, &QTableWidget::cellChanged, this, &TNodeTableForm::take_cell);
    connect(grid_, &QTableWidget::currentCellChanged, this, [this](int row) { emit chosen(row); });
    connect(grid_, &PlaceGrid::copy_wanted, this, &TNodeTableForm::copy);
    connect(grid_, &PlaceGrid::paste_wanted, this, &TNodeTableForm::paste);
    new UndoActions(session, this, since);
    connect(&session.news, &News::stepped, this, &TNodeTableForm::refill);
    refill();
    grid_->setCurrentCell(0, x_column);
    grid_->setFocus();
}

void TNodeTableForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    emit chosen(grid_->currentRow());
    place_in_corner(*this);
}

TNodeTableForm::Place TNodeTableForm::place_of(int node) const {
    const Node& record = model.node[node];
    Place place{{record.x, record.y, record.z}, {}};
    const bool missing = is_missing(record);
    for (int axis = 0; axis < 3; ++axis) {
        place.given[axis] = !missing || !same_float(place.value[axis], unknown_place);
    }
    return place;
}

void TNodeTableForm::refill() {
    const QSignalBlocker quiet(grid_);
    places_.clear();
    grid_->setRowCount(model.N_Node);
    for (int row = 0; row < model.N_Node; ++row) {
        places_.push_back(place_of(row));
        show_row(row);
    }
}

void TNodeTableForm::show_row(int row) {
    const QSignalBlocker quiet(grid_);
    const Node& node = model.node[row];
    const Place& place = places_[static_cast<size_t>(row)];
    const bool missing = is_missing(node);
    QStringList texts{QString::number(node.no), qt_text(node.id)};
    for (int axis = 0; axis < 3; ++axis) {
        texts << (place.given[axis] ? number_text(place.value[axis]) : QString());
    }
    texts << (missing ? "未入力" : "入力済み");
    for (int column = 0; column < columns; ++column) {
        QTableWidgetItem* cell = grid_->item(row, column);
        if (cell == nullptr) {
            cell = new QTableWidgetItem;
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            if (column < x_column || column == state_column) {
                cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            }
            grid_->setItem(row, column, cell);
        }
        cell->setText(texts[column]);
        cell->setForeground(missing && column == state_column ? QBrush(Qt::red) : QBrush());
    }
}

void TNodeTableForm::take_cell(int row, int column) {
    const int axis = column - x_column;
    if (axis < 0 || axis >= 3) {
        return;
    }
    std::vector<Place> places = places_;
    const QString fault = place_cells({{grid_->item(row, column)->text()}}, row, axis, places);
    if (fault.isEmpty()) {
        store(places);
    } else {
        show_row(row);
        show_message(fault.toStdString());
    }
}

void TNodeTableForm::copy() {
    QStringList lines;
    for (const QTableWidgetSelectionRange& range : grid_->selectedRanges()) {
        for (int row = range.topRow(); row <= range.bottomRow(); ++row) {
            QStringList cells;
            for (int column = range.leftColumn(); column <= range.rightColumn(); ++column) {
                cells << grid_->item(row, column)->text();
            }
            lines << cells.join('\t');
        }
    }
    QApplication::clipboard()->setText(lines.join('\n'));
}

void TNodeTableForm::paste() {
    const QString text = QApplication::clipboard()->text();
    if (text.trimmed().isEmpty() || grid_->currentRow() < 0) {
        return;
    }
    const int axis = std::clamp(grid_->currentColumn() - x_column, 0, 2);
    std::vector<Place> places = places_;
    const QString fault = place_cells(cells_of(text), grid_->currentRow(), axis, places);
    if (fault.isEmpty()) {
        store(places);
    } else {
        show_message(fault.toStdString());
    }
}

QString TNodeTableForm::place_cells(const std::vector<QStringList>& cells, int row, int axis,
                                    std::vector<Place>& places) const {
    for (size_t line = 0; line < cells.size(); ++line) {
        const size_t node = static_cast<size_t>(row) + line;
        if (node >= places.size() || axis + cells[line].size() > 3) {
            return QString("貼り付けるデータが表からはみ出します（%1 行目）").arg(line + 1);
        }
        Place& place = places[node];
        for (int k = 0; k < cells[line].size(); ++k) {
            const QString& cell = cells[line][k];
            if (cell.trimmed().isEmpty()) {
                continue; // leaves what is there
            }
            if (!parse_text(cell, place.value[axis + k])) {
                return QString("節点 %1: 「%2」は数値ではありません").arg(node + 1).arg(cell);
            }
            place.given[axis + k] = true;
        }
    }
    return {};
}

void TNodeTableForm::store(const std::vector<Place>& places) {
    change_sketch(session_, "節点の座標", [&](Model& m) {
        for (int row = 0; row < m.N_Node; ++row) {
            const Place& place = places[static_cast<size_t>(row)];
            const Place& before = places_[static_cast<size_t>(row)];
            if (place.given == before.given && std::equal(place.value.begin(), place.value.end(),
                                                          before.value.begin(), same_float)) {
                continue;
            }
            if (place.is_whole()) {
                set_node_place(m, row, place.value[0], place.value[1], place.value[2]);
            } else {
                Node& node = m.node[row];
                node.x = place.value[0];
                node.y = place.value[1];
                node.z = place.value[2];
                copy_node_to_beams(m, row);
            }
        }
        check_all_node(m); // names every node once all are known
    });
    refill();
}
