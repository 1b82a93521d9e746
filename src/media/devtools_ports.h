#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Corvetape {

/// The port that browsers are usually started with.
inline constexpr const char* UsualDevToolsPort = "9222";

/// The ports of a list with ";" between them, each once, at most 16. What is no port is passed over.
std::vector<uint16_t> DevToolsPorts(std::string_view list);

}  // namespace Corvetape
