// What the commands print of a frame and of its results.
#pragma once

#include "project/project.h"

#include <vector>

namespace kigumi {

// The members of one category of the model.
struct KindTotal {
    int kind;
    int count;
    double length; // m
    double volume; // timber, m³
};

// The categories that the model has, in their order.
std::vector<KindTotal> kind_totals(const Project& project);

// Prints counts, levels, bounds and timber volume of the model, members also by category.
void print_frame_info(const Project& project);

// Prints the members by category with their timber volume, nodes, supports and loads.
void print_frame_summary(const Project& project);

// Tells in a message that the results read are not of the frame read, or of FRAMESLV.IN without
// one, or that this is unknown; nothing for current ones.
void tell_result_age(const Project& project);

// Prints the largest tension, compression and displacement of the results.
void print_result_summary(const Project& project);

} // namespace kigumi
