// Which commands of the main window are open, as one function of the state of the work.
#pragma once

#include "project/project.h"

namespace kigumi {

struct CommandState {
    Stage stage = Stage::empty;
    bool results = false; // results of an analysis are there to be saved
};

// True for each command that is open. Names as those of the menu items.
struct CommandFlags {
    bool KihonMenu, TegakiMenu, JikuDataReadMenu;
    bool SaveFileMenu, HoneSaveMenu, FrameSlvSaveMenu;
    bool KaisekiMenu, KekkaHozonMenu, SaigoKaisekiMenu, ExitMenu;
    bool SetutenShiteiMenu; // データ指定 and what is in it
    bool HyoujiMenu, SetutenMeishouMenu, BuzaiBangouMenu;
    bool KoteiStutenMenu, KajyuryouMenu;
};

CommandFlags command_flags(const CommandState& state);

} // namespace kigumi
