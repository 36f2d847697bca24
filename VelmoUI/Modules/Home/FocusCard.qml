import QtQuick
import Velmo

/// The pomodoro, or the countdown that was started first; a click shows them all.
ControlSurface {
    id: focus

    required property HomePage home
    required property string title
    required property TimersPageModel card
    property bool watched: false

    name: title
    radius: Theme.cardRadius
    idleColor: Theme.surface
    edgeColor: Theme.hairline
    onWatchedChanged: card.setWatched(watched)
    Component.onDestruction: if (card)
        card.setWatched(false)
    onTriggered: home.page.openModule("timers")

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
