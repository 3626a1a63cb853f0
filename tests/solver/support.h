// What the solver's tests share: frames written as input text with all digits, a run in a folder of
// its own, and the result files read back as the program reads them.
#pragma once

#include "solver/statics/settings.h"
#include "solver/statics/solve.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace frameslv::test {

namespace fs = std::filesystem;

using Vector3 = Eigen::Vector3d;
using Vector6 = Eigen::Matrix<double, 6, 1>;

struct Frame {
    struct Member {
        int i, j, section = 1, material = 1;
        double angle = 0.0;
    };
    struct Section {
        double Iy, Iz, A, J;
    };
    struct Material {
        double E, nu, density = 0.0;
    };
    struct Support {
        int no;
        std::string digits = "111111";
    };
    struct Load {
        int no;
        Vector6 value;
    };
    std::vector<Vector3> node;
    std::vector<Member> member;
    std::vector<Section> section;
    std::vector<Material> material;
    std::vector<Support> support;
    std::vector<Load> load;

    // The input text, without levels and names.
    std::string text() const;
};

Vector6 six(double a, double b, double c, double d = 0.0, double e = 0.0, double f = 0.0);

// A point, force or moment given with y upward, in the solver's axes with z upward.
Vector3 z_up(double x, double y, double z);
Vector6 z_up(const Vector6& v);
// The way back.
Vector6 y_up(const Vector6& v);

struct Results {
    struct Stress {
        int no, noi, noj;
        double force, p1, p2, xv1, xv2, yv1, yv2, xm1, xm2, ym1, ym2,
            zm; // ym1 turned as readers do
    };
    int code = -1;
    std::string out, err;
    std::vector<Vector3> at;
    std::vector<std::string> name;
    std::vector<double> levels[3];
    std::vector<Vector6> moved;
    std::vector<Stress> stress;

    const Vector6& u(int no) const { return moved.at(static_cast<size_t>(no) - 1); }
    const Stress& s(int no) const { return stress.at(static_cast<size_t>(no) - 1); }
};

// The axes of a member after its description: a turn by the section angle about x, a pitch about y,
// a turn about z. Rows: local x, y, z. Independent of the solver's own.
Eigen::Matrix3d turned_axes(const Vector3& i, const Vector3& j, double angle);

// Reaction of a node: what the listed members' ends ask of it, less its loads.
Vector6 reaction(const Frame& frame, const Results& results, int no);

// What the library itself finds for a frame that must be solved.
Solution solution_of(const Frame& frame, int threads = 1);

class SolverTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Writes the text as FRAMESLV.IN and runs; reads the results if the code is 0.
    Results run(const std::string& text);
    Results run(const Frame& frame);
    // Runs a frame that must be solved.
    Results solved(const Frame& frame);
    bool exists(const char* name) const { return fs::exists(folder_ / name); }
    std::string read(const char* name) const;
    void write(const char* name, const std::string& bytes) const;

    fs::path folder_;
    Settings settings_; // of the runs that follow
};

// The value agrees with a printed one to half a unit of its last digit.
void expect_printed(double value, const char* printed, const std::string& what);

// Both agree to `tolerance` times the larger norm of the two sets.
void expect_same(const std::vector<Vector6>& a, const std::vector<Vector6>& b, double tolerance);

} // namespace frameslv::test
