// Which commands of the main window are open, as one function of the state of the work.
#pragma once

namespace kigumi {

// How far the work has come.
enum class Stage {
    empty,   // start, or nothing was made
    reading, // a model-making command is under way
    made,    // a model was made and passed the model check
    loaded,  // at least one support and one load were entered
};

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
