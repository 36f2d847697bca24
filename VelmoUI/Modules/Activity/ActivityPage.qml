import QtQuick
import Velmo

/// What is going on, then what has just happened, in columns that scroll sideways.
FocusScope {
    id: view

    property ActivityPageModel page: null
    property color accent: Theme.text
    property bool watched: false
    readonly property bool isEmpty: page !== null && !page.hasLive && !page.hasRecent

    onWatchedChanged: tell()
    onPageChanged: tell()

    function tell() {
        if (page !== null)
            page.setWatched(watched);
    }

    Column {
        anchors.centerIn: parent
        visible: view.isEmpty
        width: Math.min(parent.width, 480)
        spacing: 2 * Theme.grid

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "waveform.path.ecg"
            size: Theme.bigNumberSize
            color: Theme.tertiaryText
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Nenhuma atividade ainda"
            font.pixelSize: Theme.titleSize
            font.weight: Font.Medium
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            text: "Operações com arquivos, conversões e timers aparecerão aqui, com progresso e resultado."
            color: Theme.secondaryText
        }
    }

    Row {
        anchors.fill: parent
        spacing: 2 * Theme.gap
        visible: !view.isEmpty

        Column {
            id: liveSection
            visible: view.page !== null && view.page.hasLive
            width: visible ? Math.min(liveList.contentWidth, view.width / 2) : 0
            height: parent.height

            SectionTitle {
                text: "Em andamento"
            }

            CardList {
                id: liveList
                width: parent.width
                height: parent.height - Theme.controlHeight
                model: view.page !== null ? view.page.live : null
                delegate: LiveCard {
                    height: ListView.view.height
                    accent: view.accent
                    onCancelled: view.page.cancel(id)
                }
            }
        }

        Column {
            visible: view.page !== null && view.page.hasRecent
            width: view.width - (liveSection.visible ? liveSection.width + parent.spacing : 0)
            height: parent.height

            Item {
                width: parent.width
                height: Theme.controlHeight

                SectionTitle {
                    id: recentTitle
                    text: "Recentes"
                }

                ClearHistoryButton {
                    anchors.right: parent.right
                    onConfirmed: view.page.clearHistory()
                }
            }

            CardGrid {
                width: parent.width
                height: parent.height - Theme.controlHeight
                cellWidth: 276
                rows: 2
                model: view.page !== null ? view.page.recent : null
                delegate: HistoryCard {
                    width: GridView.view.cellWidth - Theme.gap
                    height: GridView.view.cellHeight - Theme.gap
                    onRevealed: view.page.reveal(id)
                }
            }
        }
    }
}
