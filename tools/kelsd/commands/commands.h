// The verbs of the tool. Each adds itself to the command line; when the user chose it, its status is stored.
#pragma once

#include <CLI/CLI.hpp>

#include "console.h"
#include "exit_status.h"

namespace kelsd_tool {

void AddFind(CLI::App& app, Console& console, ExitStatus& status);
void AddAttributes(CLI::App& app, Console& console, ExitStatus& status);
void AddRegister(CLI::App& app, Console& console, ExitStatus& status);
void AddDeregister(CLI::App& app, Console& console, ExitStatus& status);
void AddParse(CLI::App& app, Console& console, ExitStatus& status);
void AddConfig(CLI::App& app, Console& console, ExitStatus& status);
void AddSlpd(CLI::App& app, Console& console, ExitStatus& status);
void AddDoctor(CLI::App& app, Console& console, ExitStatus& status);

}  // namespace kelsd_tool
