import QtQuick
import Velmo.Design
import Velmo.Modules.Calendar

/// A month at a glance, the event that is on or next, and the days to come in columns.
FocusScope {
    id: view

    required property CalendarPageModel page

    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Undo) && view.page.undoTitle.length > 0;
        if (event.accepted)
            view.page.undo();
    }

    Column {
        anchors.verticalCenter: parent.verticalCenter
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !view.page.isConnected

        EmptyState {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "calendar"
            title: "Sua agenda aparece aqui"
            detail: "Adicione uma agenda pelo endereço iCal, ou uma conta do sistema."

            ActionButton {
                name: "Adicionar agenda"
                textColor: Theme.accent
                onTriggered: view.page.openFeeds()
            }
            ActionButton {
                name: "Contas do sistema"
                onTriggered: view.page.openAccounts()
            }
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, view.width)
            visible: view.page.hasProblem
            text: view.page.understood
            color: Theme.error
            font.pixelSize: Theme.captionSize
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    MonthGlance {
        id: month
        visible: view.page.isConnected
        width: 7 * Theme.controlHeight
        height: parent.height
        page: view.page
    }
    EventSheet {
        id: sheet
        x: month.width + Theme.gap
        visible: month.visible
        focus: visible
        keys: view
        width: Math.round((parent.width - x) * 0.4)
        height: parent.height
        page: view.page
    }
    AgendaColumns {
        x: sheet.x + sheet.width + Theme.gap
        visible: month.visible
        width: parent.width - x
        height: parent.height
        page: view.page
    }
}
