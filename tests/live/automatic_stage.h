#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "live/live_recording.h"

namespace Corvetape {

/// A sound server and a session bus of its own, a recorder that listens there with the end of song
/// "Automatic", and a player.
class AutomaticStage {
 public:
    AutomaticStage(LiveSession& session, ServerKind kind);

    /// Begins to record until so many songs were kept, or so many seconds are over.
    void Record(int songs, int seconds, const std::vector<std::string>& more = {});

    /// Plays files one after the other, without a gap if they have none. Those that play already go on.
    void Play(const std::vector<std::string>& files, const std::vector<std::string>& options = {});

    /// Presses a button of the first player: a method of the media players' interface.
    void Press(const std::string& button);

    /// True if the recorder hears the sound server. One that has ended because the server on a busy machine
    /// has not answered it in time is started again.
    bool Records();

    /// True if the first player has played so much of the piece with this title, which it plays.
    bool HasPlayed(const std::string& title, double seconds);

    /// A file of the user's settings, before the recorder begins.
    void GiveSettings(const std::string& name, const std::string& content) const;

    /// The songs that were kept, when the recorder has ended in order.
    std::vector<nlohmann::json> Kept();

    /// Cuts a song of this title again, in the way that these words say.
    void Recut(const std::string& title, const std::vector<std::string>& how);

    /// Where the file of this name is, or one whose name ends so; empty if there is none.
    std::string PathOf(const std::string& name) const;
    std::string PathEndingWith(const std::string& ending) const;

    /// Where the temporary song of this name is.
    std::string FileOf(const std::string& name) const { return PathOf(name + ".wav"); }

    /// What the recorder has printed.
    std::string Story() const { return Content(folder / "record.log"); }

    const std::map<std::string, std::string>& Environment() const { return environment; }

    /// The recorder's disks know one name for each file. To be set before it begins.
    bool RefusesLinks = false;

 private:
    /// A property of the first player, as it is printed; empty if there is none yet.
    std::string Said(const std::string& property) const;

    TempFolder folder;
    SessionBus bus;
    SoundServer server;
    std::map<std::string, std::string> environment;
    TestProcess::Start recording;
    std::unique_ptr<TestProcess> recorder;
    std::vector<std::unique_ptr<TestProcess>> players;
};

}  // namespace Corvetape
