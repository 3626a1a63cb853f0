#include "draw/projection.h"
#include "ui/frame/zahyou_idou_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/picture/dxf_width_form.h"
#include "ui/picture/isome_form.h"
#include "ui/picture/view_form.h"
#include "ui_support.h"

#include <QMessageBox>

namespace kigumi::test {

namespace {

class SmallForms : public UiTest {
  protected:
    static void slide(const QWidget& form, const char* bar, int position) {
        control<QScrollBar>(form, bar)->setValue(position);
    }
    void expect_viewpoint(double Rho, double Theta, double Phi) {
        EXPECT_DOUBLE_EQ(view.Rho, Rho);
        EXPECT_DOUBLE_EQ(view.Theta, Theta);
        EXPECT_DOUBLE_EQ(view.Phi, Phi);
    }
};

TEST_F(SmallForms, AnglePresetsAndBarsTurnThePicture) {
    TIsomeForm form(session);
    int redrawn = 0;
    QObject::connect(&form, &TIsomeForm::changed, [&redrawn] { ++redrawn; });
    EXPECT_EQ(item_of(form, "ZumenGroup"), 0);
    const std::array<int, 3> presets[] = {{1, 90, 0}, {2, 0, 0}, {3, 0, 90}, {0, 30, 30}};
    for (const auto& [item, tau, fai] : presets) {
        redrawn = 0;
        click_item(form, "ZumenGroup", item);
        EXPECT_EQ(redrawn, 1);
        EXPECT_FLOAT_EQ(view.TAU, static_cast<float>(tau));
        EXPECT_FLOAT_EQ(view.FAI, static_cast<float>(fai));
        EXPECT_EQ(control<QScrollBar>(form, "Tau")->value(), tau);
        EXPECT_EQ(control<QScrollBar>(form, "Fai")->value(), fai);
        EXPECT_EQ(label_text(form, "TauLabel"), std::to_string(tau));
        EXPECT_EQ(label_text(form, "FaiLabel"), std::to_string(fai));
    }
    slide(form, "Tau", 45);
    slide(form, "Fai", 91);
    EXPECT_EQ(redrawn, 3);
    EXPECT_FLOAT_EQ(view.TAU, 45.0f);
    EXPECT_FLOAT_EQ(view.FAI, 90.0f);
    EXPECT_EQ(item_of(form, "ZumenGroup"), -1);
}

TEST_F(SmallForms, ViewpointOpensWithTheStoredValues) {
    view.Theta = -20.7;
    const TViewForm form(session);
    EXPECT_EQ(form.focusWidget(), control<QScrollBar>(form, "RhoScrollBar"));
    EXPECT_EQ(control<QScrollBar>(form, "RhoScrollBar")->value(), 4000);
    EXPECT_EQ(control<QScrollBar>(form, "ThetaScrollBar")->value(), -20);
    EXPECT_EQ(label_text(form, "ThetaLabel"), "-20.7");
    EXPECT_EQ(label_text(form, "PhiLabel"), "70");
    for (const auto& [name, least, most] : {std::tuple{"RhoScrollBar", 1000, 20000},
                                            {"ThetaScrollBar", -180, 180},
                                            {"PhiScrollBar", 0, 180}}) {
        const auto* bar = control<QScrollBar>(form, name);
        EXPECT_TRUE(bar->minimum() == least && bar->maximum() == most) << name;
    }
}

TEST_F(SmallForms, ViewpointIsStoredResetAndShown) {
    TViewForm form(session);
    form.show();
    slide(form, "RhoScrollBar", 5000);
    slide(form, "ThetaScrollBar", -30);
    slide(form, "PhiScrollBar", 90);
    EXPECT_EQ(label_text(form, "RhoLabel"), "5000");
    expect_viewpoint(4000, 20, 70);
    press(form, "OKButton");
    EXPECT_TRUE(form.isVisible());
    expect_viewpoint(5000, -30, 90);
    slide(form, "PhiScrollBar", 10);
    press(form, "CancelButton");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.QDialog::result(), QDialog::Rejected);
    expect_viewpoint(5000, -30, 90);
    EXPECT_EQ(view.perspective, 0);
    TViewForm again(session);
    again.show();
    press(again, "DefautrButton");
    EXPECT_TRUE(again.isVisible());
    expect_viewpoint(4000, 20, 70);
    EXPECT_EQ(label_text(again, "PhiLabel"), "70");
    slide(again, "RhoScrollBar", 6000);
    press(again, "PersButton");
    EXPECT_EQ(again.QDialog::result(), QDialog::Accepted);
    EXPECT_EQ(view.perspective, 1);
    expect_viewpoint(6000, 20, 70);
}

TEST_F(SmallForms, DxfWidthTellsTheItem) {
    for (int item = 0; item < 6; ++item) {
        TDxfWidthForm form;
        EXPECT_EQ(item_of(form, "WidthGroup"), 1);
        EXPECT_EQ(form.choice(), 2);
        click_item(form, "WidthGroup", item);
        press(form, "OKButton");
        EXPECT_EQ(form.QDialog::result(), QDialog::Accepted);
        EXPECT_EQ(form.choice(), item + 1);
    }
    TDxfWidthForm cancelled;
    press(cancelled, "CancelButton");
    EXPECT_EQ(cancelled.choice(), -1);
}

TEST_F(SmallForms, ShiftStartsFromTheLastOne) {
    const struct {
        const char* dx;
        const char* button;
        float shift;      // afterwards
        const char* next; // text that the next dialog starts with
    } steps[] = {
        {"12.345", "OKButton", 12.345f, "12.345"},
        {"99", "CancelButton", 12.345f, "12.345"},
        {"0", "OKButton", 0.0f, "0.0"},
    };
    for (const auto& step : steps) {
        TZahyouIdouForm form(session);
        type(form, "DxEdit", step.dx);
        press(form, step.button);
        EXPECT_FLOAT_EQ(project.shift.dx, step.shift);
        EXPECT_EQ(text_in(TZahyouIdouForm(session), "DxEdit"), step.next);
    }
    TZahyouIdouForm refusing(session);
    refusing.show();
    type(refusing, "DxEdit", "5");
    type(refusing, "DzEdit", "上");
    press(refusing, "OKButton");
    expect_message("Z方向: 「上」は数値ではありません");
    EXPECT_TRUE(refusing.isVisible());
    EXPECT_FLOAT_EQ(project.shift.dx, 0.0f);
}

TEST_F(SmallForms, MessageBoxShowsTheReasonAsSmallPrint) {
    const ScopedMessageSink boxes = messages_in_boxes();
    for (const char* reason : {"a.jik: フォルダです", ""}) { // none is left of the box before
        int shown = 0;
        answer_next([&](QDialog& dialog) {
            const auto& box = dynamic_cast<QMessageBox&>(dialog);
            EXPECT_EQ(box.text(), "軸データ読みこみに失敗しました");
            EXPECT_EQ(box.informativeText(), reason);
            ++shown;
            dialog.accept();
        });
        show_message("軸データ読みこみに失敗しました", reason);
        EXPECT_EQ(shown, 1);
    }
}

} // namespace

} // namespace kigumi::test
