// The question before results are saved that are not of the present input.
#pragma once

#include "analysis/result_input.h"

class QWidget;

namespace kigumi {

// True when results of this age may be saved: at once for current ones, and for those of an unknown
// input while no frame is open; else when a person says so.
bool may_save_results(QWidget* parent, const Model& model, ResultAge age);

} // namespace kigumi
