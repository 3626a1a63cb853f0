#include "ui/kit/file_mark.h"

namespace kigumi {

FileMark::FileMark(Session& session) : Desk(session) {
    setObjectName("FileLabel");
    setMargin(fontMetrics().horizontalAdvance(' '));
    connect(&session.news, &News::changed, this, &FileMark::refresh);
    refresh();
}

void FileMark::refresh() {
    setText(marked_name(document, is_unsaved(session_.work)));
}

} // namespace kigumi
