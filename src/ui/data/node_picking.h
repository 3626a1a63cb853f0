// Picking restrained and loaded nodes with the mouse in the main window's picture.
#pragma once

#include "ui/kit/session.h"

#include <QObject>
#include <QPoint>

class QLabel;
class QMainWindow;
class QTimer;
class TNodeKensakuForm;

namespace kigumi {

class PictureWidget;

enum class PickMode { none, restrain, load };

// Turns clicks in the picture into roles of nodes, shows the node search window meanwhile, and
// tells in the status bar which mode is on and which node, of what role, lies under the pointer.
// Once supports and loads were entered by hand (Model::fix_load_edited) a click changes nothing and
// the status bar says so, so that flags, tables and marks go on agreeing.
class NodePicking : public QObject, protected Desk {
    Q_OBJECT

  public:
    // Makes Timer1, which hides the search window once no mode is on, a child of the window.
    NodePicking(Session& session, QMainWindow* window, PictureWidget* picture);

    PickMode mode() const { return mode_; }
    // Enters restrain or load.
    void start(PickMode mode);
    // Ends picking and hides the search window; found nodes have their roles back.
    void stop();

    // Esc in the window ends picking.
    bool eventFilter(QObject* window, QEvent* event) override;

    // What the picture shows, as it was painted last; clicks are looked up in it.
    PlanarModel shown;

  private:
    void pick(QPoint at);
    // Names the node under the pointer.
    void hover(QPoint at);
    // Position of the node at a pixel, or -1.
    int node_at(QPoint at) const;
    void show_status(int node);
    void on_timer();
    // After a step was taken back or repeated.
    void follow();

    PictureWidget* picture_;
    TNodeKensakuForm* search_;
    QLabel* status_;
    QTimer* timer_;
    PickMode mode_ = PickMode::none;
};

} // namespace kigumi
