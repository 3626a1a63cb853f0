// The commands of the command line: each works without a display.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kigumi {

// The message of a failure that the solver itself has already told on standard error.
constexpr const char* already_told = "";

// What a command returns, after a message, for arguments that do not go together.
constexpr int wrong_usage = -2;

// A --fix or --load option, in the order of the command line.
struct RoleOption {
    bool load = false;    // false: support
    std::string selector; // see select_nodes
    float fx = 0.0f, fy = 0.0f, fz = 0.0f;
};

struct GenerateOptions {
    std::vector<std::string> settings; // NAME=VALUE
    std::string output;
    float dx = 0.0f, dy = 0.0f, dz = 0.0f;
};

struct DrawOptions {
    std::string dir;   // folder of the result files; empty for a frame alone
    std::string input; // frame file; may be empty with dir
    std::string mode = "wire";
    float low = 0.0f, high = 100.0f; // band, percent
    // Of the view; those of the project, or the defaults, where they are not given.
    std::optional<float> tau, fai;         // degrees
    std::optional<double> rho, theta, phi; // cm, degrees
    bool joints = false;                   // lines where bars meet, in perspectives
    int scale = 1;                         // magnification of displacements
    std::vector<std::string> labels;
    int width = 1280, height = 800;
    bool legend = false; // of results; a PDF file has it in any case
    std::string output;
};

struct ReportOptions {
    std::string dir;   // folder of the result files
    std::string input; // the frame's file; may be empty
    std::string output;
};

// Each returns 0, or -1 or wrong_usage after a message.
int run_generate(const GenerateOptions& options);
int run_info(const std::string& input);
int run_convert(const std::string& input, const std::string& output,
                const std::vector<RoleOption>& roles, int colour);
int run_solve(const std::string& input, const std::string& dir,
              const std::vector<RoleOption>& roles);
int run_draw(const DrawOptions& options);
// `csv`: "members", "stress" or "heni" for that list as CSV; empty for the listing.
int run_listing(const std::string& dir, const std::string& csv, const std::string& output);
int run_report(const ReportOptions& options);
int run_demo(const std::string& dir);

} // namespace kigumi
