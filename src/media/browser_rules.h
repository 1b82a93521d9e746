#pragma once

#include <memory>
#include <optional>
#include <string>

#include "media/browser_profile.h"
#include "platform/documents.h"
#include "platform/windows.h"

namespace Corvetape {

/// What the rules of a profile read from: the document that was found, or else the window.
struct RuleSource {
    std::shared_ptr<Document> Page;  ///< none for a profile of windows
    uint64_t Window = 0;             ///< 0 for a profile of documents
    Windows* Desktop = nullptr;      ///< may be missing; outlives it
};

enum class FieldKind { Text, Address };

/// What a rule yields, step by step.
struct RuleReading {
    bool Skipped = false;  ///< there is no rule: the field stays empty
    bool Failed = false;   ///< the read ends here; the fields after this one stay empty
    std::string Raw;
    std::string AfterPattern;
    std::string Value;  ///< after decoding; an address is not decoded
};

/// Evaluates a rule for one field. Its Source says where the text is, by the number that it begins with:
///
/// | number | text |
/// |---|---|
/// | 0 and above | an element in the frame that the path `Source` leads to |
/// | -1 | the title of the document |
/// | -2 | the value of the script expression `Element` |
/// | -3 | the title of the window |
/// | -4 | an element of the document itself, outside its frames |
/// | others | nothing |
///
/// It fails where there is no document to read from, no such frame, no valid pattern, or an error in the
/// script. A missing element gives the empty text.
RuleReading EvaluateRule(const RuleSource& from, const MediaFieldRule& rule, FieldKind kind);

/// The document that a path of frames leads to, step by step by ",": a number is the index of a frame, from
/// 0, anything else its name. Nothing if a step fails or the last document has no body.
std::shared_ptr<Document> ResolveFramePath(const RuleSource& from, const std::string& path);

/// The first capture group of the first match that is not empty, without blanks at its ends. Empty without a
/// match or a group; nothing if the pattern is invalid or takes too long.
std::optional<std::string> ApplyPattern(const std::string& pattern, const std::string& text);

/// The element's title, or its text if that is empty or missing, without blanks at the ends. Empty if there
/// is no such element.
std::string ReadElementText(Document& document, const std::string& element);

/// The address that the element shows, without blanks at the ends. Empty if there is none.
std::string ReadElementSource(Document& document, const std::string& element);

/// The value of a script expression; without a document only a quoted text or a number has one.
std::optional<std::string> EvaluateScript(const RuleSource& from, const std::string& expression);

}  // namespace Corvetape
