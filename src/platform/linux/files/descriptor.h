#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace Corvetape {

/// An open file descriptor with one owner. Closing keeps errno, so that the reason of a failure survives.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int openDescriptor) : number(openDescriptor) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() {
        const int kept = errno;
        Close();
        errno = kept;
    }

    int Number() const { return number; }
    explicit operator bool() const { return number >= 0; }

    /// False if the system reports late that something was not written. Closed in any case.
    bool Close() {
        if (number < 0) return true;
        // An interrupted close has closed all the same; a second one could hit somebody else's file.
        return close(std::exchange(number, -1)) == 0 || errno == EINTR;
    }

 private:
    int number = -1;
};

/// Repeats a system call as long as signals interrupt it.
template <class Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

}  // namespace Corvetape
