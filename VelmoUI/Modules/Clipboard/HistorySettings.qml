import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Clipboard

/// Whether, how much and for how long the clipboard's history is kept.
SettingsSection {
    id: section

    required property ClipboardSettingsModel model
    required property var settings

    title: "Histórico do clipboard"

    SettingRow {
        title: "Guardar o que eu copio"

        Toggle {
            name: "Guardar o que eu copio"
            checked: section.settings.clipboardEnabled
            onToggled: checked => section.settings.clipboardEnabled = checked
        }
    }
    SettingRow {
        title: "Pausar"
        detail: "O que for copiado durante a pausa não entra depois."

        Toggle {
            name: "Pausar o histórico do clipboard"
            enabled: section.settings.clipboardEnabled
            checked: section.settings.clipboardPaused
            onToggled: checked => section.settings.clipboardPaused = checked
        }
    }
    SettingRow {
        title: "Itens guardados"
        detail: "Fixados, favoritos e coleções ficam além do limite."

        Picker {
            name: "Itens guardados"
            options: section.model.countChoices
            current: section.model.countIndex
            onPicked: index => section.model.setCount(index)
        }
    }
    SettingRow {
        title: "Manter por"

        Picker {
            name: "Manter o clipboard por"
            options: section.model.retentionChoices
            current: section.model.retentionIndex
            onPicked: index => section.model.setRetention(index)
        }
    }
    SettingRow {
        title: erase.asks ? "Apagar o histórico do clipboard?" : "Histórico"
        detail: section.model.kept

        ConfirmButton {
            id: erase
            name: "Apagar histórico…"
            question: "" // the row asks: there is no room for it beside the answers
            confirmName: "Apagar, exceto fixados e coleções"
            onConfirmed: section.model.clear()
        }
    }
}
