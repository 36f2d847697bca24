import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Calendar

/// The feeds, and how long before an event the user hears of it.
SettingsSection {
    id: section

    required property CalendarFeedsModel model
    required property var settings

    title: "Agenda"

    Repeater {
        model: section.model.feeds

        delegate: SettingRow {
            id: row

            required property string id
            required property string name
            required property string address
            required property string problem
            required property string removal

            title: name
            detail: problem.length > 0 ? "" : address
            issue: problem

            TextEntry {
                name: "Nome de " + row.name
                text: row.name
                onAccepted: section.model.rename(row.id, text)
            }
            ConfirmButton {
                name: "Remover"
                question: "Parar de mostrar esta agenda?"
                confirmName: "Remover"
                onConfirmed: section.model.remove(row.id)
            }
        }
    }
    Item {
        width: parent.width
        height: form.height + 2 * Theme.cardPadding

        Column {
            id: form
            x: Theme.cardPadding
            y: Theme.cardPadding
            width: parent.width - 2 * x
            spacing: Theme.grid

            Connections {
                target: section.model
                function onAdded() {
                    address.text = "";
                    name.text = "";
                }
            }

            Row {
                width: parent.width
                spacing: Theme.grid

                TextEntry {
                    id: address
                    width: (parent.width - Theme.grid) * 0.65
                    name: "Endereço da agenda"
                    placeholder: "https://… ou webcal://…"
                    onAccepted: section.model.add(text, name.text)
                }
                TextEntry {
                    id: name
                    width: (parent.width - Theme.grid) * 0.35
                    name: "Nome da agenda"
                    placeholder: "Nome (opcional)"
                    onAccepted: section.model.add(address.text, text)
                }
            }
            Label {
                width: parent.width
                visible: text.length > 0
                text: section.model.issue
                color: Theme.error
                font.pixelSize: Theme.captionSize
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
            ActionButton {
                name: section.model.isTesting ? "Testando…" : "Adicionar agenda"
                textColor: Theme.accent
                enabled: !section.model.isTesting
                onTriggered: section.model.add(address.text, name.text)
            }
        }
    }
    SettingRow {
        title: "Avisar antes de um compromisso"

        Picker {
            name: "Avisar antes de um compromisso"
            options: section.model.alertTitles
            current: section.model.alertIndex
            onPicked: index => section.model.alertIndex = index
        }
    }
}
