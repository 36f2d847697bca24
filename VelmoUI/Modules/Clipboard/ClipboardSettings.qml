import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard

/// The history, and whose copies never come into it.
Column {
    id: column

    required property ClipboardSettingsModel model
    required property var settings

    spacing: 2 * Theme.gap
    Component.onCompleted: model.refresh()

    HistorySettings {
        model: column.model
        settings: column.settings
    }
    IgnoredApps {
        model: column.model
    }
}
