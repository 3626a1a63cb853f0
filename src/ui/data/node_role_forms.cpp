#include "ui/data/node_role_forms.h"

#include "model/roles.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

using namespace kigumi;

namespace kigumi {

NodeValueForm::NodeValueForm(Session& session, QWidget* parent, const QString& title, int node,
                             const Boxes& boxes)
    : QDialog(parent), Desk(session), rows_(new QFormLayout(this)) {
    setWindowTitle(title);
    add_shown_box(rows_, "BangouEdit", boxes.number_label)
        ->setText(QString::number(number_at(node)));
    add_shown_box(rows_, "CodeEdit", "節点コード")->setText(qt_text(model.node[node].id));
    for (int axis = 0; axis < 3; ++axis) {
        value_[axis] = add_number_box(rows_, boxes.names[axis], boxes.labels[axis], 0.0f);
    }
    add_buttons(rows_, *this, "OK");
    value_[0]->setFocus();
}

void NodeValueForm::add_message(const QString& text) {
    auto* line = new QLabel(text);
    line->setObjectName("MessageLabel");
    rows_->insertRow(0, line);
}

QLabel* NodeValueForm::add_note(const QString& text) {
    auto* line = new QLabel(text);
    line->setObjectName("NoteLabel");
    rows_->insertRow(rows_->rowCount() - 1, line);
    return line;
}

void NodeValueForm::add_row(QLabel* caption, QWidget* widget) {
    rows_->insertRow(rows_->rowCount() - 1, caption, widget);
}

void NodeValueForm::lock_values() {
    for (NumberEdit* box : value_) {
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::ClickFocus);
    }
    findChild<QPushButton*>("OKButton")->setFocus();
}

FixValueForm::FixValueForm(Session& session, QWidget* parent, const QString& title, int node,
                           const Values& values)
    : NodeValueForm(session, parent, title, node,
                    {"節点番号",
                     {"XfixEdit", "YfixEdit", "ZfixEdit"},
                     {"X方向固定", "Y方向固定", "Z方向固定"}}),
      values_(values) {
    for (int axis = 0; axis < 3; ++axis) {
        value_[axis]->setText(QString::number(values[axis]));
    }
    add_note("0 自由、0 以外 固定");
}

void FixValueForm::accept() {
    Values read{};
    for (int axis = 0; axis < 3; ++axis) {
        if (!read_box(value_[axis], read[axis])) {
            return;
        }
        read[axis] = read[axis] != 0 ? 1 : 0;
    }
    values_ = read;
    QDialog::accept();
}

LoadValueForm::LoadValueForm(Session& session, QWidget* parent, const QString& title, int node,
                             const Values& values)
    : NodeValueForm(
          session, parent, title, node,
          {"No", {"XloadEdit", "YloadEdit", "ZloadEdit"}, {"X方向荷重", "Y方向荷重", "Z方向荷重"}}),
      values_(values) {
    for (int axis = 0; axis < 3; ++axis) {
        value_[axis]->setText(number_text(values[axis]));
    }
}

bool LoadValueForm::read_values() {
    Values read{};
    for (int axis = 0; axis < 3; ++axis) {
        if (!read_box(value_[axis], read[axis])) {
            return false;
        }
    }
    values_ = read;
    return true;
}

void LoadValueForm::accept() {
    if (read_values()) {
        QDialog::accept();
    }
}

} // namespace kigumi

namespace {

constexpr FixValueForm::Values offered_fix = {0, 0, 1};
constexpr LoadValueForm::Values offered_load = {0.0f, 0.0f, -1000.0f}; // kgf
constexpr const char* force_note = "単位 kgf、Z は負が下向き";

FixValueForm::Values values_of(const Fix& fix) {
    return {fix.ix, fix.iy, fix.iz};
}

LoadValueForm::Values values_of(const Load& load) {
    return {load.fx, load.fy, load.fz};
}

// Deliberate: loads are announced in the same words as supports.
QString message_of(RecordPurpose purpose) {
    return purpose == RecordPurpose::remove ? "この固定節点を削除します"
                                            : "この固定節点を編集します";
}

} // namespace

TSelFixForm::TSelFixForm(Session& session, QWidget* parent, int node)
    : FixValueForm(session, parent, "固定節点選択", node, offered_fix) {
    if (role_of(model, node) == role_fixed) {
        add_note("すでに固定節点です。OK で置き換えます");
    }
}

TFixEditForm::TFixEditForm(Session& session, QWidget* parent, int at, RecordPurpose purpose)
    : FixValueForm(session, parent, "固定節点編集", position_of(session.project.model.fix[at].no),
                   values_of(session.project.model.fix[at])) {
    add_message(message_of(purpose));
    if (purpose == RecordPurpose::remove) {
        lock_values();
    }
}

TSelLoadForm::TSelLoadForm(Session& session, QWidget* parent, int node)
    : LoadValueForm(session, parent, "荷重節点データ", node, offered_load) {
    if (role_of(model, node) == role_loaded) {
        add_note("すでに荷重節点です。OK で置き換えます");
    } else if (role_of(model, node) == role_fixed) {
        add_note("固定節点です。OK で固定をやめて荷重節点にします");
    }
    add_note(force_note);
}

TLoadEditForm::TLoadEditForm(Session& session, QWidget* parent, int at, RecordPurpose purpose)
    : LoadValueForm(session, parent, "荷重節点編集", position_of(session.project.model.load[at].no),
                    values_of(session.project.model.load[at])) {
    add_message(message_of(purpose));
    if (purpose == RecordPurpose::remove) {
        note_ = add_note("この節点の荷重だけがなくなります");
        lock_values();
        return;
    }
    add_all_button();
    note_ = add_note(force_note);
}

void TLoadEditForm::add_all_button() {
    auto* label = new QLabel("全ての荷重値をこの値に設定する");
    auto* all = new QPushButton("同");
    all->setObjectName("DouButton");
    all->setAutoDefault(false);
    all->setShortcut(QKeySequence("Alt+A"));
    all->setToolTip("全ての荷重値をこの値に設定する (Alt+A)");
    all->setAccessibleName(label->text());
    add_row(label, all);
    connect(all, &QPushButton::clicked, this, [this] { set_all(); });
}

void TLoadEditForm::set_all() {
    if (!read_values()) {
        return;
    }
    all_set_ = true;
    set_all_loads(session_.project.model, values()[0], values()[1], values()[2]);
    note_->setText(
        QString("荷重 %1 個をこの値にしました（Cancel で元に戻ります）").arg(model.N_Load));
}

void TLoadEditForm::reject() {
    if (all_set_) {
        session_.work.history.restore(session_.project);
    }
    QDialog::reject();
}

TDelNodeForm::TDelNodeForm(Session& session, QWidget* parent, int at)
    : LoadValueForm(session, parent, "節点荷重中止", position_of(session.project.model.load[at].no),
                    values_of(session.project.model.load[at])) {
    add_message("この節点の荷重を中止");
    lock_values();
}
