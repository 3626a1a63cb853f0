// Every refusal: a code, one line that names the place, and no result files.
#include "support.h"

#include "solver/base/fault.h"
#include "solver/program/run.h"

#include "solver/text/output.h"
#include "solver/text/signals.h"

#include <algorithm>
#include <clocale>
#include <functional>
#include <sstream>

#if !defined(_WIN32)
#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace frameslv::test {

namespace {

class RefusalTest : public SolverTest {
  protected:
    void expect_refused(const std::string& text, Exit code, const std::string& named,
                        const std::string& what) {
        for (const char* name : results)
            write(name, "old");
        const Results r = run(text);
        EXPECT_EQ(r.code, static_cast<int>(code)) << what << ": " << r.err;
        EXPECT_NE(r.err.find(named), std::string::npos) << what << ": " << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << what;
        for (const char* name : results)
            EXPECT_FALSE(exists(name)) << what << ": " << name;
        const std::string error = read("frameslv.err");
        ASSERT_GT(error.size(), 2u);
        EXPECT_EQ(error.substr(0, error.size() - 2) + "\n", r.err);
    }

    static constexpr const char* results[] = {"frameslv.zlv", "frameslv.lst", "frameslv.dsp"};
};

Frame portal() {
    Frame f;
    f.node = {{0, 0, 0}, {0, 0, 300}, {400, 0, 300}, {400, 0, 0}};
    f.member = {{1, 2}, {2, 3, 1, 1}, {4, 3}};
    f.section = {{1000, 500, 100, 800}};
    f.material = {{1e5, 0.3}};
    f.support = {{1}, {4}};
    f.load = {{2, six(10, 0, -20)}};
    return f;
}

Frame::Load push_x(double force) {
    return {2, six(force, 0, 0)};
}

void hold_feet(Frame& f, const char* digits) {
    f.support = {{1, digits}, {4, digits}};
}

// A part of its own, nodes 5 and 6.
void add_post(Frame& f, const std::string& digits) {
    f.node.emplace_back(0, 900, 0);
    f.node.emplace_back(0, 900, 100);
    f.member.push_back({5, 6});
    if (!digits.empty())
        f.support.push_back({5, digits});
}

} // namespace

TEST_F(RefusalTest, Models) {
    struct Case {
        const char* what;
        std::function<void(Frame&)> change;
        Exit code;
        const char* named;
    };
    const auto bad = Exit::bad_model;
    const auto loose = Exit::mechanism;
    const Case cases[] = {
        {"no nodes", [](Frame& f) { f = Frame(); }, bad, "節点がありません"},
        {"no members", [](Frame& f) { f.member.clear(); }, bad, "部材がありません"},
        {"unknown node", [](Frame& f) { f.member[1].j = 5; }, bad, "部材 2: 節点番号 5"},
        {"unknown section", [](Frame& f) { f.member[1].section = -1; }, bad, "部材 2: 断面番号 -1"},
        {"unknown material", [](Frame& f) { f.member[2].material = 2; }, bad, "部材 3: 材料番号 2"},
        {"A zero", [](Frame& f) { f.section[0].A = 0; }, bad, "断面 1 の A"},
        {"Iy negative", [](Frame& f) { f.section[0].Iy = -1; }, bad, "断面 1 の Iy"},
        {"J zero", [](Frame& f) { f.section[0].J = 0; }, bad, "断面 1 の J"},
        {"E zero", [](Frame& f) { f.material[0].E = 0; }, bad, "材料 1 の E"},
        {"nu -1", [](Frame& f) { f.material[0].nu = -1; }, bad, "材料 1 のポアソン比"},
        {"density negative", [](Frame& f) { f.material[0].density = -5e-4; }, bad,
         "材料 1 の密度 -0.0005"},
        {"nu 0.51", [](Frame& f) { f.material[0].nu = 0.51; }, bad, "材料 1 のポアソン比"},
        {"zero length", [](Frame& f) { f.node[2] = f.node[1]; }, bad, "部材 2 (節点 2 - 節点 3)"},
        {"far away", [](Frame& f) { f.node[0].x() = 1.7e308, f.node[1].x() = -1.7e308; }, bad,
         "座標"},
        {"loads beyond double", [](Frame& f) { f.load.assign(2, push_x(1.7e308)); }, bad,
         "節点 2 の荷重"},
        {"stiffness beyond double", [](Frame& f) { f.material[0].E = 1e308; }, Exit::inexact,
         "節点"},
        {"results beyond single", [](Frame& f) { f.load.assign(1, push_x(1e40)); }, Exit::inexact,
         "が大きすぎます"},
        {"no supports", [](Frame& f) { f.support.clear(); }, loose, "支点がありません"},
        {"node without members", [](Frame& f) { f.node.emplace_back(9, 9, 9); }, loose,
         "節点 5 に部材がありません"},
        {"floating part", [](Frame& f) { add_post(f, {}); }, loose,
         "節点 5 を含む部分 (節点 2 個) に支点がありません"},
        {"spin about the line of the supports", [](Frame& f) { hold_feet(f, "111000"); }, loose,
         "y 方向"},
        {"slides", [](Frame& f) { hold_feet(f, "011111"); }, loose, "x 方向"},
        {"second part loose", [](Frame& f) { add_post(f, "110111"); }, loose, "節点 5 が z 方向"},
    };
    for (const Case& one : cases) {
        Frame f = portal();
        one.change(f);
        expect_refused(f.text(), one.code, one.named, one.what);
    }
    EXPECT_EQ(run(portal()).code, 0);
    EXPECT_FALSE(exists("frameslv.err")); // the stale one is gone
}

TEST_F(RefusalTest, Texts) {
    struct Case {
        const char* from;
        const char* to;
        const char* named;
    };
    const std::string good = portal().text();
    const Case cases[] = {
        {"4 3\n", "-4 3\n", "4行目"},
        {"4 3\n", "4 30\n", "4行目: 部材の個数 30"}, // 30 records need more than the bytes left
        {"4 3\n", "4\n", "4行目: 部材の項目の数 1"},
        {"4 3\n", "5 3\n", "節点の数 4 が部材の見出し行の節点数 5"},
        {"4 3\n", "4 4\n", "8行目"},
        {"0\n0\n0\n", "-1\n0\n0\n", "1行目: X レベルの個数 -1"},
        {"0\n0\n0\n", "2\n1\n2 3\n0\n0\n", "より多くの値"},
        {"2 2 3 1 1 0\n", "1 2 3 1 1 0\n", "6行目: 部材の番号 1 が二度"},
        {"2 2 3 1 1 0\n", "4 2 3 1 1 0\n", "6行目: 部材の番号 4 は 1～3"},
        {"2 2 3 1 1 0\n", "2 2 3.0 1 1 0\n", "6行目: 「3.0」は整数"},
        {"2 2 3 1 1 0\n", "2 2 3 1 1 0 a b c\n", "6行目: 部材の項目の数 9"},
        {"2 2 3 1 1 0\n", "2 2 3 1 1 up\n", "6行目: 「up」は数値"},
        {"2 0 0 300\n", "2 0 0 nan\n", "「nan」"},
        {"2 0 0 300\n", "2 0 1,5 30\n", "節点の名前「30」が数値"},
        {"2 2 3 1 1 0\n", "2 2 3 1 1 0,5\n", "部材の名前「5」が数値"},
        {"2 0 0 300\n", "2 0,,0 300\n", "カンマ"},
        {"1 1000 500 100 800\n", "1 1000 500 100\n", "断面の項目の数 4"},
        {"1,111111\n", "1,111112\n", "「111112」"},
        {"1,111111\n", "9,111111\n", "節点番号 9"},
        {"1,111111\n", "1,1,111111\n", "支点の項目の数 3"},
        {" ,2,10,", " ,7,10,", "荷重の節点番号 7"},
        {" ,2,10,", "2,1,0,10,", "荷重の項目の数 9"},
    };
    for (const auto& [from, to, named] : cases) {
        std::string text = good;
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, std::string(from).size(), to);
        expect_refused(text, Exit::bad_text, named, to);
    }
    expect_refused(good + "1 2 3\n", Exit::bad_text, "荷重の個数より多く", "one line more");
}

TEST_F(RefusalTest, CutAtEveryByte) {
    const std::string good = portal().text();
    const std::string unended = good.substr(0, good.size() - 1);
    for (size_t length = 0; length < unended.size(); length++)
        expect_refused(good.substr(0, length), length == 0 ? Exit::no_input : Exit::bad_text,
                       "FRAMESLV.IN", "cut at " + std::to_string(length));
    // Only the line end is missing: files written by hand.
    const Results whole = run(good);
    const Results r = run(unended);
    ASSERT_EQ(r.code, 0) << r.err;
    expect_same(r.moved, whole.moved, 0.0);
    EXPECT_NE(r.out.find("改行がありません"), std::string::npos) << r.out;
    EXPECT_EQ(whole.out.find("改行がありません"), std::string::npos) << whole.out;
    EXPECT_EQ(run(good + "  ").out, whole.out);
}

TEST_F(RefusalTest, NoBytesCrash) {
    const std::string good = portal().text();
    for (size_t at = 0; at < good.size(); at++)
        for (const char wrong : {'\0', '-', '9', ',', '\n', '\xFF'}) {
            std::string text = good;
            text[at] = wrong;
            run(text);
            EXPECT_NE(exists("frameslv.err"), exists("frameslv.lst")) << at;
        }
}

TEST_F(RefusalTest, FilesAndFolders) {
    std::ostringstream out, err;
    write("frameslv.lst", "old");
    EXPECT_EQ(frameslv::run(folder_, {}, out, err), static_cast<int>(Exit::no_input)); // missing
    EXPECT_FALSE(exists("frameslv.lst"));
    fs::create_directory(folder_ / "FRAMESLV.IN");
    EXPECT_EQ(frameslv::run(folder_, {}, out, err), static_cast<int>(Exit::no_input));
    fs::remove(folder_ / "FRAMESLV.IN");
    // A result name taken by a folder that cannot be removed; then a temporary one.
    fs::create_directories(folder_ / "frameslv.dsp" / "inside");
    EXPECT_EQ(run(portal()).code, static_cast<int>(Exit::no_output));
    fs::remove_all(folder_ / "frameslv.dsp");
    fs::create_directories(folder_ / "frameslv.ds~" / "inside");
    EXPECT_EQ(run(portal()).code, static_cast<int>(Exit::no_output));
    EXPECT_FALSE(exists("frameslv.lst") || exists("frameslv.zlv") || exists("frameslv.ls~"));
}

// frameslv.not: a key and a sentence a line, with the results and after a refusal.
TEST_F(RefusalTest, NotesStandBesideTheResults) {
    const auto key_count = [this](const std::string& key) {
        const std::string text = "\n" + read("frameslv.not");
        size_t count = 0;
        for (size_t at = text.find("\n" + key + " "); at != std::string::npos;
             at = text.find("\n" + key + " ", at + 1))
            count++;
        return count;
    };
    Frame f = portal();
    f.member.push_back(f.member[0]); // twice
    f.section.push_back({1e-9, 1e-9, 1e-9, 1e-9});
    f.member[1].section = 2;
    settings_.self_weight = true;
    solved(f);
    for (const char* key : {"counts", "repeated", "residual", "condition", "bounds", "self-weight"})
        EXPECT_EQ(key_count(key), 1U) << key << "\n" << read("frameslv.not");
    EXPECT_EQ(key_count("stiffness-ratio"), 4U) << read("frameslv.not");
    const std::string text = read("frameslv.not");
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
    hold_feet(f, "111000");
    EXPECT_NE(run(f).code, 0);
    EXPECT_EQ(key_count("mechanism"), 1U) << read("frameslv.not");
    EXPECT_EQ(key_count("counts"), 0U);
    EXPECT_NE(read("frameslv.not").find("節点 2 が y 方向に動きます"), std::string::npos)
        << read("frameslv.not");
}

#if !defined(_WIN32)

// A disk that is full leaves the results of the run before, whole, and nothing of the new one.
TEST_F(RefusalTest, FullDiskCostsNoEarlierResults) {
    Frame f = portal();
    solved(f);
    const std::string before = read("frameslv.lst"), notes = read("frameslv.not");
    f.load[0].value *= 2.0;
    write("FRAMESLV.IN", f.text());
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{200, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    std::ostringstream out, err;
    const int code = frameslv::run(folder_, settings_, out, err);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(code, static_cast<int>(Exit::no_output)) << err.str();
    EXPECT_EQ(read("frameslv.lst"), before);
    EXPECT_EQ(read("frameslv.not"), notes);
    EXPECT_TRUE(exists("frameslv.err"));
    for (const char* const* name = temporary_names(); *name != nullptr; name++)
        EXPECT_FALSE(exists(*name)) << *name;
    EXPECT_EQ(run(f).code, 0);
    EXPECT_NE(read("frameslv.lst"), before);
}

// A request to end takes the half-written files along, and waits while files are renamed.
TEST_F(RefusalTest, EndedRunsLeaveNoHalfFiles) {
    for (const bool waits : {false, true}) {
        write("frameslv.ls~", "half");
        const pid_t child = fork();
        if (child == 0) {
            if (chdir(folder_.c_str()) != 0)
                _exit(1);
            remove_when_ended(temporary_names());
            if (waits) {
                const EndsWait wait;
                std::raise(SIGTERM);
                fs::rename("frameslv.ls~", "frameslv.lst");
            }
            std::raise(SIGTERM);
            _exit(2);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
        EXPECT_FALSE(exists("frameslv.ls~"));
        EXPECT_EQ(exists("frameslv.lst"), waits);
    }
}

#endif

// Numbers keep their point where the process has set a locale with a comma.
TEST_F(RefusalTest, NumbersHaveAPointInEveryLocale) {
    const auto written = [this] {
        const Results r = run(portal());
        return r.out + read("frameslv.lst") + read("frameslv.not");
    };
    const std::string point = written();
    const char* const comma = std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::string there = written();
    const bool printed_comma = text_of("%.1f", 1.5) != "1.5";
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(there, point);
    EXPECT_FALSE(printed_comma);
    if (comma == nullptr)
        GTEST_SKIP() << "no locale de_DE.UTF-8 here";
}

} // namespace frameslv::test
