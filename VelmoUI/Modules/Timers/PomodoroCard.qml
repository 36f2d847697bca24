import QtQuick
import Velmo.Design
import Velmo.Modules.Timers

/// The pomodoro: its phase, what is left of it, and the cycle.
CardSurface {
    id: card

    required property TimersPageModel page

    Accessible.role: Accessible.Grouping
    Accessible.name: "Pomodoro"

    ProgressRing {
        id: ring
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        height: width
        lineWidth: Theme.grid
        progress: card.page.pomodoroProgress
        color: Theme.accent
        trackColor: Theme.surfaceSelected

        NumberLabel {
            anchors.centerIn: parent
            text: card.page.pomodoroTime
            size: Theme.numberSize
            color: card.page.isPomodoroRunning || !card.page.hasPomodoro ? Theme.text : Theme.secondaryText
        }
    }

    Column {
        anchors.left: ring.right
        anchors.leftMargin: Theme.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.grid

        Label {
            width: parent.width
            text: card.page.phase
            font.pixelSize: Theme.titleSize
            font.weight: Font.Medium
        }
        Row {
            spacing: Theme.grid
            Accessible.role: Accessible.StaticText
            Accessible.name: card.page.cyclesText

            Repeater {
                model: Math.min(card.page.cycles, 8)

                delegate: Rectangle {
                    required property int index

                    width: 2 * Theme.grid
                    height: width
                    radius: width / 2
                    color: index < card.page.cyclesDone ? Theme.accent : Theme.off
                }
            }
        }
        Label {
            width: parent.width
            text: card.page.today
            wrapMode: Text.Wrap
            maximumLineCount: 2
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
        ActionButton {
            visible: !card.page.hasPomodoro
            name: "Iniciar foco"
            onTriggered: card.page.startPomodoro()
        }
        Row {
            x: Theme.iconInset - Theme.cardPadding
            visible: card.page.hasPomodoro

            IconButton {
                name: card.page.isPomodoroRunning ? "Pausar" : "Continuar"
                symbol: card.page.isPomodoroRunning ? "pause.fill" : "play.fill"
                onTriggered: card.page.togglePomodoroPause()
            }
            IconButton {
                name: "Pular etapa"
                symbol: "forward.end.fill"
                onTriggered: card.page.skipPhase()
            }
            IconButton {
                name: "Encerrar"
                symbol: "stop.fill"
                onTriggered: card.page.stopPomodoro()
            }
        }
    }
}
