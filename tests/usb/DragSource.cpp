// A window out of which a mouse drags the files that are the arguments, as out of a file manager.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

class DragSource : public QWidget {
public:
    explicit DragSource(const QList<QUrl>& files) : files_(files) {}

protected:
    void mouseMoveEvent(QMouseEvent*) override {
        auto* const files = new QMimeData;
        files->setUrls(files_);
        auto* const drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction | Qt::MoveAction);
    }

private:
    QList<QUrl> files_;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QList<QUrl> files;
    for (const QString& path : QApplication::arguments().sliced(1)) {
        files.append(QUrl::fromLocalFile(path));
    }
    DragSource window(files);
    window.setWindowTitle(QStringLiteral("Files"));
    window.resize(100, 60);
    window.show();
    return QApplication::exec();
}
