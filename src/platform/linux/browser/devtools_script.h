#pragma once

#include <QString>

#include "platform/documents.h"

namespace Corvetape {

/// Scripts that are run in pages. `document` is an expression for the document that is meant. Texts in their
/// answers are cut at a fixed length. They are values, never texts that a page would have to evaluate by
/// itself, since the content policy of many pages forbids that.

/// Gives { title, url, body }.
QString DocumentScript(const QString& document);

/// Gives { title, innerText, src } with null for what is missing; null if there is no such element.
QString ElementScript(const QString& document, const MemberKey& element);

/// Gives { index, open, url } of a frame, `open` if its document can be reached from here; null if there is
/// none.
QString FrameScript(const QString& document, const MemberKey& frame);

/// Gives the element that holds a frame.
QString FrameOwnerScript(const QString& document, int index);

/// Gives the value of a user's expression as text, with the document as Doc.
QString ExpressionScript(const QString& expression);

/// An expression for the document of a frame that is open.
QString FrameDocument(const QString& document, int index);

}  // namespace Corvetape
