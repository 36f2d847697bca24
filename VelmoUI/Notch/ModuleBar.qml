import QtQuick
import Velmo

/// The modules' symbols left and right of the notch; nothing behind it.
Item {
    id: bar

    required property NotchContent content
    readonly property real side: (width - content.notchWidth) / 2

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Módulos"

    ModuleTabs {
        x: Theme.gap
        height: parent.height
        room: bar.side - 2 * Theme.gap
        content: bar.content
        modules: bar.content.leftModules
    }

    ModuleTabs {
        anchors.right: close.left
        tipsToTheLeft: true
        height: parent.height
        room: bar.side - close.width - 2 * Theme.gap
        content: bar.content
        modules: bar.content.rightModules
    }

    IconButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        height: parent.height
        surfaceHeight: Math.min(Theme.controlHeight, height - Theme.ringWidth)
        radius: surfaceHeight / 2
        name: "Fechar"
        symbol: "xmark"
        onTriggered: bar.content.close()
    }
}
