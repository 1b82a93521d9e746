#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/desktop.h"

namespace Corvetape {

/// The one place that the programs of a user compete for. Share it between machines to run two programs.
struct InstancePlace {
    const void* Holder = nullptr;
    size_t Activations = 0;  ///< how often the holder was asked to come to the front
};

/// A desktop that writes down what it is asked for.
class SimDesktop : public Desktop {
 public:
    explicit SimDesktop(std::shared_ptr<InstancePlace> place) : Place(std::move(place)) {}
    ~SimDesktop() override {
        if (Place->Holder == this) Place->Holder = nullptr;
    }
    SimDesktop(const SimDesktop&) = delete;
    SimDesktop& operator=(const SimDesktop&) = delete;

    bool ClaimInstance() override {
        if (Place->Holder == nullptr) Place->Holder = this;
        return Place->Holder == this;
    }
    void ActivateOther() override {
        if (Place->Holder != nullptr && Place->Holder != this) ++Place->Activations;
    }
    std::string Language() override { return OwnLanguage; }
    void MoveWindow(int32_t left, int32_t top) override {
        Note("MoveWindow " + std::to_string(left) + " " + std::to_string(top));
    }
    void MinimizeWindow() override { Note("MinimizeWindow"); }
    void ShowWindow() override { Note("ShowWindow"); }
    void ReportWindow() override { Note("ReportWindow"); }
    void LoadBars() override { Note("LoadBars"); }
    void CloseBars() override { Note("CloseBars"); }
    void AddTrayIcon() override { Note("AddTrayIcon"); }
    void RemoveTrayIcon() override { Note("RemoveTrayIcon"); }
    void ShowTrayTip(const std::string& tip) override { Note("Tip " + tip); }
    void ShowTrayState(TrayState state) override {
        Note("Tray " + std::to_string(static_cast<int32_t>(state)));
    }

    std::function<void(const std::string& what)> WhileAsked;
    std::string OwnLanguage;

 private:
    void ShowPointer(MousePointer pointer) override {
        Note(pointer == MousePointer::Busy ? "BusyPointer" : "normal pointer");
    }
    void Note(const std::string& what) {
        if (WhileAsked) WhileAsked(what);
    }

    std::shared_ptr<InstancePlace> Place;
};

}  // namespace Corvetape
