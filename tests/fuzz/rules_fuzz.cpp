// Rules of profiles, evaluated on a page with frames: where a text stands, its pattern, its decoding.
// Fields: the rule ("Source;Element;Pattern"), title of the page, name of a frame, name of an element, its
// title, its address, its text.
#include <memory>
#include <string>

#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "media/browser_rules.h"
#include "media/text_decoding.h"
#include "sim/sim_documents.h"
#include "sim/sim_windows.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t MostBytes = 4096;  // a poll hands on texts of a limited length too

struct Page {
    SimDocuments Documents;
    SimWindows Windows;
    RuleSource Source;
};

void MakePage(Page& page, Fuzz::Input& input, const MediaFieldRule& rule) {
    SimPage& made = page.Documents.Add("http://radio/", std::string(input.Field().substr(0, MostBytes)));
    auto frame = std::make_shared<SimDocument>();
    const std::string frameName(input.Field());
    SimElement element;
    element.Name = input.Field();
    element.Text.Title = input.Field();
    element.Text.Src = input.Field();
    element.Text.InnerText = input.Rest().substr(0, MostBytes);
    frame->Title = "frame";
    frame->All = {element};
    made.Top->All = {element, element};
    made.Top->Frames = {{frameName, frame}, {"empty", std::make_shared<SimDocument>()}};
    made.Top->Values[rule.Element] = *element.Text.InnerText;
    page.Source.Page = page.Documents.Open(page.Documents.Pages().front());
    page.Source.Window = page.Windows.Add(made.Top->Title, "IEFrame");
    page.Source.Desktop = &page.Windows;
}

void CheckReading(const RuleReading& reading, const MediaFieldRule& rule, FieldKind kind) {
    Require(reading.Skipped == rule.Source.empty(), "a rule without a source is none");
    Require(!reading.Skipped || (reading.Raw.empty() && reading.Value.empty()), "no rule, no value");
    Require(!reading.Failed || reading.Value == reading.Raw, "a failed pattern leaves what was read");
    Require(!Fuzz::IsUtf8(reading.Raw) || Fuzz::IsUtf8(reading.Value), "a value is UTF-8 if its text is");
    Require(reading.Value.size() <= reading.Raw.size(), "a value is no longer than its text");
    Require(reading.Raw.find(reading.AfterPattern) != std::string::npos, "a pattern cuts out of the text");
    if (reading.Failed) return;
    Require(reading.Value ==
                (kind == FieldKind::Address ? reading.AfterPattern : DecodeWebText(reading.AfterPattern)),
            "texts are decoded, addresses are not");
    Require(!rule.Pattern.empty() || reading.AfterPattern == reading.Raw, "without a pattern all is taken");
    Require(rule.Pattern.empty() || TrimBlanks(reading.AfterPattern) == reading.AfterPattern,
            "what a pattern finds has no blanks at its ends");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string_view text = input.Field();
    const MediaFieldRule rule = RuleFromText(text);
    const std::string joined = rule.Source + ";" + rule.Element + ";" + rule.Pattern + ";";
    Require((std::string(text) + ";;;").starts_with(joined), "a rule is the beginning of its text");
    Page page;
    MakePage(page, input, rule);
    const RuleSource window = {nullptr, page.Source.Window, &page.Windows};
    for (const FieldKind kind : {FieldKind::Text, FieldKind::Address}) {
        CheckReading(EvaluateRule(page.Source, rule, kind), rule, kind);
        CheckReading(EvaluateRule(window, rule, kind), rule, kind);
        CheckReading(EvaluateRule({}, rule, kind), rule, kind);
    }
}

}  // namespace Corvetape
