#include "cli/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "cli/interrupt.h"

namespace Corvetape {

void Print(std::FILE* stream, std::string_view text) {
    const bool printed =
        std::fwrite(text.data(), 1, text.size(), stream) == text.size() && std::fflush(stream) == 0;
    if (!printed && errno == EPIPE && stream == stdout) Interrupt::Want();
}

bool OutputLost() {
    return std::ferror(stdout) != 0;
}

void OpenStandardFiles() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) >= 0) continue;
        static_cast<void>(open("/dev/null", O_RDWR));  // takes the lowest free number, which is this one
    }
}

}  // namespace Corvetape
