#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <fstream>
#include <optional>

#include "live/web_server.h"
#include "platform/linux/web/linux_http.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr size_t Limit = 1'000'000;

class LinuxHttpTest : public testing::Test {
 protected:
    LinuxHttpTest() {
        // A proxy of the surroundings does not know this machine's own addresses.
        for (const char* name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) unsetenv(name);
    }

    void Ask(LinuxHttp& http, const std::string& address, size_t limit = Limit) {
        answer.reset();
        answers = 0;
        http.Get(address, limit, [this](const HttpAnswer& given) {
            answer = given;
            ++answers;
        });
        EXPECT_EQ(answers, 0) << "answered from within Get: " << address;
    }

    /// The answer, once it has come.
    HttpAnswer Get(LinuxHttp& http, const std::string& address, size_t limit = Limit) {
        Ask(http, address, limit);
        EXPECT_TRUE(session.WaitFor([this] { return answer.has_value(); }, seconds(60))) << address;
        return answer.value_or(HttpAnswer{});
    }
    HttpAnswer Get(const std::string& address, size_t limit = Limit) { return Get(http_, address, limit); }

    void ExpectFailed(const std::string& address) {
        const HttpAnswer given = Get(address);
        EXPECT_TRUE(given.Failed) << address;
        EXPECT_EQ(given.Body, "") << address;
    }

    std::string Put(const std::string& name, const std::string& content) {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }

    TempFolder folder;
    LiveSession session;
    WebServer server;
    LinuxHttp http_{session.Loop};
    std::optional<HttpAnswer> answer;
    int answers = 0;
};

TEST_F(LinuxHttpTest, ABodyComesAsItIs) {
    const std::string picture("\xFF\xD8\0\xFF\r\n\r\n", 8);
    server.Body("/a.jpg", picture);
    const HttpAnswer given = Get(server.Address("/a.jpg"));
    EXPECT_FALSE(given.Failed);
    EXPECT_EQ(given.Body, picture);
    ASSERT_THAT(server.Requests, SizeIs(1));
    EXPECT_TRUE(server.Requests[0].starts_with("GET /a.jpg HTTP/1.1\r\n")) << server.Requests[0];
}

TEST_F(LinuxHttpTest, AnEmptyBodyIsAnAnswer) {
    server.Body("/none", "");
    EXPECT_FALSE(Get(server.Address("/none")).Failed);
}

TEST_F(LinuxHttpTest, ABodyPastTheLimitIsCutThere) {
    std::string body(3 * Limit, 'x');
    body[Limit - 1] = 'y';
    server.Body("/huge", body);
    const HttpAnswer given = Get(server.Address("/huge"));
    EXPECT_FALSE(given.Failed);
    EXPECT_EQ(given.Body, body.substr(0, Limit));
}

TEST_F(LinuxHttpTest, ABodyWithoutEndIsDroppedAtTheLimit) {
    server.On("/endless", [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        const auto more = [&socket] { socket.write(QByteArray(65536, 'x')); };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    });
    const HttpAnswer given = Get(server.Address("/endless"), 5000);
    EXPECT_FALSE(given.Failed);
    EXPECT_THAT(given.Body, SizeIs(5000));
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
}

TEST_F(LinuxHttpTest, AHeadWithoutEndIsDroppedAndTheNextRequestIsAnswered) {
    server.On("/endless", [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n");
        const auto more = [&socket] {
            QByteArray lines;
            for (int i = 0; i < 1000; ++i) lines += "X-Filler: " + QByteArray(50, 'x') + "\r\n";
            socket.write(lines);
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    });
    server.Body("/next", "next");
    ExpectFailed(server.Address("/endless"));
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30))) << "it is still read";
    EXPECT_EQ(Get(server.Address("/next")).Body, "next");
}

TEST_F(LinuxHttpTest, AHeadThatComesByDropsFailsAtTheTimeLimit) {
    LinuxHttp impatient(session.Loop, milliseconds(300));
    server.On("/drops", [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nX: ");
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&socket] {
            if (socket.state() == QTcpSocket::ConnectedState) socket.write("x");
        });
    });
    EXPECT_TRUE(Get(impatient, server.Address("/drops")).Failed);
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
}

TEST_F(LinuxHttpTest, ABodyInChunksIsPutTogether) {
    server.Say("/chunks",
               "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
               "3\r\none\r\n5;x=y\r\n two \r\n0\r\n\r\n");
    EXPECT_EQ(Get(server.Address("/chunks")).Body, "one two ");
}

TEST_F(LinuxHttpTest, WhatIsNotThereHasFailed) {
    ExpectFailed(server.Address("/missing"));
    server.Say("/broken", "HTTP/1.1 500 Oops\r\nContent-Length: 3\r\n\r\noho");
    ExpectFailed(server.Address("/broken"));
    server.Say("/locked",
               "HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n");
    ExpectFailed(server.Address("/locked"));
    server.Say("/nonsense", "nothing of the kind\r\n\r\n");
    ExpectFailed(server.Address("/nonsense"));
}

TEST_F(LinuxHttpTest, ABodyThatBreaksOffHasFailed) {
    server.Say("/short", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly this");
    ExpectFailed(server.Address("/short"));
}

TEST_F(LinuxHttpTest, AServerThatIsNotThereHasFailed) {
    ExpectFailed("http://127.0.0.1:1/");
}

TEST_F(LinuxHttpTest, RedirectsAreFollowedFiveTimes) {
    server.Body("/end", "here");
    for (int i = 1; i <= 6; ++i) {
        server.Redirect("/" + std::to_string(i), i == 1 ? "/end" : "/" + std::to_string(i - 1));
    }
    EXPECT_EQ(Get(server.Address("/5")).Body, "here");
    ExpectFailed(server.Address("/6"));
    server.Redirect("/round", "/round");
    ExpectFailed(server.Address("/round"));
}

TEST_F(LinuxHttpTest, ARedirectLeadsToTheWebOnly) {
    const std::string secret = Put("secret", "secret");
    const std::vector<std::string> targets = {"file://" + secret, "ftp://127.0.0.1/x", "data:,secret", ""};
    for (const std::string& target : targets) {
        server.Redirect("/away", target);
        ExpectFailed(server.Address("/away"));
    }
    // A path stays on the server.
    server.Redirect("/path", secret);
    ExpectFailed(server.Address("/path"));
    EXPECT_THAT(server.Requests.back(), HasSubstr("GET " + secret + " "));
}

TEST_F(LinuxHttpTest, ARequestThatTakesTooLongHasFailedAndIsDropped) {
    LinuxHttp impatient(session.Loop, milliseconds(200));
    server.On("/silent", [](QTcpSocket&) {});
    EXPECT_TRUE(Get(impatient, server.Address("/silent")).Failed);
    server.On("/slow", [](QTcpSocket& socket) { socket.write("HTTP/1.1 200 OK\r\n\r\nthe beginning"); });
    const HttpAnswer given = Get(impatient, server.Address("/slow"));
    EXPECT_TRUE(given.Failed);
    EXPECT_EQ(given.Body, "");
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
}

TEST_F(LinuxHttpTest, ARequestThatIsGivenUpIsNotAnswered) {
    server.On("/silent", [](QTcpSocket&) {});
    server.Body("/next", "next");
    Ask(http_, server.Address("/silent"));
    ASSERT_TRUE(session.WaitFor([this] { return server.Requests.size() == 1; }, seconds(30)));
    http_.Cancel();
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
    EXPECT_EQ(answers, 0);

    bool first = false;
    http_.Get(server.Address("/silent"), Limit, [&](const HttpAnswer&) { first = true; });
    ASSERT_TRUE(session.WaitFor([this] { return server.Requests.size() == 2; }, seconds(30)));
    EXPECT_EQ(Get(server.Address("/next")).Body, "next");
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
    EXPECT_FALSE(first);
    EXPECT_EQ(answers, 1);
}

TEST_F(LinuxHttpTest, TheEndOfTheObjectGivesItsRequestUp) {
    server.On("/silent", [](QTcpSocket&) {});
    {
        LinuxHttp web(session.Loop);
        Ask(web, server.Address("/silent"));
        ASSERT_TRUE(session.WaitFor([this] { return server.Requests.size() == 1; }, seconds(30)));
    }
    EXPECT_TRUE(session.WaitFor([this] { return server.Open == 0; }, seconds(30)));
    const std::string path = Put("file", "x");
    {
        LinuxHttp files(session.Loop);
        Ask(files, path);
    }
    EXPECT_EQ(Get(path).Body, "x");
    EXPECT_EQ(answers, 1);
}

TEST_F(LinuxHttpTest, AnAnswerMayAskAgain) {
    server.Body("/1", "one");
    server.Body("/2", "two");
    std::string both;
    http_.Get(server.Address("/1"), Limit, [&](const HttpAnswer& one) {
        both = one.Body;
        http_.Get(server.Address("/2"), Limit, [&](const HttpAnswer& two) { both += two.Body; });
    });
    EXPECT_TRUE(session.WaitFor([&] { return both == "onetwo"; }, seconds(30))) << both;
}

TEST_F(LinuxHttpTest, NeitherCookiesNorCredentialsAreSentAndNothingIsKept) {
    server.Body("/a", "a");
    EXPECT_EQ(Get(server.Address("/a")).Body, "a");
    EXPECT_EQ(Get(server.Address("/a")).Body, "a");
    std::string named = server.Address("/a");
    EXPECT_EQ(Get(named.insert(7, "user:password@")).Body, "a");
    ASSERT_THAT(server.Requests, SizeIs(3));
    for (const std::string& request : server.Requests) {
        EXPECT_THAT(request, Not(HasSubstr("Cookie")));
        EXPECT_THAT(request, Not(HasSubstr("Authorization")));
        EXPECT_THAT(request, Not(HasSubstr("gzip")));
    }
}

TEST_F(LinuxHttpTest, FilesAreReadByAddressAndByPath) {
    const std::string path = Put("a song's cover %41.jpg", "picture");
    EXPECT_EQ(Get(path).Body, "picture");
    EXPECT_EQ(Get("file://" + folder.Path() + "/a%20song's%20cover%20%2541.jpg").Body, "picture");
    EXPECT_EQ(Get("file://localhost" + folder.Path() + "/a%20song's%20cover%20%2541.jpg").Body, "picture");
    const std::string odd = Put("\xFF.jpg", "odd");
    EXPECT_EQ(Get("file://" + folder.Path() + "/%FF.jpg").Body, "odd") << "any bytes make a name";
}

TEST_F(LinuxHttpTest, OfAFileTheFirstBytesAreRead) {
    const std::string path = Put("long", "0123456789");
    EXPECT_EQ(Get(path, 4).Body, "0123");
    EXPECT_EQ(Get(path, 10).Body, "0123456789");
}

TEST_F(LinuxHttpTest, WhatIsNoRegularFileHasFailed) {
    ExpectFailed(folder / "missing");
    ExpectFailed(folder.Path());
    ExpectFailed("/dev/zero");
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    ExpectFailed(pipe);
    ExpectFailed("file://elsewhere" + Put("file", "x"));
    ExpectFailed("file://" + folder.Path() + "/file%00.jpg");
}

TEST_F(LinuxHttpTest, AddressesOfOtherThingsHaveFailed) {
    for (const char* address : {"", " ", "picture.jpg", "ftp://127.0.0.1/a", "data:image/png;base64,AAAA",
                                "http://", "http:///a", "qrc:/a", "gopher://127.0.0.1/", "http://[::1"}) {
        ExpectFailed(address);
    }
    ExpectFailed(std::string(100000, 'a'));
    ExpectFailed("http://127.0.0.1:1/\xFF\xFE");
}

}  // namespace
}  // namespace Corvetape
