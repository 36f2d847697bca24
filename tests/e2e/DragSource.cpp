#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>

/// Lets the user drag a file out of it. Blue, and yellow while what is under the pointer would take
/// the file. Without a file it promises one and then has nothing to give.
class DragSource : public QRasterWindow {
public:
    explicit DragSource(const QString &file) : m_file(file) {}

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), m_isWelcome ? Qt::yellow : Qt::blue);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!event->buttons().testFlag(Qt::LeftButton))
            return;
        auto *const data = new QMimeData;
        data->setData(QStringLiteral("text/uri-list"),
                      m_file.isEmpty() ? QByteArray() : QUrl::fromLocalFile(m_file).toEncoded());
        auto *const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [this](Qt::DropAction action) {
            m_isWelcome = action == Qt::CopyAction;
            update();
        });
        drag->exec(Qt::CopyAction);
    }

private:
    QString m_file;
    bool m_isWelcome = false;
};

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    DragSource window(application.arguments().value(1));
    window.setFlags(Qt::FramelessWindowHint);
    window.setGeometry(600, 500, 200, 200);
    window.show();
    return QGuiApplication::exec();
}
