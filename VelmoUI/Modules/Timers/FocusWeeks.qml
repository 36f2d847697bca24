import QtQuick
import Velmo.Design
import Velmo.Modules.Timers

/// The focus of the last four weeks, a bar a day.
CardSurface {
    id: weeks

    required property TimersPageModel page

    Accessible.role: Accessible.Grouping
    Accessible.name: "Últimas 4 semanas"

    SectionTitle {
        id: title
        y: Theme.grid
        text: weeks.Accessible.name
    }

    Row {
        id: bars
        x: Theme.cardPadding
        y: title.y + title.height
        width: parent.width - 2 * x
        height: total.y - y - Theme.grid

        Repeater {
            id: days
            model: weeks.page.days

            delegate: Item {
                id: day

                required property real share
                required property bool isToday
                required property string text

                width: bars.width / days.count
                height: bars.height
                Accessible.role: Accessible.StaticText
                Accessible.name: text

                Rectangle {
                    anchors.bottom: parent.bottom
                    width: Theme.grid
                    height: Math.max(width, Math.round(parent.height * day.share))
                    radius: width / 2
                    color: day.share > 0 ? Theme.accent : day.isToday ? Theme.tertiaryText : Theme.surfaceSelected
                }
                HoverHandler {
                    onHoveredChanged: if (hovered)
                        total.pointed = day.text;
                    else if (total.pointed === day.text)
                        total.pointed = ""
                }
            }
        }
    }

    Label {
        id: total

        property string pointed: ""

        x: Theme.cardPadding
        width: parent.width - x - clear.width - Theme.grid
        height: Theme.controlHeight
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.grid
        visible: !clear.asks
        text: pointed.length > 0 ? pointed : weeks.page.total
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
    }
    ConfirmButton {
        id: clear
        anchors.right: parent.right
        anchors.rightMargin: Theme.grid
        y: total.y
        visible: weeks.page.hasHistory
        name: "Limpar"
        question: "Apagar?"
        confirmName: "Apagar"
        isQuiet: true
        onConfirmed: weeks.page.clearHistory()
    }
}
