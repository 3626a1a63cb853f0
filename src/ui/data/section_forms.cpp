#include "ui/data/section_forms.h"

#include "model/model.h"
#include "ui/kit/form.h"
#include "ui/kit/undo_menu.h"

#include <QFormLayout>
#include <QLabel>

using namespace kigumi;

THenSizeForm::THenSizeForm(Session& session, int section, QWidget* parent)
    : QDialog(parent), Desk(session), section_(section) {
    setObjectName("HenSizeForm");
    setWindowTitle("巾・厚み変更");
    auto* rows = new QFormLayout(this);
    add_shown_box(rows, "SizeBangouEdit", "サイズ番号")->setText(QString::number(section + 1));
    width_ = add_number_box(rows, "HabaEdit", "巾(cm)", model.size.haba[section]);
    thickness_ = add_number_box(rows, "AtumiEdit", "厚み(cm)", model.size.atumi[section]);
    angle_ = add_number_box(rows, "ColdEdit", "Cold Angle", model.size.angle[section]);
    rows->addRow(new QLabel("この断面を使うすべての部材の解析に使われます。\n"
                            "Cold Angle は記録だけで、解析には渡されません。"));
    add_buttons(rows, *this, "Ok");
    width_->setFocus();
}

void THenSizeForm::accept() {
    float haba = 0.0f;
    float atumi = 0.0f;
    float angle = 0.0f;
    if (!read_box(width_, haba) || !read_box(thickness_, atumi) || !read_box(angle_, angle)) {
        return;
    }
    kigumi::change(session_, "断面の変更", [&](Project& p) {
        change_ = change_section(p.model, section_, haba, atumi, angle);
        return change_ == Change::refused ? -1 : 0;
    });
    if (change_ != Change::refused) {
        QDialog::accept();
    }
}

THenMatForm::THenMatForm(Session& session, int material, QWidget* parent)
    : QDialog(parent), Desk(session), material_(material) {
    setObjectName("HenMatForm");
    setWindowTitle("物性値変更");
    auto* rows = new QFormLayout(this);
    add_shown_box(rows, "BangouEdit", "物性番号")->setText(QString::number(material + 1));
    young_ = add_number_box(rows, "YoungEdit", "ヤング率", model.mat.E[material]);
    poisson_ = add_number_box(rows, "PoisonEdit", "ポアソン比", model.mat.poisson[material]);
    density_ = add_number_box(rows, "MitudoEdit", "質量密度", model.mat.density[material]);
    rows->addRow(new QLabel("ヤング率の単位は kgf/cm²、質量密度の単位は kg/cm³ です。"));
    add_buttons(rows, *this, "Ok");
    young_->setFocus();
}

void THenMatForm::accept() {
    float young = 0.0f;
    float poisson = 0.0f;
    float density = 0.0f;
    if (!read_box(young_, young) || !read_box(poisson_, poisson) || !read_box(density_, density)) {
        return;
    }
    kigumi::change(session_, "材料の変更", [&](Project& p) {
        change_ = change_material(p.model, material_, young, poisson, density);
        return change_ == Change::refused ? -1 : 0;
    });
    if (change_ != Change::refused) {
        QDialog::accept();
    }
}
