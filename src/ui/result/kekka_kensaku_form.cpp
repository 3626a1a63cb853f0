#include "ui/result/kekka_kensaku_form.h"

#include "analysis/result_fit.h"
#include "results/selection.h"
#include "ui/data/search_boxes.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace kigumi;

namespace {

constexpr ForceSign signs[] = {ForceSign::any, ForceSign::tension, ForceSign::compression};

// "from ～ to" in one row of a grid.
void add_range(QGridLayout* grid, int row, const QString& caption, QLineEdit* from, QLineEdit* to) {
    auto* label = new QLabel(caption);
    label->setBuddy(from);
    grid->addWidget(label, row, 0);
    grid->addWidget(from, row, 1);
    grid->addWidget(new QLabel("～"), row, 2);
    grid->addWidget(to, row, 3);
}

NumberEdit* make_edit(const char* name, const QString& accessible, const QString& text) {
    auto* edit = new NumberEdit;
    edit->setObjectName(name);
    edit->setAccessibleName(accessible);
    edit->setText(text);
    return edit;
}

// An empty box leaves the bound as it is.
template <class Number> bool read_bound(const QLineEdit* box, Number& value) {
    return box->text().trimmed().isEmpty() || peek_box(box, value);
}

} // namespace

TKekkaKensakuForm::TKekkaKensakuForm(Session& session, QWidget* parent)
    : QDialog(parent), Desk(session) {
    setObjectName("KekkaKensakuForm");
    setWindowTitle("計算結果検索");
    setModal(false);
    auto* column = new QVBoxLayout(this);
    add_force(column);
    add_member(column);
    levels_ = new LevelRangeBox(session);
    levels_->setTitle("座標の範囲 (cm)　両端がこの中にある部材");
    connect(levels_, &LevelRangeBox::changed, this, [this] { count(); });
    column->addWidget(levels_);
    column->addStretch(1);
    add_buttons(column);
    count();
}

void TKekkaKensakuForm::add_force(QVBoxLayout* column) {
    auto* group = new QGroupBox("軸力");
    auto* grid = new QGridLayout(group);
    lower_ = make_edit("KagenEdit", "割合の下限", "0.0");
    upper_ = make_edit("JougenEdit", "割合の上限", "100.0");
    add_range(grid, 0, "最大値に対する割合 (%)(&P)", lower_, upper_);
    column->addWidget(group);
    sign_ = new QGroupBox("符号");
    sign_->setObjectName("FugouGroup");
    auto* row = new QHBoxLayout(sign_);
    for (const char* caption : {"すべて(&E)", "引張(&T)", "圧縮と０(&O)"}) {
        row->addWidget(new QRadioButton(caption));
    }
    choose_item(sign_, 0);
    on_item_clicked(sign_, [this](int) { count(); });
    column->addWidget(sign_);
    for (const QLineEdit* box : {lower_, upper_}) {
        connect(box, &QLineEdit::textChanged, this, [this] { count(); });
    }
}

void TKekkaKensakuForm::add_member(QVBoxLayout* column) {
    auto* group = new QGroupBox("部材");
    auto* grid = new QGridLayout(group);
    section_ = make_section_box(model);
    auto* caption = new QLabel("断面 巾 × 厚み (cm)(&D)");
    caption->setBuddy(section_);
    grid->addWidget(caption, 0, 0);
    grid->addWidget(section_, 0, 1, 1, 3);
    section_hint_ = new QLabel("断面で探すには、この結果の骨組を読みこんでおいてください。");
    section_hint_->setObjectName("DanmenHintLabel");
    section_hint_->setWordWrap(true);
    grid->addWidget(section_hint_, 1, 0, 1, 4);
    first_ = make_edit("BangouFromEdit", "部材番号の下限", {});
    last_ = make_edit("BangouToEdit", "部材番号の上限", {});
    add_range(grid, 2, "部材番号(&B)", first_, last_);
    column->addWidget(group);
    connect(section_, &QComboBox::currentIndexChanged, this, [this] { count(); });
    for (const QLineEdit* box : {first_, last_}) {
        connect(box, &QLineEdit::textChanged, this, [this] { count(); });
    }
}

void TKekkaKensakuForm::add_buttons(QVBoxLayout* column) {
    count_ = new QLabel;
    count_->setObjectName("CountLabel");
    column->addWidget(count_);
    auto* row = new QHBoxLayout;
    const auto add_button = [&](const char* name, const char* caption, const char* tip) {
        auto* button = new QPushButton(caption);
        button->setObjectName(name);
        button->setToolTip(tip);
        row->addWidget(button);
        return button;
    };
    auto* search = add_button("KensakuButton", "検索(&S)", "条件に合う部材だけを選択にします");
    auto* more = add_button("TuikaButton", "追加(&A)", "条件に合う部材を選択に加えます");
    auto* less =
        add_button("SiborikomiButton", "絞込(&N)", "選択のうち条件に合う部材だけを残します");
    auto* leave = add_button("CloseButton", "閉じる(&C)", "");
    search->setDefault(true);
    column->addLayout(row);
    searches_ = {search, more, less};
    connect(search, &QPushButton::clicked, this, [this] { take(); });
    connect(more, &QPushButton::clicked, this, [this] { add(); });
    connect(less, &QPushButton::clicked, this, [this] { narrow(); });
    connect(leave, &QPushButton::clicked, this, &QDialog::close);
}

bool TKekkaKensakuForm::read(ResultQuery& query) const {
    query.sign = signs[std::max(chosen_item(sign_), 0)];
    if (section_->isEnabled()) {
        query.section = chosen_section(*section_);
    }
    for (int axis = 0; axis < 3; ++axis) {
        if (const auto range = levels_->chosen(axis)) {
            query.at[axis] = ResultQuery::Range{range->low, range->high};
        }
    }
    return read_bound(lower_, query.lower) && read_bound(upper_, query.upper) &&
           read_bound(first_, query.first_no) && read_bound(last_, query.last_no);
}

void TKekkaKensakuForm::show_selection() {
    count();
}

void TKekkaKensakuForm::count() {
    if (searches_.empty()) {
        return;
    }
    const bool known = results_fit(model, result);
    section_->setEnabled(known);
    section_hint_->setVisible(!known);
    ResultQuery query;
    const bool good = read(query);
    found_ = good ? find_members(model, result, query) : std::vector<int>{};
    for (QPushButton* button : searches_) {
        button->setEnabled(good);
    }
    count_->setText(good ? QString("条件に合う部材 %1 / %2　（選択中 %3）")
                               .arg(found_.size())
                               .arg(result.N_Stress)
                               .arg(selected_rows(result).size())
                         : QString("割合と部材番号には数値を入れてください"));
}

void TKekkaKensakuForm::select(std::vector<int> rows) {
    select_results(result, rows);
    count();
    emit selection_changed();
}

void TKekkaKensakuForm::take() {
    select(found_);
}

void TKekkaKensakuForm::add() {
    std::vector<int> rows = selected_rows(result);
    rows.insert(rows.end(), found_.begin(), found_.end());
    select(std::move(rows));
}

void TKekkaKensakuForm::narrow() {
    const std::vector<int> before = selected_rows(result);
    std::vector<int> rows;
    std::set_intersection(before.begin(), before.end(), found_.begin(), found_.end(),
                          std::back_inserter(rows));
    select(std::move(rows));
}
