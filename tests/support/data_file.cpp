#include "support/data_file.h"

#include <fstream>
#include <sstream>

namespace Corvetape::Test {

std::string DataFile(const std::string& name) {
    std::ifstream stream(CORVETAPE_SOURCE_DIR "/data/" + name, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::string DataFolder() {
    return CORVETAPE_SOURCE_DIR "/data";
}

}  // namespace Corvetape::Test
