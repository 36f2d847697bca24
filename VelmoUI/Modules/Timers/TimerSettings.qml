import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// How long focus and breaks are, and what is heard at their end.
SettingsSection {
    id: section

    required property var settings
    readonly property var lengths: [{
            "key": "focusMinutes",
            "title": "Foco",
            "unit": " min"
        }, {
            "key": "shortBreakMinutes",
            "title": "Pausa curta",
            "unit": " min"
        }, {
            "key": "longBreakMinutes",
            "title": "Pausa longa",
            "unit": " min"
        }, {
            "key": "cyclesBeforeLongBreak",
            "title": "Focos até a pausa longa",
            "unit": ""
        }]

    title: "Timers e pomodoro"

    Repeater {
        model: section.lengths

        delegate: SettingRow {
            id: row

            required property var modelData
            readonly property var bounds: section.settings.bounds(modelData.key)

            title: modelData.title

            Slider {
                name: row.title
                from: row.bounds.minimum
                to: row.bounds.maximum
                stepSize: row.bounds.step
                value: section.settings[row.modelData.key]
                valueText: value + row.modelData.unit
                onMoved: value => section.settings[row.modelData.key] = value
            }
        }
    }
    SettingRow {
        title: "Começar a próxima etapa sozinho"

        Toggle {
            name: "Começar a próxima etapa sozinho"
            checked: section.settings.autoAdvance
            onToggled: checked => section.settings.autoAdvance = checked
        }
    }
    SettingRow {
        title: "Som ao terminar"

        Toggle {
            name: "Som ao terminar"
            checked: section.settings.timerSoundEnabled
            onToggled: checked => section.settings.timerSoundEnabled = checked
        }
    }
}
