import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// What Orvane keeps on disk, and its settings as a file.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property DataPaneModel model: window.data
    readonly property var settings: window.settings

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

    SettingsParts {
        width: parent.width
        window: pane.window
        pane: "data"
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
