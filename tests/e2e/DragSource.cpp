#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>

#include <chrono>
#include <thread>

struct SilentData : QMimeData {
    QVariant retrieveData(const QString &type, QMetaType preferred) const override
    {
        std::this_thread::sleep_for(std::chrono::seconds(4));
        return QMimeData::retrieveData(type, preferred);
    }
};

/// Lets the user drag a file out of it. Blue; yellow while what is under the pointer would copy the
/// file, and red while it would move it. Without a file it promises one and then has nothing to
/// give; with "silent" it hangs when it is asked.
class DragSource : public QRasterWindow {
public:
    explicit DragSource(const QString &file) : m_file(file) {}

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), m_action == Qt::CopyAction   ? Qt::yellow
                                                         : m_action == Qt::MoveAction ? Qt::red
                                                                                      : Qt::blue);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!event->buttons().testFlag(Qt::LeftButton))
            return;
        auto *const data = m_file == QLatin1String("silent") ? new SilentData : new QMimeData;
        data->setData(QStringLiteral("text/uri-list"),
                      m_file.isEmpty() ? QByteArray() : QUrl::fromLocalFile(m_file).toEncoded());
        auto *const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [this](Qt::DropAction action) {
            m_action = action;
            update();
        });
        drag->exec(Qt::CopyAction | Qt::MoveAction);
    }

private:
    QString m_file;
    Qt::DropAction m_action = Qt::IgnoreAction;
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
