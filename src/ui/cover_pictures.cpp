#include "ui/cover_pictures.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>

#include "media/cover_images.h"

namespace Corvetape {

namespace {

/// Decoded no larger than it is shown: a picture of thousands of pixels would take a moment of the sound.
QImage PictureFromBytes(const std::string& bytes) {
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const int longest = std::max(size.width(), size.height());
    if (longest > CoverPictures::LargeSide) {
        reader.setScaledSize(
            size.scaled(CoverPictures::LargeSide, CoverPictures::LargeSide, Qt::KeepAspectRatio));
    }
    return reader.read();
}

}  // namespace

CoverPictures::CoverPictures(CoverImages* source) : Source(source) {
    if (Source == nullptr) return;
    SourceChanged = Source->Changed.Listen([this] { Take(); });
    Take();
}

void CoverPictures::Take() {
    const std::string& bytes = Source->PictureToShow();
    Large = bytes.empty() ? QImage() : PictureFromBytes(bytes);
    const std::string& address = Source->Address();
    if (!Large.isNull()) {
        if (Known
                .insert_or_assign(address, Large.scaled(SmallSide, SmallSide, Qt::KeepAspectRatioByExpanding,
                                                        Qt::SmoothTransformation))
                .second) {
            Order.push_back(address);
        }
        if (Order.size() > Capacity) {
            Known.erase(Order.front());
            Order.pop_front();
        }
    }
    Changed.Raise();
}

QImage CoverPictures::Small(const std::string& address) const {
    const auto found = Known.find(address);
    return found == Known.end() ? QImage() : found->second;
}

}  // namespace Corvetape
