#include "platform/linux/browser/radio_document.h"

#include <QJsonObject>
#include <utility>

#include "platform/browser_protocol.h"
#include "platform/linux/browser/devtools_script.h"

namespace Corvetape {

namespace {

std::optional<std::string> TextOf(const QJsonValue& value) {
    if (!value.isString()) return std::nullopt;
    return value.toString().toStdString();
}

}  // namespace

RadioDocument::RadioDocument(std::shared_ptr<RadioLink> link, std::shared_ptr<Patience> waiting,
                             QString place)
    : Link(std::move(link)), Waiting(std::move(waiting)), Place(std::move(place)) {}

std::optional<QJsonValue> RadioDocument::Value(const QString& script) {
    const auto answer = Waiting->Await([&] { return Link->Evaluate(script); });
    if (!answer) return std::nullopt;
    return answer->object()[BrowserProtocol::Value];
}

bool RadioDocument::Load() {
    const auto value = Value(DocumentScript(Place));
    if (!value || !value->isObject()) return false;
    const QJsonObject object = value->toObject();
    OwnTitle = TextOf(object["title"]);
    OwnUrl = object["url"].toString().toStdString();
    OwnBody = object["body"].toBool();
    return true;
}

std::shared_ptr<Document> RadioDocument::Frame(const MemberKey& frame) {
    const auto found = Value(FrameScript(Place, frame));
    if (!found || !found->toObject()["open"].toBool()) return nullptr;
    auto document = std::make_shared<RadioDocument>(Link, Waiting,
                                                    FrameDocument(Place, found->toObject()["index"].toInt()));
    return document->Load() ? document : nullptr;
}

std::optional<ElementText> RadioDocument::Element(const MemberKey& element) {
    const auto value = Value(ElementScript(Place, element));
    if (!value || !value->isObject()) return std::nullopt;
    const QJsonObject object = value->toObject();
    return ElementText{TextOf(object["title"]), TextOf(object["innerText"]), TextOf(object["src"])};
}

std::optional<std::string> RadioDocument::Evaluate(const std::string& expression) {
    const auto value = Value(ExpressionScript(QString::fromStdString(expression)));
    return value ? TextOf(*value) : std::nullopt;
}

bool RadioDocument::Run(const std::string& expression) {
    return Evaluate(expression).has_value();  // here pages may play without an act of the user
}

}  // namespace Corvetape
