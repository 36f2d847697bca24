import QtQuick
import Velmo.Design
import Velmo.Modules.Timers

/// One countdown.
Card {
    id: card

    required property int index
    required property string id
    required property string title
    required property string value
    required property real progress
    required property bool isRunning
    required property bool isFinished
    required property string removal
    required property string spoken
    required property TimersPageModel page

    name: spoken
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index
    Keys.onDeletePressed: page.remove(id)
    Keys.onSpacePressed: isFinished ? page.restart(id) : page.togglePause(id)

    Label {
        x: Theme.cardPadding
        y: Theme.grid
        width: parent.width - x - remove.width - Theme.grid
        height: Theme.controlHeight
        text: card.title
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    IconButton {
        id: remove
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        name: card.removal
        symbol: "xmark"
        onTriggered: card.page.remove(card.id)
    }

    NumberLabel {
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -Theme.grid
        text: card.value
        size: card.isRunning ? Theme.numberSize : Theme.titleSize
        color: card.isRunning ? Theme.text : card.isFinished ? Theme.success : Theme.secondaryText
    }

    Row {
        x: Theme.iconInset
        anchors.bottom: bar.top
        anchors.bottomMargin: Theme.grid

        IconButton {
            visible: !card.isFinished
            name: card.isRunning ? "Pausar" : "Continuar"
            symbol: card.isRunning ? "pause.fill" : "play.fill"
            onTriggered: card.page.togglePause(card.id)
        }
        IconButton {
            name: "Recomeçar"
            symbol: "arrow.counterclockwise"
            onTriggered: card.page.restart(card.id)
        }
    }

    ProgressBar {
        id: bar
        x: Theme.cardPadding
        y: parent.height - height - Theme.cardPadding
        width: parent.width - 2 * x
        progress: card.progress
    }
}
