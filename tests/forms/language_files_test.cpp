#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/controls/form_parts.h"
#include "core/controls/message_texts.h"
#include "forms/dlg_language.h"
#include "forms/dlg_provider.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"
#include "forms/frm_wizard.h"
#include "support/data_file.h"

namespace Corvetape::Test {
namespace {

using testing::IsEmpty;

struct Texts {
    std::string Caption;
    std::string ToolTip;
};

using Language = std::map<std::string, Texts>;

std::string WithoutQuotes(const std::string& value) {
    const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    return quoted ? value.substr(1, value.size() - 2) : value;
}

Language Read(const std::string& file) {
    Language language;
    std::istringstream lines(DataFile(file));
    for (std::string line; std::getline(lines, line);) {
        const size_t equals = line.find('=');
        if (line.empty() || line.front() == ';' || equals == std::string::npos) continue;
        const std::string value = WithoutQuotes(line.substr(equals + 1));
        const size_t bar = value.find('|');
        const Texts texts{value.substr(0, bar), bar == std::string::npos ? "" : value.substr(bar + 1)};
        EXPECT_TRUE(language.emplace(line.substr(0, equals), texts).second) << line << " stands twice";
    }
    return language;
}

/// One of each form that the program has.
struct AllForms {
    frmMain Main;
    frmQuickButtons QuickButtons;
    frmCoverButtons CoverButtons;
    frmWizard Wizard;
    dlgLanguage LanguageDialog;
    dlgProvider ProviderDialog;
    std::vector<const Form*> List{&Main,   &QuickButtons,   &CoverButtons,
                                  &Wizard, &LanguageDialog, &ProviderDialog};
};

/// A key that something on a form asks for, with the caption that it replaces.
struct Asked {
    std::string Key;
    std::string Where;
    std::string Caption;
};

std::vector<Asked> AskedByControl(const Form& form, const Control& control) {
    const std::string where =
        form.Name() + "." + control.Name() + "(" + std::to_string(control.Index()) + ")";
    std::vector<Asked> asked;
    if (control.TextKey() != "0") asked.push_back({control.TextKey(), where, control.Caption()});
    if (const auto* const tabs = dynamic_cast<const TabStrip*>(&control)) {
        for (const Tab& tab : tabs->Tabs()) asked.push_back({tab.TextKey, where + tab.Key, tab.Caption});
    }
    // A button whose tag is a key shows that key's text or the next one's.
    if (dynamic_cast<const CommandButton*>(&control) != nullptr && !control.Tag().empty()) {
        asked.push_back({std::to_string(std::stoi(control.Tag()) + 1), where, ""});
    }
    return asked;
}

std::vector<Asked> AskedByForms(const AllForms& forms) {
    std::vector<Asked> asked;
    for (const Form* form : forms.List) {
        if (form->TextKey() != "0") asked.push_back({form->TextKey(), form->Name(), form->Caption()});
        for (const Control* control : form->Controls()) {
            for (Asked& each : AskedByControl(*form, *control)) asked.push_back(std::move(each));
        }
    }
    return asked;
}

/// The keys that are set aside for forms.
bool IsFormKey(const std::string& key) {
    if (!std::ranges::all_of(key, [](char c) { return c >= '0' && c <= '9'; })) return false;
    const int number = std::stoi(key);
    const bool message = number >= 1500 && number <= 1549;  // of the mixer
    return (number >= 1000 && number <= 1999 && !message) || (number >= 50000 && number <= 50009);
}

std::set<std::string> Placeholders(const std::string& text) {
    std::set<std::string> found;
    for (size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9') found.insert(text.substr(i, 2));
    }
    return found;
}

TEST(LanguageFiles, HaveTheSameKeysWithTheSameFields) {
    const Language english = Read("english.lang");
    const Language german = Read("german.lang");
    for (const auto& [key, texts] : english) {
        ASSERT_TRUE(german.contains(key)) << key << " is missing in German";
        EXPECT_EQ(texts.Caption.empty(), german.at(key).Caption.empty()) << key;
        EXPECT_EQ(texts.ToolTip.empty(), german.at(key).ToolTip.empty()) << key;
        EXPECT_EQ(Placeholders(texts.Caption), Placeholders(german.at(key).Caption)) << key;
    }
    for (const auto& [key, texts] : german) {
        EXPECT_TRUE(english.contains(key)) << key << " is missing in English";
    }
}

TEST(LanguageFiles, HaveATextForEveryKeyThatAFormAsksFor) {
    const AllForms forms;
    const Language english = Read("english.lang");
    for (const Asked& asked : AskedByForms(forms)) {
        ASSERT_TRUE(english.contains(asked.Key)) << asked.Where << " asks for " << asked.Key;
        if (!asked.Caption.empty()) {
            EXPECT_NE(english.at(asked.Key).Caption, "") << asked.Where;
        }
    }
}

TEST(LanguageFiles, HaveNoKeyOfAControlThatNoFormAsksFor) {
    const AllForms forms;
    std::set<std::string> wanted;
    for (const Asked& asked : AskedByForms(forms)) wanted.insert(asked.Key);
    for (const MessageText& message : Message::All) wanted.insert(std::string(message.Key));
    for (const auto& [key, texts] : Read("english.lang")) {
        EXPECT_TRUE(!IsFormKey(key) || wanted.contains(key)) << key << " serves nobody";
    }
}

TEST(LanguageFiles, SayInEnglishWhatTheFormsSayByThemselves) {
    // Where the form's own caption is short for want of room, the file spells it out.
    const std::set<std::string> reworded = {"1048", "1053", "1082", "1114", "50000", "50001", "50002"};
    const AllForms forms;
    const Language english = Read("english.lang");
    for (const Asked& asked : AskedByForms(forms)) {
        if (asked.Caption.empty() || reworded.contains(asked.Key)) continue;
        EXPECT_EQ(english.at(asked.Key).Caption, asked.Caption) << asked.Where << " " << asked.Key;
    }
}

TEST(LanguageFiles, SayInEnglishWhatTheMessagesSayByThemselves) {
    const Language english = Read("english.lang");
    for (const MessageText& message : Message::All) {
        ASSERT_TRUE(english.contains(std::string(message.Key))) << message.Key;
        EXPECT_EQ(english.at(std::string(message.Key)).Caption, message.English) << message.Key;
    }
}

TEST(LanguageFiles, HaveNoMessageWithoutAName) {
    const AllForms forms;
    std::set<std::string, std::less<>> named;
    for (const MessageText& message : Message::All) {
        EXPECT_TRUE(named.emplace(message.Key).second) << message.Key << " has two names";
    }
    for (const Asked& asked : AskedByForms(forms)) named.insert(asked.Key);
    for (const auto& [key, texts] : Read("english.lang")) {
        const bool isOfWindow = key.size() == 5 && key.front() == '6';  // named in ui/text_keys.h
        const bool isAddress = texts.Caption.find(':') != std::string::npos && std::isalpha(key.front()) != 0;
        const bool isName = key == "language";  // of the language itself
        EXPECT_TRUE(isOfWindow || isAddress || isName || named.contains(key)) << key;
    }
}

TEST(LanguageFiles, GiveATextBoxAToolTipAndNoText) {
    const AllForms forms;
    const Language english = Read("english.lang");
    for (const Form* form : forms.List) {
        for (const Control* control : form->Controls()) {
            const auto* const box = dynamic_cast<const TextBox*>(control);
            if (box == nullptr || box->TextKey() == "0" || box == &forms.Main.txtlblF1) continue;
            EXPECT_EQ(english.at(box->TextKey()).Caption, "") << box->Name() << " would lose what was typed";
            EXPECT_EQ(box->Caption(), "") << box->Name() << " is named by a label of its own";
        }
    }
}

TEST(Forms, EveryCaptionThatTheProgramDoesNotWriteItselfHasAKey) {
    // What shows names, numbers and states, and the question for the language, which no file can translate.
    const std::set<std::string> written = {"lblVersion", "lblStatus", "lblProvider", "lblGetWidth",
                                           "fraLogFile", "lblArtist", "lblSong",     "lblInfo",
                                           "mnuTaskbar", "Label1"};
    const AllForms forms;
    for (const Form* form : forms.List) {
        for (const Control* control : form->Controls()) {
            if (control->Caption().empty() || control->Caption() == MenuItem::SeparatorCaption) continue;
            if (written.contains(control->Name())) continue;
            EXPECT_NE(control->TextKey(), "0") << form->Name() << "." << control->Name();
        }
    }
}

TEST(Forms, NoKeyServesTwoControls) {
    const AllForms forms;
    std::map<std::string, std::string> owners;
    for (const Asked& asked : AskedByForms(forms)) {
        const auto [found, fresh] = owners.emplace(asked.Key, asked.Where);
        EXPECT_TRUE(fresh) << asked.Key << ": " << found->second << " and " << asked.Where;
    }
}

}  // namespace
}  // namespace Corvetape::Test
