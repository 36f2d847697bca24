import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// Where the panel shows.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property var settings: window.settings

    spacing: 2 * Theme.gap

    SettingsSection {
        title: "Mostrar o painel em"

        Repeater {
            model: pane.window.displays.choices

            delegate: ChoiceRow {
                required property string modelData
                required property int index

                title: modelData
                detail: pane.window.displays.details[index]
                isCurrent: index === pane.window.displays.current
                onChosen: pane.window.displays.choose(index)
            }
        }
    }

    SettingsSection {
        SettingRow {
            title: "Em telas sem recorte"
            detail: "Oculto, o painel só aparece quando abre."

            Picker {
                name: "Em telas sem recorte"
                options: ["Pílula", "Oculto"]
                current: ["pill", "hidden"].indexOf(pane.settings.nonNotchStyle)
                onPicked: index => pane.settings.nonNotchStyle = ["pill", "hidden"][index]
            }
        }
        SettingRow {
            title: "Com um app em tela cheia"

            Picker {
                name: "Com um app em tela cheia"
                options: ["Ocultar", "Manter visível"]
                current: ["hide", "keepVisible"].indexOf(pane.settings.fullscreenBehavior)
                onPicked: index => pane.settings.fullscreenBehavior = ["hide", "keepVisible"][index]
            }
        }
    }
}
