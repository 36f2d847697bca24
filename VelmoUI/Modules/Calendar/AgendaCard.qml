import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Calendar

/// What is on or comes next; a click shows the agenda.
ModuleCard {
    id: agenda

    required property CalendarPageModel card

    SectionTitle {
        id: heading
        y: Theme.grid
        text: agenda.title
    }
    Column {
        x: Theme.cardPadding
        y: heading.y + heading.height
        width: parent.width - 2 * x
        visible: agenda.card.hasEvent

        Label {
            width: parent.width
            text: agenda.card.title
            font.weight: Font.DemiBold
            maximumLineCount: 2
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            text: agenda.card.when
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
        Label {
            width: parent.width
            text: agenda.card.countdown
            color: Theme.accent
            font.pixelSize: Theme.smallSize
        }
    }
    ActionButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.cardPadding
        visible: agenda.card.canJoin
        name: "Entrar"
        textColor: Theme.accent
        onTriggered: agenda.card.join()
    }
    Label {
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 2 * x
        visible: !agenda.card.hasEvent && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: agenda.card.isConnected ? "Nada marcado para os próximos dias." : "Seus próximos compromissos aparecem aqui."
        color: Theme.tertiaryText
    }
}
