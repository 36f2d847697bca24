import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// When the panel opens and closes, its shortcuts, and how Orvane starts.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property var settings: window.settings
    readonly property list<string> hoverBehaviors: ["none", "preview", "expand"]
    readonly property var hoverBounds: window.settings.bounds("hoverDelay")
    readonly property var closeBounds: window.settings.bounds("closeDelay")

    spacing: 2 * Theme.gap

    SettingsSection {
        title: "Abrir"

        SettingRow {
            title: "Ao passar o cursor"

            Picker {
                name: "Ao passar o cursor"
                options: ["Nada", "Prévia", "Abrir"]
                current: pane.hoverBehaviors.indexOf(pane.settings.hoverBehavior)
                onPicked: index => pane.settings.hoverBehavior = pane.hoverBehaviors[index]
            }
        }
        SettingRow {
            title: "Espera antes de abrir"

            Slider {
                name: "Espera antes de abrir"
                enabled: pane.settings.hoverBehavior !== "none"
                from: pane.hoverBounds.minimum
                to: pane.hoverBounds.maximum
                stepSize: pane.hoverBounds.step
                value: pane.settings.hoverDelay
                valueText: Number(value).toLocaleString(Qt.locale(), "f", 2) + " s"
                onMoved: value => pane.settings.hoverDelay = value
            }
        }
        SettingRow {
            title: "Abrir com um clique"

            Toggle {
                name: "Abrir com um clique"
                checked: pane.settings.openOnClick
                onToggled: checked => pane.settings.openOnClick = checked
            }
        }
    }

    SettingsSection {
        title: "Fechar"

        SettingRow {
            title: "Fechar ao afastar o cursor"

            Toggle {
                name: "Fechar ao afastar o cursor"
                checked: pane.settings.closeOnMouseLeave
                onToggled: checked => pane.settings.closeOnMouseLeave = checked
            }
        }
        SettingRow {
            title: "Espera antes de fechar"

            Slider {
                name: "Espera antes de fechar"
                enabled: pane.settings.closeOnMouseLeave
                from: pane.closeBounds.minimum
                to: pane.closeBounds.maximum
                stepSize: pane.closeBounds.step
                value: pane.settings.closeDelay
                valueText: Number(value).toLocaleString(Qt.locale(), "f", 1) + " s"
                onMoved: value => pane.settings.closeDelay = value
            }
        }
        SettingRow {
            title: "Fechar ao clicar fora"

            Toggle {
                name: "Fechar ao clicar fora"
                checked: pane.settings.closeOnClickOutside
                onToggled: checked => pane.settings.closeOnClickOutside = checked
            }
        }
    }

    SettingsSection {
        title: "Atalhos globais"

        Repeater {
            model: pane.window.hotKeys.rows

            delegate: SettingRow {
                id: shortcut

                required issue
                required property string id
                required property string keys
                required property bool isEnabled
                required property bool isRecording

                KeyRecorder {
                    name: shortcut.title + ", " + shortcut.keys
                    keys: shortcut.keys
                    isRecording: shortcut.isRecording
                    onStarted: pane.window.hotKeys.startRecording(shortcut.id)
                    onStopped: pane.window.hotKeys.stopRecording()
                }
                Toggle {
                    name: shortcut.title
                    checked: shortcut.isEnabled
                    onToggled: checked => pane.window.hotKeys.setEnabled(shortcut.id, checked)
                }
            }
        }
    }

    SettingsSection {
        title: "Orvane"

        SettingRow {
            title: "Abrir ao iniciar a sessão"
            issue: pane.window.launchAtLoginMessage

            Toggle {
                name: "Abrir ao iniciar a sessão"
                checked: pane.window.launchesAtLogin
                onToggled: checked => pane.window.setLaunchesAtLogin(checked)
            }
        }
        SettingRow {
            title: "Ícone na área de status"
            detail: "Onde o ambiente tiver uma."

            Toggle {
                name: "Ícone na área de status"
                checked: pane.settings.showMenuBarIcon
                onToggled: checked => pane.settings.showMenuBarIcon = checked
            }
        }
    }
}
