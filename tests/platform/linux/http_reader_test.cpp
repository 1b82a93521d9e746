#include "platform/linux/web/http_reader.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

HttpReader Read(std::string_view bytes, size_t limit = 100) {
    HttpReader whole(limit);
    whole.Take(bytes);
    HttpReader drops(limit);
    for (const char& byte : bytes) drops.Take({&byte, 1});
    EXPECT_EQ(whole.IsOver(), drops.IsOver()) << bytes;
    EXPECT_EQ(whole.HasFailed(), drops.HasFailed()) << bytes;
    EXPECT_EQ(whole.Body(), drops.Body()) << bytes;
    return whole;
}

TEST(HttpReader, ABodyOfAStatedSizeEndsThere) {
    const HttpReader answer = Read("HTTP/1.1 200 OK\r\nContent-LENGTH:  3 \r\n\r\nonetwo");
    EXPECT_TRUE(answer.IsOver());
    EXPECT_FALSE(answer.HasFailed());
    EXPECT_EQ(answer.Status(), 200);
    EXPECT_EQ(answer.Body(), "one");
}

TEST(HttpReader, ABodyWithoutASizeEndsWithTheConnection) {
    HttpReader answer = Read("HTTP/1.0 200 OK\r\n\r\none");
    EXPECT_FALSE(answer.IsOver());
    answer.Close();
    EXPECT_TRUE(answer.IsOver());
    EXPECT_FALSE(answer.HasFailed());
}

TEST(HttpReader, WhatBreaksOffHasFailed) {
    for (const char* bytes : {"", "HTTP/1.1 200 OK\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\none",
                              "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\none\r\n"}) {
        HttpReader answer = Read(bytes);
        EXPECT_FALSE(answer.IsOver()) << bytes;
        answer.Close();
        EXPECT_TRUE(answer.HasFailed()) << bytes;
    }
}

TEST(HttpReader, ChunksArePutTogetherAndTheLimitHoldsForThem) {
    const std::string bytes =
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n3\r\none\r\nA ; a=b\r\n0123456789\r\n0\r\n\r\n";
    EXPECT_EQ(Read(bytes).Body(), "one0123456789");
    EXPECT_TRUE(Read(bytes).IsOver());
    const HttpReader cut = Read(bytes, 5);
    EXPECT_EQ(cut.Body(), "one01");
    EXPECT_TRUE(cut.IsOver());
    EXPECT_FALSE(cut.HasFailed());
}

TEST(HttpReader, ChunksThatAreNoneHaveFailed) {
    const std::string head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    EXPECT_TRUE(Read(head + "x\r\n").HasFailed());
    EXPECT_TRUE(Read(head + "3\r\noneXX3\r\n").HasFailed());
    EXPECT_TRUE(Read(head + std::string(1000, '0')).HasFailed());
    EXPECT_TRUE(Read(head + "FFFFFFFFFFFFFFFFF\r\n").HasFailed());
}

TEST(HttpReader, InterimAnswersArePassedOver) {
    const HttpReader answer =
        Read("HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\nHTTP/1.1 302 Found\r\nLocation: /x\r\n\r\n");
    EXPECT_EQ(answer.Status(), 302);
    EXPECT_EQ(answer.Field("location"), "/x");
    EXPECT_EQ(answer.Field("link"), "");
}

TEST(HttpReader, TheLimitOfAHeadHoldsForAllOfThem) {
    const std::string line = "X: " + std::string(995, 'x') + "\r\n";
    std::string head = "HTTP/1.1 200 OK\r\n";
    while (head.size() + line.size() < MostHeadBytes) head += line;
    HttpReader allowed(100);
    allowed.Take(head + "\r\n");
    EXPECT_EQ(allowed.Status(), 200);
    HttpReader excessive(100);
    excessive.Take(head + line + line);
    EXPECT_TRUE(excessive.HasFailed());

    HttpReader interim(100);
    for (int i = 0; i < 100 && !interim.IsOver(); ++i) interim.Take("HTTP/1.1 100 Go\r\n" + line + "\r\n");
    EXPECT_TRUE(interim.HasFailed());
}

TEST(HttpReader, WhatIsNoAnswerHasFailed) {
    EXPECT_TRUE(Read("nothing of the kind\r\n\r\n").HasFailed());
    EXPECT_TRUE(Read("HTTP/1.1 abc\r\n\r\n").HasFailed());
    EXPECT_TRUE(Read("HTTP/1.1 200 OK\r\nContent-Length: -3\r\n\r\n").HasFailed());
    EXPECT_TRUE(Read("\r\n\r\n").HasFailed());
}

}  // namespace
}  // namespace Corvetape
