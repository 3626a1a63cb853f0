// Frames for the commands: read, with tables rebuilt and supports and loads marked.
#pragma once

#include "app/commands.h"
#include "project/project.h"

namespace kigumi {

// Sets the parameters from NAME=VALUE texts over their defaults and checks them as the basic data
// dialog does. 0, or -1 after a message naming the setting.
int set_parameters(Project& project, const std::vector<std::string>& settings);

// Reads a frame (.kigumi project, .jik axis data, .tgk hand-drawn data) into the emptied model. Of
// the last two levels, names, sections and materials are rebuilt. 0, or -1 after one message.
int read_frame(Project& project, const std::string& input);

// True for a project that was read: its nodes have their roles, and its tables are made.
bool has_own_roles(const Project& project);

// Marks supports (held in x, y and z) and loads in the order of the options, the last role of a
// node holding, and makes both tables in node order. A project keeps its own supports where no
// option gives one, and so its loads, but at nodes that an option names. 0, or -1 after a message.
int mark_roles(Project& project, const std::vector<RoleOption>& roles);

// Takes an existing folder of result files as the working directory. 0, or -1 after a message.
int use_result_dir(Project& project, const std::string& dir);

// Takes a folder as the working directory, making it when it is not there. 0, or -1
// after a message.
int enter_dir(Project& project, const std::string& dir);

} // namespace kigumi
