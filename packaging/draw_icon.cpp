// Draws the program's icon at one size: draw-icon FILE.svg PIXELS FILE.png
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int count, char** words) {
    if (count != 4) return 2;
    const int pixels = QByteArray(words[2]).toInt();
    QSvgRenderer drawing(QString::fromLocal8Bit(words[1]));
    if (pixels <= 0 || !drawing.isValid()) return 1;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(words[3]), "PNG") ? 0 : 1;
}
