// A small window from which files can be dragged, for scripts that try the window of the program with a
// pointer:
//   drag-source FILE...
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QUrl>
#include <memory>

namespace {

class Source : public QLabel {
 public:
    explicit Source(const QStringList& files) : QLabel("Files") {
        for (const QString& file : files) Urls << QUrl::fromLocalFile(file);
        setAlignment(Qt::AlignCenter);
        setWindowTitle("drag-source");
        setWindowFlags(Qt::X11BypassWindowManagerHint);  // stays where it is put
        setGeometry(0, 0, 80, 60);
    }

 protected:
    void mousePressEvent(QMouseEvent* /*event*/) override {
        auto content = std::make_unique<QMimeData>();
        content->setUrls(Urls);
        auto drag = std::make_unique<QDrag>(this);  // the toolkit deletes it at its end
        drag->setMimeData(content.release());
        drag.release()->exec(Qt::CopyAction);
    }

 private:
    QList<QUrl> Urls;
};

}  // namespace

int main(int count, char** words) {
    const QApplication application(count, words);
    Source source(QApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
