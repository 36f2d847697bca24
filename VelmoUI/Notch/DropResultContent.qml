import QtQuick
import Velmo.Design
import Velmo.Notch

/// What was dropped, as tiles, and what can be done with it.
FocusScope {
    id: result

    required property NotchContent content
    readonly property bool shown: content.presentation === NotchContent.DropResult
    /// What the drop moved shows as long as it can be taken back, unless something else is.
    readonly property bool tellsMove: content.drop.canUndo && (!content.hasFeedback || content.feedbackTitle === content.drop.undoTitle)

    // Another drop shows here before this has faded: the keyboard starts again, as the list does.
    onShownChanged: if (shown) {
        actions.focus = true;
        actions.currentIndex = 0;
        tiles.positionViewAtBeginning();
    }

    focus: true
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Z && event.modifiers === Qt.ControlModifier && content.drop.canUndo) {
            content.drop.undo();
            event.accepted = true;
        }
    }

    SectionTitle {
        id: title
        x: Theme.margin
        y: result.content.hasCutout ? result.content.notchHeight : Theme.iconInset
        text: result.content.drop.title
    }

    // What was dropped is still on its way.
    Row {
        id: job
        x: title.x + title.width + Theme.gap
        y: title.y
        height: title.height
        spacing: 2 * Theme.grid
        visible: result.content.drop.hasJob
        // The keyboard doesn't stay with a button that goes.
        onVisibleChanged: if (!visible && cancel.focus)
            actions.focus = true

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: result.content.drop.jobTitle
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        ProgressBar {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.sliderWidth
            progress: result.content.drop.jobProgress
            Accessible.role: Accessible.ProgressBar
            Accessible.name: result.content.drop.jobSpoken
        }
        // As wide for every number, so that the button stays in its place.
        Item {
            width: Theme.rowHeight
            height: parent.height

            NumberLabel {
                anchors.verticalCenter: parent.verticalCenter
                text: result.content.drop.jobValue
                size: Theme.smallSize
            }
        }
        ActionButton {
            id: cancel
            name: "Cancelar"
            onTriggered: result.content.drop.cancelJob()
        }
    }

    // What an action came to, which nothing else shows while the panel is open.
    Row {
        anchors.right: close.left
        anchors.rightMargin: Theme.gap
        y: title.y
        height: title.height
        spacing: 2 * Theme.grid
        opacity: result.tellsMove || result.content.hasFeedback ? 1 : 0
        visible: opacity > 0
        Accessible.role: Accessible.AlertMessage
        Accessible.name: result.tellsMove ? result.content.drop.undoTitle : result.content.feedbackSpoken

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeIn
            }
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: result.tellsMove ? "tray.and.arrow.down" : result.content.feedbackSymbol
            size: Theme.smallSymbolSize
            color: result.tellsMove ? Theme.secondaryText : Theme.feedbackColor(result.content.feedbackStyle)
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, result.width / 4)
            text: result.tellsMove ? result.content.drop.undoTitle : result.content.feedbackTitle
            font.pixelSize: Theme.smallSize
            font.weight: Font.Medium
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, result.width / 4)
            visible: text.length > 0
            text: result.tellsMove ? result.content.drop.undoDetail : result.content.feedbackDetail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        ActionButton {
            id: undo
            anchors.verticalCenter: parent.verticalCenter
            visible: result.tellsMove
            name: "Desfazer"
            textColor: Theme.accent
            onTriggered: result.content.drop.undo()
            onVisibleChanged: if (!visible && focus)
                actions.focus = true
        }
    }

    IconButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin + Theme.iconInset
        y: title.y
        name: "Fechar"
        symbol: "xmark"
        onTriggered: result.content.close()
    }

    CardList {
        id: tiles

        readonly property real room: result.width - 2 * Theme.margin - Theme.gap

        x: Theme.margin
        y: title.y + title.height + Theme.grid
        width: Math.min(contentWidth, Math.max(Math.floor(room / 2), room - actions.columns * actions.leastWidth))
        height: parent.height - y - Theme.margin
        model: result.content.drop.items
        Accessible.role: Accessible.List
        Accessible.name: title.text

        delegate: DropTile {
            height: ListView.view.height
            onRemoved: result.content.drop.remove(id)
        }
    }

    CardGrid {
        id: actions

        readonly property int columns: Math.max(1, Math.ceil(count / rows))
        readonly property int leastWidth: Theme.fieldWidth

        x: tiles.x + tiles.width + Theme.gap
        y: tiles.y
        width: parent.width - x - Theme.margin + Theme.gap
        height: tiles.height + Theme.gap
        rows: 3
        cellWidth: Math.max(leastWidth, Math.floor(width / columns))
        focus: true
        model: result.content.drop.actions
        Accessible.role: Accessible.List
        Accessible.name: "Ações"

        delegate: DropActionButton {
            required property int index
            required property string id
            required property string title

            name: title
            width: actions.cellWidth - Theme.gap
            height: actions.cellHeight - Theme.gap
            activeFocusOnTab: false
            onActiveFocusChanged: if (activeFocus)
                actions.currentIndex = index
            onTriggered: result.content.drop.perform(id)
        }
    }
}
