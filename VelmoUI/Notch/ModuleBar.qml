import QtQuick
import Velmo

/// The modules' symbols left and right of the notch; nothing behind it. The arrow keys go from one
/// to the next, as Tab does.
Item {
    id: bar

    required property NotchContent content
    property bool showsIssues: false
    readonly property real side: (width - content.notchWidth) / 2
    /// Esc closes too: where it is narrow the modules go before the button.
    readonly property bool hasClose: side >= right.tabsWidth + (issues.visible ? 3 : 2) * Theme.controlHeight + 2 * Theme.gap

    function step(forward: bool) {
        const next = Window.activeFocusItem.nextItemInFocusChain(forward);
        if (next.parent.parent === bar)
            next.forceActiveFocus(Qt.TabFocusReason);
    }

    Keys.onLeftPressed: step(false)
    Keys.onRightPressed: step(true)
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
        id: right
        anchors.right: buttons.left
        tipsToTheLeft: true
        height: parent.height
        room: bar.side - buttons.width - 2 * Theme.gap
        content: bar.content
        modules: bar.content.rightModules
    }

    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        height: parent.height

        BarButton {
            id: issues
            visible: bar.content.issues.length > 0
            name: "Avisos"
            symbol: "exclamationmark.triangle.fill"
            symbolColor: Theme.warning
            onTriggered: bar.showsIssues = !bar.showsIssues
        }
        BarButton {
            name: "Ajustes"
            symbol: "gearshape"
            onTriggered: bar.content.openSettings()
        }
        BarButton {
            name: "Fechar"
            symbol: "xmark"
            visible: bar.hasClose
            onTriggered: bar.content.close()
        }
    }
}
