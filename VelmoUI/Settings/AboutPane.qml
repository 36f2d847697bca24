import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Settings

/// What this is.
Column {
    id: pane

    required property SettingsWindowModel window

    spacing: 2 * Theme.gap

    Column {
        width: parent.width
        spacing: Theme.grid

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: "../Design/app.orvane.Orvane.svg"
            sourceSize.width: 96
            sourceSize.height: 96
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Orvane"
            font.pixelSize: Theme.numberSize
            font.weight: Font.DemiBold
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Versão " + pane.window.version
            color: Theme.secondaryText
        }
    }

    SettingsSection {
        SettingRow {
            title: "Ferramentas do dia a dia no notch."
            detail: "Seus dados ficam neste " + PlatformWords.computer + "."
        }
        SettingRow {
            title: "Dados"
            detail: pane.window.dataFolder
        }
        SettingRow {
            title: "Licença"
            detail: "MIT"
        }
    }
}
