#include "ui/data/node_kensaku_form.h"

#include "ui/data/search_boxes.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/undo_menu.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace kigumi;

namespace {

// How many of the found nodes are restrained or loaded.
int found_with_role(const Model& model) {
    int count = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        count += model.node[i].flag == role_found && role_of(model, i) != role_plain ? 1 : 0;
    }
    return count;
}

} // namespace

TNodeKensakuForm::TNodeKensakuForm(Session& session, QWidget* parent)
    : QWidget(parent, Qt::Tool), Desk(session) {
    setObjectName("NodeKensakuForm");
    setWindowTitle("節点検索");
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* column = new QVBoxLayout(this);
    ranges_ = new LevelRangeBox(session, true);
    column->addWidget(ranges_);
    connect(ranges_, &LevelRangeBox::changed, this, [this] { search(); });
    add_buttons(column);
    new UndoActions(session, this, all_steps);
    connect(&session.news, &News::stepped, this, &TNodeKensakuForm::follow);
}

void TNodeKensakuForm::follow() {
    // Once entered by hand the tables are no longer made from the marks.
    all_->setEnabled(model.fix_load_edited == 0);
    show_all_levels();
}

void TNodeKensakuForm::add_buttons(QVBoxLayout* column) {
    count_ = new QLabel;
    count_->setObjectName("CountLabel");
    column->addWidget(count_);
    auto* find = new QPushButton("検索(&S)");
    find->setObjectName("KensakuButton");
    column->addWidget(find);
    connect(find, &QPushButton::clicked, this, [this] { search(); });
    all_ = new QPushButton;
    all_->setObjectName("ZenSentakuButton");
    auto* close_button = new QPushButton("閉じる(&C)");
    close_button->setObjectName("CloseButton");
    column->addWidget(all_);
    column->addWidget(close_button);
    connect(all_, &QPushButton::clicked, this, [this] { select_all(); });
    connect(close_button, &QPushButton::clicked, this, &QWidget::close);
}

void TNodeKensakuForm::open(int role, const QWidget& beside) {
    role_ = role;
    all_->setText(role == role_fixed ? "全て固定節点に(&A)" : "全て荷重節点に(&A)");
    if (isVisible()) {
        all_->setEnabled(model.fix_load_edited == 0);
        return;
    }
    follow();
    const int margin = fontMetrics().height();
    const QSize size = sizeHint();
    move(beside.mapToGlobal(QPoint(beside.width() - size.width() - margin, margin)));
    resize(size);
    show();
}

void TNodeKensakuForm::show_all_levels() {
    ranges_->reset();
    show_count(0);
}

void TNodeKensakuForm::search() {
    show_count(find_nodes(session_.project.model, ranges_->levels()));
    emit marked();
}

void TNodeKensakuForm::show_count(int count) {
    found_ = count;
    count_->setText(count > 0 ? QString("青丸 %1 個").arg(count)
                              : QString("青丸 0 個（範囲を選んでください）"));
}

void TNodeKensakuForm::select_all() {
    // Deliberate: only loads search anew.
    if (role_ == role_loaded) {
        search();
    }
    const int with_role = found_with_role(model);
    const QString details = QString("青丸のうち %1 個はすでに固定節点か荷重節点です。"
                                    "「いいえ」を選ぶとその指定もなくなります。")
                                .arg(with_role);
    const YesNo answer = ask_yes_no(
        this, role_ == role_fixed ? "青丸を固定節点にしますか?" : "青丸を荷重節点にしますか?",
        with_role > 0 ? details : QString());
    parentWidget()->activateWindow();
    if (answer == YesNo::cancel) {
        return;
    }
    const int role = answer == YesNo::yes ? role_ : role_plain;
    const char* name = role == role_plain   ? "節点の指定の取消"
                       : role == role_fixed ? "固定節点の指定"
                                            : "荷重節点の指定";
    change(session_, name, [role](Project& p) {
        turn_found(p.model, role);
        return 0;
    });
    show_all_levels();
    emit marked();
}

void TNodeKensakuForm::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    emit closed();
}

void TNodeKensakuForm::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    forget_found(session_.project.model);
    show_count(0);
    emit marked();
}

void TNodeKensakuForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}
