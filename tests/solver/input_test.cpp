// The forms of input that are accepted, and what goes out under which name.
#include "support.h"

#include "solver/base/fault.h"

namespace frameslv::test {

namespace {

using InputTest = SolverTest;

// As the modeller writes it: blank columns, one decimal, comma lines, CR LF.
const std::string modeller_text =
    "     2\r\n  0.00000e+00\r\n  9.09091e+01\r\n"
    "     1\r\n  0.00000e+00\r\n"
    "     2\r\n  0.00000e+00\r\n  2.70049e+02\r\n"
    "     3     2\r\n"
    "     1     1     2     1     1        0.0 X00Y00Z00 X00Y00Z01\r\n"
    "     2     2     3     1     1        0.0 X00Y00Z01 X01Y00Z01\r\n"
    "     1\r\n     1 1.000e+03 5.000e+02 1.000e+02 8.000e+02\r\n"
    "     1\r\n     1 1.000e+05 3.000e-01 5.000e-04\r\n"
    "     3\r\n"
    "     1       0.0       0.0       0.0 X00Y00Z00\r\n"
    "     2       0.0       0.0     270.0 X00Y00Z01\r\n"
    "     3      90.9       0.0     270.0 X01Y00Z01\r\n"
    "     1\r\n     1,111111\r\n"
    "     1\r\n X01Y00Z01,    3,       0.0,       0.0,    -200.0,"
    "       0.0,       0.0,       0.0\r\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

} // namespace

TEST_F(InputTest, ModellerFileAndItsResultFiles) {
    const Results r = run(modeller_text);
    ASSERT_EQ(r.code, 0) << r.err;
    // Coordinates are those of the levels, not the cut-off ones.
    EXPECT_DOUBLE_EQ(r.at[2].x(), 90.9091);
    EXPECT_DOUBLE_EQ(r.at[2].z(), 270.049);
    EXPECT_EQ(r.name, (std::vector<std::string>{"X00Y00Z00", "X00Y00Z01", "X01Y00Z01"}));
    EXPECT_EQ(r.levels[0], (std::vector<double>{0.0, 90.9091}));
    EXPECT_EQ(r.levels[2], (std::vector<double>{0.0, 270.049}));
    EXPECT_NEAR(r.s(1).force, -200.0, 1e-6);
    EXPECT_NEAR(std::abs(r.s(2).xm1), 200 * 90.9091, 1e-4);
    const std::string listing = read("frameslv.lst");
    EXPECT_EQ(std::count(listing.begin(), listing.end(), '\n'), 1 + 3 + 1 + 3 * 2);
    EXPECT_EQ(listing.substr(listing.size() - 2), "\r\n");
    EXPECT_FALSE(exists("frameslv.zl~") || exists("frameslv.ls~") || exists("frameslv.ds~"));
}

// A mechanism is told by the name that the modeller shows.
TEST_F(InputTest, MechanismByName) {
    const Results r = run(replaced(modeller_text, "1,111111", "1,111101"));
    EXPECT_EQ(r.code, static_cast<int>(Exit::mechanism));
    EXPECT_EQ(r.err, "構造が不安定です: 節点 X00Y00Z01 が x 方向に動きます\n");
}

TEST_F(InputTest, LevelsOnlyWhereTheyAgree) {
    struct Case {
        const char* from;
        const char* to;
        double x;
    };
    for (const auto& [from, to, x] : {
             Case{"9.09091e+01", "9.08500e+01", 90.85},        // just half the last place
             Case{"9.09091e+01", "9.08490e+01", 90.9},         // more
             Case{"270.0 X01Y00Z01", "270.0 X01Y01Z01", 90.9}, // no such level
             Case{"270.0 X01Y00Z01", "270.0 X01Y00Z00", 90.9}, // another height
             Case{"270.0 X01Y00Z01", "270.0 X1Y0Z1", 90.9091},
             Case{"270.0 X01Y00Z01", "270.0 X01Y00Z01a", 90.9},
         }) {
        const Results r = run(replaced(modeller_text, from, to));
        ASSERT_EQ(r.code, 0) << r.err;
        EXPECT_DOUBLE_EQ(r.at[2].x(), x) << to;
    }
}

TEST_F(InputTest, FreeForms) {
    const Results plain = run(modeller_text);
    struct Case {
        const char* from;
        const char* to;
    };
    for (const auto& [from, to] : {
             Case{"     2\r\n  0.00000e+00\r\n  9.09091e+01\r\n", "2 0, 90.9091\n"},
             Case{"     2\r\n  0.00000e+00\r\n  9.09091e+01\r\n", "\n\r\n2\n0 +90.9091 \n\n"},
             Case{" X00Y00Z00 X00Y00Z01\r\n", "\r\n"},
             Case{"1     1     2     1     1        0.0", "1,1,2,1,1,0."},
             Case{"2       0.0       0.0     270.0 X00Y00Z01", "2,0, 0.0, 270.049, 5"},
             Case{"1 1.000e+03 5.000e+02", "\t1, 1000\t.5E3"},
             Case{"1,111111", "1 111111"},
             Case{"     1\r\n     1,111111", "2\n1,111000\n1,000111"},
             Case{" X01Y00Z01,    3,", ",3,"},
             Case{" X01Y00Z01,    3,", "3 "},
             Case{"     1       0.0       0.0       0.0 X00Y00Z00\r\n"
                  "     2       0.0       0.0     270.0 X00Y00Z01\r\n",
                  "     2       0.0       0.0     270.0 X00Y00Z01\r\n"
                  "     1       0.0       0.0       0.0 X00Y00Z00\r\n"},
         }) {
        const Results r = run(replaced(modeller_text, from, to));
        ASSERT_EQ(r.code, 0) << to << r.err;
        expect_same(r.moved, plain.moved, 1e-8);
    }
    EXPECT_EQ(run("\xEF\xBB\xBF" + modeller_text + "\r\n \r\n").code, 0);
}

// Readers match the first nine bytes of a name: every node gets one of its own.
TEST_F(InputTest, NamesAreMadeUpWhereMissingOrAlike) {
    std::string text = replaced(modeller_text, "270.0 X00Y00Z01", "270.0");
    Results r = run(text);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.name[1], "N00000002");
    text = replaced(text, "0.0 X00Y00Z00\r\n     2       0.0", "0.0 N00000002\r\n     2       0.0");
    r = run(text);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.name, (std::vector<std::string>{"N00000002", "N00000003", "X01Y00Z01"}));
    r = run(replaced(modeller_text, "270.0 X00Y00Z01", "270.0 X00Y00Z00b"));
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.name[1], "N00000002");
}

// Doubled members are made by narrow floors and carry half each; a lone node that is wholly held,
// and a frame without loads, are harmless.
TEST_F(InputTest, AcceptedWithANote) {
    Frame f;
    f.node = {{0, 0, 0}, {0, 0, 100}, {50, 50, 0}};
    f.member = {{1, 2}, {2, 1}};
    f.section = {{100, 100, 10, 100}, {-1, 0, 0, 0}}; // the bad one is not used
    f.material = {{1e5, 0.3}, {0, 9}};
    f.support = {{1}, {3}};
    f.load = {{2, six(0, 0, -10)}, {3, six(1, 2, 3)}};
    Results r = solved(f);
    EXPECT_NEAR(r.s(1).force, -5.0, 1e-9);
    EXPECT_NEAR(r.s(2).force, -5.0, 1e-9);
    EXPECT_NE(r.out.find("注意: 同じ 2 節点"), std::string::npos);
    f.load.clear();
    r = solved(f);
    EXPECT_NE(r.out.find("荷重がありません"), std::string::npos);
    for (const double value : r.u(2))
        EXPECT_DOUBLE_EQ(value, 0.0);
    f.support = {{1}, {2}, {3}}; // nothing is free
    f.load = {{2, six(0, 0, -10)}};
    r = solved(f);
    EXPECT_NEAR(reaction(f, r, 2)(2), 10.0, 1e-9);
}

} // namespace frameslv::test
