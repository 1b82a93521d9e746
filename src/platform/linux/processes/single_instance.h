#pragma once

#include <functional>
#include <memory>
#include <string>

namespace Corvetape {

/// One running program per user and folder: a locked file says who runs, a socket beside it lets others
/// ask the program to come to the front. Both end with the process, however it ends.
class LinuxSingleInstance {
 public:
    /// `comeForward` is called on the thread that claimed, from its Qt event loop. `folder` must be this
    /// user's own; the default is the runtime folder of the session.
    explicit LinuxSingleInstance(std::function<void()> comeForward, std::string folder = DefaultFolder());
    ~LinuxSingleInstance();
    LinuxSingleInstance(const LinuxSingleInstance&) = delete;
    LinuxSingleInstance& operator=(const LinuxSingleInstance&) = delete;

    /// Claims the place. False if another process holds it; true as well if the folder cannot be used at all:
    /// a program that runs twice is better than none.
    bool Claim();

    /// True if another process holds the place. Claims nothing.
    bool HeldByOther() const;

    /// Asks the process that holds the place to come to the front.
    void ActivateOther();

    /// XDG_RUNTIME_DIR, or a private folder of this user in /tmp.
    static std::string DefaultFolder();

 private:
    struct Place;
    std::function<void()> ComeForward;
    std::string Folder;
    std::unique_ptr<Place> Claimed;
};

}  // namespace Corvetape
