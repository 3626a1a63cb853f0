#include "support.h"

#include "base/message.h"

#include <cstdlib>
#include <fstream>

namespace kigumi::test {

namespace {

// Before any project is made: a fault that the gate finds ends the test program.
[[maybe_unused]] const int strict =
#ifdef _WIN32
    _putenv_s("KIGUMI_STRICT", "1");
#else
    setenv("KIGUMI_STRICT", "1", 1);
#endif

} // namespace

void CoreTest::SetUp() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(info->test_suite_name()) + "." + info->name();
    for (char& c : name) {
        c = c == '/' ? '_' : c;
    }
    // Several runs of the tests may share the machine.
    for (int k = 0; k == 0 || !fs::create_directory(work_dir); ++k) {
        work_dir = fs::temp_directory_path() / text_format("kigumi-test-%s-%d", name.c_str(), k);
    }
    sink_.emplace([this](const Fault& fault) { messages_.push_back(fault); });
}

void CoreTest::TearDown() {
    for (const Fault& message : messages_) {
        ADD_FAILURE() << "unexpected message: " << message.text();
    }
    sink_.reset();
    std::error_code ignored;
    fs::remove_all(work_dir, ignored);
}

std::vector<std::string> CoreTest::take_messages() {
    reason_.clear();
    std::vector<std::string> sentences;
    for (const Fault& message : std::exchange(messages_, {})) {
        sentences.push_back(message.sentence);
        reason_ = message.reason;
    }
    return sentences;
}

void CoreTest::expect_messages(const std::vector<std::string>& messages) {
    EXPECT_EQ(take_messages(), messages);
}

namespace {

std::string line_at(const std::string& text, size_t from) {
    return from < text.size() ? text.substr(from, text.find('\n', from) - from) : "(end of text)";
}

} // namespace

void expect_golden(const std::string& name, const std::string& text) {
    const fs::path path = fs::path(KIGUMI_GOLDEN_DIR) / name;
    if (std::getenv("KIGUMI_ACCEPT") != nullptr) {
        std::string reason;
        ASSERT_EQ(save_file(path, text, &reason), 0) << reason;
        return;
    }
    const auto expected = read_file(path);
    if (expected && *expected == text) {
        return;
    }
    const fs::path beside = fs::path("golden-new") / name;
    fs::create_directories(beside.parent_path());
    std::ofstream(beside, std::ios::binary) << text;
    ASSERT_TRUE(expected.has_value()) << "no golden file " << name;
    size_t start = 0;
    int line = 1;
    while (line_at(*expected, start) == line_at(text, start) && start < text.size()) {
        start += line_at(text, start).size() + 1;
        ++line;
    }
    ADD_FAILURE() << name << " differs at line " << line
                  << "\n  expected: " << line_at(*expected, start)
                  << "\n  now:      " << line_at(text, start);
}

fs::path broken_file(const std::string& name) {
    return fs::path(KIGUMI_BROKEN_DIR) / name;
}

void RecorderCanvas::set_pen(int style, int width, int colour) {
    text += text_format("pen %d %d %d\n", style, width, colour);
}

void RecorderCanvas::draw_line(Pixel from, Pixel to) {
    text += text_format("line %d %d %d %d\n", from.x, from.y, to.x, to.y);
}

void RecorderCanvas::draw_circle(Pixel centre, int half, bool filled) {
    text += text_format("circle %d %d %d %d\n", centre.x, centre.y, half, filled ? 1 : 0);
}

void RecorderCanvas::draw_square(Pixel centre, int half, bool filled) {
    text += text_format("square %d %d %d %d\n", centre.x, centre.y, half, filled ? 1 : 0);
}

void RecorderCanvas::draw_polygon(std::span<const Pixel> points) {
    text += "polygon";
    for (const Pixel& p : points) {
        text += text_format(" %d %d", p.x, p.y);
    }
    text += "\n";
}

} // namespace kigumi::test
