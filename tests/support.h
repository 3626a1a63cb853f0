// What the tests share: clean tables, captured messages, golden texts, a recording canvas.
#pragma once

#include "base/files.h"
#include "geometry/canvas.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kigumi::test {

// Starts every test with empty tables and default settings, in a working directory of its own, and
// collects the messages. A test that leaves an unexpected message fails.
class CoreTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // The messages since the last call.
    std::vector<std::string> take_messages();
    // Fails unless exactly these were shown since the last look.
    void expect_messages(const std::vector<std::string>& messages);
    void expect_message(const std::string& message) { expect_messages({message}); }

  private:
    std::vector<std::string> messages_;
    fs::path old_work_dir_;
};

// Compares with tests/golden/<name>. On a difference the first differing line of both sides is
// reported and the new text is left in the build folder; with KIGUMI_ACCEPT set in the environment
// the golden file is replaced instead.
void expect_golden(const std::string& name, const std::string& text);

// A file of tests/broken.
fs::path broken_file(const std::string& name);

// Writes a picture as text, one line a call, in pixels.
class RecorderCanvas : public PixelCanvas {
  public:
    void set_pen(int style, int width, int colour) override;
    std::string text;

  protected:
    void draw_line(Pixel from, Pixel to) override;
    void draw_circle(Pixel centre, int half, bool filled) override;
    void draw_square(Pixel centre, int half, bool filled) override;
    void draw_polygon(std::span<const Pixel> points) override;
};

} // namespace kigumi::test
