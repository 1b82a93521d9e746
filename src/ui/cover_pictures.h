#pragma once

#include <QImage>
#include <deque>
#include <map>
#include <string>

#include "core/controls/event.h"

namespace Corvetape {

class CoverImages;

/// The pictures of songs, decoded: that of the present one large, those of earlier ones small. They are known
/// by the addresses that came with the songs, so that all songs of an album share one.
class CoverPictures {
 public:
    /// Sides in pixels that are never exceeded: enough for twice the size at which they are shown.
    static constexpr int LargeSide = 640;
    static constexpr int SmallSide = 96;

    /// Small pictures that are remembered; the oldest go.
    static constexpr size_t Capacity = 300;

    /// `source` is null in a run that asks for no pictures; it outlives this object otherwise.
    explicit CoverPictures(CoverImages* source);

    /// Null if there is none now.
    const QImage& Present() const { return Large; }

    /// Null if none came from this address, or too long ago.
    QImage Small(const std::string& address) const;

    /// Another picture is present, or none any more.
    Event<> Changed;

 private:
    void Take();

    CoverImages* Source;
    Connection SourceChanged;
    QImage Large;
    std::map<std::string, QImage> Known;
    std::deque<std::string> Order;
};

}  // namespace Corvetape
