#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <vector>

class QFileDialog;

namespace velmo {

class PanelPort;

/// The desktop's dialog for files, which belongs to a panel: that stays open behind it, and takes
/// it along when the user closes it.
class PanelFileDialog {
public:
    enum class Kind { files, folder };
    using Use = std::function<void(const std::vector<QUrl> &)>;

    /// `panel` outlives this object.
    explicit PanelFileDialog(PanelPort &panel);
    ~PanelFileDialog();

    /// Asks for files that exist or for a folder, starting in `directory`, and hands them to `use`
    /// unless the user thinks better of it. A dialog that shows already only comes to the front.
    void open(Kind kind, const QString &title, const QString &acceptText, const QString &directory,
              const Use &use);

private:
    void place();

    PanelPort &m_panel;
    std::unique_ptr<QFileDialog> m_dialog;
};

} // namespace velmo
