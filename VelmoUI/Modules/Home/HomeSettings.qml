import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Home

/// Which cards and favourites Home has, and in which order.
Column {
    id: pane

    required property HomeSettingsModel model
    required property var settings

    spacing: 2 * Theme.gap

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
