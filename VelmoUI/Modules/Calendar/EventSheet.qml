import QtQuick
import Velmo.Design
import Velmo.Modules.Calendar

/// The event that the page is about, what can be done with it, and a line for a new one.
FocusScope {
    id: sheet

    required property CalendarPageModel page
    /// Gets the keys while nothing is typed.
    required property Item keys

    function edit() {
        line.text = page.edit();
        line.forceActiveFocus(Qt.OtherFocusReason);
    }

    Connections {
        target: sheet.page
        function onSaved() {
            line.text = "";
        }
    }

    CardSurface {
        width: parent.width
        height: entry.y - Theme.grid

        Label {
            anchors.centerIn: parent
            visible: !sheet.page.hasEvent
            text: "Nada marcado para os próximos dias."
            color: Theme.tertiaryText
        }
        Column {
            x: Theme.cardPadding
            y: 2 * Theme.grid
            width: parent.width - 2 * x
            visible: sheet.page.hasEvent

            Label {
                width: parent.width
                text: sheet.page.title
                font.weight: Font.DemiBold
            }
            Label {
                width: parent.width
                text: sheet.page.countdown.length > 0 ? sheet.page.when + " · " + sheet.page.countdown : sheet.page.when
                color: Theme.accent
                font.pixelSize: Theme.smallSize
            }
            Label {
                width: parent.width
                text: sheet.page.detail
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
            }
        }
        Row {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.grid
            x: Theme.cardPadding
            visible: sheet.page.hasEvent
            spacing: Theme.grid

            ActionButton {
                visible: sheet.page.canJoin
                name: "Entrar"
                textColor: Theme.accent
                onTriggered: sheet.page.join()
            }
            IconButton {
                name: "Nova nota da reunião"
                symbol: "square.and.pencil"
                onTriggered: sheet.page.openNote()
            }
            IconButton {
                visible: sheet.page.canEdit
                name: "Editar"
                symbol: "applepencil"
                onTriggered: sheet.edit()
            }
            IconButton {
                visible: sheet.page.canEdit
                name: "Remover"
                symbol: "trash"
                onTriggered: {
                    sheet.page.remove();
                    line.forceActiveFocus(Qt.OtherFocusReason); // this button may be gone
                }
            }
            IconButton {
                name: "Abrir no aplicativo de agenda"
                symbol: "arrow.up.forward.app"
                onTriggered: sheet.page.openApplication()
            }
        }
    }

    Item {
        id: entry
        anchors.bottom: parent.bottom
        width: parent.width
        height: line.height + Theme.controlHeight

        TextEntry {
            id: line
            width: parent.width
            focus: true
            visible: sheet.page.calendarName.length > 0 || sheet.page.isEditing
            name: sheet.page.isEditing ? "Editar compromisso" : "Novo compromisso"
            placeholder: "Almoço com Ana amanhã 12h30 1h"
            keysWhileEmpty: sheet.keys
            onEdited: text => sheet.page.readLine(text)
            onAccepted: sheet.page.save(text)
            Keys.onEscapePressed: event => {
                event.accepted = sheet.page.isEditing;
                if (event.accepted) {
                    text = "";
                    sheet.page.endEditing();
                }
            }
        }
        Label {
            id: hint
            anchors.bottom: parent.bottom
            width: parent.width - (undo.visible ? undo.width : 0)
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            leftPadding: 2 * Theme.grid
            text: sheet.page.understood.length > 0 ? sheet.page.understood
                : sheet.page.state.length > 0 ? sheet.page.state
                : line.visible ? "Na agenda " + sheet.page.calendarName
                : "Agendas por endereço são somente leitura."
            color: sheet.page.hasProblem ? Theme.error : Theme.secondaryText
            font.pixelSize: Theme.captionSize
            Accessible.role: sheet.page.hasProblem ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text
        }
        ActionButton {
            id: undo
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            visible: sheet.page.undoTitle.length > 0
            name: sheet.page.undoTitle
            textColor: Theme.accent
            idleColor: "transparent"
            onTriggered: sheet.page.undo()
        }
    }
}
