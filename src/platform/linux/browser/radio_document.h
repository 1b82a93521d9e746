#pragma once

#include <QJsonValue>
#include <memory>

#include "platform/documents.h"
#include "platform/linux/browser/patience.h"
#include "platform/linux/browser/radio_link.h"

namespace Corvetape {

/// The document of the built-in browser's page, or of a frame in it that comes from the same server.
class RadioDocument : public Document {
 public:
    /// `place` is an expression for the document.
    RadioDocument(std::shared_ptr<RadioLink> link, std::shared_ptr<Patience> waiting,
                  QString place = "document");

    /// Asks for title, address and body. False if the document does not answer.
    bool Load();

    std::string Url() const override { return OwnUrl; }
    std::optional<std::string> Title() override { return OwnTitle; }
    std::shared_ptr<Document> Frame(const MemberKey& frame) override;
    bool HasBody() override { return OwnBody; }
    std::optional<ElementText> Element(const MemberKey& element) override;
    std::optional<std::string> Evaluate(const std::string& expression) override;
    bool Run(const std::string& expression) override;

 private:
    std::optional<QJsonValue> Value(const QString& script);

    const std::shared_ptr<RadioLink> Link;
    const std::shared_ptr<Patience> Waiting;
    const QString Place;
    std::optional<std::string> OwnTitle;
    std::string OwnUrl;
    bool OwnBody = false;
};

}  // namespace Corvetape
