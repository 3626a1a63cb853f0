// Axis data, and the unit lines in it.
#include "target.h"

#include "files/jiku.h"
#include "generate/generate.h"
#include "geometry/axis_picture.h"
#include "geometry/solid.h"
#include "model/lookup.h"

namespace kigumi::fuzz {

namespace {

constexpr int few_members = 200;

// What follows a reading; the frame survives a way through the file.
void use_frame() {
    if (rebuild_tables() < 0) {
        require_told(-1);
        return;
    }
    require_sound(true);
    if (model.N_Beam > few_members) {
        return;
    }
    BlankCanvas canvas;
    DrawArea area = usual_window();
    draw_wire(canvas, area, true);
    const int members = model.N_Beam;
    require_told(save_jiku_data(work_file("again.jik"), {}));
    start_fresh();
    const int again = load_jiku_data(work_file("again.jik"));
    KIGUMI_CHECK(again == members || again < 0, "%d members became %d", members, again);
    require_told(again);
}

} // namespace

void read_jik(std::string_view input) {
    start_fresh();
    const int status = load_jiku_data(put("a.jik", input));
    require_sound(false);
    require_told(status);
    if (status >= 0) {
        KIGUMI_CHECK(status == model.N_Beam, "%d told, %d there", status, model.N_Beam);
        KIGUMI_CHECK(static_cast<int>(jiku_label_kinds().size()) == status, "labels");
        use_frame();
    }
}

void read_unit(std::string_view input) {
    start_fresh();
    const int status = bunkai_shazai(input);
    require_sound(false);
    require_told(status);
}

} // namespace kigumi::fuzz
