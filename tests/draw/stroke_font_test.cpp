#include "draw/stroke_font.h"

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

class StrokeFontTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        use(line_font());
    }
    int use(const std::string& font) {
        EXPECT_EQ(save_file(work_file(work_dir, "test.cod"), font), 0);
        return load_stroke_font(lettering, work_file(work_dir, "test.cod"));
    }

    // The lines of a text of height 12, in units.
    std::vector<Segment> lines(const char* text, int length, float x = 0.0f, float y = 0.0f,
                               float angle = 0.0f, float height = 12.0f) {
        SegmentCanvas canvas;
        EXPECT_EQ(draw_text(lettering, canvas, text, length, x, y, angle, height), 0);
        return canvas.segments();
    }
};

TEST_F(StrokeFontTest, PlacesCentresTurnsAndSlantsCharacters) {
    std::string text;
    const auto put = [&text](const char* what, const std::vector<Segment>& drawn) {
        text += text_format("%s\n", what);
        for (const Segment& s : drawn) {
            text += text_format("  %.2f %.2f - %.2f %.2f\n", s.X1, s.Y1, s.X2, s.Y2);
        }
    };
    put("two of three", lines("AAA", 2));
    put("shorter than told", lines("A", 9));
    put("the lowest are lowered", lines("\x05", 1));
    put("twice as high", lines("A A", 3, 100.0f, 50.0f, 0.0f, 24.0f));
    put("centred", lines("AA", -2));
    put("turned", lines("AA", 2, 10.0f, 20.0f, 90.0f));
    put("behind the text before", lines("A", 1, 999.0f, 999.0f));
    put("behind it in x only", lines("A", 1, 999.0f, 0.0f));
    lettering.style.slant = 45.0f;
    put("slanting", lines("A", 1));
    lettering.style.slant = -61.0f;
    put("slanting too much", lines("A", 1));
    lettering.style = {3.0f, 0.0f};
    put("spaced", lines("AA", 2));
    put("behind the spaced text", lines("A", 1, 999.0f, 0.0f));
    expect_golden("stroke-font.txt", text);
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
    EXPECT_EQ(load_stroke_font(lettering, work_file(work_dir, "missing.cod")), -1);
    EXPECT_EQ(use(std::string(table_bytes - 1, '\0')), -1);
    EXPECT_EQ(take_messages().size(), 2u);
    EXPECT_EQ(lines("A", 1).size(), 1u);
}

// The font that the build made.
class SuppliedFontTest : public StrokeFontTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        ASSERT_EQ(load_stroke_font(lettering, program_dir() / "symbol.cod"), 0);
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
