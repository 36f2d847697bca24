import QtQuick
import Velmo

/// The pomodoro and its weeks, a new countdown, and those that there are.
FocusScope {
    id: view

    property TimersPageModel page: null
    property bool watched: false

    onWatchedChanged: tell()
    onPageChanged: tell()
    Component.onDestruction: if (page !== null)
        page.setWatched(false)

    function tell() {
        if (page !== null)
            page.setWatched(watched);
    }

    Loader {
        anchors.fill: parent
        active: view.page !== null
        focus: true

        sourceComponent: FocusScope {
            Row {
                id: fixed
                height: parent.height
                spacing: Theme.gap

                PomodoroCard {
                    width: 252
                    height: parent.height
                    page: view.page
                }
                FocusWeeks {
                    width: 200
                    height: parent.height
                    page: view.page
                }
                NewTimer {
                    width: 264
                    height: parent.height
                    page: view.page
                }
            }

            CardList {
                id: list
                x: fixed.width + Theme.gap
                width: parent.width - x
                height: parent.height
                visible: view.page.hasTimers
                model: view.page.timers
                Accessible.role: Accessible.List
                Accessible.name: "Timers"

                delegate: TimerCard {
                    width: 176
                    height: ListView.view.height
                    page: view.page
                }
                footer: Item {
                    width: clear.visible ? clear.width + Theme.gap : 0
                    height: list.height

                    ActionButton {
                        id: clear
                        x: Theme.gap
                        anchors.verticalCenter: parent.verticalCenter
                        visible: view.page.hasFinished
                        name: "Limpar concluídos"
                        idleColor: "transparent"
                        onTriggered: view.page.clearFinished()
                    }
                }
            }

            Label {
                anchors.fill: list
                visible: !view.page.hasTimers
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                text: "Seus timers aparecem aqui."
                color: Theme.tertiaryText
            }
        }
    }
}
