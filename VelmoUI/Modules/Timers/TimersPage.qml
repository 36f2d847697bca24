import QtQuick
import Velmo.Design
import Velmo.Modules.Timers

/// The pomodoro and its weeks, a new countdown, and those that there are.
FocusScope {
    id: view

    required property TimersPageModel page

    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Undo) && view.page.undoTitle.length > 0;
        if (event.accepted)
            view.page.undo();
    }

    Row {
        id: fixed
        height: parent.height
        spacing: Theme.gap

        PomodoroCard {
            width: Theme.isLarge ? 284 : 252
            height: parent.height
            page: view.page
        }
        FocusWeeks {
            visible: view.page.hasHistory
            width: 200
            height: parent.height
            page: view.page
        }
        NewTimer {
            width: Theme.isLarge ? 304 : 264
            height: parent.height
            page: view.page
        }
    }

    CardList {
        id: list
        x: fixed.width + Theme.gap
        width: parent.width - x - (clear.visible ? clear.width + Theme.grid : 0)
        height: parent.height - (undo.visible ? undo.height + Theme.grid : 0)
        visible: view.page.hasTimers
        model: view.page.timers
        Accessible.role: Accessible.List
        Accessible.name: "Timers"

        delegate: TimerCard {
            width: list.share(index, 176)
            height: ListView.view.height
            page: view.page
        }
    }
    // Beside the list, which scrolls: never cut.
    IconButton {
        id: clear
        anchors.right: parent.right
        anchors.verticalCenter: list.verticalCenter
        visible: view.page.hasFinished
        name: "Limpar concluídos"
        symbol: "trash"
        onTriggered: view.page.clearFinished()

        Tip {
            anchors.right: parent.right
            anchors.top: parent.bottom
            shown: clear.hovered
            text: clear.name
        }
    }

    Label {
        anchors.fill: list
        visible: !view.page.hasTimers && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: "Seus timers aparecem aqui."
        color: Theme.tertiaryText
    }
    ActionButton {
        id: undo
        x: list.x
        anchors.bottom: parent.bottom
        visible: view.page.undoTitle.length > 0
        name: view.page.undoTitle
        textColor: Theme.accent
        idleColor: "transparent"
        onVisibleChanged: if (visible && !list.visible && view.activeFocus)
            forceActiveFocus(Qt.TabFocusReason)
        onTriggered: {
            const hadFocus = activeFocus;
            view.page.undo();
            if (hadFocus)
                list.forceActiveFocus(Qt.TabFocusReason);
        }
    }
}
