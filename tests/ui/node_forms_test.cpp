// The support and load window and its dialogs.
#include "model/names.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "ui/data/record_grid.h"
#include "ui/data/sel_node_form.h"
#include "ui_support.h"

#include <QKeyEvent>

#include <ctime>

namespace kigumi::test {

namespace {

class NodeForms : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        for (int i = 0; i < 5; ++i) {
            find_or_add_node(model, 90.0f * static_cast<float>(i), 0.0f, 240.0f);
        }
        save_level_name(model);
        clear_roles(model);
        ASSERT_EQ(put_fix(model, 0, 1, 1, 1), 0);
        ASSERT_EQ(put_load(model, 1, 0.0f, 0.0f, -200.0f), 0);
        ASSERT_EQ(put_load(model, 2, 5.0f, 0.0f, -200.0f), 0);
        project.stage = Stage::made;
        session.work.history.start(project);
    }
    static void press_key(const QWidget& window, const char* grid, Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(control<QWidget>(window, grid), &event);
    }
    static RecordGrid* grid(const QWidget& window, const char* name) {
        return control<RecordGrid>(window, name);
    }
    // Node, three values of every row, blanks left out.
    static std::string rows(const QWidget& window, const char* name) {
        const RecordGrid* table = grid(window, name);
        std::string text;
        for (int row = 0; row < table->rowCount(); ++row) {
            for (int column = 0; column < 4; ++column) {
                text += table->item(row, column)->text().trimmed().toStdString();
                text += column < 3 ? " " : "; ";
            }
        }
        return text;
    }
    // Answers the dialog that opens next with values and a button.
    static void answer_values(const char* form, const char* kind,
                              const std::vector<const char*>& values, const char* button) {
        answer_next([=](QDialog& dialog) {
            EXPECT_STREQ(dialog.metaObject()->className(), form);
            for (size_t axis = 0; axis < values.size(); ++axis) {
                const std::string box = std::string(1, "XYZ"[axis]) + kind + "Edit";
                type(dialog, box.c_str(), values[axis]);
            }
            press(dialog, button);
        });
    }
    void expect_agreement(const TSelNodeForm& form) {
        for (int i = 0; i < model.N_Node; ++i) {
            EXPECT_EQ(find_fix(model, i + 1) >= 0, model.node[i].flag == role_fixed) << i;
            EXPECT_EQ(find_load(model, i + 1) >= 0, model.node[i].flag == role_loaded) << i;
        }
        EXPECT_EQ(text_in(form, "FixEdit"), std::to_string(model.N_Fix));
        EXPECT_EQ(text_in(form, "LoadEdit"), std::to_string(model.N_Load));
    }
};

TEST_F(NodeForms, AddingOffersTheDefaultsAndReplaces) {
    TSelNodeForm form(session, nullptr);
    int redrawn = 0;
    QObject::connect(&form, &TSelNodeForm::changed, [&redrawn] { ++redrawn; });
    EXPECT_EQ(text_in(form, "ZenEdit"), "5");
    EXPECT_EQ(grid(form, "LoadStringGrid")->item(0, 3)->text(), "  -200.0");
    grid(form, "ZenStringGrid")->choose(3);
    answer_values("TSelFixForm", "fix", {}, "OKButton");
    press(form, "AddFixSpeedButton");
    EXPECT_EQ(rows(form, "FixStringGrid"), "X00Y00Z00 1 1 1; X03Y00Z00 0 0 1; ");
    grid(form, "ZenStringGrid")->choose(0);
    answer_values("TSelFixForm", "fix", {"5", "0", "-1"}, "OKButton");
    press(form, "AddFixSpeedButton");
    EXPECT_EQ(rows(form, "FixStringGrid"), "X00Y00Z00 1 0 1; X03Y00Z00 0 0 1; ");
    grid(form, "ZenStringGrid")->choose(4);
    answer_values("TSelLoadForm", "load", {}, "OKButton");
    press(form, "AddLoadSpeedButton");
    EXPECT_EQ(rows(form, "LoadStringGrid"),
              "X01Y00Z00 0.0 0.0 -200.0; X02Y00Z00 5.0 0.0 -200.0; X04Y00Z00 0.0 0.0 -1000.0; ");
    EXPECT_EQ(redrawn, 3);
    EXPECT_TRUE(is_unsaved(session.work));
    expect_agreement(form);
}

TEST_F(NodeForms, CancelAndWrongNumbersChangeNothing) {
    TSelNodeForm form(session, nullptr);
    const std::string fixes = rows(form, "FixStringGrid");
    const std::string loads = rows(form, "LoadStringGrid");
    const std::array<const char*, 3> ways[] = {{"AddFixSpeedButton", "TSelFixForm", "fix"},
                                               {"ModFixSpeedButton", "TFixEditForm", "fix"},
                                               {"DelFixSpeedButton", "TFixEditForm", "fix"},
                                               {"AddLoadSpeedButton", "TSelLoadForm", "load"},
                                               {"ModLoadSpeedButton", "TLoadEditForm", "load"},
                                               {"DelLoadSpeedButton", "TLoadEditForm", "load"}};
    for (const auto& [button, type, kind] : ways) {
        grid(form, "ZenStringGrid")->choose(4);
        answer_values(type, kind, {"1", "1", "1"}, "CancelButton");
        press(form, button);
    }
    answer_next([this](QDialog& dialog) {
        type(dialog, "YfixEdit", "1.5");
        press(dialog, "OKButton");
        EXPECT_TRUE(dialog.isVisible());
        expect_message("Y方向固定: 「1.5」は数値ではありません");
        press(dialog, "CancelButton");
    });
    press(form, "AddFixSpeedButton");
    EXPECT_EQ(rows(form, "FixStringGrid"), fixes);
    EXPECT_EQ(rows(form, "LoadStringGrid"), loads);
    EXPECT_FALSE(session.work.history.differs(project));
}

TEST_F(NodeForms, TheOtherRoleIsGivenUpOnlyWhenSaidSo) {
    TSelNodeForm form(session, nullptr);
    grid(form, "ZenStringGrid")->choose(2);
    for (const char* button : {"CancelButton", "OKButton"}) {
        EXPECT_EQ(model.node[2].flag, role_loaded);
        answer_next([=](QDialog& dialog) {
            answer_next([=](QDialog& question) {
                EXPECT_STREQ(question.metaObject()->className(), "TDelNodeForm");
                EXPECT_EQ(label_text(question, "MessageLabel"), "この節点の荷重を中止");
                EXPECT_EQ(text_in(question, "XloadEdit"), "5.0");
                press(question, button);
            });
            press(dialog, "OKButton");
        });
        press(form, "AddFixSpeedButton");
    }
    EXPECT_EQ(rows(form, "LoadStringGrid"), "X01Y00Z00 0.0 0.0 -200.0; ");
    EXPECT_EQ(rows(form, "FixStringGrid"), "X00Y00Z00 1 1 1; X02Y00Z00 0 0 1; ");
    for (const char* button : {"CancelButton", "OKButton"}) {
        EXPECT_EQ(model.node[2].flag, role_fixed);
        answer_next([=](QDialog& dialog) { press(dialog, button); });
        press(form, "AddLoadSpeedButton");
    }
    EXPECT_EQ(model.node[2].flag, role_loaded);
    expect_agreement(form);
}

TEST_F(NodeForms, RowsAreChangedAndRemovedByButtonAndKey) {
    put_fix(model, 4, 0, 0, 1);
    put_fix(model, 3, 0, 0, 1);
    TSelNodeForm window(session, nullptr);
    grid(window, "FixStringGrid")->choose(1);
    answer_next([](QDialog& dialog) {
        EXPECT_EQ(label_text(dialog, "MessageLabel"), "この固定節点を編集します");
        EXPECT_EQ(text_in(dialog, "BangouEdit"), "5");
        EXPECT_EQ(text_in(dialog, "CodeEdit"), "X04Y00Z00");
        type(dialog, "XfixEdit", "7");
        press(dialog, "OKButton");
    });
    press_key(window, "FixStringGrid", Qt::Key_Return);
    EXPECT_EQ(rows(window, "FixStringGrid"), "X00Y00Z00 1 1 1; X04Y00Z00 1 0 1; X03Y00Z00 0 0 1; ");
    answer_next([](QDialog& dialog) {
        EXPECT_EQ(label_text(dialog, "MessageLabel"), "この固定節点を削除します");
        press(dialog, "OKButton");
    });
    press_key(window, "FixStringGrid", Qt::Key_Delete);
    EXPECT_EQ(rows(window, "FixStringGrid"), "X00Y00Z00 1 1 1; X03Y00Z00 0 0 1; ");
    EXPECT_EQ(grid(window, "FixStringGrid")->currentRow(), 1);
    for (int i = 0; i < 2; ++i) {
        answer_values("TLoadEditForm", "load", {}, "OKButton");
        press(window, "DelLoadSpeedButton");
    }
    EXPECT_EQ(rows(window, "LoadStringGrid"), "");
    EXPECT_FALSE(is_enabled(window, "DelLoadSpeedButton"));
    expect_agreement(window);
}

TEST_F(NodeForms, AllLoadsTakeTheShownValuesUntilCancel) {
    TSelNodeForm form(session, nullptr);
    for (const char* button : {"CancelButton", "OKButton"}) {
        answer_next([this, button](QDialog& dialog) {
            type(dialog, "ZloadEdit", "-750.5");
            press(dialog, "DouButton");
            EXPECT_FLOAT_EQ(model.load[1].fz, -750.5f);
            EXPECT_FLOAT_EQ(model.load[1].fx, 0.0f);
            type(dialog, "ZloadEdit", "-1");
            press(dialog, button);
        });
        press(form, "ModLoadSpeedButton");
        if (button == std::string("CancelButton")) {
            EXPECT_EQ(rows(form, "LoadStringGrid"),
                      "X01Y00Z00 0.0 0.0 -200.0; X02Y00Z00 5.0 0.0 -200.0; ");
        }
    }
    EXPECT_EQ(rows(form, "LoadStringGrid"), "X01Y00Z00 0.0 0.0 -1.0; X02Y00Z00 0.0 0.0 -750.5; ");
}

TEST_F(NodeForms, TenThousandNodesOpenAtOnceAndScrollToAnId) {
    constexpr int across = 100;
    reset_model(model);
    for (int i = 0; i < node_capacity; ++i) {
        find_or_add_node(model, static_cast<float>(i % across), static_cast<float>(i / across),
                         0.0f);
    }
    save_level_name(model);
    clear_roles(model);
    for (int i = 0; i < fix_capacity; ++i) {
        put_fix(model, i, 1, 1, 1);
        put_load(model, fix_capacity + i, 0.0f, 0.0f, -200.0f);
    }
    const std::clock_t start = std::clock();
    TSelNodeForm form(session, nullptr);
    form.show();
    QApplication::processEvents();
#ifdef __SANITIZE_ADDRESS__
    constexpr double bound = 3.0; // of the unoptimised build with its checks
#else
    constexpr double bound = 0.3;
#endif
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, bound);
    const RecordGrid* nodes = grid(form, "ZenStringGrid");
    type(form, "KensakuEdit", "X07Y55Z00");
    press(form, "KensakuButton1");
    EXPECT_EQ(nodes->currentRow(), 5507);
    EXPECT_EQ(nodes->rowAt(0), 5507);
    type(form, "KensakuEdit", "Ｘ９９Ｙ９９Ｚ００");
    press(form, "KensakuButton1");
    EXPECT_EQ(nodes->currentRow(), node_capacity - 1);
    for (const auto& [text, message] : {std::pair("X07Y55", "IDコードが間違っています"),
                                        std::pair("X07Y55Z01", "検索に失敗しました")}) {
        type(form, "KensakuEdit", text);
        press(form, "KensakuButton1");
        expect_message(message);
        EXPECT_EQ(nodes->currentRow(), node_capacity - 1) << "nothing else changes";
    }
}

} // namespace

} // namespace kigumi::test
