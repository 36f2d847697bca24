import QtQuick
import Velmo

/// What Orvane keeps on disk, and its settings as a file.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property DataPaneModel model: window.data
    readonly property var settings: window.settings
    readonly property var cleanDays: [0, 1, 7, 30]

    spacing: 2 * Theme.gap
    Component.onCompleted: model.refresh()

    SettingsSection {
        title: "Armazenamento"

        Repeater {
            model: pane.model.folders

            delegate: SettingRow {
                id: folder

                required property string id
                required property string size

                Label {
                    height: Theme.controlHeight
                    rightPadding: Theme.grid
                    text: folder.size
                    color: Theme.secondaryText
                }
                ActionButton {
                    name: PlatformWords.showInFolder
                    onTriggered: pane.model.reveal(folder.id)
                }
            }
        }
        SettingRow {
            title: "Cache e temporários"
            detail: pane.model.clearNote.isError ? "" : pane.model.clearNote.text
            issue: pane.model.clearNote.isError ? pane.model.clearNote.text : ""

            ActionButton {
                name: pane.model.isClearing ? "Limpando…" : "Limpar"
                onTriggered: pane.model.clear()
            }
        }
    }

    SettingsSection {
        title: "Prateleira"

        SettingRow {
            title: "Remover itens antigos"
            detail: "Fixados e arquivos movidos para a prateleira ficam."

            Picker {
                name: "Remover itens antigos"
                options: ["Nunca", "1 dia", "7 dias", "30 dias"]
                current: pane.cleanDays.indexOf(pane.settings.shelfAutoCleanDays)
                onPicked: index => pane.settings.shelfAutoCleanDays = pane.cleanDays[index]
            }
        }
        SettingRow {
            title: "Guardar sem perguntar"
            detail: "O que for solto no notch vai direto para a prateleira; arquivos são movidos e podem ser devolvidos."

            Toggle {
                name: "Guardar sem perguntar"
                checked: pane.settings.dropStraightToShelf
                onToggled: checked => pane.settings.dropStraightToShelf = checked
            }
        }
    }

    SettingsSection {
        title: "Ajustes"

        SettingRow {
            title: "Arquivo de ajustes"
            detail: pane.model.fileNote.isError ? "" : pane.model.fileNote.text
            issue: pane.model.fileNote.isError ? pane.model.fileNote.text : ""

            ActionButton {
                name: "Exportar…"
                onTriggered: pane.model.chooseExport()
            }
            ActionButton {
                name: "Importar…"
                onTriggered: pane.model.chooseImport()
            }
        }
        SettingRow {
            title: "Ajustes padrão"
            detail: pane.model.resetNote

            ConfirmButton {
                name: "Restaurar padrões…"
                question: "Descartar todos os seus ajustes?"
                confirmName: "Restaurar"
                onConfirmed: pane.model.resetSettings()
            }
        }
    }
}
