#include "geometry/projection.h"
#include "ui/document.h"
#include "ui/frame/zahyou_idou_form.h"
#include "ui/picture/dxf_width_form.h"
#include "ui/picture/isome_form.h"
#include "ui/picture/view_form.h"
#include "ui_support.h"

namespace kigumi::test {

namespace {

class SmallForms : public UiTest {
  protected:
    static void slide(const QWidget& form, const char* bar, int position) {
        control<QScrollBar>(form, bar)->setValue(position);
    }
    static void expect_viewpoint(double Rho, double Theta, double Phi) {
        EXPECT_DOUBLE_EQ(view.Rho, Rho);
        EXPECT_DOUBLE_EQ(view.Theta, Theta);
        EXPECT_DOUBLE_EQ(view.Phi, Phi);
    }
};

TEST_F(SmallForms, AnglePresetsTurnThePicture) {
    TIsomeForm form;
    int redrawn = 0;
    QObject::connect(&form, &TIsomeForm::changed, [&redrawn] { ++redrawn; });
    EXPECT_EQ(item_of(form, "ZumenGroup"), 0);
    const struct {
        int item;
        int tau, fai;
    } presets[] = {{1, 90, 0}, {2, 0, 0}, {3, 0, 90}, {0, 30, 30}};
    for (const auto& preset : presets) {
        redrawn = 0;
        click_item(form, "ZumenGroup", preset.item);
        EXPECT_EQ(redrawn, 1);
        EXPECT_FLOAT_EQ(view.TAU, static_cast<float>(preset.tau));
        EXPECT_FLOAT_EQ(view.FAI, static_cast<float>(preset.fai));
        EXPECT_EQ(control<QScrollBar>(form, "Tau")->value(), preset.tau);
        EXPECT_EQ(control<QScrollBar>(form, "Fai")->value(), preset.fai);
        EXPECT_EQ(label_text(form, "TauLabel"), std::to_string(preset.tau));
        EXPECT_EQ(label_text(form, "FaiLabel"), std::to_string(preset.fai));
    }
}

TEST_F(SmallForms, AngleBarsTurnThePicture) {
    TIsomeForm form;
    int redrawn = 0;
    QObject::connect(&form, &TIsomeForm::changed, [&redrawn] { ++redrawn; });
    slide(form, "Tau", 45);
    slide(form, "Fai", 91);
    EXPECT_EQ(redrawn, 2);
    EXPECT_FLOAT_EQ(view.TAU, 45.0f);
    EXPECT_FLOAT_EQ(view.FAI, 90.0f);
    EXPECT_EQ(item_of(form, "ZumenGroup"), -1);
    click_item(form, "ZumenGroup", 0);
    EXPECT_FLOAT_EQ(view.TAU, 30.0f);
}

TEST_F(SmallForms, AnglesOpenWithinTheirWindow) {
    QWidget window;
    window.resize(600, 500);
    window.show();
    TIsomeForm form(&window);
    form.show();
    EXPECT_TRUE(window.frameGeometry().contains(form.frameGeometry()));
    EXPECT_GT(form.y(), window.y() + window.height() / 2);
    press(form, "CloseButton");
    EXPECT_FALSE(form.isVisible());
}

TEST_F(SmallForms, ViewpointOpensWithTheStoredValues) {
    view.Theta = -20.7;
    const TViewForm form;
    EXPECT_EQ(form.focusWidget(), control<QScrollBar>(form, "RhoScrollBar"));
    EXPECT_EQ(control<QScrollBar>(form, "RhoScrollBar")->value(), 4000);
    EXPECT_EQ(control<QScrollBar>(form, "ThetaScrollBar")->value(), -20);
    EXPECT_EQ(label_text(form, "ThetaLabel"), "-20.7");
    EXPECT_EQ(label_text(form, "PhiLabel"), "70");
    const struct {
        const char* bar;
        int least, most;
    } ranges[] = {
        {"RhoScrollBar", 1000, 20000}, {"ThetaScrollBar", -180, 180}, {"PhiScrollBar", 0, 180}};
    for (const auto& [name, least, most] : ranges) {
        const auto* bar = control<QScrollBar>(form, name);
        EXPECT_EQ(bar->minimum(), least);
        EXPECT_EQ(bar->maximum(), most);
        EXPECT_EQ(bar->pageStep(), 0);
    }
}

TEST_F(SmallForms, ViewpointOkStoresAndStaysOpen) {
    TViewForm form;
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
    EXPECT_EQ(form.result(), QDialog::Rejected);
    expect_viewpoint(5000, -30, 90);
    EXPECT_EQ(view.perspective, 0);
}

TEST_F(SmallForms, ViewpointDefaultResets) {
    view.Rho = 9000;
    view.Theta = 1;
    view.Phi = 2;
    TViewForm form;
    form.show();
    press(form, "DefautrButton");
    EXPECT_TRUE(form.isVisible());
    expect_viewpoint(4000, 20, 70);
    EXPECT_EQ(control<QScrollBar>(form, "RhoScrollBar")->value(), 4000);
    EXPECT_EQ(label_text(form, "PhiLabel"), "70");
}

TEST_F(SmallForms, ViewpointPersAsksForThePerspective) {
    TViewForm form;
    form.show();
    slide(form, "RhoScrollBar", 6000);
    press(form, "PersButton");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_EQ(view.perspective, 1);
    expect_viewpoint(6000, 20, 70);
}

TEST_F(SmallForms, DxfWidthTellsTheItem) {
    const char* const texts[] = {"1 dot シアン", "2 dot　黒 (Default)", "3 dot　緑 ",
                                 "4 dot　黄 ",   "5 dot　マゼンタ",     "6 dot　青"};
    for (int item = 0; item < 6; ++item) {
        TDxfWidthForm form;
        EXPECT_EQ(item_of(form, "WidthGroup"), 1);
        EXPECT_EQ(form.choice(), 2);
        const auto items = control<QGroupBox>(form, "WidthGroup")->findChildren<QRadioButton*>();
        EXPECT_EQ(items.at(item)->text(), texts[item]);
        click_item(form, "WidthGroup", item);
        press(form, "OKButton");
        EXPECT_EQ(form.result(), QDialog::Accepted);
        EXPECT_EQ(form.choice(), item + 1);
    }
}

TEST_F(SmallForms, DxfWidthCancelled) {
    TDxfWidthForm form;
    click_item(form, "WidthGroup", 4);
    press(form, "CancelButton");
    EXPECT_EQ(form.choice(), -1);
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
        TZahyouIdouForm form;
        type(form, "DxEdit", step.dx);
        press(form, step.button);
        EXPECT_FLOAT_EQ(document.shift.dx, step.shift);
        EXPECT_EQ(text_in(TZahyouIdouForm(), "DxEdit"), step.next);
    }
}

TEST_F(SmallForms, ShiftRefusesWhatIsNoNumber) {
    TZahyouIdouForm form;
    form.show();
    type(form, "DxEdit", "5");
    type(form, "DzEdit", "上");
    press(form, "OKButton");
    expect_message("Z方向: 「上」は数値ではありません");
    EXPECT_TRUE(form.isVisible());
    EXPECT_FLOAT_EQ(document.shift.dx, 0.0f);
}

} // namespace

} // namespace kigumi::test
