#pragma once

#include <QFrame>
#include <QLineEdit>
#include <QList>

class QHBoxLayout;
class QLabel;

namespace Corvetape {

/// A line that the program shows and the user may select and copy. It is as wide as its text where there is
/// room, and ends in an ellipsis where there is not, unless the user is in it.
class ShownText : public QLineEdit {
 public:
    ShownText();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

/// Short texts one after the other with a dot between those that are shown. The first ones give way where
/// there is not enough room for all.
class DottedLine : public QWidget {
 public:
    DottedLine();

    void Add(QWidget* part);

    /// Shows a part or leaves it out.
    void Show(QWidget* part, bool shown);

 private:
    struct Entry {
        QLabel* Dot;
        QWidget* Part;
        bool Shown;
    };
    QHBoxLayout* Row;
    QList<Entry> Entries;
};

}  // namespace Corvetape
