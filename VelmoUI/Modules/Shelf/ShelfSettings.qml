import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// How long things stay on the shelf, and how they come.
SettingsSection {
    id: section

    required property var settings
    readonly property list<int> cleanDays: [0, 1, 7, 30]

    title: "Prateleira"

    SettingRow {
        title: "Remover itens antigos"
        detail: "Fixados e arquivos movidos para a prateleira ficam."

        Picker {
            name: "Remover itens antigos"
            options: ["Nunca", "1 dia", "7 dias", "30 dias"]
            current: section.cleanDays.indexOf(section.settings.shelfAutoCleanDays)
            onPicked: index => section.settings.shelfAutoCleanDays = section.cleanDays[index]
        }
    }
    SettingRow {
        title: "Guardar sem perguntar"
        detail: "O que for solto no notch vai direto para a prateleira; arquivos são movidos e podem ser devolvidos."

        Toggle {
            name: "Guardar sem perguntar"
            checked: section.settings.dropStraightToShelf
            onToggled: checked => section.settings.dropStraightToShelf = checked
        }
    }
}
