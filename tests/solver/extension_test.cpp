// What the options add, against closed forms: self-weight, second order, buckling, vibration.
#include "support.h"

#include "solver/program/options.h"
#include "solver/program/run.h"

#include <cmath>
#include <numbers>
#include <sstream>

namespace frameslv::test {

namespace {

constexpr double pi = std::numbers::pi;

// A column of equal pieces along `way`, held at its foot.
Frame column(int pieces, double length, const Vector3& way = Vector3::UnitZ()) {
    Frame f;
    for (int k = 0; k <= pieces; k++)
        f.node.push_back(way.normalized() * (length * k / pieces));
    for (int k = 1; k <= pieces; k++)
        f.member.push_back({k, k + 1});
    f.section = {{1000, 500, 100, 800}};
    f.material = {{1e5, 0.3, 5e-4}};
    f.support = {{1}};
    return f;
}

class ExtensionTest : public SolverTest {
  protected:
    // The values that a mode file gives first for each mode.
    std::vector<double> values(const char* name) {
        std::istringstream file(read(name));
        size_t modes = 0, nodes = 0;
        file >> modes >> nodes;
        std::vector<double> found;
        std::string line;
        std::getline(file, line);
        for (size_t k = 0; k < modes; k++) {
            double value = 0.0;
            std::getline(file, line);
            std::istringstream(line.substr(6)) >> value;
            found.push_back(value);
            for (size_t i = 0; i < nodes; i++)
                std::getline(file, line);
        }
        return found;
    }
    double first_buckling(const Frame& f) {
        settings_ = {};
        settings_.buckling = 1;
        solved(f);
        const std::vector<double> found = values("frameslv.buc");
        return found.empty() ? 0.0 : found[0];
    }
};

} // namespace

// Own weight w = density A: a fixed beam has wL^2/12 at its ends, a cantilever wL^4/8EI at its tip,
// a column hangs by wL at its foot.
TEST_F(ExtensionTest, SelfWeight) {
    settings_.self_weight = true;
    const double w = 5e-4 * 100, L = 300, EI = 1e8;
    Frame f = column(1, L, Vector3(1, 1, 0));
    Results r = solved(f);
    EXPECT_NEAR(r.u(2)(2), -w * L * L * L * L / (8 * EI), 1e-8);
    EXPECT_NEAR(r.s(1).xm1, w * L * L / 2, 1e-4);
    EXPECT_NEAR(r.s(1).yv1, -w * L, 1e-6);
    EXPECT_NEAR(r.s(1).yv2, 0.0, 1e-6);
    f.support.push_back({2});
    r = solved(f);
    EXPECT_NEAR(r.s(1).xm1, w * L * L / 12, 1e-4);
    EXPECT_NEAR(r.s(1).xm2, w * L * L / 12, 1e-4);
    r = solved(column(1, L));
    EXPECT_NEAR(r.s(1).p1, -w * L, 1e-6);
    EXPECT_NEAR(r.s(1).p2, 0.0, 1e-6);
    EXPECT_NEAR(r.s(1).force, -w * L, 1e-6);
    EXPECT_NEAR(r.u(2)(2), -w * L * L / (2 * 1e7), 1e-10);
    EXPECT_NE(r.out.find("荷重の合計:              0              0            -15"),
              std::string::npos)
        << r.out;
}

// Cantilever under H and P: base moment H L tan(a)/a, tip 3 (tan a - a)/a^3 H L^3/3EI, a^2 = P
// L^2/EI; the printed values are those of AISC benchmark case 2. Beyond the critical load it is
// refused.
TEST_F(ExtensionTest, SecondOrderCantilever) {
    struct Case {
        double P;
        const char *moment, *tip;
    };
    Frame f = column(10, 336);
    f.section = {{484, 484, 1e4, 800}};
    f.material = {{29000, 0.3}};
    settings_.p_delta = true;
    for (const auto& [P, moment, tip] :
         {Case{0, "336", "0.9009"}, Case{100, "469.1", "1.331"}, Case{150, "598.7", "1.751"},
          Case{200, "849.0", "2.565"}}) {
        f.load = {{11, six(1, 0, -P)}};
        const Results r = solved(f);
        expect_printed(std::abs(r.s(1).xm1), moment, "moment");
        expect_printed(r.u(11)(0), tip, "tip");
    }
    f.load = {{11, six(1, 0, -310)}}; // pi^2 EI / 4 L^2 = 306.8
    const Results r = run(f);
    EXPECT_EQ(r.code, static_cast<int>(Exit::unstable));
    EXPECT_NE(r.err.find("座屈荷重を越えています"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("方向に動きます"), std::string::npos) << r.err;
}

// Euler's columns, whichever way they point; the error falls with the fourth power of the pieces.
TEST_F(ExtensionTest, Buckling) {
    const double L = 300, EI = 1e5 * 500;
    for (const Vector3& way : {Vector3(0, 0, 1), Vector3(1, 2, 3)}) {
        Frame f = column(8, L, way);
        const Vector3 push = -1000 * way.normalized();
        f.load = {{9, six(push.x(), push.y(), push.z())}};
        const double euler = pi * pi * EI / (4 * L * L) / 1000;
        EXPECT_NEAR(first_buckling(f), euler, 1e-5 * euler);
    }
    double error[3] = {};
    for (int k = 0; k < 3; k++) {
        Frame f = column(1 << k, L);
        f.load = {{static_cast<int>(f.node.size()), six(0, 0, -1000)}};
        error[k] = first_buckling(f) / (pi * pi * EI / (4 * L * L) / 1000) - 1.0;
    }
    EXPECT_NEAR(error[0] / error[1], 16.0, 2.0);
    EXPECT_NEAR(error[1] / error[2], 16.0, 1.0);
    // Held at both ends: 4 pi^2 EI / L^2; pulled instead, it does not buckle.
    Frame f = column(16, L);
    f.support.push_back({17, "110111"});
    f.load = {{17, six(0, 0, -1000)}};
    const double both = 4 * pi * pi * EI / (L * L) / 1000;
    EXPECT_NEAR(first_buckling(f), both, 1e-4 * both);
    f.load = {{17, six(0, 0, 1000)}};
    EXPECT_DOUBLE_EQ(first_buckling(f), 0.0);
    EXPECT_NE(run(f).out.find("座屈しません"), std::string::npos);
}

// Bending of a cantilever: b^2 sqrt(EI/m L^4) / 2 pi with b = 1.8751, 4.6941 ..., axial and twist
// sqrt(stiffness / inertia) / 4L; equal ones come as often as they are.
TEST_F(ExtensionTest, Vibration) {
    const double L = 300, E = 1e5, m = 5e-4 * 100 / 980.665;
    Frame f = column(20, L, Vector3(3, -1, 2));
    const auto bending = [&](double b, double I) {
        return b * b * std::sqrt(E * I / m) / (L * L * 2 * pi);
    };
    settings_.modes = 8;
    solved(f);
    const double expected[] = {bending(1.87510407, 500),
                               bending(1.87510407, 1000),
                               bending(4.69409113, 500),
                               bending(4.69409113, 1000),
                               bending(7.85475744, 500),
                               bending(7.85475744, 1000),
                               std::sqrt(E / 2.6 * 800 / (m * 15)) / (4 * L)};
    std::vector<double> found = values("frameslv.mod");
    ASSERT_EQ(found.size(), 8U);
    for (size_t k = 0; k < 6; k++)
        EXPECT_NEAR(found[k], expected[k], 1e-4 * expected[k]) << k;
    EXPECT_NEAR(found[6], expected[6], 1e-3 * expected[6]);
    settings_.mass = MassKind::lumped;
    solved(f);
    found = values("frameslv.mod");
    for (size_t k = 0; k < 2; k++)
        EXPECT_NEAR(found[k], expected[k], 5e-3 * expected[k]) << k;
    f.section = {{500, 500, 100, 800}}; // every bending mode twice
    settings_.mass = MassKind::consistent;
    solved(f);
    found = values("frameslv.mod");
    for (size_t k = 0; k < 6; k++)
        EXPECT_NEAR(found[k], expected[k / 2 * 2], 1e-4 * expected[k]) << k;
}

// Five equal square posts have every mode ten times, alone and with bars between their heads that
// hardly resist; more than a band of Lanczos vectors finds at once.
TEST_F(ExtensionTest, RepeatedModesAreAllFound) {
    for (const bool joined : {false, true}) {
        Frame f;
        for (int k = 0; k < 5; k++) {
            f.node.emplace_back(200 * k, 0, 0);
            f.node.emplace_back(200 * k, 0, 300);
            f.member.push_back({2 * k + 1, 2 * k + 2});
            f.support.push_back({2 * k + 1});
            f.load.push_back({2 * k + 2, six(0, 0, -100)});
            if (joined && k > 0)
                f.member.push_back({2 * k, 2 * k + 2, 2});
        }
        f.section = {{800, 800, 100, 1400}, {1e-6, 1e-6, 1e-6, 1e-6}};
        f.material = {{1e5, 0.3, 5e-4}};
        settings_ = {};
        settings_.modes = settings_.buckling = 10;
        const Results r = solved(f);
        const std::vector<double> natural = values("frameslv.mod"), factor = values("frameslv.buc");
        ASSERT_EQ(natural.size(), 10U) << joined;
        ASSERT_EQ(factor.size(), 10U) << joined;
        // With one cubic a post Euler's factor is met within 1 per cent.
        const double euler = pi * pi * 1e5 * 800 / (4 * 300 * 300) / 100;
        for (size_t k = 0; k < 10; k++) {
            EXPECT_NEAR(natural[k], natural[0], 2e-4 * natural[0]) << joined << k;
            EXPECT_NEAR(factor[k], euler, 0.01 * euler) << joined << k;
        }
        EXPECT_NE(r.out.find("見落としはありません"), std::string::npos) << r.out;
        EXPECT_EQ(read("frameslv.not").find("modes-unproven"), std::string::npos);
        // There are twenty of bending in all, thirty with those along and about the posts.
        settings_.modes = 100;
        solved(f);
        EXPECT_EQ(values("frameslv.mod").size(), 30U);
    }
}

// A force that is only rounding buckles nothing.
TEST_F(ExtensionTest, NoiseIsNoBucklingFactor) {
    Frame f = column(4, 500, Vector3(1, 2, 0.3));
    f.load = {{5, six(2, -1, 0)}, {3, six(-20, 10, 0)}}; // square to the beam
    EXPECT_DOUBLE_EQ(first_buckling(f), 0.0);
    EXPECT_NE(read("frameslv.not").find("no-buckling "), std::string::npos);
}

// Portal of light posts under a stiff heavy beam: sway as one mass on 24 EI/h^3.
TEST_F(ExtensionTest, PortalSway) {
    Frame f;
    f.node = {{0, 0, 0}, {0, 0, 300}, {400, 0, 300}, {400, 0, 0}};
    f.member = {{1, 2}, {2, 3, 2, 2}, {4, 3}};
    f.section = {{1000, 1e6, 100, 800}, {1e9, 1e9, 1e4, 1e9}};
    f.material = {{1e5, 0.3, 0}, {1e5, 0.3, 5e-3}};
    f.support = {{1}, {4}};
    settings_.modes = 1;
    solved(f);
    const double mass = 5e-3 * 1e4 * 400 / 980.665, stiffness = 24 * 1e8 / 27e6;
    const double sway = std::sqrt(stiffness / mass) / (2 * pi);
    EXPECT_NEAR(values("frameslv.mod").at(0), sway, 2e-3 * sway);
}

TEST_F(ExtensionTest, CheckTouchesNoFile) {
    settings_.check = true;
    write("frameslv.lst", "old");
    write("FRAMESLV.IN", column(2, 100).text());
    std::ostringstream out, err;
    EXPECT_EQ(frameslv::run(folder_, settings_, out, err), 0) << err.str();
    EXPECT_NE(out.str().find("入力に誤りはありません"), std::string::npos) << out.str();
    EXPECT_EQ(read("frameslv.lst"), "old");
    Frame bad = column(2, 100);
    bad.support.clear();
    EXPECT_EQ(run(bad.text()).code, static_cast<int>(Exit::mechanism));
    EXPECT_FALSE(exists("frameslv.err"));
}

TEST(OptionsTest, TakenAndRefused) {
    struct Case {
        std::vector<const char*> words;
        const char* refused; // part of the message, null when taken
    };
    for (const auto& [words, refused] :
         {Case{{}, nullptr}, Case{{"--modal", "3", "--mass", "lumped", "--threads", "2"}, nullptr},
          Case{{"--modal"}, "--modal"}, Case{{"--modal", "0"}, "「0」"},
          Case{{"--threads", "1x"}, "「1x」"}, Case{{"--mass", "heavy"}, "heavy"},
          Case{{"--gravity", "-9.8"}, "-9.8"}, Case{{"x.in"}, "「x.in」"},
          Case{{"--buckling", "1", "--p-delta"}, "同時に"}}) {
        Options options;
        const Fault fault = read_options(words, options);
        EXPECT_EQ(static_cast<bool>(fault), refused != nullptr) << fault.text;
        if (refused != nullptr) {
            EXPECT_NE(fault.text.find(refused), std::string::npos) << fault.text;
        }
    }
}

} // namespace frameslv::test
