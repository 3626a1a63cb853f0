#include "results/result_csv.h"

#include "results_support.h"

namespace kigumi::test {

namespace {

using ResultTableTest = CoreTest;

// A portal whose values differ in size, with a name that a CSV field has to quote.
void make_values(Result& result) {
    make_portal_result(result);
    set_name(result.stress[1].jname, "柱,\"頭\"");
    result.stress[0].p1 = -200.0f;
    result.stress[0].xm2 = -1234.5f;
    result.stress[1].xm2 = 1234.5f;
    result.stress[2].zm = -0.0004f;
    result.stress[2].xv1 = 1.0f / 3.0f;
    result.disp[3] = {4, "X01Y00Z00", 0.125f, -0.0f, -1.5e-7f, 0.0f, 2.5e-4f, 0.0f, 0.125f};
}

TEST_F(ResultTableTest, WritesEveryListAsCsv) {
    make_values(result);
    EXPECT_EQ(result_csv(result, stress_table(), {}).substr(0, 3), "\xEF\xBB\xBF");
    std::string text;
    for (const ResultTable* table : {&member_table(), &stress_table(), &displacement_table()}) {
        ASSERT_EQ(save_result_csv(result, work_file(work_dir, "list.csv"), *table), 0);
        text += read_file(work_file(work_dir, "list.csv")).value_or("") + "\r\n";
    }
    expect_golden("portal-results.csv", text);
    const int backwards[] = {2, 0};
    const std::string some = result_csv(result, member_table(), backwards);
    EXPECT_NE(some.find("\r\n3,4,"), std::string::npos) << "the first line is that of row 2";
    EXPECT_NE(some.find("\r\n1,1,"), std::string::npos);
    EXPECT_EQ(std::count(some.begin(), some.end(), '\n'), 3);
}

TEST_F(ResultTableTest, RefusesAnEmptyListAndALockedPlace) {
    EXPECT_EQ(save_result_csv(result, work_file(work_dir, "list.csv"), member_table()), -1);
    make_portal_result(result);
    EXPECT_EQ(save_result_csv(result, work_file(work_dir, "missing/list.csv"), member_table()), -1);
    expect_messages({"保存するデータが存在しない", "書きこみに失敗しました"});
}

TEST_F(ResultTableTest, ShowsFiveDigitsOfTheLargestValueOfAUnit) {
    make_values(result);
    const ResultSheet stress(result, stress_table());
    const auto shown = [&](int row, const char* heading) {
        for (int i = 0; i < stress.columns(); ++i) {
            if (std::string_view(stress.column(i).heading) == heading) {
                return stress.text(row, i);
            }
        }
        return std::string("no such column");
    };
    EXPECT_EQ(shown(0, "軸力 p1"), "-200.00");
    EXPECT_EQ(shown(2, "せん断 xv1"), "0.33");
    EXPECT_EQ(shown(0, "曲げ xm2"), "-1234.5");
    EXPECT_EQ(shown(2, "ねじり zm"), "0.0") << "a value that rounds to zero has no sign";
    EXPECT_EQ(shown(0, "部材番号"), "1");
    const ResultSheet displacements(result, displacement_table());
    EXPECT_EQ(displacements.text(3, 2), "0.12500");
    EXPECT_EQ(displacements.text(3, 7), "0.00025000");
}

TEST_F(ResultTableTest, FindsTheLargestMagnitudes) {
    make_values(result);
    const int last_two[] = {1, 2};
    const std::vector<double> all =
        largest_magnitudes(result, member_table(), all_rows(result, member_table()));
    const std::vector<double> some = largest_magnitudes(result, member_table(), last_two);
    constexpr size_t number = 0;
    constexpr size_t force = 5;
    constexpr size_t p2 = 8;
    EXPECT_DOUBLE_EQ(all[force], 200.0);
    EXPECT_DOUBLE_EQ(some[force], 20.0);
    EXPECT_DOUBLE_EQ(all[number], 0.0) << "a number that names a row is no value";
    EXPECT_DOUBLE_EQ(all[p2], 0.0);
}

struct FilterCase {
    const char* filter;
    std::vector<int> rows;
};

TEST_F(ResultTableTest, FiltersByNumbersAndNames) {
    make_portal_result(result);
    const FilterCase cases[] = {{"", {0, 1, 2}},  {"  ", {0, 1, 2}}, {"x00y00z00", {0}},
                                {"X01", {1, 2}},  {"X00 X01", {1}},  {"x0?y00z01", {0, 1, 2}},
                                {"X00*Z00", {0}}, {"2", {0, 1}},     {"3", {1, 2}},
                                {"200", {}}};
    for (const FilterCase& each : cases) {
        std::vector<int> rows;
        for (int row = 0; row < result.N_Stress; ++row) {
            if (row_matches(result, member_table(), row, each.filter)) {
                rows.push_back(row);
            }
        }
        EXPECT_EQ(rows, each.rows) << "filter '" << each.filter << "'";
    }
}

} // namespace

} // namespace kigumi::test
