#pragma once

#include <string>

namespace Corvetape {

/// What a desktop lets its users press for a player, by keys or in its panels.
enum class MediaButton { Play, Pause, PlayPause, Stop, Next, Raise, Quit };

/// What the program does. A desktop shows it as playing, paused and stopped.
enum class RecorderStatus {
    Recording,  ///< the song is kept
    Listening,  ///< it is not
    Off         ///< nothing can be kept
};

/// What a desktop shows of the program. All texts may be empty.
struct PlayerDisplay {
    RecorderStatus Status = RecorderStatus::Off;
    std::string Artist;
    std::string Title;
    std::string Album;
    std::string Cover;  ///< address of a picture

    bool operator==(const PlayerDisplay&) const = default;
};

/// Whoever carries out what is pressed, on the logic thread.
class MediaButtons {
 public:
    virtual ~MediaButtons() = default;
    virtual void Pressed(MediaButton button) = 0;
};

/// The program among the players of the desktop.
class MediaControls {
 public:
    virtual ~MediaControls() = default;

    /// Who is told of buttons from now on; null for nobody.
    virtual void Follow(MediaButtons* buttons) = 0;

    /// Returns at once; what has not changed is not passed on.
    virtual void Show(const PlayerDisplay& display) = 0;
};

/// A short message that the desktop shows beside everything else.
struct Notice {
    std::string Title;  ///< plain text
    std::string Text;   ///< no words of strangers: some desktops read markup in it

    bool operator==(const Notice&) const = default;
};

class Notices {
 public:
    virtual ~Notices() = default;

    /// Returns at once. Nothing happens where no desktop shows such messages.
    virtual void Notify(const Notice& notice) = 0;
};

}  // namespace Corvetape
