#include "media/devtools_ports.h"

#include <algorithm>

#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr size_t MostPorts = 16;

}  // namespace

std::vector<uint16_t> DevToolsPorts(std::string_view list) {
    std::vector<uint16_t> ports;
    for (const std::string& part : Split(list, ';')) {
        const auto number = WholeNumberFromText(part);
        if (!number || *number < 1 || *number > UINT16_MAX || ports.size() == MostPorts) continue;
        const auto port = static_cast<uint16_t>(*number);
        if (std::ranges::count(ports, port) == 0) ports.push_back(port);
    }
    return ports;
}

}  // namespace Corvetape
