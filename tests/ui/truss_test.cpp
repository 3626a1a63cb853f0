// A roof truss from the empty sheet to its forces.
#include "analysis/result.h"
#include "files/tegaki.h"
#include "model/validate.h"
#include "player.h"
#include "ui/main/main_form.h"

#include <QClipboard>

namespace kigumi::test {

namespace {

// Nodes in the order in which the members reach them: bottom chord, then top chord; cm.
struct Place {
    int x, z;
};
constexpr Place places[] = {{0, 0},    {200, 0},   {400, 0},   {600, 0},   {800, 0},   {1000, 0},
                            {1200, 0}, {200, 100}, {400, 200}, {600, 300}, {800, 200}, {1000, 100}};
constexpr int first_top = 7;

// A member between two node positions, and its axial force by the joints of the pinned truss under
// 200 kgf on each of the five upper nodes, kgf.
struct Bar {
    int from, to;
    double force;
};
constexpr Bar bars[] = {
    {0, 1, 1000.0},    {1, 2, 1000.0},    {2, 3, 800.0},   {3, 4, 800.0},   {4, 5, 1000.0},
    {5, 6, 1000.0},    {0, 7, -1118.03},  {7, 8, -894.43}, {8, 9, -670.82}, {9, 10, -670.82},
    {10, 11, -894.43}, {11, 6, -1118.03}, {7, 1, 0.0},     {8, 2, 100.0},   {9, 3, 400.0},
    {10, 4, 100.0},    {11, 5, 0.0},      {7, 2, -223.61}, {8, 3, -282.84}, {10, 3, -282.84},
    {11, 4, -223.61},
};

class Truss : public UiTest {
  protected:
    static QPoint pixel(const Place& place) { return {100 + place.x / 2, 500 - place.z}; }

    // Presses, moves and releases on the picture of a window, once nothing stands before it.
    static void drag(Player& player, const char* window, std::function<QPoint()> from,
                     QPoint by = {0, 0}) {
        player.step("mouse", [=] {
            QWidget* top = Player::shown(window);
            QWidget* modal = QApplication::activeModalWidget();
            auto* area = top == nullptr ? nullptr : top->findChild<QWidget*>("Picture");
            if (area == nullptr || (modal != nullptr && modal != top)) {
                return false;
            }
            area->grab();
            QTimer::singleShot(0, area, [=] {
                const QPoint at = from();
                send_mouse(*area, QEvent::MouseButtonPress, at);
                send_mouse(*area, QEvent::MouseMove, at + by);
                send_mouse(*area, QEvent::MouseButtonRelease, at + by);
            });
            return true;
        });
    }
    static void draw(Player& player) {
        for (const Bar& bar : bars) {
            for (const int end : {bar.from, bar.to}) {
                drag(player, "TTegakiForm", [end] { return pixel(places[end]); });
            }
        }
        QString cells;
        for (const Place& place : places) {
            cells += QString("%1\t0\t%2\n").arg(place.x).arg(place.z);
        }
        QApplication::clipboard()->setText(cells);
        player.menu("TTegakiForm", "SetutenHyouMenu")
            .click("TNodeTableForm", "HaritukeButton")
            .click("TNodeTableForm", "OKButton")
            .gone("TNodeTableForm")
            .menu("TTegakiForm", "BuzaiDataMenu");
        drag(player, "TTegakiForm", [] { return QPoint(150, 490); }, {0, 20});
        // So slender that the joints hardly bend.
        player.with("TBeamForm", [](QWidget& form) {
            type(form, "HabaEdit", "3");
            type(form, "AtumiEdit", "3");
        });
        player.click("TBeamForm", "AllButton").gone("TBeamForm");
    }
};

TEST_F(Truss, IsDrawnAnalysedAndItsForcesAreThoseOfTheJoints) {
    TMainForm window(session);
    window.show();
    Player player;
    player.menu("TMainForm", "TegakiMenu");
    draw(player);
    player.menu("TTegakiForm", "TegakiSaveMenu")
        .file(work_file(work_dir, "truss.tgk"))
        .menu("TTegakiForm", "ModoruMenu")
        .gone("TTegakiForm");
    player.play();
    EXPECT_EQ(model.N_Node, static_cast<int>(std::size(places)));
    ASSERT_EQ(model.N_Beam, static_cast<int>(std::size(bars)));
    EXPECT_EQ(find_model_fault(model, true), nullptr);
    EXPECT_EQ(project.stage, Stage::made);
    EXPECT_TRUE(std::all_of(model.node.begin(), model.node.begin() + model.N_Node,
                            [](const Node& node) { return node.flag == role_plain; }))
        << "drawing states are no roles";
    const std::string bytes = read_file(work_file(work_dir, "truss.tgk")).value_or("");
    EXPECT_NE(bytes.find(" 12 \"X82Y00Z33\" 1000.000000 0.000000 100.000000 600.000000 "),
              std::string::npos);
    EXPECT_NE(bytes.find(" 2\r\n    21\r\n"), std::string::npos) << "the file keeps them";

    Player roles;
    const auto pick = [&](int node) {
        drag(roles, "TMainForm", [this, &window, node] {
            QPoint at;
            to_screen(window.picture().area(), model.node[node].X, model.node[node].Y, at.rx(),
                      at.ry());
            return at;
        });
    };
    roles.menu("TMainForm", "KousokuSetutenMenu");
    pick(0);
    pick(6);
    roles.menu("TMainForm", "KajyuSetutenMenu");
    for (int i = first_top; i < model.N_Node; ++i) {
        pick(i);
    }
    roles.menu("TMainForm", "SetutenDataMenu").click("TSelNodeForm", "OKButton");
    roles.gone("TSelNodeForm").step("roller", [this] {
        model.fix[1].ix = 0;
        return project.stage == Stage::loaded && model.N_Fix == 2 && model.N_Load == 5;
    });
    roles.menu("TMainForm", "KaisekiMenu").close("TFrameSlvForm").gone("TFrameSlvForm").play();
    EXPECT_EQ(take_messages().size(), 1u) << "the time it took";
    ASSERT_EQ(result.N_Stress, model.N_Beam);
    for (int i = 0; i < result.N_Stress; ++i) {
        const Stress& stress = result.stress[i];
        const Bar& bar = bars[position_of(stress.no)];
        EXPECT_NEAR(stress.force, bar.force, 0.005 * 1118.03) << "member " << stress.no;
    }
}

} // namespace

} // namespace kigumi::test
