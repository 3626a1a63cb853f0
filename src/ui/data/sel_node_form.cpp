#include "ui/data/sel_node_form.h"

#include "base/format.h"
#include "base/message.h"
#include "model/roles.h"
#include "project/accept.h"
#include "ui/data/node_role_forms.h"
#include "ui/data/record_grid.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"
#include "ui/kit/undo_menu.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace kigumi;

namespace {

QString decimal(float value) {
    return qt_text(text_format("%8.1f", value));
}

QString place(const Node& node) {
    return QString("%1, %2, %3")
        .arg(node.x, 0, 'f', 1)
        .arg(node.y, 0, 'f', 1)
        .arg(node.z, 0, 'f', 1);
}

QStringList node_texts(const Model& model, int row) {
    const Node& node = model.node[row];
    return {qt_text(node.id), decimal(node.x), decimal(node.y), decimal(node.z)};
}

QStringList fix_texts(const Model& model, int row) {
    const Fix& fix = model.fix[row];
    const Node& node = model.node[position_of(fix.no)];
    return {qt_text(node.id),        QString::number(fix.ix), QString::number(fix.iy),
            QString::number(fix.iz), QString::number(fix.no), place(node)};
}

QStringList load_texts(const Model& model, int row) {
    const Load& load = model.load[row];
    const Node& node = model.node[position_of(load.no)];
    return {qt_text(node.id), decimal(load.fx),         decimal(load.fy),
            decimal(load.fz), QString::number(load.no), place(node)};
}

// A grid of records: what is in them, then the node's number and place.
RecordGrid* record_grid(const char* name, const QStringList& values) {
    auto* grid = new RecordGrid(name, QStringList("Node") + values + QStringList("No") +
                                          QStringList("X, Y, Z(cm)"));
    const int last = grid->columnCount() - 1;
    grid->horizontalHeader()->setSectionResizeMode(last, QHeaderView::Fixed);
    grid->setColumnWidth(last, grid->fontMetrics().horizontalAdvance("-9999.9, -9999.9, 9999.9"));
    return grid;
}

QPushButton* small_button(const QString& name, const QString& face, const QString& hint,
                          const char* keys = "") {
    auto* button = new QPushButton(face);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance("0") * 7);
    button->setShortcut(QKeySequence(keys));
    button->setToolTip(*keys == '\0' ? hint : QString("%1 (%2)").arg(hint, keys));
    button->setAccessibleName(hint);
    return button;
}

} // namespace

TSelNodeForm::TSelNodeForm(Session& session, QWidget* parent)
    : QDialog(parent), Desk(session),
      nodes_(new RecordGrid("ZenStringGrid", {"Node", "X(cm)", "Y(cm)", "Z(cm)"})),
      fixes_(record_grid("FixStringGrid", {"Xmov", "Ymov", "Zmov"})),
      loads_(record_grid("LoadStringGrid", {"Xkgf", "Ykgf", "Zkgf"})), id_(new QLineEdit),
      note_(new QLabel), edited_at_opening_(session.project.model.fix_load_edited),
      stage_at_opening_(session.project.stage) {
    setObjectName("SelNodeForm");
    setWindowTitle("節点選択");
    resize(1100, 640);
    auto* all = new QVBoxLayout(this);
    auto* columns = new QHBoxLayout;
    columns->addLayout(node_column(), 4);
    columns->addLayout(add_column());
    columns->addLayout(record_column(), 6);
    all->addLayout(columns, 1);
    auto* foot = new QHBoxLayout;
    note_->setObjectName("NoteLabel");
    note_->setWordWrap(true);
    auto* ok = new QPushButton("OK");
    ok->setObjectName("OKButton");
    ok->setDefault(true);
    foot->addWidget(note_, 1);
    foot->addWidget(ok);
    all->addLayout(foot);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(fixes_, &RecordGrid::opened, this, [this](int row) { open_fix(row, false); });
    connect(fixes_, &RecordGrid::removed, this, [this](int row) { open_fix(row, true); });
    connect(loads_, &RecordGrid::opened, this, [this](int row) { open_load(row, false); });
    connect(loads_, &RecordGrid::removed, this, [this](int row) { open_load(row, true); });
    new UndoActions(session, this, own_steps(session));
    connect(&session.news, &News::stepped, this, &TSelNodeForm::note_change);
    fill_nodes();
    fill_records();
    nodes_->setFocus();
}

QBoxLayout* TSelNodeForm::node_column() {
    auto* column = new QVBoxLayout;
    auto* head = new QFormLayout;
    node_count_ = add_shown_box(head, "ZenEdit", "全節点数");
    column->addLayout(head);
    column->addWidget(nodes_, 1);
    auto* search = new QHBoxLayout;
    id_->setObjectName("KensakuEdit");
    id_->setAccessibleName("節点コード");
    id_->setPlaceholderText("X00Y00Z00");
    auto* find = new QPushButton("ID検索(&I)");
    find->setObjectName("KensakuButton1");
    find->setAutoDefault(false);
    connect(find, &QPushButton::clicked, this, [this] { search_id(); });
    search->addWidget(id_, 1);
    search->addWidget(find);
    column->addLayout(search);
    return column;
}

QBoxLayout* TSelNodeForm::add_column() {
    auto* column = new QVBoxLayout;
    const auto add = [&](const char* name, const QString& words, const char* keys,
                         void (TSelNodeForm::*run)()) {
        auto* button = small_button(name, ">>", words, keys);
        column->addStretch(1);
        column->addWidget(new QLabel(words), 0, Qt::AlignHCenter);
        column->addWidget(button, 0, Qt::AlignHCenter);
        column->addStretch(1);
        connect(button, &QPushButton::clicked, this, run);
    };
    add("AddFixSpeedButton", "固定節点追加", "Alt+F", &TSelNodeForm::add_fix);
    add("AddLoadSpeedButton", "荷重節点追加", "Alt+L", &TSelNodeForm::add_load);
    return column;
}

QBoxLayout* TSelNodeForm::record_head(const QString& caption, const QString& kind,
                                      RecordGrid* grid) {
    auto* head = new QHBoxLayout;
    auto* count = new QFormLayout;
    add_shown_box(count, qPrintable(kind + "Edit"), caption + "数");
    head->addLayout(count);
    head->addStretch(1);
    auto* remove = small_button(QString("Del%1SpeedButton").arg(kind), "×", caption + "削除");
    auto* change = small_button(QString("Mod%1SpeedButton").arg(kind), "M", caption + "変更");
    head->addWidget(remove);
    head->addWidget(change);
    connect(remove, &QPushButton::clicked, grid,
            [grid] { emit grid->removed(grid->currentRow()); });
    connect(change, &QPushButton::clicked, grid, [grid] { emit grid->opened(grid->currentRow()); });
    return head;
}

QBoxLayout* TSelNodeForm::record_column() {
    auto* column = new QVBoxLayout;
    column->addLayout(record_head("固定節点", "Fix", fixes_));
    column->addWidget(fixes_, 1);
    column->addLayout(record_head("荷重節点", "Load", loads_));
    column->addWidget(loads_, 1);
    return column;
}

void TSelNodeForm::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && focusWidget() == id_) {
        search_id();
        return;
    }
    QDialog::keyPressEvent(event);
}

void TSelNodeForm::fill_nodes() {
    node_count_->setText(QString::number(model.N_Node));
    nodes_->fill(model.N_Node, [this](int row) { return node_texts(model, row); });
}

void TSelNodeForm::fill_records() {
    findChild<QLineEdit*>("FixEdit")->setText(QString::number(model.N_Fix));
    findChild<QLineEdit*>("LoadEdit")->setText(QString::number(model.N_Load));
    fixes_->fill(model.N_Fix, [this](int row) { return fix_texts(model, row); });
    loads_->fill(model.N_Load, [this](int row) { return load_texts(model, row); });
    for (const char* name : {"DelFixSpeedButton", "ModFixSpeedButton"}) {
        findChild<QPushButton*>(name)->setEnabled(model.N_Fix > 0);
    }
    for (const char* name : {"DelLoadSpeedButton", "ModLoadSpeedButton"}) {
        findChild<QPushButton*>(name)->setEnabled(model.N_Load > 0);
    }
    const bool both = model.N_Fix > 0 && model.N_Load > 0;
    note_->setText(both ? ""
                   : model.fix_load_edited != 0
                       ? "固定節点と荷重節点が一つ以上ずつ必要です"
                       : "固定節点と荷重節点が一つ以上ずつ必要です。どちらかがないまま閉じると、"
                         "次に開いたとき値は初めの値に戻ります");
}

void TSelNodeForm::note_change() {
    fill_records();
    emit changed();
}

bool TSelNodeForm::change_roles(const char* name, const std::function<int(Model&)>& edit) {
    const auto edit_and_note = [&](Project& p) {
        if (edit(p.model) < 0) {
            return -1;
        }
        // As if the window was closed now: what the step leaves can be gone on with.
        p.model.fix_load_edited = edited_at_opening_;
        p.stage = stage_at_opening_;
        note_roles_entered(p);
        return 0;
    };
    if (change(session_, name, edit_and_note) < 0) {
        return false;
    }
    note_change();
    return true;
}

void TSelNodeForm::add_fix() {
    const int node = nodes_->currentRow();
    if (node < 0) {
        return;
    }
    TSelFixForm form(session_, this, node);
    if (form.exec() != QDialog::Accepted) {
        return;
    }
    const int load = find_load(model, number_at(node));
    if (load >= 0 && TDelNodeForm(session_, this, load).exec() != QDialog::Accepted) {
        return;
    }
    const auto& [ix, iy, iz] = form.values();
    const auto put = [&](Model& m) { return put_fix(m, node, ix, iy, iz); };
    if (change_roles("固定節点の追加", put)) {
        fixes_->choose(find_fix(model, number_at(node)));
    }
}

void TSelNodeForm::add_load() {
    const int node = nodes_->currentRow();
    if (node < 0) {
        return;
    }
    TSelLoadForm form(session_, this, node);
    if (form.exec() != QDialog::Accepted) {
        return;
    }
    const auto& [fx, fy, fz] = form.values();
    const auto put = [&](Model& m) { return put_load(m, node, fx, fy, fz); };
    if (change_roles("荷重の追加", put)) {
        loads_->choose(find_load(model, number_at(node)));
    }
}

void TSelNodeForm::open_fix(int row, bool remove) {
    if (row < 0) {
        return;
    }
    TFixEditForm form(session_, this, row, remove ? RecordPurpose::remove : RecordPurpose::edit);
    if (form.exec() != QDialog::Accepted) {
        return;
    }
    const auto& [ix, iy, iz] = form.values();
    change_roles(remove ? "固定節点の削除" : "固定節点の変更", [&](Model& m) {
        if (remove) {
            delete_fix(m, row);
            return 0;
        }
        return put_fix(m, position_of(m.fix[row].no), ix, iy, iz);
    });
}

void TSelNodeForm::open_load(int row, bool remove) {
    if (row < 0) {
        return;
    }
    TLoadEditForm form(session_, this, row, remove ? RecordPurpose::remove : RecordPurpose::edit);
    if (form.exec() != QDialog::Accepted) {
        return;
    }
    const auto& [fx, fy, fz] = form.values();
    change_roles(remove ? "荷重の削除" : "荷重の変更", [&](Model& m) {
        if (remove) {
            delete_load(m, row);
            return 0;
        }
        return put_load(m, position_of(m.load[row].no), fx, fy, fz);
    });
}

void TSelNodeForm::search_id() {
    const QString text = id_->text().normalized(QString::NormalizationForm_KC);
    const int node = find_node_id(model, text.toStdString());
    if (node >= 0) {
        nodes_->show_at_top(node);
        return;
    }
    show_message(node == bad_node_id ? "IDコードが間違っています" : "検索に失敗しました");
    id_->setFocus();
    id_->selectAll();
}
