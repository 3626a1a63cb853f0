#include "support.h"

#include "solver/base/fault.h"
#include "solver/model/check.h"
#include "solver/program/run.h"
#include "solver/text/input.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <numbers>
#include <sstream>

namespace frameslv::test {

std::string Frame::text() const {
    std::string s = "0\n0\n0\n";
    const auto number = [](size_t i) { return static_cast<int>(i) + 1; };
    s += text_of("%zu %zu\n", node.size(), member.size());
    for (size_t i = 0; i < member.size(); i++)
        s += text_of("%d %d %d %d %d %.17g\n", number(i), member[i].i, member[i].j,
                     member[i].section, member[i].material, member[i].angle);
    s += text_of("%zu\n", section.size());
    for (size_t i = 0; i < section.size(); i++)
        s += text_of("%d %.17g %.17g %.17g %.17g\n", number(i), section[i].Iy, section[i].Iz,
                     section[i].A, section[i].J);
    s += text_of("%zu\n", material.size());
    for (size_t i = 0; i < material.size(); i++)
        s += text_of("%d %.17g %.17g %.17g\n", number(i), material[i].E, material[i].nu,
                     material[i].density);
    s += text_of("%zu\n", node.size());
    for (size_t i = 0; i < node.size(); i++)
        s += text_of("%d %.17g %.17g %.17g\n", number(i), node[i].x(), node[i].y(), node[i].z());
    s += text_of("%zu\n", support.size());
    for (const Support& one : support)
        s += text_of("%d,%s\n", one.no, one.digits.c_str());
    s += text_of("%zu\n", load.size());
    for (const Load& one : load) {
        s += text_of(" ,%d", one.no);
        for (const double value : one.value)
            s += text_of(",%.17g", value);
        s += "\n";
    }
    return s;
}

Vector6 six(double a, double b, double c, double d, double e, double f) {
    Vector6 v;
    v << a, b, c, d, e, f;
    return v;
}

Vector3 z_up(double x, double y, double z) {
    return {x, -z, y};
}

Vector6 z_up(const Vector6& v) {
    return six(v(0), -v(2), v(1), v(3), -v(5), v(4));
}

Vector6 y_up(const Vector6& v) {
    return six(v(0), v(2), -v(1), v(3), v(5), -v(4));
}

Eigen::Matrix3d turned_axes(const Vector3& i, const Vector3& j, double angle) {
    const Vector3 d = j - i;
    const double run = std::hypot(d.x(), d.y());
    const double about_z = run > 0.0 ? std::atan2(d.y(), d.x()) : 0.0;
    const double pitch = std::atan2(d.z(), run);
    const Eigen::Matrix3d turn =
        (Eigen::AngleAxisd(about_z, Vector3::UnitZ()) *
         Eigen::AngleAxisd(-pitch, Vector3::UnitY()) *
         Eigen::AngleAxisd(angle * std::numbers::pi / 180.0, Vector3::UnitX()))
            .toRotationMatrix();
    return turn.transpose();
}

Vector6 reaction(const Frame& frame, const Results& results, int no) {
    Vector6 sum = Vector6::Zero();
    for (size_t k = 0; k < frame.member.size(); k++) {
        const Frame::Member& m = frame.member[k];
        const Results::Stress& s = results.stress[k];
        const Eigen::Matrix3d to_global =
            turned_axes(frame.node[static_cast<size_t>(m.i) - 1],
                        frame.node[static_cast<size_t>(m.j) - 1], m.angle)
                .transpose();
        Vector6 end = Vector6::Zero();
        if (m.i == no) {
            end.head<3>() -= to_global * Vector3(s.p1, s.xv1, s.yv1);
            end.tail<3>() -= to_global * Vector3(s.zm, s.xm1, s.ym1);
        }
        if (m.j == no) {
            end.head<3>() += to_global * Vector3(s.p2, s.xv2, s.yv2);
            end.tail<3>() += to_global * Vector3(s.zm, s.xm2, s.ym2);
        }
        sum += end;
    }
    for (const Frame::Load& one : frame.load)
        if (one.no == no)
            sum -= one.value;
    return sum;
}

Solution solution_of(const Frame& frame, int threads) {
    Model model;
    Solution solution;
    EXPECT_FALSE(read_input(frame.text(), model));
    EXPECT_FALSE(check_model(model));
    EXPECT_FALSE(check_held(model));
    System system(model, threads);
    EXPECT_FALSE(solve(model, {}, system, solution));
    return solution;
}

void SolverTest::SetUp() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::temp_directory_path() /
              text_of("frameslv_%s_%p", info->name(), static_cast<const void*>(this));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
}

void SolverTest::TearDown() {
    fs::remove_all(folder_);
}

void SolverTest::write(const char* name, const std::string& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
}

std::string SolverTest::read(const char* name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Results SolverTest::run(const std::string& text) {
    write("FRAMESLV.IN", text);
    std::ostringstream out, err;
    Results r;
    r.code = frameslv::run(folder_, settings_, out, err);
    r.out = out.str();
    r.err = err.str();
    if (r.code != 0)
        return r;
    std::istringstream zlv(read("frameslv.zlv")), lst(read("frameslv.lst")),
        dsp(read("frameslv.dsp"));
    size_t count = 0;
    for (auto& levels : r.levels) {
        zlv >> count;
        levels.resize(count);
        for (double& value : levels)
            zlv >> value;
    }
    int number = 0;
    std::string word;
    lst >> count;
    r.at.resize(count);
    r.name.resize(count);
    for (size_t i = 0; i < count; i++)
        lst >> number >> number >> r.at[i].x() >> r.at[i].y() >> r.at[i].z() >> r.name[i];
    lst >> count;
    r.stress.resize(count);
    for (Results::Stress& s : r.stress) {
        lst >> s.no >> number >> s.noi >> word;
        EXPECT_EQ(word, r.name[static_cast<size_t>(s.noi) - 1]);
        lst >> number >> s.noj >> word;
        EXPECT_EQ(word, r.name[static_cast<size_t>(s.noj) - 1]);
        lst >> s.force >> s.p1 >> s.p2 >> s.xv1 >> s.xv2 >> s.yv1 >> s.yv2;
        lst >> s.xm1 >> s.xm2 >> s.ym1 >> s.ym2 >> s.zm;
        s.ym1 = -s.ym1;
    }
    dsp >> count;
    r.moved.resize(count);
    for (size_t i = 0; i < count; i++) {
        dsp >> number >> number >> word;
        EXPECT_EQ(word, r.name[i]);
        for (double& value : r.moved[i])
            dsp >> value;
    }
    EXPECT_TRUE(zlv && lst && dsp);
    return r;
}

Results SolverTest::run(const Frame& frame) {
    return run(frame.text());
}

Results SolverTest::solved(const Frame& frame) {
    Results r = run(frame);
    EXPECT_EQ(r.code, 0) << r.err;
    r.at.resize(frame.node.size());
    r.stress.resize(frame.member.size());
    r.moved.resize(frame.node.size(), Vector6::Constant(std::nan("")));
    return r;
}

void expect_printed(double value, const char* printed, const std::string& what) {
    const char* power = std::strpbrk(printed, "eE");
    const std::string digits(printed, power == nullptr ? std::strlen(printed)
                                                       : static_cast<size_t>(power - printed));
    const size_t point = digits.find('.');
    const int places = point == std::string::npos ? 0 : static_cast<int>(digits.size() - point) - 1;
    const int exponent = power == nullptr ? 0 : std::atoi(power + 1);
    const double half = 0.5 * std::pow(10.0, exponent - places);
    EXPECT_NEAR(value, std::atof(printed), half * (1.0 + 1e-6)) << what;
}

void expect_same(const std::vector<Vector6>& a, const std::vector<Vector6>& b, double tolerance) {
    ASSERT_EQ(a.size(), b.size());
    double size = 0.0;
    for (size_t i = 0; i < a.size(); i++)
        size = std::max({size, a[i].norm(), b[i].norm()});
    for (size_t i = 0; i < a.size(); i++)
        EXPECT_LE((a[i] - b[i]).norm(), tolerance * size) << "node " << i + 1;
}

} // namespace frameslv::test
