#include "export/dxf.h"

#include "base/message.h"
#include "draw/segment_file.h"
#include "trace/spy.h"

#include <cmath>

namespace kigumi {

namespace {

// A group code and its value, the two lines of which a drawing is made.
struct Group {
    const char* code;
    const char* value;
};

struct LineType {
    const char* name;
    const char* description;
    const char* count; // dashes and gaps
    const char* total; // their length
    const char* dash[6];
};

constexpr LineType line_types[] = {
    {"CONTINUOUS", "実線", "     0", "0.0", {}},
    {"DASHED1", "--  --  --  --  --  -- ", "     2", "2.5", {"1.25", "-1.25"}},
    {"DASHED2", "----    ----    ----   ", "     2", "5.0", {"2.5", "-2.5"}},
    {"DASHED3", "------  ------  ------", "     2", "5.0", {"3.75", "-1.25"}},
    {"CENTER1", "----- - ----- - ----- - ", "     4", "10.0", {"6.25", "-1.25", "1.25", "-1.25"}},
    {"CENTER2", "----------  --  ----------", "     4", "20.0", {"12.5", "-2.5", "2.5", "-2.5"}},
    {"PHANTOM1",
     "--- - - --- - - --- - -",
     "     6",
     "10.0",
     {"3.25", "-1.25", "1.25", "-1.25", "1.25", "-1.25"}},
    {"PHANTOM2",
     "--------  -  -  --------",
     "     6",
     "20.0",
     {"10.0", "-2.5", "1.25", "-2.5", "1.25", "-2.5"}},
    {"DOT", "-   -   -   -   -   ", "     2", "2.5", {"0.625", "-1.875"}},
};

// The groups before the line types; all of it is fixed text.
constexpr Group tables_start[] = {
    {"  0", "SECTION"}, {"  2", "TABLES"}, {"  0", "TABLE"}, {"  2", "LTYPE"}, {" 70", "     9"},
};

// From the end of the line types to the start of the entities.
constexpr Group tables_end[] = {
    {"  0", "ENDTAB"},   {"  0", "TABLE"},    {"  2", "STYLE"},      {" 70", "    1"},
    {"  0", "STYLE"},    {"  2", "STANDARD"}, {" 70", "    64"},     {" 40", "0.0"},
    {" 41", "1.0"},      {" 42", "0.0"},      {" 50", "0.0"},        {" 71", "     0"},
    {"  3", "TXT"},      {"  4", "BIGFONT"},  {"  0", "ENDTAB"},     {"  0", "TABLE"},
    {"  2", "LAYER"},    {" 70", "    2"},    {"  0", "LAYER"},      {"  2", "0-0"},
    {" 70", "   64"},    {" 62", "    7"},    {"  6", "CONTINUOUS"}, {"  0", "LAYER"},
    {"  2", "ADD_LINE"}, {" 70", "   64"},    {" 62", "    7"},      {"  6", "CONTINUOUS"},
    {"  0", "ENDTAB"},   {"  0", "ENDSEC"},   {"  0", "SECTION"},    {"  2", "ENTITIES"},
};

void write_group(TextWriter& out, const char* code, const char* value) {
    out.line("%s", code);
    out.line("%s", value);
}

template <size_t count> void write_groups(TextWriter& out, const Group (&groups)[count]) {
    for (const Group& group : groups) {
        write_group(out, group.code, group.value);
    }
}

void write_header(TextWriter& out, const World& world) {
    write_group(out, "  0", "SECTION");
    write_group(out, "  2", "HEADER");
    write_group(out, "  9", "$EXTMIN");
    out.line(" 10\r\n %f", world.xmin);
    out.line(" 20\r\n %f", world.ymin);
    write_group(out, "  9", "$EXTMAX");
    out.line(" 10\r\n %f", world.xmax);
    out.line(" 20\r\n %f", world.ymax);
    write_group(out, "  0", "ENDSEC");
}

void write_line_types(TextWriter& out) {
    for (const LineType& type : line_types) {
        write_group(out, "  0", "LTYPE");
        write_group(out, "  2", type.name);
        write_group(out, " 70", "    64");
        write_group(out, "  3", type.description);
        write_group(out, " 72", "    65");
        write_group(out, " 73", type.count);
        write_group(out, " 40", type.total);
        for (const char* dash : type.dash) {
            if (dash != nullptr) {
                write_group(out, " 49", dash);
            }
        }
    }
}

// A drawing that touches the axes is written in thousandths.
float scale_of(const World& world) {
    float m = 9999.0f;
    for (const float side : {world.xmin, world.ymin, world.xmax, world.ymax}) {
        m = std::fabs(side) < m ? std::fabs(side) : m;
    }
    return m < 0.1f ? 1000.0f : 1.0f;
}

int colour_number(int colour) {
    constexpr int numbers[dxf_colour_count] = {4, 7, 3, 2, 6, 5};
    return colour >= 1 && colour <= dxf_colour_count ? numbers[colour - 1] : 7;
}

void write_segments(TextWriter& out, std::span<const Segment> segments, float scale, int colour) {
    // Larger than any usual entity, so that the text grows in one piece.
    constexpr size_t entity_bytes = 160;
    constexpr int traced = 100;
    out.reserve(out.bytes().size() + segments.size() * entity_bytes);
    const int number = colour_number(colour);
    int nc = 0;
    for (const Segment& s : segments) {
        const Segment t{s.X1 * scale, s.Y1 * scale, s.X2 * scale, s.Y2 * scale};
        if (nc < traced) {
            spy("nc %5d xs %8.1f ys %8.1f xl %8.1f yl %8.1f", nc, t.X1, t.Y1, t.X2, t.Y2);
            ++nc;
        }
        out.line(" 0\r\nLINE\r\n 8\r\n0-0\r\n 6\r\nCONTINUOUS\r\n 62\r\n%5d\r\n"
                 " 10\r\n %f\r\n 20\r\n %f\r\n 11\r\n %f\r\n 21\r\n %f",
                 number, t.X1, t.Y1, t.X2, t.Y2);
    }
}

} // namespace

int make_dxf_file(const fs::path& path, const World& window, std::span<const Segment> segments,
                  int colour) {
    spy("Enter make_dxf_file()");
    const float scale = scale_of(window);
    World world = window;
    for (float* side : {&world.xmin, &world.ymin, &world.xmax, &world.ymax}) {
        *side *= scale;
    }
    spy("Scaled World %10.3f %10.3f %10.3f %10.3f", world.xmin, world.ymin, world.xmax, world.ymax);
    TextWriter out;
    write_header(out, world);
    write_groups(out, tables_start);
    write_line_types(out);
    write_groups(out, tables_end);
    write_segments(out, segments, scale, colour);
    write_group(out, " 0", "ENDSEC");
    write_group(out, " 0", "EOF");
    std::string reason;
    return out.save(path, &reason) < 0 ? refuse("Error: Unable to open DXF_FILE", reason) : 0;
}

int make_dxf_file(const fs::path& work_dir, const fs::path& path, int colour) {
    std::string reason;
    const auto file = read_segment_file(work_dir, &reason);
    return file ? make_dxf_file(path, file->world, file->segments, colour)
                : refuse("Error: Unable to open TEMP_FILE", reason);
}

} // namespace kigumi
