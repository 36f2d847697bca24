import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// How many files are chosen, and below what is done with them or what came of it.
CardSurface {
    id: card

    required property ToolsPageModel page
    readonly property bool isRunning: page.isRunning
    readonly property string names: page.filesNames
    /// Nothing is going on or has happened.
    readonly property bool isQuiet: !isRunning && message.length === 0
    readonly property string message: page.note

    Label {
        id: title
        x: Theme.cardPadding
        y: 2 * Theme.grid
        width: add.x - x - Theme.grid
        height: Theme.controlHeight
        text: card.page.filesTitle
        elide: Text.ElideMiddle
        font.pixelSize: Theme.titleSize
        font.weight: Font.Medium
    }
    IconButton {
        id: add
        anchors.right: clear.left
        y: title.y
        enabled: !card.isRunning
        opacity: enabled ? 1 : 0.4
        name: "Adicionar arquivos"
        symbol: "plus"
        onTriggered: card.page.chooseFiles()
    }
    IconButton {
        id: clear
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: title.y
        enabled: !card.isRunning
        opacity: enabled ? 1 : 0.4
        name: "Limpar a seleção"
        symbol: "xmark"
        onTriggered: card.page.clear()
    }
    Label {
        id: detail
        x: title.x
        anchors.top: title.bottom
        width: parent.width - 2 * x
        wrapMode: Text.Wrap
        maximumLineCount: 2
        text: card.page.filesDetail
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }

    Label {
        id: note
        x: title.x
        anchors.top: detail.bottom
        anchors.topMargin: Theme.grid
        anchors.bottom: controls.top
        width: parent.width - 2 * x
        verticalAlignment: card.isQuiet ? Text.AlignTop : Text.AlignBottom
        bottomPadding: Theme.grid
        wrapMode: Text.Wrap
        maximumLineCount: Math.max(1, Math.floor(height / Theme.smallSymbolSize))
        text: card.isRunning ? card.page.jobTitle : card.message.length > 0 ? card.message : card.names
        color: card.isQuiet ? Theme.tertiaryText : !card.isRunning && card.page.isNoteError ? Theme.error : Theme.text
        font.pixelSize: Theme.smallSize
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Item {
        id: controls
        x: title.x
        y: parent.height - height - (height > 0 ? 2 * Theme.grid : Theme.grid)
        width: parent.width - 2 * x
        height: card.isRunning || undo.visible || reveal.visible ? Theme.controlHeight : 0

        ProgressBar {
            anchors.verticalCenter: parent.verticalCenter
            width: cancel.x - Theme.gap
            visible: card.isRunning
            opacity: card.isRunning && card.page.progress < 0 ? 0.4 : 1
            progress: card.isRunning ? Math.max(0, card.page.progress) : 0
            Accessible.role: Accessible.ProgressBar
            Accessible.name: note.text
        }
        ActionButton {
            id: cancel
            anchors.right: parent.right
            visible: card.isRunning
            name: "Cancelar"
            onTriggered: card.page.cancel()
        }
        Row {
            spacing: Theme.grid

            ActionButton {
                id: reveal
                visible: card.page.canReveal
                name: "Mostrar"
                onTriggered: card.page.reveal()
            }
            // Last: it goes by itself, and nothing may move under the pointer then.
            ActionButton {
                id: undo
                visible: card.page.canUndo
                name: "Desfazer"
                onTriggered: card.page.undo()
            }
        }
    }
}
