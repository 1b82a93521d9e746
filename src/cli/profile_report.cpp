#include "cli/profile_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>

#include "core/text/like.h"
#include "media/browser_rules.h"
#include "media/window_search.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

struct ReportedRule {
    const char* Key;
    MediaFieldRule ProviderProfile::*Rule;
    FieldKind Kind;
};

constexpr auto Rules = std::to_array<ReportedRule>({
    {"Station", &ProviderProfile::Station, FieldKind::Text},
    {"StationDesc", &ProviderProfile::StationDesc, FieldKind::Text},
    {"Artist", &ProviderProfile::Artist, FieldKind::Text},
    {"Title", &ProviderProfile::Title, FieldKind::Text},
    {"Album", &ProviderProfile::Album, FieldKind::Text},
    {"Cover", &ProviderProfile::Cover, FieldKind::Address},
});

std::string Quoted(const std::string& text) {
    constexpr size_t longest = 300;
    return "\"" + OneLine(text.substr(0, longest)) + "\"";
}

std::string RuleText(const RuleSource& from, const ProviderProfile& profile, const ReportedRule& reported) {
    const MediaFieldRule& rule = profile.*reported.Rule;
    const RuleReading reading = EvaluateRule(from, rule, reported.Kind);
    if (reading.Skipped) return "";
    std::string text = fmt::format("    {:<12}{}\n", reported.Key,
                                   OneLine(rule.Source + ";" + rule.Element + ";" + rule.Pattern));
    text += fmt::format("      {:<10}{}\n", "read", Quoted(reading.Raw));
    if (reading.Failed) {
        return text +
               "      failed    no such frame, a script error, an invalid pattern, or no answer; the\n"
               "                recorder leaves this and all further fields empty\n";
    }
    if (!rule.Pattern.empty())
        text += fmt::format("      {:<10}{}\n", "pattern", Quoted(reading.AfterPattern));
    return text + fmt::format("      {:<10}{}\n", "value", Quoted(reading.Value));
}

/// Where the profile reads from; nothing if it finds nothing.
RuleSource Find(const ProviderProfile& profile, SearchPlace& place, Windows* windows, ProfileMatch how) {
    RuleSource from;
    from.Desktop = windows;
    if (how == ProfileMatch::AnyAddress) {
        if (!profile.ReadsWindow()) from.Page = place.FindDocumentByPatterns("", "", profile.DocTitle, "*");
    } else if (profile.ReadsWindow()) {
        from.Window = place.FindWindowByPatterns(profile.WindowTitle, profile.WindowClass);
    } else {
        from.Page = place.FindDocumentByPatterns(profile.WindowClass, profile.WindowTitle, profile.DocTitle,
                                                 profile.DocUrl);
    }
    return from;
}

bool Found(const RuleSource& from) {
    return from.Page || from.Window != 0;
}

/// Why a profile finds nothing, by the first of its patterns that nothing is like.
std::string Reason(const ProviderProfile& profile, const SearchPlace& place, ProfileMatch how) {
    if (profile.ReadsWindow()) {
        if (how == ProfileMatch::AnyAddress) return "it is a profile of windows";
        return fmt::format("no window of class {} has a title like {}", Quoted(profile.WindowClass),
                           Quoted(profile.WindowTitle));
    }
    if (place.Pages().empty()) return "no page is open";
    const LikePattern address(how == ProfileMatch::AnyAddress ? "*" : profile.DocUrl);
    const LikePattern title(profile.DocTitle);
    std::vector<ShownPage> pages = place.Pages();
    std::erase_if(pages, [&](const ShownPage& each) { return !address.Matches(each.Page.Url); });
    if (pages.empty()) return "no page has an address like " + Quoted(profile.DocUrl);
    std::erase_if(pages, [&](const ShownPage& each) { return !title.Matches(each.Page.Title); });
    if (pages.empty()) return "no page with its address has a title like " + Quoted(profile.DocTitle);
    if (how == ProfileMatch::AsRecorded && !(profile.WindowClass + profile.WindowTitle).empty()) {
        return "its page is in another window, or does not answer";
    }
    return "its page does not answer";
}

std::string ProfileText(const ProviderProfile& profile, const RuleSource& from) {
    std::string text;
    if (from.Page) {
        text += fmt::format("reads the page {} at {}\n", Quoted(from.Page->Title().value_or("")),
                            OneLine(from.Page->Url()));
    } else {
        text += fmt::format("reads the window {}\n", Quoted(from.Desktop->Text(from.Window)));
    }
    for (const ReportedRule& rule : Rules) text += RuleText(from, profile, rule);
    return text;
}

std::string PlaceText(const SearchPlace& place, const ProfileTrial& trial) {
    std::string text = fmt::format("Pages: {}\n", place.Pages().size());
    for (const ShownPage& each : place.Pages()) {
        text += fmt::format("  {} at {}, window {} of class {}\n", Quoted(each.Page.Title),
                            OneLine(each.Page.Url), Quoted(each.WindowText), Quoted(each.WindowClass));
    }
    if (place.Pages().empty() && trial.How == ProfileMatch::AsRecorded) {
        text += fmt::format("  no browser answers at port {}; start one with --remote-debugging-port\n",
                            fmt::join(trial.Ports, ", "));
    }
    if (trial.How == ProfileMatch::AnyAddress) return text;
    text += fmt::format("Windows: {}\n", place.TopLevel().size());
    for (const WindowInfo& each : place.TopLevel()) {
        text += fmt::format("  {} of class {}\n", Quoted(each.Text), Quoted(each.Class));
    }
    return text;
}

}  // namespace

std::string ProfileReport(const ProfileTrial& trial, Documents* documents, Windows* windows) {
    if (documents) documents->BeginPoll();
    SearchPlace place(documents, windows);
    std::string text = PlaceText(place, trial);
    text += fmt::format("Profiles: {} in {}\n", trial.Profiles.size(), OneLine(trial.Path));
    if (trial.Profiles.empty()) text += "  the section of a profile has a name like [- My station]\n";
    const ProviderProfile* chosen = nullptr;
    for (const ProviderProfile& profile : trial.Profiles) {
        const RuleSource from = Find(profile, place, windows, trial.How);
        text += fmt::format("  {}: ", OneLine(profile.Name));
        if (!Found(from)) {
            text += "finds nothing, " + Reason(profile, place, trial.How) + "\n";
            continue;
        }
        text += ProfileText(profile, from);
        // Profiles of pages come before all those of windows.
        const bool better = chosen == nullptr || (chosen->ReadsWindow() && !profile.ReadsWindow());
        if (better) chosen = &profile;
    }
    if (trial.How == ProfileMatch::AnyAddress) return text;
    return text + "The recorder reads: " + (chosen ? OneLine(chosen->Name) : "none of them") + "\n";
}

}  // namespace Corvetape
