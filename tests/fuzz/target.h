// Every reader as a function of one input, for the fuzzer and for the replay of kept inputs.
#pragma once

#include "base/check.h"
#include "base/files.h"
#include "geometry/canvas.h"

#include <span>
#include <string>
#include <string_view>

namespace kigumi::fuzz {

// Reads the input and aborts when what came of it breaks a promise.
struct Target {
    const char*
        name; // also of its folder in corpus/ and the beginning of its files in tests/broken
    void (*run)(std::string_view input);
};

void read_jik(std::string_view input);
void read_unit(std::string_view input);
void read_tgk(std::string_view input);
void read_zlv(std::string_view input);
void read_lst(std::string_view input);
void read_dsp(std::string_view input);
void read_results(std::string_view input);
void read_trio(std::string_view input);
void read_temp(std::string_view input);
void read_symbol(std::string_view input);
void read_roles(std::string_view input);
void read_solver(std::string_view input);
void read_settings(std::string_view input);
void read_marks(std::string_view input);
void read_arguments(std::string_view input);

std::span<const Target> all_targets();
// Null when there is no target of that name.
const Target* find_target(std::string_view name);

// Makes the scratch folder, which becomes the working directory, and takes in the messages.
void start_targets();

// What every target shares.

// Empty tables, settings as at start, and no message yet.
void start_fresh();
// Messages since start_fresh.
int messages();
// Writes the input to a file of the scratch folder.
fs::path put(const char* name, std::string_view input);
// Aborts when the tables are not sound, or a failure (status < 0) was kept silent.
void require_sound(bool names);
void require_told(int status);

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
