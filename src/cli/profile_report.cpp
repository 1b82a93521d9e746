#include "cli/profile_report.h"

#include <fmt/format.h>

#include <array>

#include "media/browser_rules.h"
#include "media/window_search.h"
#include "platform/linux/one_line.h"

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

std::string ProfileText(const ProviderProfile& profile, const RuleSource& from) {
    std::string text = fmt::format("  {}: ", OneLine(profile.Name));
    if (!from.Page && from.Window == 0) return text + "finds nothing\n";
    if (from.Page) {
        text += fmt::format("reads the page {} at {}\n", Quoted(from.Page->Title().value_or("")),
                            OneLine(from.Page->Url()));
    } else {
        text += fmt::format("reads the window {}\n", Quoted(from.Desktop->Text(from.Window)));
    }
    for (const ReportedRule& rule : Rules) text += RuleText(from, profile, rule);
    return text;
}

}  // namespace

std::string ProfileReport(const std::vector<ProviderProfile>& profiles, Documents* documents,
                          Windows* windows, ProfileMatch how) {
    if (documents) documents->BeginPoll();
    SearchPlace place(documents, windows);
    std::string text = fmt::format("Pages: {}\n", place.Pages().size());
    for (const ShownPage& each : place.Pages()) {
        text += fmt::format("  {} at {}, window {} of class {}\n", Quoted(each.Page.Title),
                            OneLine(each.Page.Url), Quoted(each.WindowText), Quoted(each.WindowClass));
    }
    text += fmt::format("Windows: {}\n", place.TopLevel().size());
    for (const WindowInfo& each : place.TopLevel()) {
        text += fmt::format("  {} of class {}\n", Quoted(each.Text), Quoted(each.Class));
    }
    text += fmt::format("Profiles: {}\n", profiles.size());
    for (const ProviderProfile& profile : profiles) {
        text += ProfileText(profile, Find(profile, place, windows, how));
    }
    return text;
}

}  // namespace Corvetape
