#pragma once

#include <memory>
#include <string>

#include "sim/sim_files.h"

namespace Corvetape::Test {

/// A disk that takes everything and keeps nothing.
class SwallowingDisk : public SimFiles {
 public:
    Opened<File> Create(const std::string& /*path*/) override {
        return std::make_unique<Swallower>(BytesTaken);
    }

    uint64_t BytesTaken = 0;

 private:
    class Swallower : public File {
     public:
        explicit Swallower(uint64_t& taken) : Taken(taken) {}
        FileResult Write(std::span<const std::byte> bytes) override {
            Taken += bytes.size();
            return {};
        }
        FileResult Seek(uint64_t position) override {
            At = position;
            return {};
        }
        uint64_t Position() const override { return At; }
        FileResult CutBack(uint64_t /*size*/) override { return {}; }
        FileResult Close() override { return {}; }

     private:
        uint64_t& Taken;
        uint64_t At = 0;
    };
};

}  // namespace Corvetape::Test
