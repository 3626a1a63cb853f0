// What a run has to say about its results.
#pragma once

#include <string>
#include <vector>

namespace frameslv {

// A word of ASCII letters and '-' that stays the same in all versions, and a Japanese sentence,
// UTF-8, without line ends. docs/formats/solver-notes.md lists the keys.
struct Note {
    enum class Weight { fact, notice, warning };

    Weight weight = Weight::fact;
    std::string key;
    std::string text;
};

using Notes = std::vector<Note>;

// The note as a line of the console, without its end: "注意: " and "警告 (WARNING): " before the
// weighty ones.
std::string console_line(const Note& note);

// The text of frameslv.not: a note a line, its key, a blank and its sentence, CR LF.
std::string notes_text(const Notes& notes);

} // namespace frameslv
