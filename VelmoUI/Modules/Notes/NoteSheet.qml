import QtQuick
import QtQuick.Templates as T
import Velmo.Design
import Velmo.Modules.Notes

/// The note that is written in, with its addresses below.
FocusScope {
    id: sheet

    required property NotesPageModel page
    /// Who undoes where the note has nothing to undo.
    required property Item undoKeys

    function write() {
        editor.forceActiveFocus();
        editor.cursorPosition = editor.length;
    }
    function load() {
        editor.isLong = editor.isLong || page.isLong; // never is a long text laid out in the slow way
        editor.text = page.text;
        editor.isLong = page.isLong;
        editor.cursorPosition = editor.length;
    }

    Component.onCompleted: load()

    Connections {
        target: sheet.page
        function onSelected() {
            sheet.load();
        }
    }

    CardSurface {
        anchors.fill: parent
    }

    Flickable {
        id: flick
        x: Theme.cardPadding
        y: Theme.grid
        width: tools.x - x
        height: foot.y - y
        clip: true
        contentHeight: editor.height
        boundsBehavior: Flickable.StopAtBounds

        T.TextArea {
            id: editor

            property bool isLong: false

            width: flick.width
            height: Math.max(implicitHeight, flick.height)
            focus: true
            activeFocusOnTab: true
            topPadding: Theme.grid
            bottomPadding: Theme.grid
            implicitHeight: contentHeight + topPadding + bottomPadding
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.shape
            selectByMouse: true
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            // Set at once: each change lays out the whole text again.
            font: Qt.font({
                family: Theme.face,
                pixelSize: Theme.bodySize,
                preferShaping: !isLong,
                kerning: !isLong
            })
            Keys.priority: Keys.BeforeItem
            Keys.forwardTo: canUndo ? [] : [sheet.undoKeys]
            Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
            Accessible.name: "Nota"
            Component.onCompleted: sheet.page.edit(textDocument, Theme.accent)
            onCursorRectangleChanged: {
                const top = cursorRectangle.y;
                const bottom = top + cursorRectangle.height + bottomPadding;
                if (top < flick.contentY)
                    flick.contentY = Math.max(0, top - topPadding);
                else if (bottom > flick.contentY + flick.height)
                    flick.contentY = bottom - flick.height;
            }

            TapHandler {
                acceptedModifiers: Qt.ControlModifier
                onTapped: point => sheet.page.openLinkAt(editor.positionAt(point.position.x, point.position.y))
            }
        }
        Label {
            x: editor.leftPadding
            y: editor.topPadding
            visible: editor.length === 0 && editor.preeditText.length === 0
            text: "Escreva aqui. #palavra vira uma tag."
            color: Theme.tertiaryText
            Accessible.ignored: true
        }
    }

    Column {
        id: tools
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.iconInset

        IconButton {
            id: pin
            enabled: sheet.page.hasSelection
            name: sheet.page.isPinned ? "Desafixar nota" : "Fixar nota"
            symbol: "pin.fill"
            symbolColor: sheet.page.isPinned ? Theme.accent : hovered || activeFocus ? Theme.text : Theme.tertiaryText
            onTriggered: sheet.page.togglePinOfSelected()
        }
        IconButton {
            enabled: sheet.page.hasSelection
            name: "Apagar nota"
            symbol: "trash"
            onTriggered: sheet.page.removeSelected()
        }
    }

    Item {
        id: foot
        x: Theme.cardPadding
        y: parent.height - height - Theme.grid
        width: parent.width - 2 * x
        height: undo.visible || links.count > 0 ? Theme.controlHeight : 0

        ActionButton {
            id: undo
            visible: sheet.page.undoTitle.length > 0
            name: sheet.page.undoTitle
            textColor: Theme.accent
            idleColor: "transparent"
            onTriggered: {
                const hadFocus = activeFocus;
                sheet.page.undo();
                if (hadFocus)
                    sheet.write();
            }
        }
        ListView {
            id: links
            visible: count > 0 && !undo.visible
            anchors.fill: parent
            orientation: ListView.Horizontal
            spacing: Theme.grid
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: visible
            model: sheet.page.links
            Accessible.role: Accessible.List
            Accessible.name: "Endereços da nota"

            delegate: ActionButton {
                required property string id
                required property string title
                required property int index

                name: title
                activeFocusOnTab: false
                textColor: Theme.accent
                onActiveFocusChanged: if (activeFocus)
                    links.currentIndex = index
                onTriggered: sheet.page.openLink(id)
            }
        }
    }
}
