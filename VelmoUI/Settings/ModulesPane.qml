import QtQuick
import Velmo

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

    SettingsSection {
        title: "Cartões do Início"

        OrderList {
            width: parent.width
            model: pane.model.cards
            Accessible.name: "Cartões do Início"
            onMoved: (from, to) => pane.model.moveCard(from, to)
            onToggled: row => pane.model.toggleCard(row)
        }

        SettingRow {
            title: "Trazer para a frente o que importa agora"

            Toggle {
                name: "Trazer para a frente o que importa agora"
                checked: pane.settings.promoteActiveHomeCards
                onToggled: checked => pane.settings.promoteActiveHomeCards = checked
            }
        }
        SettingRow {
            title: "Ordem dos cartões"

            ActionButton {
                name: "Ordem padrão"
                onTriggered: pane.model.resetCardOrder()
            }
        }
    }

    TimerSettings {
        width: parent.width
        settings: pane.settings
    }

    SettingsSection {
        title: "Favoritos"
        visible: pane.model.hasFavorites

        OrderList {
            width: parent.width
            model: pane.model.favorites
            isRemovable: true
            Accessible.name: "Favoritos"
            onMoved: (from, to) => pane.model.moveFavorite(from, to)
            onRemoved: row => pane.model.removeFavorite(row)
        }
    }
}
