#include "solver/base/note.h"

namespace frameslv {

std::string console_line(const Note& note) {
    switch (note.weight) {
    case Note::Weight::warning:
        return "警告 (WARNING): " + note.text;
    case Note::Weight::notice:
        return "注意: " + note.text;
    default:
        return note.text;
    }
}

std::string notes_text(const Notes& notes) {
    std::string text;
    for (const Note& note : notes)
        text += note.key + " " + note.text + "\r\n";
    return text;
}

} // namespace frameslv
