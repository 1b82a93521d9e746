#include "ui/words.h"

#include <QTextDocument>

namespace Corvetape {

QString TipOf(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

QString TitleOf(QString text) {
    return text.replace("[*]", "[*][*]");
}

}  // namespace Corvetape
