#include "media/browser_rules.h"

#include "core/text/numbers.h"
#include "core/text/regex.h"
#include "core/text/text.h"
#include "media/text_decoding.h"

namespace Corvetape {

namespace {

// The numbers of a rule's Source.
constexpr double FirstFramePath = 0;
constexpr double DocumentTitle = -1;
constexpr double ScriptValue = -2;
constexpr double WindowText = -3;
constexpr double TopElement = -4;

MemberKey KeyOf(const std::string& text) {
    if (const auto number = WholeNumberFromText(text)) return *number;
    return text;
}

std::string ReadElement(Document& document, const std::string& element, FieldKind kind) {
    return kind == FieldKind::Address ? ReadElementSource(document, element)
                                      : ReadElementText(document, element);
}

/// Nothing if the read of all fields ends here.
std::optional<std::string> RawText(const RuleSource& from, const MediaFieldRule& rule, FieldKind kind) {
    const double source = LeadingNumber(rule.Source);
    if (source >= FirstFramePath) {
        const auto document = ResolveFramePath(from, rule.Source);
        if (!document) return std::nullopt;
        return ReadElement(*document, rule.Element, kind);
    }
    if (source == DocumentTitle) return from.Page ? from.Page->Title() : std::nullopt;
    if (source == ScriptValue) return EvaluateScript(from, rule.Element);
    if (source == WindowText) {
        if (from.Window == 0 || !from.Desktop) return "";
        return std::string(TrimBlanks(from.Desktop->Text(from.Window)));
    }
    if (source == TopElement) {
        if (!from.Page || !from.Page->HasBody()) return std::nullopt;
        return ReadElement(*from.Page, rule.Element, kind);
    }
    return "";
}

}  // namespace

RuleReading EvaluateRule(const RuleSource& from, const MediaFieldRule& rule, FieldKind kind) {
    RuleReading reading;
    if (rule.Source.empty()) {
        reading.Skipped = true;
        return reading;
    }
    const std::optional<std::string> raw = RawText(from, rule, kind);
    if (!raw) {
        reading.Failed = true;
        return reading;
    }
    reading.Raw = *raw;
    const std::optional<std::string> cut = rule.Pattern.empty() ? raw : ApplyPattern(rule.Pattern, *raw);
    if (!cut) {
        // The field keeps what was read before the pattern failed.
        reading.Failed = true;
        reading.Value = *raw;
        return reading;
    }
    reading.AfterPattern = *cut;
    reading.Value = kind == FieldKind::Address ? *cut : DecodeWebText(*cut);
    return reading;
}

std::shared_ptr<Document> ResolveFramePath(const RuleSource& from, const std::string& path) {
    std::shared_ptr<Document> document = from.Page;
    for (const std::string& step : Split(path, ',')) {
        if (!document) return nullptr;
        document = document->Frame(KeyOf(step));
    }
    return document && document->HasBody() ? document : nullptr;
}

std::optional<std::string> ApplyPattern(const std::string& pattern, const std::string& text) {
    const std::optional<Regex> regex = Regex::Compile(pattern);
    if (!regex) return std::nullopt;
    const std::optional<Regex::Match> match = regex->First(text);
    if (!match) return std::nullopt;
    for (const std::string& group : match->Groups) {
        if (!group.empty()) return std::string(TrimBlanks(group));
    }
    return "";
}

std::string ReadElementText(Document& document, const std::string& element) {
    const std::optional<ElementText> found = document.Element(KeyOf(element));
    if (!found) return "";
    const bool titled = found->Title && !found->Title->empty();
    return std::string(TrimBlanks(titled ? *found->Title : found->InnerText.value_or("")));
}

std::string ReadElementSource(Document& document, const std::string& element) {
    const std::optional<ElementText> found = document.Element(KeyOf(element));
    return found ? std::string(TrimBlanks(found->Src.value_or(""))) : "";
}

std::optional<std::string> EvaluateScript(const RuleSource& from, const std::string& expression) {
    const std::string_view text = TrimBlanks(expression);
    if (text.empty()) return "";
    if (from.Page) return from.Page->Evaluate(expression);
    const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                        (text.front() == '"' || text.front() == '\'') &&
                        text.find_first_of("\\\"'", 1) == text.size() - 1;
    if (quoted) return std::string(text.substr(1, text.size() - 2));
    if (NumberFromText(text)) return std::string(text);
    return std::nullopt;
}

}  // namespace Corvetape
