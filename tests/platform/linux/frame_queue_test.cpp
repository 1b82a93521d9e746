#include "platform/linux/sound/frame_queue.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/linux/sound/capture_road.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

TEST(FrameQueue, GivesWhatWasPutInAcrossItsEnd) {
    const std::vector<Frame> noise = Noise(1000, 1);
    FrameQueue queue(64);
    std::vector<Frame> out;
    for (size_t at = 0; at + 50 <= noise.size(); at += 50) {
        EXPECT_EQ(queue.Push(std::span(noise).subspan(at, 50)), 50u);
        std::vector<Frame> part(50);
        queue.Pop(part);
        out.insert(out.end(), part.begin(), part.end());
    }
    EXPECT_EQ(Comparison(noise, out), "equal");
    EXPECT_EQ(queue.Written(), 1000u);
}

TEST(FrameQueue, TakesOnlyWhatThereIsRoomFor) {
    const std::vector<Frame> noise = Noise(100, 1);
    FrameQueue queue(64);
    EXPECT_EQ(queue.Push(noise), 64u);
    EXPECT_EQ(queue.Push(noise), 0u);
    std::vector<Frame> part(10);
    queue.Pop(part);
    EXPECT_EQ(queue.Push(noise), 10u);
    EXPECT_EQ(queue.Available(), 64u);
}

TEST(FrameQueue, ClearForgetsEverything) {
    FrameQueue queue(64);
    queue.Push(Noise(40, 1));
    queue.Clear();
    EXPECT_EQ(queue.Available(), 0u);
    EXPECT_EQ(queue.Push(Noise(80, 1)), 64u);
}

TEST(FrameQueue, TwoThreadsLoseAndMixNothing) {
    const std::vector<Frame> noise = Noise(2'000'000, 9);
    FrameQueue queue(7919);
    std::vector<Frame> out(noise.size());
    std::thread writer([&] {
        for (size_t at = 0; at < noise.size();) {
            const size_t count = std::min<size_t>(1 + at % 997, noise.size() - at);
            const size_t pushed = queue.Push(std::span(noise).subspan(at, count));
            if (pushed == 0) std::this_thread::yield();
            at += pushed;
        }
    });
    for (size_t at = 0; at < out.size();) {
        const size_t count = std::min<size_t>(queue.Available(), 1 + at % 1009);
        if (count == 0) std::this_thread::yield();
        queue.Pop(std::span(out).subspan(at, count));
        at += count;
    }
    writer.join();
    EXPECT_EQ(Comparison(noise, out), "equal");
}

TEST(CaptureRoad, ANoticeComesWhenTheFramesBeforeItAreTaken) {
    CaptureRoad road(1000);
    road.Frames.Push(Noise(250, 1));
    CaptureNotice notice;
    notice.LostFrames = 17;
    road.Say(notice);
    std::vector<Frame> buffer(100);
    EXPECT_FALSE(road.NoticeWithin(100));
    road.Frames.Pop(buffer);
    EXPECT_FALSE(road.NoticeWithin(100));
    road.Frames.Pop(buffer);
    const std::optional<CaptureNotice> told = road.NoticeWithin(100);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->LostFrames, 17u);
    EXPECT_FALSE(road.AnyNotice());
}

TEST(CaptureRoad, ClearForgetsNoticesToo) {
    CaptureRoad road(10);
    road.Say({});
    road.Clear();
    EXPECT_FALSE(road.AnyNotice());
    EXPECT_FALSE(road.NoticeWithin(10));
}

}  // namespace
}  // namespace Corvetape
