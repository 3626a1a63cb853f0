#include "ui/sketch/sheet_widget.h"

#include "draw/sheet_picture.h"
#include "model/nodes.h"
#include "ui/sketch/sketch_change.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace kigumi {

namespace {

constexpr float grid_pitch = 50.0f; // sheet units
constexpr int ring_radius = 9;      // pixels

// A cross with a sign of what a click does at its lower right.
QCursor cursor_of(SheetMode mode) {
    struct Look {
        const char* sign;
        Qt::GlobalColor colour;
    };
    constexpr Look looks[] = {
        {"", Qt::black}, {"×", Qt::red}, {"●", Qt::blue}, {"巾", Qt::darkGreen}};
    constexpr int size = 32; // pixels
    constexpr int middle = size / 2;
    constexpr int arm = 10;
    const Look& look = looks[static_cast<int>(mode)];
    if (mode == SheetMode::draw) {
        return Qt::CrossCursor;
    }
    QPixmap image(size, size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(look.colour);
    painter.drawLine(middle - arm, middle, middle + arm, middle);
    painter.drawLine(middle, middle - arm, middle, middle + arm);
    QFont font;
    font.setPixelSize(middle - 2);
    painter.setFont(font);
    painter.drawText(QRect(middle, middle, middle, middle), Qt::AlignCenter, look.sign);
    painter.end();
    return QCursor(image, middle, middle);
}

} // namespace

SheetWidget::SheetWidget(Session& session, QWidget* parent)
    : PictureWidget(parent), Desk(session), sheet_(session.project.model) {
    setMouseTracking(true);
}

void SheetWidget::show_sheet() {
    shows_sheet_ = true;
    setCursor(cursor_of(sheet_.mode()));
    set_picture([this](Canvas& canvas, DrawArea& area) {
        if (model.N_Node == 0) {
            paper_ = {0, 0, static_cast<float>(area.xScreen), static_cast<float>(area.yScreen)};
        }
        fit_sheet(area, paper_);
        draw_sheet(model, canvas, area, sheet_.marks());
    });
    show_whole();
}

void SheetWidget::leave_sheet() {
    give_up();
    shows_sheet_ = false;
    unsetCursor();
}

void SheetWidget::show_whole() {
    if (shows_sheet_) {
        const World client{0, 0, static_cast<float>(width()), static_cast<float>(height())};
        paper_ = sheet_around_nodes(model, model.N_Node == 0 || paper_.xmax <= 0 ? client : paper_);
    }
    fit();
}

void SheetWidget::set_mode(SheetMode mode) {
    sheet_.set_mode(mode);
    if (shows_sheet_) {
        setCursor(cursor_of(mode));
    }
    update();
}

bool SheetWidget::give_up() {
    if (!sheet_.give_up()) {
        return false;
    }
    update();
    emit acted({});
    return true;
}

void SheetWidget::set_grid(bool shown) {
    grid_ = shown;
    update();
}

void SheetWidget::set_node_numbers(bool shown) {
    node_numbers_ = shown;
    update();
}

void SheetWidget::set_beam_numbers(bool shown) {
    beam_numbers_ = shown;
    update();
}

void SheetWidget::set_current_node(int node) {
    current_node_ = node;
    update();
}

std::optional<SheetPoint> SheetWidget::pointer() const {
    if (!shows_sheet_ || !pointer_ || !can_map(area())) {
        return std::nullopt;
    }
    return to_sheet(area(), pointer_->x(), pointer_->y());
}

void SheetWidget::press(Qt::MouseButton button, QPoint at) {
    const int count = button == Qt::LeftButton    ? TegakiSheet::left_button
                      : button == Qt::RightButton ? TegakiSheet::right_button
                                                  : 0;
    if (count != 0 && can_map(area())) {
        sheet_.press(count, to_sheet(area(), at.x(), at.y()));
        follow(at);
    }
}

void SheetWidget::release(QPoint at) {
    if (!can_map(area())) {
        return;
    }
    follow(at);
    const SheetOutcome outcome = sheet_.release(to_sheet(area(), at.x(), at.y()));
    // What is done by now becomes a step; the first end of a member is none.
    if (outcome.event == SheetEvent::drawn || outcome.event == SheetEvent::removed) {
        const bool drawn = outcome.event == SheetEvent::drawn;
        change_sketch(session_, drawn ? "部材の作図" : "部材の削除", [](Model&) {});
    }
    update();
    emit acted(outcome);
}

void SheetWidget::follow(QPoint at) {
    pointer_ = at;
    update();
    emit pointed();
}

void SheetWidget::mousePressEvent(QMouseEvent* event) {
    if (!shows_sheet_ || event->button() == Qt::MiddleButton) {
        PictureWidget::mousePressEvent(event);
        return;
    }
    press(event->button(), event->pos());
}

void SheetWidget::mouseMoveEvent(QMouseEvent* event) {
    PictureWidget::mouseMoveEvent(event);
    if (shows_sheet_) {
        follow(event->pos());
    }
}

void SheetWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (!shows_sheet_ || event->button() == Qt::MiddleButton) {
        PictureWidget::mouseReleaseEvent(event);
        if (shows_sheet_) {
            setCursor(cursor_of(sheet_.mode()));
        }
        return;
    }
    release(event->pos());
}

void SheetWidget::leaveEvent(QEvent* event) {
    PictureWidget::leaveEvent(event);
    pointer_.reset();
    update();
    emit pointed();
}

// The release goes to whatever has the focus now: a dialog over the sheet, or a menu.
void SheetWidget::focusOutEvent(QFocusEvent* event) {
    PictureWidget::focusOutEvent(event);
    if (sheet_.drop_press()) {
        update();
    }
}

bool SheetWidget::step_pointer(int key, bool small) {
    const int by = small ? 1 : static_cast<int>(model.snap_radius); // pixels
    const QPoint step = key == Qt::Key_Left    ? QPoint(-by, 0)
                        : key == Qt::Key_Right ? QPoint(by, 0)
                        : key == Qt::Key_Up    ? QPoint(0, -by)
                        : key == Qt::Key_Down  ? QPoint(0, by)
                                               : QPoint();
    if (step.isNull()) {
        return false;
    }
    const QPoint to = pointer_.value_or(rect().center()) + step;
    if (rect().contains(to)) {
        QCursor::setPos(mapToGlobal(to));
        follow(to);
    }
    return true;
}

void SheetWidget::keyPressEvent(QKeyEvent* event) {
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (!shows_sheet_) {
        PictureWidget::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Escape && give_up()) {
        event->accept();
    } else if (event->key() == Qt::Key_F && plain) {
        show_whole();
    } else if (event->key() == Qt::Key_Space && pointer_) {
        if (!event->isAutoRepeat()) {
            press(Qt::LeftButton, *pointer_);
        }
    } else if (!step_pointer(event->key(), (event->modifiers() & Qt::ShiftModifier) != 0)) {
        PictureWidget::keyPressEvent(event);
    }
}

void SheetWidget::keyReleaseEvent(QKeyEvent* event) {
    if (shows_sheet_ && event->key() == Qt::Key_Space && pointer_ && !event->isAutoRepeat()) {
        release(*pointer_);
        return;
    }
    PictureWidget::keyReleaseEvent(event);
}

QPoint SheetWidget::pixel(SheetPoint at) const {
    int px = 0;
    int py = 0;
    to_screen(area(), at.X, at.Y, px, py);
    return {px, py};
}

void SheetWidget::paintEvent(QPaintEvent* event) {
    PictureWidget::paintEvent(event);
    if (!shows_sheet_ || !can_map(area())) {
        return;
    }
    QPainter painter(this);
    if (grid_) {
        paint_grid(painter);
    }
    paint_numbers(painter);
    paint_ring(painter);
    paint_band(painter);
}

void SheetWidget::paint_grid(QPainter& painter) const {
    constexpr int most_lines = 400;
    const World& world = area().world;
    if (world.xmax - world.xmin > most_lines * grid_pitch) {
        return;
    }
    // Under the drawing: only white paper becomes darker.
    painter.setCompositionMode(QPainter::CompositionMode_Darken);
    painter.setPen(QColor(215, 225, 235));
    // Counted: far from the origin a float does not grow by the pitch.
    for (int i = 0; i <= most_lines; ++i) {
        const float X = (std::ceil(world.xmin / grid_pitch) + static_cast<float>(i)) * grid_pitch;
        if (X <= world.xmax) {
            const int px = pixel({X, world.ymin}).x();
            painter.drawLine(px, 0, px, height());
        }
        const float Y = (std::ceil(world.ymin / grid_pitch) + static_cast<float>(i)) * grid_pitch;
        if (Y <= world.ymax) {
            const int py = pixel({world.xmin, Y}).y();
            painter.drawLine(0, py, width(), py);
        }
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void SheetWidget::paint_numbers(QPainter& painter) const {
    constexpr int apart = 6; // pixels between a node and its number
    const auto write = [&](SheetPoint at, int number) {
        const QPoint where = pixel(at) + QPoint(apart, -apart);
        if (rect().contains(where)) {
            painter.drawText(where, QString::number(number));
        }
    };
    painter.setPen(Qt::darkBlue);
    for (int i = 0; node_numbers_ && i < model.N_Node; ++i) {
        write({model.node[i].X, model.node[i].Y}, number_at(i));
    }
    painter.setPen(Qt::darkRed);
    for (int i = 0; beam_numbers_ && i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        write({0.5f * (beam.XS + beam.XL), 0.5f * (beam.YS + beam.YL)}, number_at(i));
    }
}

// Rings the node that a click would take, and the one the window talks about.
void SheetWidget::paint_ring(QPainter& painter) const {
    const auto ring = [&](int node) {
        if (node >= 0 && node < model.N_Node) {
            const QPoint at = pixel({model.node[node].X, model.node[node].Y});
            painter.drawEllipse(at, ring_radius, ring_radius);
        }
    };
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::blue, 2));
    ring(current_node_);
    const std::optional<SheetPoint> at = pointer();
    const bool takes_nodes =
        sheet_.mode() == SheetMode::draw || sheet_.mode() == SheetMode::node_data;
    if (at && takes_nodes) {
        painter.setPen(QPen(Qt::darkCyan, 1));
        ring(search_2dim_node(model, at->X, at->Y));
    }
}

// The band inverts what is under it. It is painted over the picture each time and leaves no trace.
void SheetWidget::paint_band(QPainter& painter) const {
    const std::optional<SheetPoint> from = sheet_.band();
    const std::optional<SheetPoint> to = pointer();
    if (!from || !to) {
        return;
    }
    SheetPoint at{};
    const int crossed =
        sheet_.is_crossing() ? search_cross_beam(model, from->X, from->Y, to->X, to->Y, at) : -1;
    if (crossed >= 0) {
        const Beam& beam = model.beam[crossed];
        painter.setPen(QPen(Qt::red, 3));
        painter.drawLine(pixel({beam.XS, beam.YS}), pixel({beam.XL, beam.YL}));
    }
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawLine(pixel(*from), *pointer_);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

} // namespace kigumi
