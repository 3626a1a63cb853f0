#include "ui/sketch/node_form.h"

#include "base/float.h"
#include "base/format.h"
#include "model/names.h"
#include "model/sketch.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"
#include "ui/sketch/sketch_change.h"

#include <QFormLayout>

using namespace kigumi;

namespace {

QString shown(float value) {
    return qt_text(text_format(" %8.1f", static_cast<double>(value)));
}

} // namespace

TNodeForm::TNodeForm(Session& session, int node, QWidget* parent)
    : QDialog(parent), Desk(session), node_(node) {
    setObjectName("NodeForm");
    setWindowTitle("節点データ");
    const Node& record = model.node[node];
    auto* rows = new QFormLayout(this);
    add_shown_box(rows, "BangouEdit", "番号")->setText(qt_text(text_format(" %5d", record.no)));
    const bool missing = is_missing(record);
    const float place[3] = {record.x, record.y, record.z};
    constexpr struct {
        const char* name;
        const char* caption;
    } items[3] = {{"XEdit", "X値"}, {"YEdit", "Y値"}, {"ZEdit", "Z値"}};
    for (int axis = 0; axis < 3; ++axis) {
        const bool unknown = missing && same_float(place[axis], unknown_place);
        offered_[axis] = unknown ? session.last_entered[axis] : place[axis];
        boxes_[axis] = add_number_box(rows, items[axis].name, items[axis].caption, offered_[axis]);
        boxes_[axis]->setText(shown(offered_[axis]));
    }
    add_buttons(rows, *this, "OK");
    boxes_[0]->setFocus();
}

void TNodeForm::accept() {
    std::array<float, 3> entered = offered_;
    for (int axis = 0; axis < 3; ++axis) {
        if (boxes_[axis]->text() != shown(offered_[axis]) &&
            !read_box(boxes_[axis], entered[axis])) {
            return;
        }
    }
    session_.last_entered = entered;
    change_sketch(session_, "節点の座標", [&](Model& m) {
        set_node_place(m, node_, entered[0], entered[1], entered[2]);
        check_all_node(m); // names every node once all are known
    });
    QDialog::accept();
}
