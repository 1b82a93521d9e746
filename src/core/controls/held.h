#pragma once

namespace Corvetape {

/// Holds a flag for as long as it lives.
class Held {
 public:
    explicit Held(bool& flag) : Flag(flag) { Flag = true; }
    ~Held() { Flag = false; }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

 private:
    bool& Flag;
};

}  // namespace Corvetape
