#include "VelmoUI/Modules/Frame/PanelFileDialog.h"

#include "VelmoUI/Modules/Frame/PanelPort.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace velmo {

namespace {

constexpr int gapBelowPanel = 24;
constexpr int frameHeight = 32; // at most, of what the window manager puts around it

QScreen *screenAt(double centerX)
{
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().left() <= centerX && centerX <= screen->geometry().right())
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

} // namespace

PanelFileDialog::PanelFileDialog(PanelPort &panel) : m_panel(panel)
{
}

PanelFileDialog::~PanelFileDialog()
{
    if (m_dialog)
        m_panel.setPresentingSystemUI(false);
}

void PanelFileDialog::open(Kind kind, const QString &title, const QString &acceptText,
                           const QString &directory, const Use &use)
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = std::make_unique<QFileDialog>();
    m_dialog->setWindowTitle(title);
    m_dialog->setDirectory(directory);
    if (kind == Kind::files)
        m_dialog->setNameFilter(QStringLiteral("Todos os arquivos (*)"));
    m_dialog->setFileMode(kind == Kind::files ? QFileDialog::ExistingFiles
                                              : QFileDialog::Directory);
    m_dialog->setOption(QFileDialog::ShowDirsOnly, kind == Kind::folder);
    // Our words where the dialog is Qt's own.
    m_dialog->setLabelText(QFileDialog::Accept, acceptText);
    m_dialog->setLabelText(QFileDialog::Reject, QStringLiteral("Cancelar"));
    m_dialog->setLabelText(QFileDialog::LookIn, QStringLiteral("Pasta:"));
    m_dialog->setLabelText(QFileDialog::FileName, QStringLiteral("Nome:"));
    m_dialog->setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
    QObject::connect(m_dialog.get(), &QFileDialog::filesSelected, m_dialog.get(),
                     [dialog = m_dialog.get(), use](const auto &) {
                         const QList<QUrl> chosen = dialog->selectedUrls();
                         use({chosen.begin(), chosen.end()});
                     });
    // It goes for good: its list of completions would come up after it and take the next click.
    QObject::connect(m_dialog.get(), &QFileDialog::finished, m_dialog.get(), [this] {
        m_panel.disconnect(m_dialog.get());
        m_dialog.release()->deleteLater();
        m_panel.setPresentingSystemUI(false);
    });
    QObject::connect(&m_panel, &PanelPort::openChanged, m_dialog.get(), [this] {
        if (!m_panel.isOpen())
            m_dialog->reject();
    });
    m_panel.setPresentingSystemUI(true);
    m_dialog->show();
    place();
    m_dialog->activateWindow();
}

void PanelFileDialog::place()
{
    const Rect panel = m_panel.frame();
    QRect free = screenAt(panel.midX())->availableGeometry();
    QRect frame(QPoint(), m_dialog->size());
    frame.moveCenter(free.center());
    free.adjust(0, int(panel.height) + gapBelowPanel, 0, -frameHeight);
    frame.setHeight(std::min(frame.height(), free.height()));
    frame.moveTop(std::clamp(frame.top(), free.top(), free.bottom() + 1 - frame.height()));
    m_dialog->resize(frame.size());
    m_dialog->move(frame.topLeft());
}

} // namespace velmo
