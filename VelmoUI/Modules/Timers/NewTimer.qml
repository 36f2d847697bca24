import QtQuick
import Velmo.Design
import Velmo.Modules.Timers

/// Starts a countdown, from a preset or from what is typed.
CardSurface {
    id: card

    required property TimersPageModel page
    property bool removes: false

    Accessible.role: Accessible.Grouping
    Accessible.name: "Novo timer"

    function start() {
        if (page.start(duration.text, label.text)) {
            duration.text = "";
            label.text = "";
        }
    }

    SectionTitle {
        id: title
        y: Theme.grid
        text: card.removes ? "Escolha o que remover" : card.Accessible.name
    }
    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        visible: presets.count > 0
        name: card.removes ? "Concluir" : "Remover atalhos"
        symbol: card.removes ? "checkmark" : "applepencil"
        onTriggered: card.removes = !card.removes
    }

    ListView {
        id: presets
        x: Theme.cardPadding
        y: title.y + title.height
        width: parent.width - 2 * x
        height: Theme.controlHeight
        orientation: ListView.Horizontal
        spacing: Theme.grid
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: count > 0
        model: card.page.presets
        Accessible.role: Accessible.List
        Accessible.name: "Atalhos"

        SidewaysWheel {
            flickable: presets
        }

        delegate: ActionButton {
            id: preset

            required property string id
            required property string title
            required property string removal
            required property int index

            name: card.removes ? removal : title
            label: title
            activeFocusOnTab: false
            onActiveFocusChanged: if (activeFocus)
                presets.currentIndex = index
            textColor: card.removes ? Theme.error : Theme.text
            onTriggered: card.removes ? card.page.removePreset(id) : card.page.startPreset(id)
            Keys.onDeletePressed: card.page.removePreset(id)
        }
    }

    TextEntry {
        id: duration
        x: Theme.cardPadding
        anchors.bottom: label.top
        anchors.bottomMargin: Theme.grid
        width: save.x - x
        name: "Duração"
        placeholder: "1:30, 90 ou 1h20"
        onEdited: if (card.page.issue.length > 0)
            card.page.clearIssue()
        onAccepted: card.start()
    }
    TextEntry {
        id: label
        x: Theme.cardPadding
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.cardPadding
        width: parent.width - 2 * x - begin.width - Theme.grid
        name: "Nome do timer"
        placeholder: "Nome (opcional)"
        visible: card.page.issue.length === 0
        onAccepted: card.start()
    }
    Label {
        x: Theme.cardPadding
        y: label.y
        width: label.width
        height: label.height
        visible: !label.visible
        text: card.page.issue
        color: Theme.error
        font.pixelSize: Theme.captionSize
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    ActionButton {
        id: begin
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: label.y
        name: "Iniciar"
        onTriggered: card.start()
    }
    IconButton {
        id: save
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: duration.y
        name: "Guardar como atalho"
        symbol: "plus"
        onTriggered: if (card.page.addPreset(duration.text))
            duration.text = ""

        Tip {
            anchors.right: parent.right
            anchors.bottom: parent.top
            shown: save.hovered
            text: save.name
        }
    }
}
