import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// Which modules, cards and favourites there are, and in which order.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property ModulesPaneModel model: window.modules
    readonly property var settings: window.settings

    spacing: 2 * Theme.gap

    Label {
        width: parent.width
        leftPadding: Theme.cardPadding
        text: "Arraste para mudar a ordem, ou use Ctrl com as setas. O que você desliga não aparece."
        color: Theme.secondaryText
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    SettingsSection {
        title: "Módulos"

        OrderList {
            width: parent.width
            model: pane.model.modules
            Accessible.name: "Módulos"
            onMoved: (from, to) => pane.model.moveModule(from, to)
            onToggled: row => pane.model.toggleModule(row)
        }

        SettingRow {
            title: "Ordem dos módulos"

            ActionButton {
                name: "Ordem padrão"
                onTriggered: pane.model.resetModuleOrder()
            }
        }
    }

    SettingsParts {
        width: parent.width
        window: pane.window
        pane: "modules"
    }
}
