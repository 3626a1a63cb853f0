#include "results/stroke_font.h"

#include "base/files_platform.h"
#include "results_support.h"

#include <algorithm>
#include <cstring>

namespace kigumi::test {

namespace {

constexpr int table_bytes = 512;

// A font in which 'A' is the line (2, 1) to (6, 9), character 5 the same, and the rest is empty.
std::string line_font() {
    std::string font(table_bytes, '\0');
    for (int c = 0; c < 256; ++c) {
        font[2 * c] = 2;
    }
    font[2 * 'A' + 1] = 1;
    font[2 * 5 + 1] = 1;
    font += '\0';
    font += {2, 0, char((1 + 1) * 16 + 2 + 2), 1, char((9 + 1) * 16 + 6 + 2)};
    return font;
}

class StrokeFontTest : public ResultTest {
  protected:
    void SetUp() override {
        ResultTest::SetUp();
        use(line_font());
    }
    void TearDown() override {
        text_style = {};
        EXPECT_EQ(load_stroke_font(program_dir() / "symbol.cod"), 0);
        ResultTest::TearDown();
    }

    int use(const std::string& font) {
        EXPECT_EQ(save_file(work_file("test.cod"), font), 0);
        return load_stroke_font(work_file("test.cod"));
    }

    // The lines of a text of height 12, in units.
    std::vector<Segment> lines(const char* text, int length, float x = 0.0f, float y = 0.0f,
                               float angle = 0.0f, float height = 12.0f) {
        SegmentCanvas canvas;
        EXPECT_EQ(draw_text(canvas, text, length, x, y, angle, height), 0);
        return canvas.segments();
    }
};

void expect_segment(const Segment& s, float X1, float Y1, float X2, float Y2) {
    EXPECT_NEAR(s.X1, X1, 1e-4);
    EXPECT_NEAR(s.Y1, Y1, 1e-4);
    EXPECT_NEAR(s.X2, X2, 1e-4);
    EXPECT_NEAR(s.Y2, Y2, 1e-4);
}

TEST_F(StrokeFontTest, PlacesCharactersAlongTheLine) {
    EXPECT_EQ(lines("AAA", 2).size(), 2u);
    EXPECT_EQ(lines("A", 9).size(), 1u);
    expect_segment(lines("\x05", 1)[0], 2.0f, -2.0f, 6.0f, 6.0f); // the lowest are lowered
    const auto drawn = lines("A A", 3, 100.0f, 50.0f, 0.0f, 24.0f);
    ASSERT_EQ(drawn.size(), 2u);
    expect_segment(drawn[0], 104.0f, 52.0f, 112.0f, 68.0f);
    expect_segment(drawn[1], 152.0f, 52.0f, 160.0f, 68.0f);
}

TEST_F(StrokeFontTest, CentresOnTheStartForANegativeLength) {
    const auto drawn = lines("AA", -2);
    ASSERT_EQ(drawn.size(), 2u);
    expect_segment(drawn[0], -2.0f, -5.0f, 2.0f, 3.0f);
    expect_segment(drawn[1], 10.0f, -5.0f, 14.0f, 3.0f);
}

TEST_F(StrokeFontTest, TurnsAndContinuesBehindTheTextBefore) {
    const auto first = lines("AA", 2, 10.0f, 20.0f, 90.0f);
    ASSERT_EQ(first.size(), 2u);
    expect_segment(first[0], 9.0f, 22.0f, 1.0f, 26.0f);
    const auto next = lines("A", 1, 999.0f, 999.0f, 0.0f);
    ASSERT_EQ(next.size(), 1u);
    expect_segment(next[0], 12.0f, 45.0f, 16.0f, 53.0f);
    expect_segment(lines("A", 1, 999.0f, 0.0f)[0], 24.0f, 1.0f, 28.0f, 9.0f);
}

TEST_F(StrokeFontTest, SlantsUpToSixtyDegrees) {
    text_style.slant = 45.0f;
    expect_segment(lines("A", 1)[0], 3.0f, 1.0f, 15.0f, 9.0f);
    text_style.slant = -61.0f;
    expect_segment(lines("A", 1)[0], 2.0f, 1.0f, 6.0f, 9.0f);
    text_style = {3.0f, 0.0f};
    expect_segment(lines("AA", 2)[1], 17.0f, 1.0f, 21.0f, 9.0f);
    expect_segment(lines("A", 1, 999.0f, 0.0f)[0], 32.0f, 1.0f, 36.0f, 9.0f);
}

TEST_F(StrokeFontTest, LeavesOutGlyphsBeyondTheFile) {
    std::string font = line_font();
    font[table_bytes + 1] = char(200);
    ASSERT_EQ(use(font), 0);
    EXPECT_EQ(lines("A", 1).size(), 0u);
    font[2 * 'A'] = char(255);
    ASSERT_EQ(use(font), 0);
    EXPECT_EQ(lines("A", 1).size(), 0u);
    ASSERT_EQ(use(std::string(table_bytes, '\0')), 0);
    EXPECT_EQ(lines("A", 1).size(), 0u);
}

TEST_F(StrokeFontTest, RefusesAMissingAndAShortFile) {
    EXPECT_EQ(load_stroke_font(work_file("missing.cod")), -1);
    EXPECT_EQ(use(std::string(table_bytes - 1, '\0')), -1);
    EXPECT_EQ(take_messages().size(), 2u);
    EXPECT_EQ(lines("A", 1).size(), 1u);
}

// The font that the build made.
class SuppliedFontTest : public StrokeFontTest {
  protected:
    void SetUp() override {
        ResultTest::SetUp();
        ASSERT_EQ(load_stroke_font(program_dir() / "symbol.cod"), 0);
    }
};

TEST_F(SuppliedFontTest, GivesEveryPrintableCharacterADifferentGlyphInItsCell) {
    std::vector<std::vector<Segment>> seen;
    for (char c = '!'; c <= '~'; ++c) {
        const char text[] = {c, '\0'};
        const auto drawn = lines(text, 1);
        ASSERT_FALSE(drawn.empty()) << text;
        for (const Segment& s : drawn) {
            EXPECT_GE(std::min(s.X1, s.X2), 0.0f) << text;
            EXPECT_LE(std::max(s.X1, s.X2), 8.0f) << text;
        }
        for (const auto& other : seen) {
            EXPECT_FALSE(other.size() == drawn.size() &&
                         std::memcmp(other.data(), drawn.data(), drawn.size() * sizeof(Segment)) ==
                             0)
                << text;
        }
        seen.push_back(drawn);
    }
    EXPECT_TRUE(lines(" ", 1).empty());
    EXPECT_EQ(lines("柱頭", 2).size(), 8u); // a box each
}

} // namespace

} // namespace kigumi::test
