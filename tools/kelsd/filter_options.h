// The search filter of `kelsd find`: given as it is, or built by the library from what it shall match.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace kelsd_tool {

struct FilterOptions {
  std::string filter;
  std::vector<std::string> ips;
  std::vector<std::string> ns_names;
  std::string server_name;

  void AddTo(CLI::App& verb);

  /// The filter text; empty: none. False, with `problem` set, when the options do not go together.
  bool Build(std::string& text, std::string& problem) const;
};

}  // namespace kelsd_tool
