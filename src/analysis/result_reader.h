// Readers of the solver's result files: whitespace-separated numbers and names
// (docs/formats/solver-results.md).
//
// Every file is parsed whole before a table is touched, so that a broken file leaves the tables as
// they were. Malformed, cut-off and non-finite numbers make a parser return -1 without a message
// (FrameSlv names the file); a count beyond a table's capacity is told in a message of its own.
#pragma once

#include "analysis/result.h"
#include "draw/projection.h"
#include "generate/param.h"
#include "model/sketch.h"
#include "solid/solid.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace kigumi {

// Distinct node coordinates of the three directions as frameslv.zlv holds them, cm.
struct Levels {
    std::vector<float> x, y, z;
};

// What frameslv.lst holds: result nodes ascending by OldNo, members descending by percent.
struct Listing {
    std::vector<Setuten> setuten;
    std::vector<Stress> stress;
    float force_max = 0.0f; // largest |force|, kgf
};

// frameslv.zlv. 0 or -1.
int parse_levels(std::string_view text, Levels& levels);

// frameslv.lst, sorted and with the members' ends looked up among the result nodes. 0; -1, after
// "節点Iが見つかりません" or "節点Jが見つかりません" when a member's end is not among them under
// its name and number.
int parse_listing(std::string_view text, Listing& listing);

// frameslv.dsp, descending by mag. 0 or -1.
int parse_displacements(std::string_view text, std::vector<Disp>& disp);

// Put parsed files into the tables: the level tables of `model`; setuten, stress and force_max of
// `result` (the selection kensaku is emptied, it was made from the old members); disp and
// N_Setuten.
void store_levels(Model& model, const Levels& levels);
void store_listing(Result& result, const Listing& listing);
void store_displacements(Result& result, const std::vector<Disp>& disp);

// Empties the tables of results and forgets their input.
void forget_results(Result& result);

// Reads a listing into `result`. N_Stress, or -1.
int read_frameslv(Result& result, std::string_view text);

// Reads a displacement file into `result`. 0, or -1.
int read_dsp(Result& result, std::string_view text);

// The part of a result's name that is matched: its first nine characters.
std::string_view matched_name(std::string_view name);

// Result nodes by the matched part of their names; the first in table order wins.
class SetutenIndex {
  public:
    explicit SetutenIndex(const std::vector<Setuten>& setuten);
    // The node of that name, or null. It is valid as long as the vector is unchanged.
    const Setuten* find(std::string_view name) const;

  private:
    std::unordered_map<std::string_view, const Setuten*> first_;
};

// The result node of that name in the tables (first match in the order of OldNo), or null.
const Setuten* find_setuten(const Result& result, std::string_view name);

// The result node whose OldNo is the model's node number `no`, or null.
const Setuten* find_setuten(const Result& result, int no);

} // namespace kigumi
