#include "platform/linux/browser/devtools_documents.h"

#include <QJsonArray>
#include <algorithm>
#include <set>
#include <utility>

#include "platform/linux/browser/devtools_script.h"
#include "platform/linux/browser/devtools_thread.h"
#include "platform/linux/browser/patience.h"

namespace Corvetape {

namespace {

constexpr size_t MostPages = 500;         // of one browser
constexpr int LongestScriptMs = 150;      // a user's expression that runs longer is ended
constexpr size_t LongestIdentifier = 64;  // of a page

/// What is known of one browser.
struct Browser {
    uint16_t Port = 0;
    std::string Product;
    Patience Waiting;
    std::set<QString> Frames;  ///< those with a process of their own, by their identifiers
};

/// What is known of one page.
struct Page {
    uint16_t Port = 0;
    QString Target;
    Patience Waiting;
};

bool IsIdentifier(const QString& text) {
    const auto allowed = [](QChar each) {
        return (each >= u'0' && each <= u'9') || (each >= u'A' && each <= u'Z') ||
               (each >= u'a' && each <= u'z') || each == u'-';
    };
    return !text.isEmpty() && static_cast<size_t>(text.size()) <= LongestIdentifier &&
           std::ranges::all_of(text, allowed);
}

/// Browsers list titles as they would stand in a page.
std::string PlainTitle(QString title) {
    title.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"").replace("&#39;", "'");
    return title.replace("&amp;", "&").toStdString();
}

std::optional<std::string> TextOf(const QJsonValue& value) {
    if (!value.isString()) return std::nullopt;
    return value.toString().toStdString();
}

/// Where a document can be asked: a page or frame with a process of its own, and in it the world of scripts
/// and the expression that stand for the document.
struct Place {
    QString Target;
    std::optional<int> World;  ///< none: that of the page's own scripts
    QString Expression = "document";
};

class DevToolsDocument : public Document {
 public:
    DevToolsDocument(std::shared_ptr<DevToolsThread> thread, std::shared_ptr<Page> page,
                     std::shared_ptr<Browser> browser, Place place)
        : Thread(std::move(thread)),
          Owner(std::move(page)),
          Server(std::move(browser)),
          Where(std::move(place)) {}

    /// Asks for title, address and body. False if the document does not answer.
    bool Load() {
        const auto value = Value(DocumentScript(Where.Expression));
        if (!value || !value->isObject()) return false;
        const QJsonObject object = value->toObject();
        OwnTitle = TextOf(object["title"]);
        OwnUrl = object["url"].toString().toStdString();
        OwnBody = object["body"].toBool();
        return true;
    }

    std::string Url() const override { return OwnUrl; }
    std::optional<std::string> Title() override { return OwnTitle; }
    bool HasBody() override { return OwnBody; }

    std::shared_ptr<Document> Frame(const MemberKey& frame) override {
        const auto found = Value(FrameScript(Where.Expression, frame));
        if (!found || !found->isObject()) return nullptr;
        const int index = found->toObject()["index"].toInt();
        std::optional<Place> place;
        if (found->toObject()["open"].toBool()) {
            place = Place{Where.Target, Where.World, FrameDocument(Where.Expression, index)};
        } else {
            place = ForeignFrame(index);
        }
        if (!place) return nullptr;
        auto document = std::make_shared<DevToolsDocument>(Thread, Owner, Server, std::move(*place));
        return document->Load() ? document : nullptr;
    }

    std::optional<ElementText> Element(const MemberKey& element) override {
        const auto value = Value(ElementScript(Where.Expression, element));
        if (!value || !value->isObject()) return std::nullopt;
        const QJsonObject object = value->toObject();
        return ElementText{TextOf(object["title"]), TextOf(object["innerText"]), TextOf(object["src"])};
    }

    std::optional<std::string> Evaluate(const std::string& expression) override {
        const auto value = Value(ExpressionScript(QString::fromStdString(expression)));
        return value ? TextOf(*value) : std::nullopt;
    }

    bool Run(const std::string& expression) override {
        return Value(ExpressionScript(QString::fromStdString(expression)), true).has_value();
    }

 private:
    /// The `result` of an answer; nothing if it is an error.
    std::optional<QJsonObject> Ask(const QString& method, const QJsonObject& parameters) {
        const auto answer =
            Owner->Waiting.Await([&] { return Thread->Ask(Owner->Port, Where.Target, method, parameters); });
        if (!answer || !answer->object()["result"].isObject()) return std::nullopt;
        return answer->object()["result"].toObject();
    }

    std::optional<QJsonObject> RunScript(const QString& script, bool byValue, bool asUser) {
        QJsonObject parameters{{"expression", script},
                               {"returnByValue", byValue},
                               {"userGesture", asUser},
                               {"silent", true},
                               {"timeout", LongestScriptMs}};
        if (Where.World) parameters["contextId"] = *Where.World;
        const auto result = Ask("Runtime.evaluate", parameters);
        if (!result || result->contains("exceptionDetails")) return std::nullopt;
        return (*result)["result"].toObject();
    }

    std::optional<QJsonValue> Value(const QString& script, bool asUser = false) {
        const auto result = RunScript(script, true, asUser);
        if (!result) return std::nullopt;
        return (*result)["value"];
    }

    /// A frame whose document the page itself cannot reach.
    std::optional<Place> ForeignFrame(int index) {
        const auto owner = RunScript(FrameOwnerScript(Where.Expression, index), false, false);
        if (!owner) return std::nullopt;
        const auto node = Ask("DOM.describeNode", {{"objectId", (*owner)["objectId"]}});
        if (!node) return std::nullopt;
        const QString frame = (*node)["node"].toObject()["frameId"].toString();
        if (Server->Frames.contains(frame)) return Place{frame, std::nullopt};
        const auto world = Ask("Page.createIsolatedWorld", {{"frameId", frame}, {"worldName", "corvetape"}});
        if (!world) return std::nullopt;
        return Place{Where.Target, (*world)["executionContextId"].toInt()};
    }

    std::shared_ptr<DevToolsThread> Thread;
    std::shared_ptr<Page> Owner;
    std::shared_ptr<Browser> Server;
    Place Where;
    std::optional<std::string> OwnTitle;
    std::string OwnUrl;
    bool OwnBody = false;
};

}  // namespace

struct DevToolsDocuments::Core {
    std::shared_ptr<DevToolsThread> Thread = std::make_shared<DevToolsThread>();
    std::vector<std::shared_ptr<Browser>> Browsers;
    std::map<std::string, std::shared_ptr<Page>> Known;       ///< pages by port and identifier
    std::map<std::string, std::shared_ptr<Document>> Opened;  ///< in this poll

    std::string KeyOf(uint16_t port, const QString& target) const {
        return std::to_string(port) + "/" + target.toStdString();
    }

    void AskProduct(Browser& browser) {
        if (!browser.Product.empty()) return;
        const auto version =
            browser.Waiting.Await([&] { return Thread->Get(browser.Port, "/json/version"); });
        if (version) {
            browser.Product = version->object()["Browser"].toString().section('/', 0, 0).toStdString();
        }
    }

    /// Adds the pages of one browser.
    void List(Browser& browser, std::vector<PageInfo>& pages) {
        const auto list = browser.Waiting.Await([&] { return Thread->Get(browser.Port, "/json/list"); });
        if (!list || !list->isArray()) return;
        AskProduct(browser);
        std::set<QString> present;
        browser.Frames.clear();
        for (const QJsonValue each : list->array()) {
            const QString id = each["id"].toString();
            if (!IsIdentifier(id) || present.size() >= MostPages) continue;
            present.insert(id);
            if (each["type"].toString() == "iframe") browser.Frames.insert(id);
            if (each["type"].toString() != "page") continue;
            auto& page = Known[KeyOf(browser.Port, id)];
            if (!page) page = std::make_shared<Page>(Page{browser.Port, id, {}});
            pages.push_back({KeyOf(browser.Port, id), each["url"].toString().toStdString(),
                             PlainTitle(each["title"].toString()), browser.Product});
        }
        Thread->KeepOnly(browser.Port, present);
        std::erase_if(Known, [&](const auto& each) {
            return each.second->Port == browser.Port && !present.contains(each.second->Target);
        });
    }
};

DevToolsDocuments::DevToolsDocuments(std::vector<uint16_t> ports) : Inner(std::make_unique<Core>()) {
    UsePorts(ports);
}

DevToolsDocuments::~DevToolsDocuments() = default;

void DevToolsDocuments::UsePorts(std::span<const uint16_t> ports) {
    std::vector<std::shared_ptr<Browser>> browsers;
    for (uint16_t port : ports) {
        const auto known = std::ranges::find(Inner->Browsers, port, &Browser::Port);
        browsers.push_back(
            known != Inner->Browsers.end() ? *known : std::make_shared<Browser>(Browser{port, {}, {}, {}}));
    }
    Inner->Browsers = std::move(browsers);
}

void DevToolsDocuments::BeginPoll() {
    for (const auto& browser : Inner->Browsers) browser->Waiting.BeginPoll();
    for (const auto& [key, page] : Inner->Known) page->Waiting.BeginPoll();
    Inner->Opened.clear();
}

std::vector<PageInfo> DevToolsDocuments::Pages() {
    std::vector<PageInfo> pages;
    for (const auto& browser : Inner->Browsers) Inner->List(*browser, pages);
    return pages;
}

std::shared_ptr<Document> DevToolsDocuments::Open(const PageInfo& info) {
    const auto found = Inner->Known.find(info.Id);
    if (found == Inner->Known.end()) return nullptr;
    const std::shared_ptr<Page> page = found->second;
    if (const auto open = Inner->Opened.find(info.Id); open != Inner->Opened.end()) return open->second;
    const auto browser = std::ranges::find(Inner->Browsers, page->Port, &Browser::Port);
    if (browser == Inner->Browsers.end()) return nullptr;
    auto document =
        std::make_shared<DevToolsDocument>(Inner->Thread, page, *browser, Place{page->Target, {}});
    if (!document->Load()) return nullptr;
    Inner->Opened[info.Id] = document;
    return document;
}

}  // namespace Corvetape
