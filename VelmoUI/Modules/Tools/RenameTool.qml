import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// A pattern for many names, and each name that it gives.
ToolForm {
    id: tool

    readonly property RenameForm form: page.renameForm

    function append(token: string) {
        form.pattern = form.pattern + token;
        pattern.text = form.pattern;
        pattern.forceActiveFocus();
    }

    fields: [
        TextEntry {
            id: pattern
            width: tokens.x - Theme.grid
            focus: true
            name: "Padrão dos nomes"
            placeholder: "Padrão dos nomes"
            Component.onCompleted: {
                text = tool.form.pattern;
                forceActiveFocus();
            }
            onEdited: text => tool.form.pattern = text
            onAccepted: tool.page.rename()
        },
        Row {
            id: tokens
            anchors.right: startTitle.left
            anchors.rightMargin: Theme.gap
            spacing: Theme.grid

            Repeater {
                model: [
                    {
                        "token": "{nome}",
                        "name": "Nome"
                    },
                    {
                        "token": "{n:2}",
                        "name": "Número"
                    },
                    {
                        "token": "{data}",
                        "name": "Data"
                    }
                ]

                delegate: ActionButton {
                    required property var modelData

                    name: modelData.name
                    textColor: Theme.secondaryText
                    Accessible.description: "Acrescenta ao padrão"
                    onTriggered: tool.append(modelData.token)
                }
            }
        },
        Label {
            id: startTitle
            anchors.right: start.left
            anchors.rightMargin: 2 * Theme.grid
            height: Theme.controlHeight
            text: "Começa em"
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        },
        TextEntry {
            id: start
            anchors.right: apply.left
            anchors.rightMargin: Theme.gap
            width: 2 * Theme.controlHeight + 2 * Theme.grid
            name: "Número do primeiro"
            placeholder: "1"
            Component.onCompleted: text = tool.form.startText
            onEdited: text => tool.form.startText = text
            onAccepted: tool.page.rename()
        },
        ActionButton {
            id: apply
            anchors.right: parent.right
            enabled: tool.form.isPossible && !tool.page.isRunning
            opacity: enabled ? 1 : 0.4
            name: "Renomear"
            idleColor: Theme.surfaceSelected
            onTriggered: tool.page.rename()
        }
    ]

    Label {
        id: count
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        text: tool.form.summary
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    CardGrid {
        id: grid
        width: parent.width + Theme.gap
        height: parent.height + Theme.grid - count.height
        rows: Math.max(1, Math.floor(height / Theme.rowHeight))
        cellWidth: Math.floor(width / 3)
        model: tool.form.rows
        Accessible.role: Accessible.List
        Accessible.name: "Nomes novos"

        delegate: Item {
            id: row

            required property int index
            required property string after
            required property string detail
            required property string problem
            required property bool isError
            required property string spoken
            readonly property color meaning: isError ? Theme.error : Theme.warning

            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight - Theme.grid
            Accessible.role: Accessible.ListItem
            Accessible.name: spoken

            Rectangle {
                anchors.fill: parent
                radius: Theme.controlRadius
                color: Theme.field

                FocusRing {
                    radius: parent.radius
                    shown: row.activeFocus
                }
            }
            Column {
                x: 2 * Theme.grid
                width: (warning.visible ? warning.x : parent.width) - 2 * x
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: row.after
                    elide: Text.ElideMiddle
                    font.pixelSize: Theme.smallSize
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: row.detail
                    color: warning.visible ? row.meaning : Theme.tertiaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
            Symbol {
                id: warning
                anchors.right: parent.right
                anchors.rightMargin: 2 * Theme.grid
                anchors.verticalCenter: parent.verticalCenter
                visible: row.problem.length > 0
                name: "exclamationmark.triangle.fill"
                size: Theme.smallSymbolSize
                color: row.meaning
            }
        }
    }
}
