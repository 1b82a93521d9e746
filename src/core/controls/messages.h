#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape {

class Control;
class Dialogs;
class Files;
class Form;
class TabStrip;

/// The texts of one language, by key ignoring case, out of `<language>.lang` in the program's folder.
///
/// Each line is `key=caption or message|tool tip`. When a control is localised, a field that begins with ":"
/// names the key whose text is taken instead, one level deep. A missing file leaves all texts empty.
class clsLocalizeControls {
 public:
    /// `files` and `dialogs` must outlive it. It knows no language until one is loaded.
    clsLocalizeControls(Files& files, std::string programFolder, Dialogs& dialogs);

    /// Reads the texts of a language, in place of those it had. An empty name leaves it without texts. A key
    /// that is there twice is reported in a box, once for each of the two fields, and its first line stays.
    void Load(std::string_view language);

    /// Empty until a language was loaded.
    const std::string& CurrentLanguage() const { return Language; }

    /// The message of a key with %1, %2, ... replaced by the arguments one after the other, then "\r" and
    /// "\n" by line ends. Empty without a language or without such a key.
    std::string FormatMsg(std::string_view key, std::span<const std::string> arguments = {}) const;
    std::string FormatMsg(std::string_view key, std::initializer_list<std::string> arguments) const;

    /// Puts the texts into a form and all its controls that have a key. What has no text keeps its caption.
    void LocalizeControls(Form& form) const;

    /// The same for one control.
    void LocalizeControl(Control& control) const;

 private:
    using Texts = std::map<std::string, std::string>;  // by key in lower case

    void Add(Texts& texts, const std::string& key, const std::string& text);
    void LocalizeTabs(TabStrip& tabs) const;
    std::string Caption(std::string_view key) const;
    std::string ToolTip(std::string_view key) const;

    Files& Disk;
    std::string ProgramFolder;
    Dialogs& Boxes;
    std::string Language;
    Texts CaptionTexts;
    Texts ToolTipTexts;
};

}  // namespace Corvetape
