import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Timers

/// The pomodoro, or the countdown that was started first; a click shows them all.
ModuleCard {
    id: focus

    required property TimersPageModel card

    SectionTitle {
        id: heading
        y: Theme.grid
        text: focus.title
    }

    ProgressRing {
        id: ring
        anchors.horizontalCenter: parent.horizontalCenter
        y: heading.y + heading.height - Theme.grid
        width: state.y - y - Theme.grid
        height: width
        lineWidth: Theme.grid
        progress: focus.card.leadProgress
        color: Theme.accent
        trackColor: Theme.surfaceSelected

        NumberLabel {
            anchors.centerIn: parent
            text: focus.card.leadTime
            size: Theme.titleSize
        }
    }
    Label {
        id: state
        x: Theme.cardPadding
        width: parent.width - 2 * x
        height: Theme.controlHeight
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2 * Theme.grid
        visible: focus.card.hasLead
        horizontalAlignment: Text.AlignHCenter
        text: focus.card.leadTitle
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }
    ActionButton {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.verticalCenter: state.verticalCenter
        visible: !focus.card.hasLead
        name: "Iniciar foco"
        onTriggered: focus.card.startPomodoro()
    }
}
