#pragma once

#include <string>

namespace Corvetape::Test {

/// The bytes of a file of `data/`, as it is in the tree; empty if there is none.
std::string DataFile(const std::string& name);

/// The path of `data/` in the tree.
std::string DataFolder();

}  // namespace Corvetape::Test
