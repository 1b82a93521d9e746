#include "ui/icons.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>

#include "ui/make.h"

namespace Corvetape {

namespace {

/// The colour that the drawings are made in.
constexpr const char* DrawnIn = "#000000";

class DrawingEngine : public QIconEngine {
 public:
    explicit DrawingEngine(QByteArray drawing) : Drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        painter->save();
        if (mode == QIcon::Disabled) painter->setOpacity(0.4);
        // What is wider than high leaves a space after the drawing, between it and a caption.
        const int side = std::min(rect.width(), rect.height());
        QSvgRenderer(Drawing).render(painter, QRect(rect.left(), rect.top(), side, side));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return Make<DrawingEngine>(Drawing); }

 private:
    QByteArray Drawing;
};

}  // namespace

QIcon DrawnIcon(const QString& name, const QColor& colour) {
    QFile file(":/ui/icons/" + name + ".svg");
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QIcon(Make<DrawingEngine>(file.readAll().replace(DrawnIn, colour.name().toUtf8())));
}

}  // namespace Corvetape
