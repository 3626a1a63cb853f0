// What the tests share: a new project, captured messages, golden texts, a recording canvas.
#pragma once

#include "base/files.h"
#include "base/message.h"
#include "draw/canvas.h"
#include "project/project.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kigumi::test {

// The parts of a project under the names that the functions give them; a base.
class ProjectParts {
  protected:
    explicit ProjectParts(Project& of)
        : project(of), model(of.model), param(of.param), sketch_places(of.sketch_places),
          view(of.view), result(of.result), solids(of.solids), perspective(of.perspective),
          lettering(of.lettering), solver_seams(of.solver_seams), work_dir(of.work_dir) {}

    Project& project;
    Model& model;
    Param& param;
    SketchPlaces& sketch_places;
    View& view;
    Result& result;
    Solids& solids;
    PerspectiveLines& perspective;
    Lettering& lettering;
    SolverSeams& solver_seams;
    fs::path& work_dir;
};

// Gives every test a new project in a working directory of its own, and collects the messages. A
// test that leaves an unexpected message fails.
class CoreTest : public ::testing::Test, protected ProjectParts {
  protected:
    CoreTest() : CoreTest(std::make_shared<Project>()) {}
    // For a project that is part of something larger; that lives as long as the pointer.
    explicit CoreTest(const std::shared_ptr<Project>& of) : ProjectParts(*of), owned_(of) {}

    void SetUp() override;
    void TearDown() override;

    // The sentences of the messages since the last call.
    std::vector<std::string> take_messages();
    // Fails unless exactly these were shown since the last look.
    void expect_messages(const std::vector<std::string>& messages);
    void expect_message(const std::string& message) { expect_messages({message}); }
    // The reason of the last message that was taken or expected; empty when it had none.
    const std::string& reason() const { return reason_; }

  private:
    std::shared_ptr<Project> owned_; // some MB
    std::optional<ScopedMessageSink> sink_;
    std::vector<Fault> messages_;
    std::string reason_;
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
