import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// Where the content of archives goes, and the password where one is needed.
ToolForm {
    id: tool

    readonly property bool isFree: !page.isRunning

    fields: [
        ActionButton {
            anchors.right: here.left
            anchors.rightMargin: Theme.grid
            enabled: tool.isFree
            opacity: enabled ? 1 : 0.4
            name: "Escolher pasta…"
            onTriggered: tool.page.chooseExtractFolder()
        },
        ActionButton {
            id: here
            anchors.right: parent.right
            focus: true
            enabled: tool.isFree
            opacity: enabled ? 1 : 0.4
            name: "Extrair aqui"
            idleColor: Theme.surfaceSelected
            onTriggered: tool.page.extract()
            Component.onCompleted: forceActiveFocus()
        }
    ]

    Label {
        width: parent.width
        wrapMode: Text.Wrap
        text: tool.page.extractDetail
        color: Theme.secondaryText
    }
}
