import QtQuick
import Velmo.Design
import Velmo.Notch

/// The modules' symbols left and right of the notch, and nothing behind it, but a clock where no
/// cut-out is. The arrow keys go from one to the next, as Tab does.
Item {
    id: bar

    required property NotchContent content
    property bool showsIssues: false
    readonly property real side: (width - content.notchWidth) / 2
    /// The first glyph stands where the texts of the cards below it do.
    readonly property real tabsInset: Math.min(
        Theme.margin + Theme.cardPadding - (Theme.tabWidth - Theme.symbolSize) / 2, side - left.tabsWidth)
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

    NumberLabel {
        anchors.centerIn: parent
        visible: !bar.content.hasCutout
        text: bar.content.clock
        color: Theme.secondaryText
    }

    ModuleTabs {
        id: left
        x: bar.tabsInset
        height: parent.height
        room: bar.side - x - Theme.gap
        content: bar.content
        modules: bar.content.pages.left
    }

    ModuleTabs {
        id: right
        anchors.right: buttons.left
        tipsToTheLeft: true
        height: parent.height
        room: bar.side - buttons.width - 2 * Theme.gap - Theme.iconInset
        content: bar.content
        modules: bar.content.pages.right
    }

    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Math.min(Theme.margin + Theme.iconInset, bar.side - right.tabsWidth - width)
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
