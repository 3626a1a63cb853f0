// What the program does once, before its work; one small source a platform.
#pragma once

namespace frameslv {

// Suits memory and console to a run.
void prepare_process();

} // namespace frameslv
