import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// How Orvane looks and moves.
Column {
    id: pane

    required property SettingsWindowModel window
    readonly property var settings: window.settings
    readonly property list<string> themes: ["system", "light", "dark"]
    readonly property list<string> sizes: ["compact", "regular", "large"]
    readonly property list<string> speeds: ["relaxed", "normal", "fast"]

    spacing: 2 * Theme.gap

    SettingsSection {
        title: "Cores"

        SettingRow {
            title: "Tema"
            detail: "Desta janela. O painel é sempre preto, como o recorte da câmera."

            Picker {
                name: "Tema"
                options: ["Sistema", "Claro", "Escuro"]
                current: pane.themes.indexOf(pane.settings.theme)
                onPicked: index => pane.settings.theme = pane.themes[index]
            }
        }
        SettingRow {
            title: "Cor de destaque"

            AccentPicker {
                current: pane.settings.accent
                onPicked: accent => pane.settings.accent = accent
            }
        }
    }

    SettingsSection {
        title: "Painel"

        SettingRow {
            title: "Tamanho"

            Picker {
                name: "Tamanho"
                options: ["Compacto", "Normal", "Grande"]
                current: pane.sizes.indexOf(pane.settings.panelSize)
                onPicked: index => pane.settings.panelSize = pane.sizes[index]
            }
        }
    }

    SettingsSection {
        title: "Movimento"

        SettingRow {
            title: "Animações"

            Toggle {
                name: "Animações"
                checked: pane.settings.animationsEnabled
                onToggled: checked => pane.settings.animationsEnabled = checked
            }
        }
        SettingRow {
            title: "Velocidade"

            Picker {
                name: "Velocidade"
                enabled: pane.settings.animationsEnabled
                options: ["Calma", "Normal", "Rápida"]
                current: pane.speeds.indexOf(pane.settings.animationSpeed)
                onPicked: index => pane.settings.animationSpeed = pane.speeds[index]
            }
        }
    }
}
