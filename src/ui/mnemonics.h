#pragma once

#include <QObject>

class QWidget;

namespace Corvetape {

/// Gives every button with a text and every caption of a field on a page a letter of its own, which reaches
/// it together with Alt. The letters follow the texts: in another language, and when a text changes, they are
/// chosen anew. First letters of words come first; an earlier widget chooses before a later one.
class Mnemonics : public QObject {
 public:
    /// Looks after the widgets on `page`, and goes with it.
    explicit Mnemonics(QWidget* page);

    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void Assign();

    QWidget& Page;
};

/// The letter that a text marks with a single "&", in lower case; null if it marks none.
QChar MarkedLetter(const QString& text);

/// `caption` with "&" before its first letter that is not in `taken`, in the order above; unchanged if all
/// are taken or one is marked already.
QString Marked(const QString& caption, const QString& taken);

}  // namespace Corvetape
