import QtQuick
import Velmo.Design
import Velmo.Modules.Activity

/// What is going on, then what has just happened, in columns that scroll sideways.
FocusScope {
    id: view

    required property ActivityPageModel page
    readonly property bool hasLive: page.hasLive
    readonly property bool hasRecent: page.hasRecent

    EmptyState {
        anchors.centerIn: parent
        visible: !view.hasLive && !view.hasRecent
        symbol: "waveform.path.ecg"
        title: "Nenhuma atividade ainda"
        detail: "Operações com arquivos, conversões e timers aparecerão aqui, com progresso e resultado."
    }

    Item {
        id: liveSection
        visible: view.hasLive
        width: !view.hasLive ? 0
             : Math.min(view.page.liveWidth, view.hasRecent ? view.width / 2 : view.width)
        height: parent.height

        SectionTitle {
            id: liveTitle
            text: "Em andamento"
        }

        CardList {
            y: Theme.controlHeight
            width: parent.width
            height: parent.height - y
            model: view.page.live
            Accessible.role: Accessible.List
            Accessible.name: liveTitle.text

            delegate: LiveCard {
                width: view.page.liveCardWidth
                height: ListView.view.height
                onCancelled: view.page.cancel(id)
            }
        }
    }

    Item {
        x: view.hasLive ? liveSection.width + 2 * Theme.gap : 0
        visible: view.hasRecent
        width: parent.width - x
        height: parent.height

        SectionTitle {
            id: recentTitle
            text: "Recentes"
        }

        ConfirmButton {
            anchors.right: parent.right
            name: "Limpar"
            question: "Apagar o histórico de atividade?"
            confirmName: "Apagar"
            isQuiet: true
            onConfirmed: view.page.clearHistory()
        }

        CardGrid {
            id: grid
            y: Theme.controlHeight
            width: parent.width + Theme.gap
            height: parent.height - y + Theme.gap
            cellWidth: 276
            model: view.page.recent
            Accessible.role: Accessible.List
            Accessible.name: recentTitle.text

            delegate: HistoryCard {
                width: grid.cellWidth - Theme.gap
                height: grid.cellHeight - Theme.gap
                onRevealed: view.page.reveal(id)
            }
        }
    }
}
