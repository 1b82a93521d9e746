#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace Corvetape {

/// An open file descriptor with one owner. Closing keeps errno, so that the reason of a failure survives.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int openDescriptor) : Fd(openDescriptor) {}
    Descriptor(Descriptor&& other) noexcept : Fd(std::exchange(other.Fd, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(Fd, other.Fd);
        return *this;
    }
    ~Descriptor() {
        const int kept = errno;
        Close();
        errno = kept;
    }

    int Number() const { return Fd; }
    explicit operator bool() const { return Fd >= 0; }

    /// False if the system reports late that something was not written. Closed in any case.
    bool Close() {
        if (Fd < 0) return true;
        // An interrupted close has closed all the same; a second one could hit somebody else's file.
        return close(std::exchange(Fd, -1)) == 0 || errno == EINTR;
    }

 private:
    int Fd = -1;
};

/// Repeats a system call as long as signals interrupt it.
template <class Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

}  // namespace Corvetape
