import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// What Orvane may do, how its data is protected, what of it is kept, and for how long.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property PrivacyPaneModel model: window.privacy

    spacing: 2 * Theme.gap
    Component.onCompleted: {
        model.refresh();
    }

    Label {
        width: parent.width
        leftPadding: Theme.cardPadding
        text: "Cada permissão só é pedida quando você usa pela primeira vez o que depende dela. Recusar uma desliga apenas esse recurso."
        color: Theme.secondaryText
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    SettingsSection {
        title: "Permissões"

        Repeater {
            model: pane.model.permissions

            delegate: PermissionCard {
                required property string id

                width: parent.width
                onRequested: pane.model.request(id)
                onOpened: pane.model.openSettings(id)
            }
        }
    }

    SettingsSection {
        title: "Proteção dos dados"

        Item {
            width: parent.width
            height: protection.height + 2 * Theme.cardPadding

            Symbol {
                id: lock
                x: Theme.cardPadding
                y: Theme.cardPadding
                name: pane.model.protectionSymbol
                color: Theme.secondaryText
            }
            Column {
                id: protection
                anchors.left: lock.right
                anchors.leftMargin: Theme.cardPadding
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                y: Theme.cardPadding
                spacing: 2 * Theme.grid

                Label {
                    text: pane.model.protectionTitle
                    font.weight: Font.Medium
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: pane.model.protectionText
                    color: Theme.secondaryText
                    font.pixelSize: Theme.smallSize
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: pane.model.protectionNote
                    color: Theme.secondaryText
                    font.pixelSize: Theme.smallSize
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
            }
        }
    }

    SettingsParts {
        width: parent.width
        window: pane.window
        pane: "privacy"
    }

    SettingsSection {
        title: "Histórico de atividade"

        SettingRow {
            title: "Manter por"

            Picker {
                name: "Manter por"
                options: pane.model.retentionChoices
                current: pane.model.retentionIndex
                onPicked: index => pane.model.setRetention(index)
            }
        }
        SettingRow {
            title: "Eventos guardados"
            detail: pane.model.hasHistory ? "" : "Nenhum, por enquanto."

            ConfirmButton {
                name: "Limpar histórico…"
                question: "Apagar o histórico de atividade?"
                confirmName: "Apagar"
                onConfirmed: pane.model.clearHistory()
            }
        }
    }
}
