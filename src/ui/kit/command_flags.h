// Which commands of the main window are open, as one function of the state of the work.
#pragma once

#include "project/project.h"

namespace kigumi {

// True for each command that is open. Names as those of the menu items.
struct CommandFlags {
    bool SaveProjectMenu, SaveAsMenu;
    bool KihonMenu, KihonHenkouMenu, TegakiMenu, JikuDataReadMenu;
    bool SaveFileMenu, HoneSaveMenu, FrameSlvSaveMenu;
    bool KaisekiMenu, KekkaHozonMenu, SaigoKaisekiMenu, KekkaHyoujiMenu, ExitMenu;
    bool SetutenShiteiMenu; // データ指定 and what is in it
    bool HyoujiMenu, SetutenMeishouMenu, BuzaiBangouMenu;
    bool KoteiStutenMenu, KajyuryouMenu;
};

// `results`: results of an analysis are there to be saved.
CommandFlags command_flags(const Project& project, bool results);

} // namespace kigumi
