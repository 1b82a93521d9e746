// Language files: the messages in them, and the texts that they put into the window.
// Fields: key, argument, file.
#include <algorithm>
#include <array>
#include <string>

#include "core/controls/messages.h"
#include "core/text/text.h"
#include "forms/frm_main.h"
#include "fuzz/support/fuzz.h"
#include "sim/sim_machine.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t BufferBytes = 32767;

bool IsText(const std::string& text) {
    return text.size() < BufferBytes && text.find_first_of("|\n") == std::string::npos;
}

void CheckMessage(const clsLocalizeControls& texts, const std::string& key, const std::string& argument) {
    const std::string bare = texts.FormatMsg(key);
    Require(bare.size() < BufferBytes && bare.find('|') == std::string::npos, "a message is the first field");
    Require(bare.find("\\r") == std::string::npos && bare.find("\\n") == std::string::npos,
            "no line end stays as it is written");
    const bool plain = argument.find_first_of("%\\rn") == std::string::npos;
    const bool joined = bare.find("\\%1") != std::string::npos;  // may make a line end of what follows
    if (plain && !joined) {
        Require(texts.FormatMsg(key, {argument}) == ReplaceAll(bare, "%1", argument),
                "an argument stands where its number stood");
    }
    const std::array<std::string, 2> both = {argument, argument};
    texts.FormatMsg(key, both);
}

void CheckWindow(const clsLocalizeControls& texts) {
    frmMain form;
    texts.LocalizeControls(form);
    for (const Control* control : form.Controls()) {
        Require(IsText(control->Caption()) && IsText(control->ToolTip()), "a control shows one field");
    }
    for (const Tab& tab : form.tbsMain.Tabs()) {
        Require(IsText(tab.Caption) && IsText(tab.ToolTip), "a tab shows one field");
    }
    Require(IsText(form.Caption()), "the window shows one field");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string key(input.Field());
    const std::string argument(input.Field());
    const std::string file(input.Rest());
    SimMachine machine;
    machine.Files.Put("/opt/corvetape/test.lang", file);
    clsLocalizeControls texts(machine.Files, "/opt/corvetape", machine.Dialogs);
    texts.Load("test");
    const auto lines = static_cast<size_t>(std::ranges::count(file, '\n')) + 1;
    Require(machine.Dialogs.Boxes.size() <= 2 * lines, "a doubled key is told once for each field");
    CheckMessage(texts, key, argument);
    CheckMessage(texts, "703", argument);
    CheckWindow(texts);
}

}  // namespace Corvetape
