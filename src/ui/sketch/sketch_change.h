// The commands of the hand-drawn editor as steps.
#pragma once

#include "ui/kit/session.h"

#include <functional>
#include <string_view>

namespace kigumi {

// kigumi::change for a sketch whose sheet is shown: keeps the nodes' places on the sheet, too. 0,
// or -1 when the change was taken back after a message.
int change_sketch(Session& session, std::string_view name, const std::function<void(Model&)>& edit);

} // namespace kigumi
