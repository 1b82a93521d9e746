#include "platform/linux/processes/single_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/linux/files/descriptor.h"

namespace Corvetape {
namespace {

constexpr const char* LockName = "corvetape.lock";
constexpr const char* SocketName = "corvetape.socket";

/// The socket's address through the folder's descriptor: an address has room for 107 characters only, a
/// folder's path may be longer.
sockaddr_un SocketAddress(const Descriptor& folder) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = "/proc/self/fd/" + std::to_string(folder.Number()) + "/" + SocketName;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return address;
}

Descriptor OpenFolder(const std::string& folder) {
    return Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

Descriptor NewSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool SameUser(const Descriptor& connection) {
    ucred other{};
    socklen_t size = sizeof other;
    return getsockopt(connection.Number(), SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
           (other.uid == geteuid() || other.uid == 0);
}

}  // namespace

struct LinuxSingleInstance::Place {
    Descriptor Folder;
    Descriptor Lock;
    Descriptor Socket;
    std::unique_ptr<QSocketNotifier> Notifier;
};

LinuxSingleInstance::LinuxSingleInstance(std::function<void()> comeForwardCall, std::string folderPath)
    : ComeForward(std::move(comeForwardCall)), Folder(std::move(folderPath)) {}

LinuxSingleInstance::~LinuxSingleInstance() {
    // The socket goes before the lock, so that a successor's is not the one deleted.
    if (Claimed && Claimed->Socket) unlinkat(Claimed->Folder.Number(), SocketName, 0);
}

std::string LinuxSingleInstance::DefaultFolder() {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    struct stat status {};
    if (runtime != nullptr && runtime[0] == '/' && stat(runtime, &status) == 0 && S_ISDIR(status.st_mode)) {
        return runtime;
    }
    const std::string own = "/tmp/corvetape-" + std::to_string(getuid());
    mkdir(own.c_str(), 0700);
    // Somebody else's folder, or a link to one, would give the place into foreign hands.
    const bool safe = lstat(own.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                      status.st_uid == getuid() && (status.st_mode & 077) == 0;
    return safe ? own : "";
}

bool LinuxSingleInstance::Claim() {
    if (Claimed) return true;
    auto claimed = std::make_unique<Place>();
    claimed->Folder = OpenFolder(Folder);
    if (!claimed->Folder) return true;
    claimed->Lock = Descriptor(
        openat(claimed->Folder.Number(), LockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!claimed->Lock) return true;
    if (Uninterrupted([&] { return flock(claimed->Lock.Number(), LOCK_EX | LOCK_NB); }) != 0) {
        return errno != EWOULDBLOCK;
    }
    // A socket that is still there is that of a program that was killed.
    unlinkat(claimed->Folder.Number(), SocketName, 0);
    claimed->Socket = NewSocket();
    const sockaddr_un address = SocketAddress(claimed->Folder);
    if (claimed->Socket &&
        bind(claimed->Socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        listen(claimed->Socket.Number(), 8) == 0) {
        claimed->Notifier =
            std::make_unique<QSocketNotifier>(claimed->Socket.Number(), QSocketNotifier::Read);
        QObject::connect(claimed->Notifier.get(), &QSocketNotifier::activated,
                         [this, listening = claimed->Socket.Number()] {
                             const Descriptor caller(accept4(listening, nullptr, nullptr, SOCK_CLOEXEC));
                             if (caller && SameUser(caller) && ComeForward) ComeForward();
                         });
    } else {
        claimed->Socket.Close();  // the lock alone still keeps others away
    }
    Claimed = std::move(claimed);
    return true;
}

bool LinuxSingleInstance::HeldByOther() const {
    const Descriptor where = OpenFolder(Folder);
    if (Claimed || !where) return false;
    const Descriptor lock(openat(where.Number(), LockName, O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    // Shared, so that two who ask at the same time do not see each other; it goes with the descriptor.
    return lock && Uninterrupted([&] { return flock(lock.Number(), LOCK_SH | LOCK_NB); }) != 0 &&
           errno == EWOULDBLOCK;
}

void LinuxSingleInstance::ActivateOther() {
    const Descriptor where = OpenFolder(Folder);
    const Descriptor connection = NewSocket();
    if (!where || !connection) return;
    const sockaddr_un address = SocketAddress(where);
    // Being called is the whole message. Nobody answers if the other one is just ending.
    static_cast<void>(
        connect(connection.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
}

}  // namespace Corvetape
