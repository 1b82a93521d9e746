#include "platform/linux/browser/radio_browser.h"

#include <sys/socket.h>

#include <array>
#include <utility>

#include "platform/browser_protocol.h"
#include "platform/linux/browser/radio_document.h"
#include "platform/linux/files/descriptor.h"

namespace Corvetape {

namespace {

constexpr const char* Product = "corvetape-browser";
constexpr const char* PageId = "radio";

QJsonObject Line(const char* kind) {
    return {{BrowserProtocol::Kind, kind}};
}

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

}  // namespace

struct RadioBrowser::Core : std::enable_shared_from_this<RadioBrowser::Core> {
    Core(EventLoop& loop, std::string program) : Loop(loop), Program(std::move(program)) {}

    /// Hears one browser process and carries what it says over to the loop.
    class Hearing : public RadioLinkNews {
     public:
        Hearing(EventLoop& loop, std::weak_ptr<Core> owner, int run)
            : Loop(loop), Owner(std::move(owner)), Run(run) {}

        void Said(const QJsonObject& message) override {
            Loop.Post([owner = Owner, run = Run, message] {
                const auto core = owner.lock();
                if (core && core->Run == run) core->Take(message);
            });
        }
        void Ended() override {
            Loop.Post([owner = Owner, run = Run] {
                const auto core = owner.lock();
                if (core && core->Run == run) core->End();
            });
        }

     private:
        EventLoop& Loop;
        const std::weak_ptr<Core> Owner;
        const int Run;
    };

    bool Start(const WebViewTerms& terms) {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
            return false;
        const Descriptor theirs(ends[1]);
        ChildStart start{Program, {Program, BrowserProtocol::SocketArgument, std::to_string(ends[1])}, {}};
        if (terms.WithoutSandbox) start.Arguments.emplace_back(BrowserProtocol::WithoutSandboxArgument);
        start.Keep = ends[1];
        const StartedChild child = StartChild(start);
        if (child.Pid < 0) {
            const Descriptor ours(ends[0]);
            return false;
        }
        Forget();
        Link = std::make_shared<RadioLink>(ends[0], child.Pid,
                                           std::make_shared<Hearing>(Loop, weak_from_this(), ++Run));
        QJsonObject captions = Line(BrowserProtocol::Captions);
        captions[BrowserProtocol::Back] = Text(terms.Captions.Back);
        captions[BrowserProtocol::Forward] = Text(terms.Captions.Forward);
        captions[BrowserProtocol::Reload] = Text(terms.Captions.Reload);
        captions[BrowserProtocol::Stop] = Text(terms.Captions.Stop);
        captions[BrowserProtocol::CrashedCaption] = Text(terms.Captions.Crashed);
        Link->Send(captions);
        return true;
    }

    void Take(const QJsonObject& message) {
        const QString kind = message[BrowserProtocol::Kind].toString();
        if (kind == BrowserProtocol::Page) {
            Present = {PageId, message[BrowserProtocol::Url].toString().toStdString(),
                       message[BrowserProtocol::Title].toString().toStdString(), Product};
        } else if (kind == BrowserProtocol::Refused || kind == BrowserProtocol::Closed) {
            Expected = true;
            if (kind == BrowserProtocol::Refused && News) News->Failed(WebViewFailure::NoSandbox);
        } else if (kind == BrowserProtocol::Crashed) {
            Present = {};
            if (News) News->Failed(WebViewFailure::PageCrashed);
        } else if (News) {
            Notify(kind, message);
        }
    }

    void Notify(const QString& kind, const QJsonObject& message) {
        if (kind == BrowserProtocol::Status) {
            News->StatusText(message[BrowserProtocol::Text].toString().toStdString());
        } else if (kind == BrowserProtocol::Progress) {
            News->Progress(message[BrowserProtocol::Value].toInteger(),
                           message[BrowserProtocol::Maximum].toInteger());
        } else if (kind == BrowserProtocol::Loaded) {
            News->LoadEnded();
        }
    }

    void End() {
        const bool expected = Expected;
        Forget();
        if (!News) return;
        if (expected) {
            News->LoadEnded();
        } else {
            News->Failed(WebViewFailure::Ended);
        }
    }

    void Forget() {
        Link.reset();
        Opened.reset();
        Present = {};
        Expected = false;
    }

    EventLoop& Loop;
    const std::string Program;
    WebViewNews* News = nullptr;
    int Run = 0;  ///< number of the process, as an earlier one may still have something to say
    std::shared_ptr<RadioLink> Link;
    bool Expected = false;  ///< it has said why it ends
    PageInfo Present;
    std::shared_ptr<Patience> Waiting = std::make_shared<Patience>();
    std::shared_ptr<Document> Opened;  ///< in this poll
};

RadioBrowser::RadioBrowser(EventLoop& loop, std::string program)
    : Inner(std::make_shared<Core>(loop, std::move(program))) {}

RadioBrowser::~RadioBrowser() {
    Inner->News = nullptr;
    Inner->Forget();
}

void RadioBrowser::Follow(WebViewNews* news) {
    Inner->News = news;
}

void RadioBrowser::Open(const std::string& address, const WebViewTerms& terms) {
    const bool gone = !Inner->Link || Inner->Expected;
    if (gone && !Inner->Start(terms)) {
        if (Inner->News) Inner->News->Failed(WebViewFailure::NotThere);
        return;
    }
    QJsonObject navigate = Line(BrowserProtocol::Navigate);
    navigate[BrowserProtocol::Url] = Text(address);
    Inner->Link->Send(navigate);
}

void RadioBrowser::BeginPoll() {
    Inner->Waiting->BeginPoll();
    Inner->Opened.reset();
}

std::vector<PageInfo> RadioBrowser::Pages() {
    if (!Inner->Link || Inner->Present.Url.empty()) return {};
    return {Inner->Present};
}

std::shared_ptr<Document> RadioBrowser::Open(const PageInfo& page) {
    if (!Inner->Link || page.Id != PageId || Inner->Present.Url.empty()) return nullptr;
    if (Inner->Opened) return Inner->Opened;
    const auto document = std::make_shared<RadioDocument>(Inner->Link, Inner->Waiting);
    if (!document->Load()) return nullptr;
    Inner->Opened = document;
    return document;
}

}  // namespace Corvetape
