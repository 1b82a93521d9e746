#include "post/post_bench.h"

#include "core/text/text.h"

namespace Corvetape::Testing {

namespace {

constexpr const char* Texts =
    "811=text 811\n812=text 812\n813=text 813\n701=text 701\n702=text 702\n703=text 703 %1 %2\n"
    "4800=text 4800 %1\n4801=text 4801\n4802=text 4802\n4803=text 4803\n5900=text 5900 %1.\n5910=text 5910\n"
    "866=text 866 %1\n867=text 867 %1 %2\n868=text 868 %1\n876=text 876 %1\n";

}  // namespace

PostBench::PostBench()
    : Registry(Sim.Files, "/home/user/registry-user", "/home/user/registry-machine"),
      Expansion(Sim.Clock, Sim.Folders, Registry),
      Store(Sim.Files, Sim.Folders, Registry, Expansion, Sim.System.Version()),
      Journal(Sim.Files, Sim.Clock, Options, Folders),
      Messages(Sim.Files, Sim.Folders.ProgramFolder(), Sim.Dialogs),
      Say(Journal, Messages, Sim.Dialogs, Lifecycle, Form.lblStatus[1]) {
    Sim.Files.Put(Sim.Folders.ProgramFolder() + "/test.lang", Texts);
    Messages.Load("test");
    Folders.Paths = {"/temp", "/music", "/log"};
    Folders.SongTempFolder = "/temp/Corvet";
    Folders.ProgramFolder = Sim.Folders.ProgramFolder();
    Folders.CommonDataFolder = "/usr/share/Corvet";
    for (const std::string& folder : Folders.Paths) Sim.Files.MakeFolders(folder);
    Sim.Files.MakeFolders(Folders.SongTempFolder);
    const std::string& ini = Store.Ini().Path();
    Sim.Files.MakeFolders(ini.substr(0, ini.rfind('/')));
}

std::string PostBench::Stored(std::string_view section, std::string_view key) {
    return Profile(Sim.Files, Store.Ini().Path()).ReadText(section, key, "(none)");
}

std::string PostBench::LogLines() {
    std::string lines;
    for (const std::string& line : Split(Sim.Files.Content(Journal.FileName()).value_or(""), '\n')) {
        const size_t tab = line.find('\t');
        if (tab == std::string::npos) continue;
        lines += line.substr(tab + 1, line.size() - tab - 2) + "\n";
    }
    return lines;
}

void PostBench::LoadSettings() {
    Store.LoadSettings(
        {Options, Folders, Media}, [this] { ShowListsInForm(Form, Options); },
        [this](const SettingRow& row, const std::string& value) { ApplySettingToForm(Form, row, value); });
}

}  // namespace Corvetape::Testing
