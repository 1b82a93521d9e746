// What players on the session bus say, up to the values that the provider reads.
// Fields, for each step: a letter and the player's name (c changed, g gone, anything else: time passes), and
// for a change its status, genre, artist, title, album and address of a picture, each with the letter of its
// type ahead: s text, u text in 16-bit units, l list of lines, b bytes, i number, anything else: missing.
#include <QStringList>
#include <map>
#include <string>
#include <vector>

#include "fuzz/support/fuzz.h"
#include "media/player_bridge.h"
#include "platform/linux/players/mpris_values.h"
#include "sim/sim_machine.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t MostSteps = 16;
constexpr size_t MostBytes = 4096;

class ScriptedPlayers : public Players {
 public:
    void Listen(std::function<void(const PlayerReport&)> changed,
                std::function<void(const std::string&)> gone) override {
        Changed = std::move(changed);
        Gone = std::move(gone);
    }

    std::function<void(const PlayerReport&)> Changed;
    std::function<void(const std::string&)> Gone;
};

QString Units(std::string_view bytes) {
    QString text;
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        text += QChar(static_cast<uint8_t>(bytes[i]), static_cast<uint8_t>(bytes[i + 1]));
    }
    return text;
}

QVariant ValueOf(std::string_view field) {
    if (field.empty()) return {};
    const std::string_view rest = field.substr(1);
    const QByteArray bytes(rest.data(), static_cast<qsizetype>(rest.size()));
    switch (field.front()) {
        case 's':
            return QString::fromUtf8(bytes);
        case 'u':
            return Units(rest);
        case 'l':
            return QString::fromUtf8(bytes).split('\n');
        case 'b':
            return bytes;
        case 'i':
            return bytes.toInt();
        default:
            return {};
    }
}

QVariantMap Properties(Fuzz::Input& input) {
    QVariantMap properties;
    const QVariant status = ValueOf(input.Field());
    if (status.isValid()) properties["PlaybackStatus"] = status;
    QVariantMap metadata;
    for (const char* name : {"xesam:genre", "xesam:artist", "xesam:title", "xesam:album", "mpris:artUrl"}) {
        const QVariant value = ValueOf(input.Field());
        if (value.isValid()) metadata[name] = value;
    }
    properties["Metadata"] = metadata;
    return properties;
}

void CheckReport(const PlayerReport& report) {
    for (const std::string& text : {report.Genre, report.Artist, report.Title, report.Album, report.Cover}) {
        Require(text.size() <= MostBytes && Fuzz::IsUtf8(text),
                "what a player says is UTF-8 of a limited length");
    }
    const PlayerReport split = WithSplitTitle(report);
    const bool same = split == report;
    Require(same || (report.Artist.empty() && split.Artist + " - " + split.Title == report.Title),
            "a title is split at its separator only");
    Require(WithSplitTitle(split) == split, "a title is split once");
}

/// What a value of the registry holds of a text.
std::string UpToNul(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

class Run {
 public:
    void Change(const std::string& player, Fuzz::Input& input) {
        Known& known = All[player];
        known.Report.Player = player;
        const bool playedBefore = known.Report.Playing;
        known.Report = WithProperties(known.Report, Properties(input));
        if (known.Report.Playing && !playedBefore) known.Begun = ++Begins;
        CheckReport(known.Report);
        Radio.Changed(known.Report);
    }

    void Leave(const std::string& player) {
        All.erase(player);
        Radio.Gone(player);
    }

    void Settle() {
        Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
        const Known* best = nullptr;
        for (const auto& [name, known] : All) {
            if (known.Report.Playing && (best == nullptr || known.Begun > best->Begun)) best = &known;
        }
        Require(Bridge.PlayerPresent() == !All.empty(), "a player is there while one runs");
        Require((Value("Status") == "Playing") == (best != nullptr), "the status is that of the players");
        if (best == nullptr) return;
        const PlayerReport shown = WithSplitTitle(best->Report);
        Require(Value("Artist") == UpToNul(shown.Artist) && Value("Title") == UpToNul(shown.Title) &&
                    Value("Album") == UpToNul(shown.Album) && Value("Genre") == UpToNul(shown.Genre) &&
                    Value("Cover") == UpToNul(shown.Cover),
                "the values are those of the player that began last");
    }

 private:
    struct Known {
        PlayerReport Report;
        uint64_t Begun = 0;
    };

    std::string Value(const char* name) {
        return TextOf(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name));
    }

    SimMachine Machine;
    RegistryBranches Registry{Machine.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    ScriptedPlayers Radio;
    PlayerBridge Bridge{Radio, Registry, Machine.Loop};
    std::map<std::string, Known> All;
    uint64_t Begins = 0;
};

}  // namespace

void FuzzOne(Fuzz::Input input) {
    Run run;
    for (size_t step = 0; step < MostSteps && !input.Empty(); ++step) {
        const std::string_view act = input.Field();
        const std::string player(act.substr(act.empty() ? 0 : 1));
        if (act.starts_with('c')) {
            run.Change(player, input);
        } else if (act.starts_with('g')) {
            run.Leave(player);
        } else {
            run.Settle();
        }
    }
    run.Settle();
}

}  // namespace Corvetape
