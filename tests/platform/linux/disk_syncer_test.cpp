#include "platform/linux/files/disk_syncer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <semaphore>

namespace Corvetape::Test {
namespace {

using Holder = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Holder AnyFile() {
    return {std::tmpfile(), std::fclose};
}

int64_t FileOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? static_cast<int64_t>(status.st_ino) : -1;
}

std::ptrdiff_t OpenDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
}

TEST(DiskSyncer, BringsAFileToTheDiskThoughItIsClosedMeanwhile) {
    std::counting_semaphore<> go(0);
    std::counting_semaphore<> done(0);
    std::atomic<int64_t> synced = 0;
    DiskSyncer syncer([&](int descriptor) {
        go.acquire();
        synced = FileOf(descriptor);
        done.release();
    });
    Holder file = AnyFile();
    const int64_t number = FileOf(fileno(file.get()));
    syncer.Add(fileno(file.get()));
    file.reset();
    go.release();
    done.acquire();
    EXPECT_EQ(synced, number);
}

TEST(DiskSyncer, NobodyWaitsAndOnlySoManyFilesDo) {
    std::counting_semaphore<> begun(0);
    std::counting_semaphore<> go(0);
    std::counting_semaphore<> done(0);
    std::atomic<size_t> syncs = 0;
    DiskSyncer syncer([&](int) {
        begun.release();
        go.acquire();
        ++syncs;
        done.release();
    });
    const Holder file = AnyFile();
    syncer.Add(fileno(file.get()));
    begun.acquire();  // the disk is busy with this one from here on
    for (size_t i = 0; i < DiskSyncer::MostWaiting + 10; ++i) syncer.Add(fileno(file.get()));
    EXPECT_EQ(syncs, 0U);
    go.release(100);
    for (size_t i = 0; i < DiskSyncer::MostWaiting + 1; ++i) done.acquire();
    syncer.Add(fileno(file.get()));  // comes after all that waited
    done.acquire();
    EXPECT_EQ(syncs, DiskSyncer::MostWaiting + 2);
}

TEST(DiskSyncer, TheEndWaitsForTheFileAtHandAndLeavesNothingOpen) {
    const Holder file = AnyFile();
    const std::ptrdiff_t before = OpenDescriptors();
    std::counting_semaphore<> begun(0);
    std::counting_semaphore<> go(0);
    std::atomic<bool> synced = false;
    std::thread disk;
    {
        DiskSyncer syncer([&](int) {
            begun.release();
            go.acquire();
            synced = true;
        });
        syncer.Add(fileno(file.get()));
        begun.acquire();
        syncer.Add(fileno(file.get()));
        EXPECT_EQ(OpenDescriptors(), before + 2);
        disk = std::thread([&] { go.release(2); });
    }
    EXPECT_TRUE(synced);
    EXPECT_EQ(OpenDescriptors(), before);
    disk.join();
}

TEST(DiskSyncer, WhatIsNotOpenIsLeftOut) {
    DiskSyncer syncer([](int) { ADD_FAILURE(); });
    syncer.Add(-1);
}

}  // namespace
}  // namespace Corvetape::Test
