// Every reader as a function of one input, for the fuzzer and for the replay of kept inputs.
#pragma once

#include "base/check.h"
#include "base/files.h"
#include "draw/canvas.h"
#include "project/project.h"

#include <span>
#include <string>
#include <string_view>

namespace kigumi::fuzz {

// Reads the input and aborts when what came of it breaks a promise.
struct Target {
    const char*
        name; // also of its folder in corpus/ and the beginning of its files in tests/broken
    void (*run)(Project& project, std::string_view input);
};

void read_jik(Project& project, std::string_view input);
void read_unit(Project& project, std::string_view input);
void read_tgk(Project& project, std::string_view input);
void read_zlv(Project& project, std::string_view input);
void read_lst(Project& project, std::string_view input);
void read_dsp(Project& project, std::string_view input);
void read_results(Project& project, std::string_view input);
void read_trio(Project& project, std::string_view input);
void read_temp(Project& project, std::string_view input);
void read_symbol(Project& project, std::string_view input);
void read_roles(Project& project, std::string_view input);
void read_solver(Project& project, std::string_view input);
void read_settings(Project& project, std::string_view input);
void read_marks(Project& project, std::string_view input);
void read_arguments(Project& project, std::string_view input);
void read_project(Project& project, std::string_view input);

std::span<const Target> all_targets();
// Null when there is no target of that name.
const Target* find_target(std::string_view name);

// Makes the scratch folder, which becomes the project's working directory, and takes in the
// messages.
void start_targets(Project& project);

// What every target shares.

// Empty tables, settings as at start, and no message yet.
void start_fresh(Project& project);
// Messages since start_fresh.
int messages();
// Writes the input to a file of the scratch folder.
fs::path put(const fs::path& work_dir, const char* name, std::string_view input);
// Aborts when the tables are not sound, or a failure (status < 0) was kept silent.
void require_sound(const Model& model, bool names);
void require_told(int status, const std::string& reason = {});

// Draws nothing, but maps every point to pixels.
class BlankCanvas : public PixelCanvas {
  public:
    void set_pen(int, int, int) override {}

  protected:
    void draw_line(Pixel, Pixel) override {}
    void draw_circle(Pixel, int, bool) override {}
    void draw_square(Pixel, int, bool) override {}
    void draw_polygon(std::span<const Pixel>) override {}
};

// A window of a usual size.
inline DrawArea usual_window() {
    DrawArea area;
    area.xScreen = 1280;
    area.yScreen = 800;
    return area;
}

} // namespace kigumi::fuzz
