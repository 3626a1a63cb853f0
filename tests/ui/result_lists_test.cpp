// The list and search windows of the results, on a portal of three members.
#include "../results_support.h"
#include "player.h"
#include "results/selection.h"
#include "ui/result/heni_ichiran_form.h"
#include "ui/result/kekka_ichiran_form.h"
#include "ui/result/kekka_kensaku_form.h"
#include "ui/result/ouryoku_ichiran_form.h"

#include <QBuffer>
#include <QComboBox>
#include <QKeyEvent>
#include <QPdfWriter>
#include <QTableView>

namespace kigumi::test {

namespace {

using Rows = std::vector<int>;

class ResultLists : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        make_portal_result(result);
        result.stress[0].xm2 = -30.0f;
        result.stress[1].xm2 = 7.0f;
        result.stress[2].xm2 = 9.0f;
        clear_selection(result);
    }
    static QTableView& grid(const QWidget& window) { return *window.findChild<QTableView*>(); }
    static std::string cell(const QWidget& window, int row, int column) {
        const auto* model = grid(window).model();
        return model->index(row, column).data().toString().toStdString();
    }
    // The first column from top to bottom.
    static std::string numbers(const QWidget& window) {
        std::string all;
        for (int row = 0; row < grid(window).model()->rowCount(); ++row) {
            all += cell(window, row, 0) + " ";
        }
        return all;
    }
    // A click on a row; with `more` the Ctrl key is held.
    static void click_row(const QWidget& window, int row, bool more = false) {
        const QModelIndex at = grid(window).model()->index(row, 0);
        using Model = QItemSelectionModel;
        grid(window).selectionModel()->setCurrentIndex(
            at, (more ? Model::Toggle : Model::ClearAndSelect) | Model::Rows);
    }
    static std::string highlighted(const QWidget& window) {
        std::string all;
        for (const QModelIndex& at : grid(window).selectionModel()->selectedRows()) {
            all += at.data().toString().toStdString() + " ";
        }
        return all;
    }
    static void press_delete(const QWidget& window) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
        QApplication::sendEvent(&grid(window), &key);
    }
};

TEST_F(ResultLists, RowsAndSelectionFollowEachOther) {
    TKekkaIchiranForm list(session, nullptr);
    int told = 0;
    QObject::connect(&list, &TKekkaIchiranForm::selection_changed, [&told] { ++told; });
    click_row(list, 1);
    click_row(list, 2, true);
    EXPECT_EQ(selected_rows(result), (Rows{1, 2}));
    EXPECT_EQ(told, 2);
    select_results(result, Rows{0});
    list.show_selection();
    EXPECT_EQ(highlighted(list), "1 ");
    EXPECT_EQ(told, 2) << "what another window chose is not told again";
    press(list, "ZenSentakuButton");
    EXPECT_EQ(selected_rows(result), (Rows{0, 1, 2}));
    press(list, "SentakuKaijoButton");
    EXPECT_TRUE(selected_rows(result).empty());
    EXPECT_EQ(highlighted(list), "");
    EXPECT_EQ(told, 4);
}

TEST_F(ResultLists, DeleteTakesTheCurrentRowOutAndGoesOn) {
    TKekkaIchiranForm list(session, nullptr);
    select_results(result, Rows{0, 2});
    list.show_selection();
    press_delete(list);
    EXPECT_EQ(selected_rows(result), (Rows{2}));
    press_delete(list);
    EXPECT_TRUE(selected_rows(result).empty());
    EXPECT_FALSE(is_enabled(list, "SakujoButton"));
    press_delete(list);
    click_row(list, 1);
    press(list, "SakujoButton");
    EXPECT_TRUE(selected_rows(result).empty());
}

TEST_F(ResultLists, FilterKeepsWhatItHides) {
    TKekkaIchiranForm list(session, nullptr);
    click_row(list, 0);
    type(list, "KensakuEdit", "X01");
    EXPECT_EQ(numbers(list), "2 3 ");
    EXPECT_EQ(selected_rows(result), (Rows{0}));
    click_row(list, 1, true);
    EXPECT_EQ(selected_rows(result), (Rows{0, 2})) << "added to the hidden row";
    type(list, "KensakuEdit", "");
    EXPECT_EQ(highlighted(list), "1 3 ");
    type(list, "KensakuEdit", "Ｘ０１"); // full-width
    click_row(list, 0);
    EXPECT_EQ(selected_rows(result), (Rows{1})) << "a plain click chooses afresh";
}

TEST_F(ResultLists, SortsNumbersByValueAndSavesRowsAsShown) {
    TKekkaIchiranForm list(session, nullptr);
    list.show();
    constexpr int force = 5;
    grid(list).sortByColumn(force, Qt::AscendingOrder);
    EXPECT_EQ(numbers(list), "1 3 2 ");
    grid(list).sortByColumn(force, Qt::DescendingOrder);
    EXPECT_EQ(numbers(list), "2 3 1 ");
    click_row(list, 0);
    EXPECT_EQ(selected_rows(result), (Rows{1})) << "the row of the table, not of the list";
    Player player;
    player.click("TKekkaIchiranForm", "CsvButton").file(work_file(work_dir, "all.csv"));
    player.step("selected only", [&list] {
        control<QComboBox>(list, "HaniComboBox")->setCurrentIndex(1);
        return true;
    });
    player.click("TKekkaIchiranForm", "CsvButton").file(work_file(work_dir, "some.csv"));
    player.click("TKekkaIchiranForm", "PdfButton").file(work_file(work_dir, "some.pdf"));
    player.close("TKekkaIchiranForm").gone("TKekkaIchiranForm");
    player.play();
    expect_messages(
        {"CSVファイルを保存しました", "CSVファイルを保存しました", "PDFファイルを保存しました"});
    const std::string all = read_file(work_file(work_dir, "all.csv")).value_or("");
    const std::string some = read_file(work_file(work_dir, "some.csv")).value_or("");
    EXPECT_LT(all.find("\r\n2,2,"), all.find("\r\n1,1,"));
    EXPECT_NE(some.find("\r\n2,2,"), std::string::npos);
    EXPECT_EQ(some.find("\r\n1,1,"), std::string::npos);
    EXPECT_EQ(read_file(work_file(work_dir, "some.pdf")).value_or("").substr(0, 5), "%PDF-");
}

TEST_F(ResultLists, StressListShowsTheSelectionAndMarksTheExtremes) {
    constexpr int xm2 = 10;
    TOuryokuIchiranForm list(session, nullptr);
    EXPECT_EQ(label_text(list, "SetumeiLabel"), "すべての部材（3 部材）の応力");
    const auto is_bold = [&list](int row) {
        return grid(list).model()->index(row, xm2).data(Qt::FontRole).value<QFont>().bold();
    };
    EXPECT_TRUE(is_bold(0));
    EXPECT_FALSE(is_bold(2));
    EXPECT_NE(label_text(list, "GoukeiLabel").find("曲げ xm2 -30.000 kgf·cm（部材 1）"),
              std::string::npos);
    EXPECT_FALSE(is_enabled(list, "SakujoButton"));
    select_results(result, Rows{1, 2});
    list.show_selection();
    EXPECT_EQ(numbers(list), "2 3 ");
    EXPECT_EQ(label_text(list, "SetumeiLabel"), "選択した 2 部材の応力");
    EXPECT_TRUE(is_bold(1)) << "the largest of the selection";
    click_row(list, 0);
    EXPECT_EQ(selected_rows(result), (Rows{1, 2})) << "rows of this list are no selection";
    press_delete(list);
    EXPECT_EQ(selected_rows(result), (Rows{2}));
    EXPECT_EQ(numbers(list), "3 ");
}

TEST_F(ResultLists, DisplacementsHaveTheLargestFirst) {
    for (int i = 0; i < result.N_Setuten; ++i) {
        result.disp[i].mag = 4.0f - static_cast<float>(i);
    }
    THeniIchiranForm list(session, nullptr);
    constexpr int magnitude = 2;
    EXPECT_EQ(cell(list, 0, magnitude), "4.0000");
    grid(list).sortByColumn(magnitude, Qt::AscendingOrder);
    EXPECT_EQ(cell(list, 0, magnitude), "1.0000");
    type(list, "KensakuEdit", "Z00");
    EXPECT_EQ(numbers(list), "4 1 ");
}

TEST_F(ResultLists, SearchCountsAndFillsTheSelection) {
    TKekkaKensakuForm search(session, nullptr);
    EXPECT_FALSE(is_enabled(search, "DanmenComboBox")) << "there is no model";
    EXPECT_EQ(label_text(search, "CountLabel"), "条件に合う部材 3 / 3　（選択中 0）");
    click_item(search, "FugouGroup", 2);
    press(search, "KensakuButton");
    EXPECT_EQ(selected_rows(result), (Rows{0, 2}));
    click_item(search, "FugouGroup", 0);
    type(search, "KagenEdit", "10");
    EXPECT_EQ(label_text(search, "CountLabel"), "条件に合う部材 2 / 3　（選択中 2）");
    press(search, "SiborikomiButton");
    EXPECT_EQ(selected_rows(result), (Rows{0}));
    type(search, "BangouFromEdit", "２");
    press(search, "TuikaButton");
    EXPECT_EQ(selected_rows(result), (Rows{0, 1}));
    type(search, "JougenEdit", "abc");
    EXPECT_FALSE(is_enabled(search, "KensakuButton"));
    EXPECT_EQ(selected_rows(result), (Rows{0, 1}));
}

// A table of several pages, printed with all of them or with those that are wanted.
TEST_F(ResultLists, PrintsAsManyPagesAsItCounts) {
    PrintedTable table;
    table.columns = {{"番号", true}, {"長い\n見出し", false}};
    table.rows = 500;
    table.cell = [](int row, int) { return QString::number(row); };
    TablePrinter pages("一覧", "portal");
    pages.add_heading("表");
    pages.add_table(table);
    int counted = 0;
    const auto written = [&](int first, int last) {
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        {
            QPdfWriter pdf(&out);
            pdf.setPageLayout(pages.page_layout());
            counted = pages.pages(pdf);
            EXPECT_EQ(pages.print(pdf, first, last), 0);
        }
        return out.data().count("/Type /Page\n");
    };
    EXPECT_EQ(written(1, -1), counted);
    EXPECT_GT(counted, 5);
    EXPECT_EQ(written(2, 3), 2);
}

} // namespace

} // namespace kigumi::test
