#include "ui/sketch/sketch_change.h"

#include "files/tegaki.h"
#include "ui/kit/undo_menu.h"

namespace kigumi {

int change_sketch(Session& session, std::string_view name,
                  const std::function<void(Model&)>& edit) {
    return change(session, name, [&edit](Project& p) {
        edit(p.model);
        save_old_node(p.model, p.sketch_places);
        return 0;
    });
}

} // namespace kigumi
